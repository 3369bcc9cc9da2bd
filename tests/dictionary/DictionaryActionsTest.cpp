#include "dictionary/DictionaryActions.h"

#include "dictionary/DictionaryPageView.h"
#include "dictionary/DictionaryStore.h"
#include "platform/preferences/PreferenceKeys.h"
#include "support/QtPrinters.h"
#include "support/ports/InMemoryPreferences.h"
#include "support/ports/ScriptedAlerts.h"
#include "support/ports/VirtualTime.h"

#include <gtest/gtest.h>

#include <optional>

using namespace std::chrono_literals;

namespace tavrin {
namespace {

class FakePage final : public DictionaryPageView {
public:
    QString typed;
    QString searched;
    bool filtersAll = false;
    int refreshes = 0;
    QString searchedAtRefresh;
    bool filteredAllAtRefresh = false;

    [[nodiscard]] QString newTerm() const override { return typed; }

    void clearNewTerm() override { typed.clear(); }

    void setSearchText(const QString& text) override { searched = text; }

    void selectAllFilter() override { filtersAll = true; }

    void refreshDictionaryView() override
    {
        ++refreshes;
        searchedAtRefresh = searched;
        filteredAllAtRefresh = filtersAll;
    }
};

class DictionaryActionsTest : public ::testing::Test {
protected:
    testing::InMemoryPreferences preferences;
    testing::VirtualTime time;
    testing::ScriptedAlerts alerts;
    FakePage page;
    QStringList sounds;
    int endedWatches = 0;
    std::optional<DictionaryActions> actions{std::in_place, preferences, time, alerts,
        DictionaryActions::Effects{
            .playSound = [this](const QString& name) { sounds.append(name); },
            .endCorrectionWatch = [this] { ++endedWatches; }}};

    DictionaryActionsTest() { actions->setPage(&page); }

    QList<DictionaryEntry> entries() { return DictionaryEntries(preferences, time); }

    void add(const QString& text)
    {
        page.typed = text;
        actions->addDictionaryTerm();
    }

    QStringList terms()
    {
        QStringList found;
        for (const DictionaryEntry& entry : entries())
            found.append(entry.term());
        return found;
    }

    void edit(qsizetype index, const QString& text)
    {
        actions->editDictionaryTerm(entries()[index].id());
        alerts.answer(0, {text});
    }
};

TEST_F(DictionaryActionsTest, ANewTermIsTrimmedAndStandsOnTopWithItsCase)
{
    add("Anna");
    add(" \tGitHub \n");

    EXPECT_EQ(terms(), (QStringList{"GitHub", "Anna"}));
    EXPECT_EQ(entries()[0].source(), "manual");
    EXPECT_EQ(entries()[0].hitCount(), 0);
    EXPECT_EQ(entries()[0].createdAt(), time.sinceEpoch());
    EXPECT_EQ(page.typed, "");
    EXPECT_EQ(page.refreshes, 2);
    EXPECT_EQ(sounds, (QStringList{"success", "success"}));
    EXPECT_EQ(alerts.beeps(), 0);
}

TEST_F(DictionaryActionsTest, NothingTypedIsABeep)
{
    add(" \n\t ");

    EXPECT_TRUE(entries().isEmpty());
    EXPECT_EQ(alerts.beeps(), 1);
    EXPECT_EQ(page.refreshes, 0);
    EXPECT_EQ(page.typed, " \n\t ");
}

TEST_F(DictionaryActionsTest, ATermThatIsThereIsShownInsteadOfAdded)
{
    add("GitHub");
    sounds.clear();
    page.refreshes = 0;

    add("  gitHUB ");

    EXPECT_EQ(terms(), QStringList{"GitHub"});
    EXPECT_EQ(page.typed, "");
    EXPECT_EQ(page.searchedAtRefresh, "gitHUB");
    EXPECT_TRUE(page.filteredAllAtRefresh);
    EXPECT_EQ(page.refreshes, 1);
    EXPECT_EQ(alerts.beeps(), 1);
    EXPECT_TRUE(sounds.isEmpty());
}

TEST_F(DictionaryActionsTest, WithoutAPageThereIsNothingToAdd)
{
    actions->setPage(nullptr);
    actions->addDictionaryTerm();

    EXPECT_EQ(alerts.beeps(), 1);
}

TEST_F(DictionaryActionsTest, EditingAsksWithTheTermOfTheEntry)
{
    add("Anna");
    actions->editDictionaryTerm(entries()[0].id());

    ASSERT_EQ(alerts.shown().size(), 1);
    const Alert alert = alerts.shown()[0];
    EXPECT_EQ(alert.messageText, QStringLiteral("编辑词条"));
    EXPECT_EQ(alert.informativeText, QStringLiteral("修改后会立即用于下一次语音识别与文字整理。"));
    EXPECT_EQ(alert.buttons, (QStringList{QStringLiteral("保存"), QStringLiteral("取消")}));
    EXPECT_EQ(alert.fields,
        (QList{
            AlertField{.label = {}, .text = "Anna", .placeholder = {}, .size = QSize(320, 28)}}));
    alerts.answer(1, {"Boris"});
}

TEST_F(DictionaryActionsTest, AnEditedTermIsTrimmedAndKeepsEverythingElse)
{
    const QVariantMap learned{{"id", "A"}, {"term", "open ai"}, {"source", "auto"},
        {"createdAt", 1.0}, {"updatedAt", 2.0}, {"hitCount", 5}, {"enabled", true}};
    SaveDictionaryEntries(
        preferences, {DictionaryEntry::manual("Anna", 0s), DictionaryEntry{learned}});

    edit(1, " OpenAI\n");

    QVariantMap expected = learned;
    expected["term"] = "OpenAI";
    expected["updatedAt"] = time.sinceEpoch().count();
    EXPECT_EQ(entries()[1].stored(), expected);
    EXPECT_EQ(page.refreshes, 1);
    EXPECT_EQ(preferences.value(keys::personalDictionary).toStringList(),
        (QStringList{"Anna", "OpenAI"}));
    EXPECT_EQ(alerts.beeps(), 0);
}

TEST_F(DictionaryActionsTest, EditingToAnotherEntrysSpellingIsRefusedWithABeep)
{
    add("Anna");
    add("GitHub");

    edit(1, "GITHUB");

    EXPECT_EQ(terms(), (QStringList{"GitHub", "Anna"}));
    EXPECT_EQ(alerts.beeps(), 1);
    EXPECT_EQ(page.refreshes, 2);
}

TEST_F(DictionaryActionsTest, EditingToAnotherSpellingOfItselfIsAllowed)
{
    add("github");

    edit(0, "GitHub");

    EXPECT_EQ(terms(), QStringList{"GitHub"});
    EXPECT_EQ(alerts.beeps(), 0);
}

TEST_F(DictionaryActionsTest, ACancelledOrEmptiedEditChangesNothingSilently)
{
    add("Anna");
    actions->editDictionaryTerm(entries()[0].id());
    alerts.answer(1, {"Boris"});
    edit(0, " \n ");

    EXPECT_EQ(terms(), QStringList{"Anna"});
    EXPECT_EQ(alerts.beeps(), 0);
    EXPECT_EQ(page.refreshes, 1);
}

TEST_F(DictionaryActionsTest, UnknownIdsAreIgnored)
{
    add("Anna");
    SaveDictionaryEntries(preferences, entries() << DictionaryEntry{{{"term", "without id"}}});
    const QString id = entries()[0].id();

    actions->editDictionaryTerm(id.toLower());
    actions->editDictionaryTerm({});
    actions->deleteDictionaryTerm(id.toLower());
    actions->deleteDictionaryTerm({});

    EXPECT_TRUE(alerts.shown().isEmpty());
    EXPECT_EQ(entries().size(), 2);
    EXPECT_EQ(page.refreshes, 1);
}

TEST_F(DictionaryActionsTest, WhatIsLearnedWhileTheAlertIsOpenIsKept)
{
    add("Anna");
    actions->editDictionaryTerm(entries()[0].id());
    SaveDictionaryEntries(preferences, entries() << DictionaryEntry::learned("OpenAI", 0s));
    alerts.answer(0, {"Annika"});

    EXPECT_EQ(terms(), (QStringList{"Annika", "OpenAI"}));
}

TEST_F(DictionaryActionsTest, AnEntryDeletedWhileTheAlertIsOpenStaysDeleted)
{
    add("Anna");
    actions->editDictionaryTerm(entries()[0].id());
    SaveDictionaryEntries(preferences, {});
    alerts.answer(0, {"Annika"});

    EXPECT_TRUE(entries().isEmpty());
}

TEST_F(DictionaryActionsTest, AnAnswerAfterTheActionsAreGoneIsDropped)
{
    add("Anna");
    actions->editDictionaryTerm(entries()[0].id());
    actions.reset();
    alerts.answer(0, {"Annika"});

    EXPECT_EQ(terms(), QStringList{"Anna"});
}

TEST_F(DictionaryActionsTest, DeletingRemovesEveryEntryWithTheIdWithoutAsking)
{
    const DictionaryEntry twin{{{"id", "A"}, {"term", "Anna"}}};
    SaveDictionaryEntries(preferences,
        {twin, DictionaryEntry{{{"id", "B"}, {"term", "Boris"}}}, twin.renamed("Annika", 1s)});

    actions->deleteDictionaryTerm("A");

    EXPECT_EQ(terms(), QStringList{"Boris"});
    EXPECT_EQ(preferences.value(keys::personalDictionary).toStringList(), QStringList{"Boris"});
    EXPECT_EQ(page.refreshes, 1);
    EXPECT_TRUE(alerts.shown().isEmpty());
}

TEST_F(DictionaryActionsTest, SwitchingLearningOffEndsTheWatch)
{
    actions->toggleAutomaticDictionaryLearning(false);

    EXPECT_EQ(preferences.value(keys::automaticDictionaryLearning), QVariant(false));
    EXPECT_EQ(preferences.flushed(keys::automaticDictionaryLearning), QVariant(false));
    EXPECT_EQ(endedWatches, 1);
}

TEST_F(DictionaryActionsTest, SwitchingLearningOnLeavesTheWatchAlone)
{
    actions->toggleAutomaticDictionaryLearning(true);

    EXPECT_EQ(preferences.value(keys::automaticDictionaryLearning), QVariant(true));
    EXPECT_EQ(preferences.flushed(keys::automaticDictionaryLearning), QVariant(true));
    EXPECT_EQ(endedWatches, 0);
}

} // namespace
} // namespace tavrin
