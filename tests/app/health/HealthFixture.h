#pragma once

#include "app/health/HealthVerdicts.h"
#include "app/settings/Localization.h"
#include "app/settings/Settings.h"
#include "platform/DesktopTexts.h"
#include "platform/preferences/PreferenceKeys.h"
#include "support/QtPrinters.h"
#include "support/ports/InMemoryAccessibility.h"
#include "support/ports/InMemoryHotKeyProbe.h"
#include "support/ports/InMemoryPermissions.h"
#include "support/ports/InMemoryPreferences.h"
#include "support/ports/InMemorySystemInfo.h"
#include "support/ports/InMemoryWorkspace.h"
#include "support/ports/VirtualTime.h"
#include "support/sound/InMemoryAudioDevices.h"
#include "support/sound/InMemorySpeechRecognizers.h"

#include <gtest/gtest.h>

namespace tavrin::testing {

/// A desktop on which everything is well but that nothing was delivered yet and nobody is signed
/// in. The interface is English.
class HealthFixture : public ::testing::Test {
protected:
    VirtualTime time;
    InMemoryPreferences preferences;
    InMemoryWorkspace workspace;
    InMemoryAccessibility accessibility;
    InMemoryAudioDevices devices;
    InMemoryHotKeyProbe probe;
    InMemoryPermissions permissions;
    InMemoryFileSpeechRecognizer recognizer;
    InMemorySystemInfo systemInfo;
    DesktopTexts texts; ///< Of the desktop, read when the localisation is first used.

    HealthFixture()
    {
        setLanguage(QStringLiteral("en"));
        preferences.setValue(
            keys::dictationShortcutIdentifiers, QStringList{QStringLiteral("rightOption")});
        preferences.setValue(
            keys::translationShortcutIdentifiers, QStringList{QStringLiteral("optionSpace")});
        preferences.setValue(
            keys::chatShortcutIdentifiers, QStringList{QStringLiteral("commandShiftSpace")});
        devices.addMicrophone(1, QStringLiteral("Built-in"), QStringLiteral("built-in"));
        devices.addMicrophone(2, QStringLiteral("Headset"), QStringLiteral("headset"));
        devices.addLoudspeaker(3, QStringLiteral("speakers"));
        devices.defaultInput = 1;
    }

    void setLanguage(const QString& code) { preferences.setValue(keys::interfaceLanguage, code); }

    [[nodiscard]] Localization& localization()
    {
        if (!m_localization)
            m_localization.emplace(preferences, workspace, KeyNames(), texts);
        return *m_localization;
    }

    [[nodiscard]] HealthSources sources()
    {
        if (!m_settings)
            m_settings.emplace(preferences, localization());
        return {accessibility, devices, time, probe, localization(), permissions, preferences,
            recognizer, *m_settings, systemInfo, workspace};
    }

    [[nodiscard]] HealthContent read() { return HealthVerdicts(sources()).read(); }

    [[nodiscard]] HealthRow row(HealthItem item) { return HealthVerdicts(sources()).readRow(item); }

private:
    std::optional<Localization> m_localization;
    std::optional<Settings> m_settings;
};

} // namespace tavrin::testing
