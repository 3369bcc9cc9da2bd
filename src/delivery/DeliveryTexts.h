#pragma once

#include "base/LocalizedText.h"

/// Reasons of a failed delivery, and names for what is unknown. Stored and shown as they stand, in
/// Simplified Chinese in every interface language.
namespace tavrin::texts {

inline constexpr SimplifiedText unknownApplication{u"未知应用"};

inline constexpr SimplifiedText noTargetApplication{u"没有记录到目标应用"};
inline constexpr SimplifiedText noFocusedElement{u"目标应用没有暴露可写入的焦点控件"};
inline constexpr SimplifiedText focusInOtherProcess{u"焦点没有回到开始录音时的应用"};

inline constexpr SimplifiedText pasteboardRefused{u"无法将结果写入系统剪贴板"};
inline constexpr SimplifiedText targetIsTavrin{u"开始录音时焦点仍在 Tavrin"};
inline constexpr SimplifiedText targetNotActivated{u"无法重新激活目标应用"};
inline constexpr SimplifiedText noTargetField{u"找不到目标输入框"};
inline constexpr SimplifiedText directWriteNotAllowed{u"当前应用不允许辅助功能直接写入"};
inline constexpr SimplifiedText keysNotPosted{u"无法向目标应用发送按键"};
inline constexpr SimplifiedText pasteNotTaken{u"目标应用没有接收粘贴的文字"};
inline constexpr SimplifiedText typingBroken{u"逐字输入被打断，文字不完整"};

} // namespace tavrin::texts
