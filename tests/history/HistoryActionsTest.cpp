#include "history/HistoryActions.h"

#include "history/HistoryFixture.h"
#include "platform/preferences/PreferenceKeys.h"
#include "support/ports/InMemoryPasteboard.h"
#include "support/ports/InMemoryWorkspace.h"
#include "support/ports/ScriptedAlerts.h"

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

class HistoryActionsTest : public testing::HistoryFixture {
protected:
    testing::ScriptedAlerts alerts;
    testing::InMemoryPasteboard pasteboard;
    testing::InMemoryWorkspace workspace;
    QStringList calls;
    HistoryActions actions{{store, alerts, pasteboard, preferences, workspace,
        [this](const QString& name) { calls.append(u"sound "_s + name); },
        [this] { calls.append(u"refresh"_s); }, [this] { calls.append(u"select"_s); },
        [this] { calls.append(u"show"_s); }}};

    void SetUp() override
    {
        HistoryFixture::SetUp();
        preferences.setValue(keys::historyRetention, u"forever"_s);
        putFile(R"([
            {"id":"A","mode":"chat","transcript":"said","finalText":"written"},
            {"id":"B","mode":"chat","transcript":"","finalText":""}])");
    }
};

TEST_F(HistoryActionsTest, ACollapsedRecordCopiesItsResultAndAnExpandedOneItsTranscript)
{
    actions.copyHistoryRecord(u"A"_s);
    EXPECT_EQ(pasteboard.string(), u"written"_s);
    actions.toggleHistoryOriginal(u"A"_s);
    actions.copyHistoryRecord(u"A"_s);
    EXPECT_EQ(pasteboard.string(), u"said"_s);
    actions.toggleHistoryOriginal(u"A"_s);
    actions.copyHistoryRecord(u"A"_s);
    EXPECT_EQ(pasteboard.string(), u"written"_s);
    EXPECT_EQ(calls,
        (QStringList{u"sound success"_s, u"refresh"_s, u"sound success"_s, u"refresh"_s,
            u"sound success"_s}));
}

TEST_F(HistoryActionsTest, NothingToCopyBeeps)
{
    actions.copyHistoryRecord(u"B"_s);
    actions.copyHistoryRecord(u"unknown"_s);
    EXPECT_EQ(alerts.beeps(), 2);
    EXPECT_TRUE(calls.isEmpty());
    EXPECT_EQ(pasteboard.string(), QString());
}

TEST_F(HistoryActionsTest, WhoeverCopiesLearnsWhetherItWasCopied)
{
    EXPECT_TRUE(actions.copyHistoryRecord(u"A"_s));
    EXPECT_FALSE(actions.copyHistoryRecord(u"B"_s));
    EXPECT_FALSE(actions.copyHistoryRecord(u"unknown"_s));
    pasteboard.accepts = false;
    EXPECT_FALSE(actions.copyHistoryRecord(u"A"_s));
}

TEST_F(HistoryActionsTest, TheLatestCopyIsTheResultWhateverIsExpanded)
{
    actions.toggleHistoryOriginal(u"A"_s);
    actions.copyLatestHistory();
    EXPECT_EQ(pasteboard.string(), u"written"_s);
    store.writeHistoryRecords({});
    actions.copyLatestHistory();
    EXPECT_EQ(alerts.beeps(), 1);
}

TEST_F(HistoryActionsTest, ADeletedRecordIsGoneAndCollapsed)
{
    actions.toggleHistoryOriginal(u"A"_s);
    actions.deleteHistoryRecord(u"A"_s);
    EXPECT_EQ(ids(), QStringList{u"B"_s});
    EXPECT_TRUE(actions.expandedHistoryRecordIDs().isEmpty());
    EXPECT_EQ(calls.last(), u"refresh"_s);
}

TEST_F(HistoryActionsTest, EveryRecordWithTheIdIsDeleted)
{
    putFile(R"([{"id":"A","finalText":"one"},{"id":"B","finalText":"two"},
        {"id":"A","finalText":"three"}])");
    actions.deleteHistoryRecord(u"A"_s);
    EXPECT_EQ(ids(), QStringList{u"B"_s});
}

TEST_F(HistoryActionsTest, AnEmptyIdIsNeverExpanded)
{
    actions.toggleHistoryOriginal(QString());
    EXPECT_TRUE(actions.expandedHistoryRecordIDs().isEmpty());
}

TEST_F(HistoryActionsTest, ChoosingARetentionPrunesAtOnce)
{
    actions.selectHistoryRetention(2);
    EXPECT_EQ(preferences.value(keys::historyRetention).toString(), u"30"_s);
    EXPECT_EQ(preferences.flushed(keys::historyRetention).toString(), u"30"_s);
    EXPECT_EQ(file(), "[]"_ba);
    EXPECT_EQ(calls, QStringList{u"refresh"_s});
}

TEST_F(HistoryActionsTest, AnIndexOutsideTheMenuIsClamped)
{
    actions.selectHistoryRetention(-4);
    EXPECT_EQ(preferences.value(keys::historyRetention).toString(), u"none"_s);
    actions.selectHistoryRetention(99);
    EXPECT_EQ(preferences.value(keys::historyRetention).toString(), u"forever"_s);
}

TEST_F(HistoryActionsTest, ClearingAsksFirst)
{
    actions.clearHistory();
    ASSERT_EQ(alerts.shown().size(), 1);
    const Alert& alert = alerts.shown().first();
    EXPECT_EQ(alert.messageText, u"清空全部撰写记录？"_s);
    EXPECT_EQ(alert.informativeText, u"此操作会清空本机保存的原始转写与整理结果。"_s);
    EXPECT_EQ(alert.buttons, (QStringList{u"清空"_s, u"取消"_s}));
    alerts.answer(1);
    EXPECT_EQ(ids().size(), 2);

    actions.clearHistory();
    alerts.answer(0);
    EXPECT_EQ(ids().size(), 0);
    EXPECT_EQ(file(), "[]"_ba);
    EXPECT_EQ(calls, QStringList{u"refresh"_s});
}

TEST_F(HistoryActionsTest, TheFolderOpensInTheFileBrowser)
{
    actions.openHistoryFolder();
    EXPECT_EQ(workspace.openedFolders, QStringList{folder.filePath(u"Tavrin"_s)});
}

TEST_F(HistoryActionsTest, TheHistoryIsShownOnItsPageInFront)
{
    workspace.onOwnActivation = [this] { calls.append(u"activate"_s); };
    actions.showHistoryWindow();
    EXPECT_EQ(calls, (QStringList{u"select"_s, u"refresh"_s, u"activate"_s, u"show"_s}));
    EXPECT_EQ(workspace.ownActivations, 1);
}

} // namespace
} // namespace tavrin
