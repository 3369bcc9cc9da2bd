#pragma once

#include "base/LocalizedText.h"

/// Texts of the settings themselves: what every page and menu that offers them shares.
namespace tavrin::texts {

inline constexpr LocalizedText languageUpdated{
    u"界面语言已更新", u"介面語言已更新", u"Language updated"};
inline constexpr LocalizedText reopenToApplyLanguage{
    u"请退出并重新打开 Tavrin，使所有界面使用新的语言。",
    u"請結束並重新開啟 Tavrin，使所有介面使用新的語言。",
    u"Quit and reopen Tavrin to apply the new language throughout the app."};
inline constexpr LocalizedText ok{u"好", u"好", u"OK"};
inline constexpr LocalizedText notSet{u"未设置", u"未設定", u"Not set"};

} // namespace tavrin::texts
