#pragma once

#include "app/pages/history/HistoryController.h"
#include "app/settings/Localization.h"
#include "app/settings/Settings.h"
#include "history/HistoryActions.h"
#include "history/HistoryFixture.h"
#include "platform/preferences/PreferenceKeys.h"
#include "support/ports/InMemoryPasteboard.h"
#include "support/ports/InMemoryWorkspace.h"
#include "support/ports/ScriptedAlerts.h"

#include <functional>
#include <optional>

namespace tavrin::testing {

/// A history page that nobody sees.
class PaperHistoryPage final : public View<HistoryContent> {
public:
    std::optional<HistoryContent> content;
    int shown = 0;
    std::function<void()> onContent;

    void setContent(const HistoryContent& given) override
    {
        content = given;
        ++shown;
        if (onContent)
            onContent();
    }
};

/// The controller of the history page over a history in a folder of its own, in English and in
/// Shanghai. It is Wednesday, November 15, 2023, 06:13 there.
class HistoryControllerFixture : public HistoryFixture {
protected:
    ScriptedAlerts alerts;
    InMemoryPasteboard pasteboard;
    InMemoryWorkspace workspace;
    Localization localization{preferences, workspace, KeyNames()};
    Settings settings{preferences, localization};
    QStringList sounds;
    HistoryActions actions{{store, alerts, pasteboard, preferences, workspace,
        [this](const QString& name) { sounds.append(name); },
        [this] { controller.refreshHistoryView(); }, [] {}, [] {}}};
    HistoryController controller{neighbours()};

    void SetUp() override
    {
        HistoryFixture::SetUp();
        preferences.setValue(keys::interfaceLanguage, QStringLiteral("en"));
        preferences.setValue(keys::historyRetention, QStringLiteral("forever"));
    }

    [[nodiscard]] HistoryController::Neighbours neighbours()
    {
        return {.actions = actions,
            .clock = time,
            .historyStore = store,
            .localization = localization,
            .mainQueue = time,
            .preferences = preferences,
            .settings = settings,
            .timeZone = [] { return QTimeZone("Asia/Shanghai"); }};
    }

    /// Makes these objects the history, and has it read.
    void show(const QByteArrayList& records)
    {
        putFile("[" + records.join(',') + "]");
        controller.refreshHistoryView();
        background.drain();
    }

    void showThree()
    {
        show({R"({"id":"A","mode":"chat","transcript":"first question","finalText":"An Answer"})",
            R"({"id":"B","mode":"dictation","transcript":"second","finalText":"周四的评审"})",
            R"({"id":"C","mode":"dictation","transcript":"third","finalText":"written"})"});
    }

    /// So many records of which every tenth holds "needle", each of so many characters.
    static QByteArrayList many(int count, int length)
    {
        QByteArrayList records;
        for (int i = 0; i < count; ++i)
            records.append(R"({"id":"R)" + QByteArray::number(i)
                + R"(","mode":"chat","finalText":")" + QByteArray(length, 'x')
                + (i % 10 == 9 ? "needle" : "straw") + R"("})");
        return records;
    }
};

} // namespace tavrin::testing
