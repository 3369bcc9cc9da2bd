#pragma once

#include "base/LocalizedText.h"

/// Texts of the question before the history is cleared, in Simplified Chinese in every interface
/// language.
namespace tavrin::texts {

inline constexpr SimplifiedText clearHistoryQuestion{u"清空全部撰写记录？"};
inline constexpr SimplifiedText clearHistoryDetail{u"此操作会清空本机保存的原始转写与整理结果。"};
inline constexpr SimplifiedText clearHistoryButton{u"清空"};
inline constexpr SimplifiedText keepHistoryButton{u"取消"};

} // namespace tavrin::texts
