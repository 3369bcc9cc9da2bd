#pragma once

#include "base/LocalizedText.h"

/// Texts of the health page.
namespace tavrin::texts {

inline constexpr LocalizedText permissionsAndHealth{
    u"权限与健康", u"權限與健康", u"Permissions & Health"};
inline constexpr LocalizedText permissionsAndHealthSubtitle{
    u"检查 Tavrin 正常工作所需的一切是否就绪。", u"檢查 Tavrin 正常運作所需的一切是否就緒。",
    u"Check that Tavrin has everything it needs to work smoothly."};

// The rows and their buttons.
inline constexpr LocalizedText accessibility{u"辅助功能", u"輔助使用", u"Accessibility"};
inline constexpr LocalizedText microphone{u"麦克风", u"麥克風", u"Microphone"};
inline constexpr LocalizedText speechRow{u"语音识别", u"語音辨識", u"Speech Recognition"};
inline constexpr LocalizedText tavrinCloud{u"Tavrin 云端", u"Tavrin 雲端", u"Tavrin Cloud"};
inline constexpr LocalizedText cursorDelivery{u"光标写入", u"游標寫入", u"Cursor delivery"};
inline constexpr LocalizedText enablePermission{u"开启权限", u"開啟權限", u"Enable"};
inline constexpr LocalizedText signInToCloud{u"登录", u"登入", u"Sign in"};
inline constexpr LocalizedText showRecords{u"查看记录", u"查看記錄", u"History"};

// Their states. Until the first look, in Simplified Chinese in every language.
inline constexpr SimplifiedText checking{u"检测中…"};
inline constexpr LocalizedText accessibilityTrusted{u"✓ 已授权，可在当前光标写入文字",
    u"✓ 已授權，可在目前游標寫入文字", u"✓ Allowed — can insert at the current cursor"};
inline constexpr LocalizedText accessibilityNotTrusted{u"⚠ 未开启：用于在当前光标写入文字",
    u"⚠ 未開啟：用於在目前游標寫入文字", u"⚠ Disabled — needed to insert at the current cursor"};
inline constexpr LocalizedText microphoneAuthorized{u"✓ 已授权，仅在主动输入时收音",
    u"✓ 已授權，僅在主動輸入時收音", u"✓ Allowed — listens only when triggered"};
inline constexpr LocalizedText microphoneNotDetermined{u"⚠ 尚未请求：用于主动语音输入",
    u"⚠ 尚未要求：用於主動語音輸入", u"⚠ Not requested — needed for voice input"};
inline constexpr LocalizedText microphoneDenied{
    u"⚠ 未开启，无法收音", u"⚠ 未開啟，無法收音", u"⚠ Disabled — cannot capture audio"};
inline constexpr LocalizedText speechAuthorized{
    u"✓ 已授权，用于语音转写", u"✓ 已授權，用於語音轉寫", u"✓ Allowed — ready to transcribe"};
inline constexpr LocalizedText speechNotDetermined{u"⚠ 尚未请求：用于语音转写",
    u"⚠ 尚未要求：用於語音轉寫", u"⚠ Not requested — needed for transcription"};
inline constexpr LocalizedText speechDenied{
    u"⚠ 未开启，无法转写", u"⚠ 未開啟，無法轉寫", u"⚠ Disabled — cannot transcribe"};
inline constexpr LocalizedText cloudSignedIn{
    u"✓ Tavrin 云端账号已登录", u"✓ 已登入 Tavrin 雲端帳戶", u"✓ Signed in to Tavrin Cloud"};
inline constexpr LocalizedText cloudSignedOut{
    u"⚠ 尚未登录 Tavrin 云端", u"⚠ 尚未登入 Tavrin 雲端", u"⚠ Not signed in to Tavrin Cloud"};
inline constexpr LocalizedText deliveryUnknown{
    u"— 完成一次输入后检测", u"— 完成一次輸入後偵測", u"— Checked after your first input"};
inline constexpr LocalizedText deliveryVerified{
    u"✓ 最近一次自动输入已完成", u"✓ 最近一次自動輸入已完成", u"✓ Most recent insertion completed"};
inline constexpr SimplifiedText deliveryFailed{u"⚠ %1"};
inline constexpr SimplifiedText deliveryNotVerified{u"最近一次未验证成功"};
inline constexpr SimplifiedText checkedAt{u"检测于 %1"};

// The notes.
inline constexpr LocalizedText healthy{u"✓ %1", u"✓ %1", u"✓ %1"};
inline constexpr LocalizedText problem{u"⚠ %1", u"⚠ %1", u"⚠ %1"};
inline constexpr LocalizedText recogniserHears{
    u"%1，识别语言：%2", u"%1，辨識語言：%2", u"%1, language: %2"};
inline constexpr LocalizedText recogniserUnavailable{u"语音识别当前不可用。",
    u"語音辨識目前無法使用。", u"Speech recognition is not available now."};
inline constexpr LocalizedText recogniserFailed{
    u"%1。最近一次识别失败：%2", u"%1。最近一次辨識失敗：%2", u"%1. It failed the last time: %2"};
inline constexpr LocalizedText restartPrograms{u"⚠ 请重新启动以下程序，Tavrin 才能写入：%1",
    u"⚠ 請重新啟動以下程式，Tavrin 才能寫入：%1",
    u"⚠ Restart these programs, so that Tavrin can write into them: %1"};
inline constexpr LocalizedText silentMicrophone{u"⚠ “%1”已静音、音量为零或未接好，只能录到静音。",
    u"⚠ 「%1」已靜音、音量為零或未接好，只能錄到靜音。",
    u"⚠ “%1” is muted, turned down or not plugged in: only silence comes from it."};
inline constexpr LocalizedText soundSettings{u"声音设置", u"音效設定", u"Sound settings"};
inline constexpr LocalizedText shortcutsTitle{u"快捷键", u"快捷鍵", u"Shortcuts"};
inline constexpr LocalizedText shortcutHeld{
    u"⚠ %1 已被其他程序占用。", u"⚠ %1 已被其他程式佔用。", u"⚠ Another program holds %1."};
inline constexpr LocalizedText shortcutHeldBy{
    u"⚠ %1 已被 %2 占用。", u"⚠ %1 已被 %2 佔用。", u"⚠ %2 holds %1."};
inline constexpr LocalizedText changeShortcuts{u"更改", u"變更", u"Change"};
inline constexpr LocalizedText desktopSession{u"桌面会话", u"工作階段", u"Session"};
/// Between the names of a list.
inline constexpr LocalizedText listSeparator{u"、", u"、", u", "};

inline constexpr LocalizedText noSettingsToOpen{
    u"没有可打开的设置", u"沒有可開啟的設定", u"There are no settings to open"};

} // namespace tavrin::texts
