#pragma once

#include "base/LocalizedText.h"

/// Texts of the dialog that edits a term, in Simplified Chinese in every interface language.
namespace tavrin::texts {

inline constexpr SimplifiedText editTerm{u"编辑词条"};
inline constexpr SimplifiedText editTermExplanation{u"修改后会立即用于下一次语音识别与文字整理。"};
inline constexpr SimplifiedText saveTerm{u"保存"};
inline constexpr SimplifiedText cancelEditTerm{u"取消"};

} // namespace tavrin::texts
