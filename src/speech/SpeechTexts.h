#pragma once

#include "base/LocalizedText.h"

/// Errors of speech recognition.
namespace tavrin::texts {

inline constexpr SimplifiedText speechNotAllowed{
    u"请在“系统设置 → 隐私与安全性 → 语音识别”中允许 Tavrin。"};
inline constexpr SimplifiedText speechUnavailable{u"macOS 语音识别当前不可用，请检查网络后重试。"};
inline constexpr SimplifiedText noValidSpeech{u"没有识别到有效语音，请再试一次。"};
inline constexpr SimplifiedText liveSpeechUnavailable{u"实时语音识别当前不可用"};

} // namespace tavrin::texts
