#pragma once

#include "base/LocalizedText.h"

/// Texts of the general page.
namespace tavrin::texts {

inline constexpr LocalizedText generalTitle{u"通用", u"一般", u"General"};
inline constexpr LocalizedText generalSubtitle{u"选择界面语言，查看核心功能。",
    u"選擇介面語言，檢視核心功能。",
    u"Choose the interface language and review core capabilities."};

inline constexpr LocalizedText interfaceLanguage{u"界面语言", u"介面語言", u"Interface language"};
inline constexpr LocalizedText interfaceLanguageExplanation{u"决定 Tavrin 菜单与设置使用的语言。",
    u"決定 Tavrin 選單與設定使用的語言。",
    u"Controls the language used by Tavrin menus and settings."};
inline constexpr LocalizedText reopenAfterLanguageChange{u"更改语言后请重新打开 Tavrin。",
    u"變更語言後請重新開啟 Tavrin。", u"Reopen Tavrin after changing the language."};

inline constexpr LocalizedText translationLanguages{
    u"翻译语言", u"翻譯語言", u"Translation languages"};
/// How many there are.
inline constexpr LocalizedText translationLanguagesCount{
    u"目前支持 %1 种常用目标语言；较少使用的语言质量可能有差异。",
    u"目前支援 %1 種常用目標語言；較少使用的語言品質可能有差異。",
    u"Currently supports %1 common target languages; quality may vary for less common languages."};

inline constexpr LocalizedText audio{u"音频", u"音訊", u"Audio"};
inline constexpr LocalizedText preferredMicrophone{
    u"首选麦克风", u"偏好麥克風", u"Preferred microphone"};
inline constexpr LocalizedText muteOtherAudio{u"聆听时将其他系统声音静音",
    u"收音時將其他系統聲音靜音", u"Mute other system audio while listening"};
inline constexpr LocalizedText audioIsRestored{u"完成、取消或出错后，会恢复之前的静音与音量状态。",
    u"完成、取消或發生錯誤後，會恢復先前的靜音與音量狀態。",
    u"The previous mute and volume state is restored after finish, cancel, or error."};

inline constexpr LocalizedText speechRecognition{u"语音识别", u"語音辨識", u"Speech recognition"};
/// The names of its two popups, for those who hear them.
inline constexpr LocalizedText recogniser{u"识别引擎", u"辨識引擎", u"Recogniser"};
inline constexpr LocalizedText recogniserLanguage{
    u"识别语言", u"辨識語言", u"Recognition language"};

inline constexpr LocalizedText recogniserUpdated{
    u"语音识别已更新", u"語音辨識已更新", u"Speech recognition updated"};
inline constexpr LocalizedText reopenToApplyRecogniser{
    u"请退出并重新打开 Tavrin，新的选择才会生效。", u"請結束並重新開啟 Tavrin，新的選擇才會生效。",
    u"Quit and reopen Tavrin to apply your choice."};

} // namespace tavrin::texts
