#pragma once

#include <QStringView>

#include <array>

namespace tavrin {

class Alerts;
class Localization;
class Preferences;

struct InterfaceLanguageItem {
    QStringView code;
    QStringView nativeName; ///< The same in every interface language.
};

/// The languages of the interface, in the order of the language popup.
inline constexpr std::array interfaceLanguages{
    InterfaceLanguageItem{u"zh-Hans", u"简体中文"},
    InterfaceLanguageItem{u"zh-Hant", u"繁體中文"},
    InterfaceLanguageItem{u"en", u"English"},
};

/// Stores the language at @p index of the popup (clamped into the list) and asks the user, in that
/// language, to restart: texts that are on the screen already are not rebuilt.
void selectInterfaceLanguage(
    qsizetype index, Preferences& preferences, const Localization& localization, Alerts& alerts);

} // namespace tavrin
