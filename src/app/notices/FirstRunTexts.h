#pragma once

#include "base/LocalizedText.h"

/// Texts of the first run, in Simplified Chinese in every interface language; what speaks of macOS
/// is exchanged by DesktopTexts elsewhere.
namespace tavrin::texts {

inline constexpr SimplifiedText welcomeToBeta{u"欢迎使用 Tavrin 内测版"};
inline constexpr SimplifiedText betaNotice{
    u"当前版本是早期熟人内测版，尚未完成 Apple 公证，因此安装时可能需要通过右键打开。\n\n"
    u"Tavrin 只会在你主动按下快捷键时开始听写，不会后台监听，也不会保存你的语音录音。"};
inline constexpr SimplifiedText understood{u"我知道了，继续"};
inline constexpr SimplifiedText showInstallationGuide{u"查看安装说明"};

inline constexpr SimplifiedText installationGuide{u"Tavrin 内测版安装与权限说明"};
inline constexpr SimplifiedText installationSteps{
    u"首次安装请将 Tavrin 拖入“应用程序”。不要直接双击：按住 Control 点击 "
    u"Tavrin，选择“打开”，再在系统弹窗中选择“打开”。\n\n"
    u"若无法打开，请前往“系统设置 → 隐私与安全”，点击关于 Tavrin 的“仍要打开”。\n\n"
    u"麦克风仅用于主动语音输入；辅助功能仅用于把结果写回当前光标；语音识别用于转写。"
    u"所有权限均可在“权限与健康”页面重新开启。"};

} // namespace tavrin::texts
