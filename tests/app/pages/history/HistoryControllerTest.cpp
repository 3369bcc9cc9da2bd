#include "app/pages/history/HistoryControllerFixture.h"
#include "app/pages/history/HistoryTexts.h"
#include "platform/linux/LinuxTexts.h"

#include <vector>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tavrin {
namespace {

class HistoryControllerTest : public testing::HistoryControllerFixture {
protected:
    testing::PaperHistoryPage page;

    void SetUp() override
    {
        HistoryControllerFixture::SetUp();
        controller.setView(&page);
    }

    [[nodiscard]] const HistoryContent& content() const { return page.content.value(); }

    [[nodiscard]] QStringList listed() const
    {
        QStringList found;
        for (qsizetype i = 0; i < content().rows.size(); ++i)
            found.append(content().rows.idOf(i));
        return found;
    }

    [[nodiscard]] HistoryRow row(qsizetype index) const { return content().rows.row(index); }
};

TEST_F(HistoryControllerTest, TheRecordsAreListedInTheOrderOfTheFile)
{
    showThree();
    EXPECT_EQ(listed(), (QStringList{u"A"_s, u"B"_s, u"C"_s}));
    EXPECT_EQ(row(0).text, u"An Answer"_s);
    EXPECT_EQ(row(0).caption, u"Edited result"_s);
    EXPECT_EQ(content().emptyText, QString());
}

TEST_F(HistoryControllerTest, TheStorageLabelHasCountAndSize)
{
    putFile("["
            R"({"id":"A","mode":"chat"})"
        + QByteArray(1510, ' ') + "]");
    controller.refreshHistoryView();
    background.drain();
    EXPECT_EQ(content().historyStorageLabel, u"1 records · 1.5 KB · stored on this Mac"_s);

    const std::array expected{std::pair(u"zh-Hans"_s, u"1 条记录 · 1.5 KB · 仅保存在本机"_s),
        std::pair(u"zh-Hant"_s, u"1 筆記錄 · 1.5 KB · 僅保存在本機"_s)};
    for (const auto& [language, text] : expected) {
        preferences.setValue(keys::interfaceLanguage, language);
        EXPECT_EQ(controller.content().historyStorageLabel, text);
    }
}

TEST_F(HistoryControllerTest, LinuxSpeaksOfAComputer)
{
    const Localization linux{preferences, workspace, KeyNames(), linuxTexts()};
    HistoryController own({.actions = actions,
        .clock = time,
        .historyStore = store,
        .localization = linux,
        .mainQueue = time,
        .preferences = preferences,
        .settings = settings});
    own.setView(&page);
    own.refreshHistoryView();
    background.drain();
    EXPECT_EQ(content().historyStorageLabel, u"0 records · 0.0 KB · stored on this computer"_s);
}

TEST_F(HistoryControllerTest, WithoutRecordsThePageSaysSo)
{
    show({});
    EXPECT_EQ(content().emptyText, u"No history yet"_s);
    EXPECT_TRUE(content().rows.isEmpty());
    EXPECT_EQ(content().historyStorageLabel, u"0 records · 0.0 KB · stored on this Mac"_s);
}

TEST_F(HistoryControllerTest, BeforeTheFileIsReadThePageSaysNothing)
{
    putFile(R"([{"id":"A","mode":"chat"}])");
    controller.refreshHistoryView();
    EXPECT_EQ(page.shown, 0);
    EXPECT_EQ(controller.content().emptyText, QString());
    EXPECT_EQ(controller.content().historyStorageLabel, QString());
    background.drain();
    EXPECT_EQ(listed(), QStringList{u"A"_s});
}

TEST_F(HistoryControllerTest, AFileThatIsNoHistoryIsAnEmptyOne)
{
    putFile("{broken");
    controller.refreshHistoryView();
    background.drain();
    EXPECT_EQ(content().emptyText, u"No history yet"_s);
}

TEST_F(HistoryControllerTest, WithoutAPageNothingIsDone)
{
    controller.setView(nullptr);
    controller.refreshHistoryView();
    controller.toggleWholeText(u"A"_s);
    EXPECT_EQ(background.pending(), 0);

    controller.setView(&page);
    controller.refreshHistoryView();
    controller.setView(nullptr);
    background.drain();
    EXPECT_EQ(page.shown, 0);
}

TEST_F(HistoryControllerTest, TheHeadersAreInTheInterfaceLanguage)
{
    const QByteArrayList records{
        R"({"id":"A","mode":"translation","targetLanguage":"japanese","timestamp":1700000000})",
        R"({"id":"B","mode":"translation","timestamp":1700000000})",
        R"({"id":"C","mode":"chat","timestamp":1700000000})",
        R"({"id":"D","mode":"ask","timestamp":1700000000})",
        R"({"id":"E","mode":"nonsense","timestamp":1699920000})"};

    struct Row {
        QString language, today, yesterday, japanese, english, chat, dictation, result;
    };

    for (const Row& expected :
        {Row{u"en"_s, u"Today"_s, u"Yesterday"_s, u"06:13  ·  Translation · Japanese"_s,
             u"06:13  ·  Translation · English"_s, u"06:13  ·  Chat"_s, u"08:00  ·  Dictation"_s,
             u"Edited result"_s},
            Row{u"zh-Hans"_s, u"今天"_s, u"昨天"_s, u"06:13  ·  翻译 · 日语"_s,
                u"06:13  ·  翻译 · 英语"_s, u"06:13  ·  畅聊"_s, u"08:00  ·  语音输入"_s,
                u"整理结果"_s},
            Row{u"zh-Hant"_s, u"今天"_s, u"昨天"_s, u"06:13  ·  翻譯 · 日語"_s,
                u"06:13  ·  翻譯 · 英語"_s, u"06:13  ·  暢聊"_s, u"08:00  ·  語音輸入"_s,
                u"整理結果"_s}}) {
        preferences.setValue(keys::interfaceLanguage, expected.language);
        show(records);
        EXPECT_EQ(content().rows.days(),
            QList<HistoryRows::Day>({{0, expected.today}, {4, expected.yesterday}}));
        EXPECT_EQ(row(0).header, expected.japanese);
        EXPECT_EQ(row(1).header, expected.english);
        EXPECT_EQ(row(2).header, expected.chat);
        EXPECT_EQ(row(3).header, expected.chat);
        EXPECT_EQ(row(4).header, expected.dictation);
        EXPECT_EQ(row(4).caption, expected.result);
    }
}

TEST_F(HistoryControllerTest, TheRetentionIsOneOfFive)
{
    EXPECT_EQ(controller.retentionTitles(),
        (QStringList{u"Don't save"_s, u"7 days"_s, u"30 days"_s, u"90 days"_s, u"Forever"_s}));
    preferences.setValue(keys::interfaceLanguage, u"zh-Hans"_s);
    EXPECT_EQ(controller.retentionTitles(),
        (QStringList{u"不保存"_s, u"7 天"_s, u"30 天"_s, u"90 天"_s, u"永久保存"_s}));

    const auto chosen = [&](const QVariant& stored) {
        preferences.setValue(keys::historyRetention, stored);
        return controller.content().historyRetentionPopup;
    };
    EXPECT_EQ(chosen(u"none"_s), 0);
    EXPECT_EQ(chosen(u"7"_s), 1);
    EXPECT_EQ(chosen(u"30"_s), 2);
    EXPECT_EQ(chosen(u"90"_s), 3);
    EXPECT_EQ(chosen(u"forever"_s), 4);
    EXPECT_EQ(chosen(u"14"_s), 0);
    EXPECT_EQ(chosen(7), 2); // Not a text: as if nothing was stored.
    preferences.remove(keys::historyRetention);
    EXPECT_EQ(controller.content().historyRetentionPopup, 2);
}

TEST_F(HistoryControllerTest, ChoosingARetentionPrunesAndShowsWhatIsLeft)
{
    showThree();
    controller.selectHistoryRetention(0);
    EXPECT_EQ(preferences.value(keys::historyRetention).toString(), u"none"_s);
    EXPECT_EQ(content().historyRetentionPopup, 0);
    EXPECT_EQ(content().emptyText, u"No history yet"_s);
    EXPECT_EQ(file(), "[]"_ba);
}

TEST_F(HistoryControllerTest, CopyingSaysSoFor1200Milliseconds)
{
    showThree();
    controller.copyHistoryRecord(u"B"_s);
    EXPECT_EQ(pasteboard.string(), u"周四的评审"_s);
    EXPECT_EQ(sounds, QStringList{u"success"_s});
    EXPECT_EQ(content().copiedRecordID, u"B"_s);

    time.advance(1199ms);
    EXPECT_EQ(content().copiedRecordID, u"B"_s);
    time.advance(1ms);
    EXPECT_EQ(content().copiedRecordID, QString());
    EXPECT_EQ(time.pending(), 0);
}

TEST_F(HistoryControllerTest, TheNextCopyTakesTheConfirmationOver)
{
    showThree();
    controller.copyHistoryRecord(u"A"_s);
    time.advance(1s);
    controller.copyHistoryRecord(u"B"_s);
    time.advance(1s);
    EXPECT_EQ(content().copiedRecordID, u"B"_s);
    time.advance(200ms);
    EXPECT_EQ(content().copiedRecordID, QString());
}

TEST_F(HistoryControllerTest, WhatIsNotCopiedIsNotConfirmed)
{
    show({R"({"id":"A","mode":"chat","finalText":""})", R"({"id":"B","mode":"chat"})",
        R"({"id":"C","mode":"chat","finalText":["a"]})"});
    for (const QString& id : {u"A"_s, u"B"_s, u"C"_s, u"gone"_s})
        controller.copyHistoryRecord(id);
    EXPECT_EQ(alerts.beeps(), 4);
    EXPECT_EQ(content().copiedRecordID, QString());
    EXPECT_EQ(time.pending(), 0);

    showThree();
    pasteboard.accepts = false;
    controller.copyHistoryRecord(u"A"_s);
    EXPECT_EQ(content().copiedRecordID, QString());
}

TEST_F(HistoryControllerTest, AConfirmationUnderWayOutlivesNothing)
{
    showThree();
    std::optional<HistoryController> own;
    own.emplace(neighbours());
    own->copyHistoryRecord(u"A"_s);
    EXPECT_EQ(time.pending(), 1);
    own.reset();
    EXPECT_EQ(time.pending(), 0);
}

TEST_F(HistoryControllerTest, AnExpandedRecordShowsAndCopiesItsTranscript)
{
    showThree();
    controller.toggleHistoryOriginal(u"A"_s);
    EXPECT_EQ(row(0).text, u"first question"_s);
    EXPECT_EQ(row(0).caption, u"Original transcript"_s);
    EXPECT_TRUE(row(0).showsOriginal);
    EXPECT_FALSE(row(1).showsOriginal);
    controller.copyHistoryRecord(u"A"_s);
    EXPECT_EQ(pasteboard.string(), u"first question"_s);

    controller.toggleHistoryOriginal(u"A"_s);
    EXPECT_EQ(row(0).text, u"An Answer"_s);
    controller.copyHistoryRecord(u"A"_s);
    EXPECT_EQ(pasteboard.string(), u"An Answer"_s);
}

TEST_F(HistoryControllerTest, AnExpandedAndAnOpenedRecordStaySoWhenOneArrives)
{
    showThree();
    controller.toggleHistoryOriginal(u"B"_s);
    controller.toggleWholeText(u"C"_s);
    store.setSavedHandler([this] { controller.refreshHistoryView(); });
    save(u"new"_s, u"New"_s);

    EXPECT_EQ(content().rows.size(), 4);
    EXPECT_EQ(row(0).text, u"New"_s);
    EXPECT_TRUE(row(2).showsOriginal);
    EXPECT_EQ(content().openedRecordIDs, QSet<QString>{u"C"_s});
    EXPECT_TRUE(content().historyStorageLabel.startsWith(u"4 records · "_s));
}

TEST_F(HistoryControllerTest, TheWholeTextIsShownAndHiddenAgain)
{
    showThree();
    const HistoryRows before = content().rows;
    controller.toggleWholeText(u"A"_s);
    EXPECT_EQ(content().openedRecordIDs, QSet<QString>{u"A"_s});
    EXPECT_TRUE(content().rows.isSameAs(before));
    controller.toggleWholeText(u"A"_s);
    EXPECT_TRUE(content().openedRecordIDs.isEmpty());
}

TEST_F(HistoryControllerTest, ADeletedRecordIsGoneAtOnce)
{
    showThree();
    controller.toggleWholeText(u"B"_s);
    controller.deleteHistoryRecord(u"B"_s);
    EXPECT_EQ(listed(), (QStringList{u"A"_s, u"C"_s}));
    EXPECT_TRUE(content().openedRecordIDs.isEmpty());
    EXPECT_TRUE(alerts.shown().isEmpty());
    EXPECT_TRUE(content().historyStorageLabel.startsWith(u"2 records · "_s));
}

TEST_F(HistoryControllerTest, ClearingAsksAndThenListsNothing)
{
    showThree();
    controller.clearHistory();
    EXPECT_EQ(listed().size(), 3);
    alerts.answer(1);
    EXPECT_EQ(listed().size(), 3);
    controller.clearHistory();
    alerts.answer(0);
    EXPECT_EQ(content().emptyText, u"No history yet"_s);
}

TEST_F(HistoryControllerTest, TheFolderIsShown)
{
    controller.openHistoryFolder();
    EXPECT_EQ(workspace.openedFolders, QStringList{folder.filePath(u"Tavrin"_s)});
}

TEST_F(HistoryControllerTest, AFileThatWasEditedByHandIsReadAnew)
{
    showThree();
    show({R"({"id":"Z","mode":"chat","finalText":"by hand, of another length"})"});
    EXPECT_EQ(listed(), QStringList{u"Z"_s});
}

TEST_F(HistoryControllerTest, TheCaptionsAreThoseOfTheThreeLanguages)
{
    const auto inLanguage = [&](const char* language, const LocalizedText& text) {
        preferences.setValue(keys::interfaceLanguage, QString::fromLatin1(language));
        return localization.LT(text);
    };

    struct Row {
        LocalizedText text;
        QString zhHans, zhHant, en;
    };

    const std::vector<Row> rows{
        {texts::historyTitle, u"历史记录"_s, u"歷史記錄"_s, u"History"_s},
        {texts::historySubtitle, u"默认显示整理结果，需要时可查看原文。仅保存在本机。"_s,
            u"預設顯示整理結果，需要時可查看原文。僅保存在本機。"_s,
            u"Shows edited text by default. Reveal the original transcript when needed. Stored only on this Mac."_s},
        {texts::retention, u"保留时间"_s, u"保留時間"_s, u"Retention"_s},
        {texts::retentionExplanation, u"选择文字在本机保留多久。录音从不保存。"_s,
            u"選擇文字在本機保留多久。錄音從不保存。"_s,
            u"Choose how long text stays on this Mac. Audio recordings are never kept."_s},
        {texts::showFiles, u"显示文件"_s, u"顯示檔案"_s, u"Show files"_s},
        {texts::clearHistoryRecords, u"清空"_s, u"清空"_s, u"Clear"_s},
        {texts::copyRecord, u"复制"_s, u"複製"_s, u"Copy"_s},
        {texts::recordCopied, u"✓ 已复制"_s, u"✓ 已複製"_s, u"✓ Copied"_s},
        {texts::showOriginal, u"原文"_s, u"原文"_s, u"Original"_s},
        {texts::showResult, u"结果"_s, u"結果"_s, u"Result"_s},
        {texts::deleteRecord, u"删除"_s, u"刪除"_s, u"Delete"_s},
        {texts::searchHistory, u"搜索历史记录"_s, u"搜尋歷史記錄"_s, u"Search history"_s},
        {texts::noMatchingRecords, u"没有匹配的记录"_s, u"沒有符合的記錄"_s,
            u"No matching records"_s},
    };
    for (const auto& [text, zhHans, zhHant, en] : rows) {
        EXPECT_EQ(inLanguage("zh-Hans", text), zhHans);
        EXPECT_EQ(inLanguage("zh-Hant", text), zhHant);
        EXPECT_EQ(inLanguage("en", text), en);
    }
}

} // namespace
} // namespace tavrin
