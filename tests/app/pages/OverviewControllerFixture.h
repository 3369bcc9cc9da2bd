#pragma once

#include "app/pages/OverviewController.h"
#include "app/settings/Localization.h"
#include "app/settings/Settings.h"
#include "app/shortcuts/ShortcutMonitor.h"
#include "app/shortcuts/ShortcutSettings.h"
#include "history/HistoryFixture.h"
#include "platform/preferences/PreferenceKeys.h"
#include "support/ports/InMemoryHotKeyProbe.h"
#include "support/ports/InMemoryKeyMonitor.h"
#include "support/ports/InMemoryWorkspace.h"
#include "support/ports/ScriptedAlerts.h"

namespace tavrin::testing {

/// The controller of the overview page over a history in a folder of its own, in English and in
/// Shanghai. It is Wednesday, November 15, 2023, 06:13 there.
class OverviewControllerFixture : public HistoryFixture {
protected:
    InMemoryKeyMonitor keyboard;
    InMemoryHotKeyProbe probe;
    InMemoryWorkspace workspace;
    ScriptedAlerts alerts;
    Localization localization{preferences, workspace, KeyNames()};
    Settings settings{preferences, localization};
    ShortcutMonitor monitor{
        keyboard, time, settings, {[] {}, [] { return false; }, [] {}, [](OperationMode) {}}};
    ShortcutSettings shortcuts{
        {alerts, probe, localization, preferences, settings, monitor}, {[] {}, [] {}}};
    QLocale locale{QLocale::English, QLocale::UnitedStates};
    OverviewController controller{{.clock = time,
        .historyStore = store,
        .mainQueue = time,
        .shortcutSettings = shortcuts,
        .locale = [this] { return locale; },
        .timeZone = [] { return QTimeZone("Asia/Shanghai"); }}};

    void SetUp() override
    {
        HistoryFixture::SetUp();
        preferences.setValue(keys::interfaceLanguage, QStringLiteral("en"));
        preferences.setValue(keys::historyRetention, QStringLiteral("forever"));
    }

    /// Makes @p records, objects with commas between them, the history, and has it read.
    void show(const QByteArray& records)
    {
        putFile("[" + records + "]");
        controller.refreshDashboardUsage();
        background.drain();
    }
};

} // namespace tavrin::testing
