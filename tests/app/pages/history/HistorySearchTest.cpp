#include "app/pages/history/HistoryControllerFixture.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tavrin {
namespace {

class HistorySearchTest : public testing::HistoryControllerFixture {
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

TEST_F(HistorySearchTest, TheFieldIsHiddenUntilItIsAskedFor)
{
    showThree();
    EXPECT_FALSE(content().isFinding);
    controller.beginFind();
    EXPECT_TRUE(content().isFinding);
    EXPECT_EQ(listed().size(), 3);
    EXPECT_EQ(content().matchCount, QString());

    controller.find(u"written"_s);
    controller.endFind();
    EXPECT_FALSE(content().isFinding);
    EXPECT_EQ(content().query, QString());
    EXPECT_EQ(content().matchCount, QString());
    EXPECT_EQ(listed().size(), 3);
}

TEST_F(HistorySearchTest, WhatIsFoundIsListedAndCounted)
{
    showThree();
    controller.beginFind();
    controller.find(u"评审"_s);
    EXPECT_EQ(listed(), QStringList{u"B"_s});
    EXPECT_EQ(content().query, u"评审"_s);
    EXPECT_EQ(content().matchCount, u"1 matches"_s);

    controller.find(u"QUESTION"_s); // Of the transcript.
    EXPECT_EQ(listed(), QStringList{u"A"_s});
    controller.find(u"n"_s);
    EXPECT_EQ(content().matchCount, u"3 matches"_s);
    for (const auto& [language, text] :
        {std::pair(u"zh-Hans"_s, u"3 条匹配"_s), std::pair(u"zh-Hant"_s, u"3 筆符合"_s)}) {
        preferences.setValue(keys::interfaceLanguage, language);
        EXPECT_EQ(controller.content().matchCount, text);
    }
}

TEST_F(HistorySearchTest, WhereNothingIsFoundThePageSaysSo)
{
    showThree();
    controller.find(u"nowhere"_s);
    EXPECT_TRUE(content().rows.isEmpty());
    EXPECT_EQ(content().emptyText, u"No matching records"_s);
    EXPECT_EQ(content().matchCount, u"0 matches"_s);

    controller.find({});
    EXPECT_EQ(listed().size(), 3);
    EXPECT_EQ(content().emptyText, QString());
    EXPECT_EQ(content().matchCount, QString());
}

TEST_F(HistorySearchTest, TheFirstAreListedAtOnceAndAllInTheEnd)
{
    show(many(5000, 1000));
    controller.find(u"needle"_s);
    const qsizetype first = content().rows.size();
    EXPECT_GT(first, 50);
    EXPECT_LT(first, 250);
    EXPECT_EQ(content().rows.idOf(0), u"R9"_s);

    time.advance(0s);
    EXPECT_EQ(content().rows.size(), 500);
    EXPECT_EQ(content().matchCount, u"500 matches"_s);
    EXPECT_EQ(content().rows.idOf(499), u"R4999"_s);
}

TEST_F(HistorySearchTest, TheQueueHasItsTurnBetweenThePieces)
{
    show(many(5000, 1000));
    controller.find(u"needle"_s);
    int turns = 0;
    std::function<void()> turn = [&] {
        if (content().rows.size() == 500)
            return;
        ++turns;
        time.post(turn);
    };
    time.post(turn);
    time.advance(0s);
    EXPECT_GE(turns, 3);
}

TEST_F(HistorySearchTest, NothingFoundYetIsNotNothingFound)
{
    QByteArrayList records = many(5000, 1000);
    records.append(R"({"id":"last","mode":"chat","finalText":"rare"})");
    show(records);
    page.onContent = [this] { EXPECT_EQ(content().emptyText, QString()); };
    controller.find(u"rare"_s);
    time.advance(0s);
    EXPECT_EQ(listed(), QStringList{u"last"_s});
}

TEST_F(HistorySearchTest, AnotherQueryEndsTheSearchUnderWay)
{
    show(many(5000, 1000));
    controller.find(u"needle"_s);
    controller.find(u"straw"_s);
    time.advance(0s);
    EXPECT_EQ(content().rows.size(), 4500);
    EXPECT_EQ(content().query, u"straw"_s);

    controller.find(u"needle"_s);
    controller.endFind();
    time.advance(0s);
    EXPECT_EQ(content().rows.size(), 5000);
    EXPECT_EQ(time.pending(), 0);
}

TEST_F(HistorySearchTest, TheSameQueryIsNotSearchedTwice)
{
    showThree();
    controller.find(u"written"_s);
    const int shown = page.shown;
    controller.find(u"written"_s);
    EXPECT_EQ(page.shown, shown);
}

TEST_F(HistorySearchTest, ARecordThatArrivesIsFoundTooAndTheListStaysWhileItIsLookedFor)
{
    show(many(5000, 1000));
    controller.find(u"needle"_s);
    time.advance(0s);
    store.saveHistoryTranscript({.finalText = u"one more needle"_s});
    page.onContent = [this] { EXPECT_GE(content().rows.size(), 500); };
    controller.refreshHistoryView();
    time.advance(0s);
    EXPECT_EQ(content().rows.size(), 501);
    EXPECT_EQ(row(0).text, u"one more needle"_s);
}

TEST_F(HistorySearchTest, AMatchCanBeDeletedAndExpanded)
{
    showThree();
    controller.find(u"n"_s);
    controller.toggleHistoryOriginal(u"C"_s);
    EXPECT_EQ(row(2).text, u"third"_s);
    controller.deleteHistoryRecord(u"C"_s);
    EXPECT_EQ(listed(), (QStringList{u"A"_s, u"B"_s}));
    EXPECT_EQ(content().matchCount, u"2 matches"_s);
}

TEST_F(HistorySearchTest, AControllerMayGoWhileItSearches)
{
    showThree();
    std::optional<HistoryController> own;
    own.emplace(neighbours());
    show(many(5000, 1000));
    own->setView(&page);
    own->refreshHistoryView();
    own->find(u"needle"_s);
    own.reset();
    const int shown = page.shown;
    time.advance(0s);
    EXPECT_EQ(page.shown, shown);
}

} // namespace
} // namespace tavrin
