#pragma once

#include "base/LocalizedText.h"

/// Texts of the personalization window, in Simplified Chinese for everybody.
namespace tavrin::texts {

inline constexpr SimplifiedText personalizationTitle{u"Tavrin 写作风格"};
inline constexpr SimplifiedText personalizationHeading{u"写作风格"};
inline constexpr SimplifiedText personalizationNote{
    u"写作样例只用于学习句长、节奏和措辞，内容仅保存在本机。"};
inline constexpr SimplifiedText defaultTone{u"默认语气"};
inline constexpr SimplifiedText writingSample{u"写作样例"};
inline constexpr SimplifiedText pasteWritingSample{
    u"粘贴 2-3 段你满意的文字；模型只模仿风格，不复制内容"};
inline constexpr SimplifiedText saveWritingStyle{u"保存写作风格"};

} // namespace tavrin::texts
