#pragma once

#include "base/LocalizedText.h"

/// What goes wrong with recordings, in the words that the user reads: in Simplified Chinese in
/// every interface language, like the errors of the recognisers.
namespace tavrin::texts {

inline constexpr SimplifiedText cannotCreateRecording{u"无法创建录音文件。"};
inline constexpr SimplifiedText diskFull{u"磁盘空间不足，录音已中断。"};
inline constexpr SimplifiedText encodingFailed{u"录音编码失败，录音已中断。"};
inline constexpr SimplifiedText cannotOpenRecording{u"无法打开录音文件。"};
inline constexpr SimplifiedText emptyRecording{u"录音文件是空的。"};
inline constexpr SimplifiedText damagedRecording{u"录音文件已损坏，无法读取。"};
inline constexpr SimplifiedText recordingTooLong{u"录音太长，无法处理。"};
inline constexpr SimplifiedText noMicrophone{u"没有可用的麦克风。"};
inline constexpr SimplifiedText microphoneLost{u"麦克风已断开。"};
inline constexpr SimplifiedText captureOverrun{u"录音处理太慢，录音已中断。"};
inline constexpr SimplifiedText recordingFormatUnknown{u"不支持的录音格式。"};

} // namespace tavrin::texts
