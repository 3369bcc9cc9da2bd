#include "app/settings/InterfaceLanguages.h"

#include "app/settings/Localization.h"
#include "app/vocabulary/SettingsTexts.h"
#include "app/vocabulary/TableIndex.h"
#include "platform/Alerts.h"
#include "platform/preferences/PreferenceKeys.h"
#include "platform/preferences/Preferences.h"

namespace tavrin {

void selectInterfaceLanguage(
    qsizetype index, Preferences& preferences, const Localization& localization, Alerts& alerts)
{
    const InterfaceLanguageItem& language = itemAtClampedIndex(interfaceLanguages, index);
    preferences.setValue(keys::interfaceLanguage, language.code.toString());
    preferences.synchronize();

    Alert alert;
    alert.messageText = localization.LT(texts::languageUpdated);
    alert.informativeText = localization.LT(texts::reopenToApplyLanguage);
    alert.buttons = {localization.LT(texts::ok)};
    alerts.show(alert, [](const AlertAnswer&) {});
}

} // namespace tavrin
