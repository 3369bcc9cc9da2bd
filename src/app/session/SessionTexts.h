#pragma once

#include "base/LocalizedText.h"

/// Texts of the recording session, in Simplified Chinese in every interface language.
namespace tavrin::texts {

inline constexpr SimplifiedText cannotStartRecording{u"无法开始录音"};
inline constexpr SimplifiedText checkMicrophonePermission{u"请检查麦克风权限。"};
inline constexpr SimplifiedText processingFailed{u"语音处理失败"};

// Stored with the history record.
inline constexpr SimplifiedText insertedAutomatically{u"自动输入已完成"};
inline constexpr SimplifiedText keptOnPasteboard{u"保存在剪贴板 · %1"};
inline constexpr SimplifiedText insertionFailed{u"自动输入失败"};

// Shown when the text waits on the pasteboard; %1 is the reason.
inline constexpr SimplifiedText pasteYourself{u"%1；请按 ⌘V"};
inline constexpr SimplifiedText savedOnPasteboard{u"文字已保存在剪贴板，请按 ⌘V"};

/// Tells the cloud service what application a question was asked from: its name and identifier.
inline constexpr SimplifiedText chatContext{u"应用：%1（%2）"};
inline constexpr SimplifiedText unnamedApplication{u"未知应用"};
inline constexpr SimplifiedText noBundleIdentifier{u"无 Bundle ID"};

} // namespace tavrin::texts
