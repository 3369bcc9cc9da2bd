#pragma once

#include "platform/DesktopTexts.h"

namespace tavrin {

inline void addAccountTexts(DesktopTexts& texts)
{
    texts.accountNotice =
        LocalizedText{u"服务地址与模型连接由服务端统一管理，不会显示或保存在本机。",
            u"服務位址與模型連線由服務端統一管理，不會顯示或儲存在本機。",
            u"The service endpoint and model connection are managed centrally and are never shown "
            u"or stored on your computer."};
    texts.serviceHint = LocalizedText{
        u"没有服务？scripts/run 可在本机启动一个；自建见 docs/self-hosting.md。",
        u"沒有服務？scripts/run 可在本機啟動一個；自建見 docs/self-hosting.md。",
        u"No service yet? On this computer scripts/run starts one; how to run your own stands in "
        u"docs/self-hosting.md."};
}

inline void addHealthTexts(DesktopTexts& texts)
{
    texts.enablePermission = LocalizedText{u"开启", u"開啟", u"Enable"};
    texts.microphoneDenied = LocalizedText{u"⚠ 未找到麦克风，无法收音", u"⚠ 找不到麥克風，無法收音",
        u"⚠ No microphone — cannot capture audio"};
    texts.recogniserMissing = LocalizedText{u"⚠ 没有可用的识别引擎，无法转写",
        u"⚠ 沒有可用的辨識引擎，無法轉寫", u"⚠ No recogniser — cannot transcribe"};
    texts.recogniser = LocalizedText{u"识别引擎", u"辨識引擎", u"Recogniser"};
    texts.noAccessibilitySettings = LocalizedText{
        u"此桌面没有 Tavrin 认识的辅助功能设置。请安装软件包 at-spi2-core，然后重新登录桌面。",
        u"此桌面沒有 Tavrin 認識的輔助功能設定。請安裝套件 at-spi2-core，然後重新登入桌面。",
        u"This desktop has no accessibility settings that Tavrin knows. Install the package "
        u"at-spi2-core, and log in to the desktop again."};
    texts.noMicrophoneSettings = LocalizedText{
        u"此桌面没有 Tavrin 认识的声音设置。请连接麦克风，并用 pavucontrol "
        u"等混音器将它选为输入设备。",
        u"此桌面沒有 Tavrin 認識的音效設定。請連接麥克風，並用 pavucontrol "
        u"等混音器將它選為輸入裝置。",
        u"This desktop has no sound settings that Tavrin knows. Plug in a microphone, and choose "
        u"it as the input device in a mixer, for example pavucontrol."};
    texts.noSpeechSettings = LocalizedText{u"请安装语音模型，或在“通用”页面选择语音服务器。",
        u"請安裝語音模型，或在「一般」頁面選擇語音伺服器。",
        u"Install a speech model, or choose a speech server on the page General."};
}

/// Linux has no notarisation, no System Settings and no permissions to grant.
[[nodiscard]] inline DesktopTexts linuxTexts()
{
    DesktopTexts texts;
    texts.betaNotice = LocalizedText{
        u"当前版本是早期熟人内测版。\n\n"
        u"Tavrin 只会在你主动按下快捷键时开始听写，不会后台监听，也不会保存你的语音录音。",
        u"目前版本是早期熟人內測版。\n\n"
        u"Tavrin 只會在你主動按下快捷鍵時開始聽寫，不會在背景監聽，也不會保存你的語音錄音。",
        u"This is an early beta version among friends.\n\n"
        u"Tavrin starts to listen only when you press its shortcut. It does not listen in the "
        u"background, and it does not keep recordings of your voice."};
    texts.installationGuide = LocalizedText{u"Tavrin 内测版使用说明", u"Tavrin 內測版使用說明",
        u"Setting up the beta version of Tavrin"};
    texts.installationSteps = LocalizedText{
        u"在 Linux 上，Tavrin 不需要授权：声音服务（PulseAudio 或 PipeWire）有麦克风即可使用。\n\n"
        u"请使用 X11 会话。在 Wayland 会话中，Tavrin 只能用于通过 XWayland 运行的程序。\n\n"
        u"麦克风仅用于主动语音输入；辅助功能仅用于把结果写回当前光标；语音识别用于转写。",
        u"在 Linux 上，Tavrin 不需要授權：音訊服務（PulseAudio 或 PipeWire）有麥克風即可使用。\n\n"
        u"請使用 X11 工作階段。在 Wayland 工作階段中，Tavrin 只能用於透過 XWayland 執行的程式。\n\n"
        u"麥克風僅用於主動語音輸入；輔助功能僅用於把結果寫回目前游標；語音辨識用於轉寫。",
        u"On Linux, Tavrin needs no permissions: it works once the sound server (PulseAudio or "
        u"PipeWire) has a microphone.\n\n"
        u"Use an X11 session. In a Wayland session, Tavrin reaches only programs that run on "
        u"XWayland.\n\n"
        u"The microphone is used only for voice input that you start, accessibility only to write "
        u"the result where your cursor is, and speech recognition to transcribe."};
    texts.noShortcutConflict = LocalizedText{
        u"✓ Tavrin 内部无冲突。Linux 无法枚举其他软件的全部私有快捷键。",
        u"✓ Tavrin 內部沒有衝突。Linux 無法列出其他軟體的所有私人快捷鍵。",
        u"✓ No internal conflict. Linux cannot list every private shortcut used by other apps."};
    texts.modelApiNotice = LocalizedText{
        u"语音由本机的识别引擎或你设置的语音服务器识别；这里的模型只负责整理文字。"
        u"测试版会将 Key 明文保存在本机偏好设置中。",
        u"語音由本機的辨識引擎或你設定的語音伺服器辨識；這裡的模型只負責整理文字。"
        u"測試版會將 Key 以明文保存在本機偏好設定中。",
        u"Speech is recognized by the engine on this computer, or by the speech server that you "
        u"have set; the model here only edits the text. The beta keeps the key as plain text in "
        u"the preferences on this computer."};
    texts.checkMicrophonePermission =
        LocalizedText{u"请检查麦克风是否已连接，并已在系统的声音设置中选为输入设备。",
            u"請檢查麥克風是否已連接，並已在系統的音效設定中選為輸入裝置。",
            u"Check that the microphone is plugged in, and that the sound settings of your desktop "
            u"have it chosen as the input device."};
    texts.speechNotAllowed = LocalizedText{
        u"没有可用的语音识别引擎。请安装语音模型，或在偏好设置文件中设置语音服务器。",
        u"沒有可用的語音辨識引擎。請安裝語音模型，或在偏好設定檔中設定語音伺服器。",
        u"There is no speech recognition engine. Install a speech model, or set a speech server in "
        u"the preferences file."};
    texts.speechUnavailable = LocalizedText{
        u"语音识别当前不可用，请检查语音模型或语音服务器后重试。",
        u"語音辨識目前無法使用，請檢查語音模型或語音伺服器後重試。",
        u"Speech recognition is not available now. Check the speech model or the speech server, "
        u"and try again."};
    texts.historySubtitle = LocalizedText{u"默认显示整理结果，需要时可查看原文。仅保存在本机。",
        u"預設顯示整理結果，需要時可查看原文。僅保存在本機。",
        u"Shows edited text by default. Reveal the original transcript when needed. Stored only on "
        u"this computer."};
    texts.retentionExplanation = LocalizedText{u"选择文字在本机保留多久。录音从不保存。",
        u"選擇文字在本機保留多久。錄音從不保存。",
        u"Choose how long text stays on this computer. Audio recordings are never kept."};
    texts.historyStorage = LocalizedText{u"%1 条记录 · %2 KB · 仅保存在本机",
        u"%1 筆記錄 · %2 KB · 僅保存在本機", u"%1 records · %2 KB · stored on this computer"};
    texts.limitedReach =
        LocalizedText{u"这是 Wayland 会话：Tavrin 只能用于通过 XWayland 运行的程序。",
            u"這是 Wayland 工作階段：Tavrin 只能用於透過 XWayland 執行的程式。",
            u"This is a Wayland session: Tavrin reaches only programs that run on XWayland."};
    addAccountTexts(texts);
    addHealthTexts(texts);
    return texts;
}

} // namespace tavrin
