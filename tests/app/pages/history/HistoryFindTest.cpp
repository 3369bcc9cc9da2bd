#include "app/pages/history/HistoryFind.h"

#include "support/QtPrinters.h"

#include <QRandomGenerator>
#include <gtest/gtest.h>

#include <limits>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

HistoryRecord record(const QString& transcript, const QString& finalText)
{
    return HistoryRecord::fromObject(
        {{u"id"_s, u"A"_s}, {u"transcript"_s, transcript}, {u"finalText"_s, finalText}});
}

QList<qsizetype> found(const HistoryRecords& records, const QString& query)
{
    HistoryFind find(records, query);
    EXPECT_TRUE(find.lookOn(std::numeric_limits<qsizetype>::max()));
    return find.matches();
}

/// Whether a record that says @p text is found by @p query.
bool isFound(const QString& text, const QString& query)
{
    return !found({record({}, text)}, query).isEmpty();
}

TEST(HistoryFindTest, TranscriptAndResultAreBothSearched)
{
    const HistoryRecords records{record(u"said"_s, u"written"_s), record(u"heard"_s, u"read"_s),
        record(u"written"_s, u"said"_s)};

    EXPECT_EQ(found(records, u"said"_s), (QList<qsizetype>{0, 2}));
    EXPECT_EQ(found(records, u"read"_s), QList<qsizetype>{1});
    EXPECT_EQ(found(records, u"hear"_s), QList<qsizetype>{1});
    EXPECT_EQ(found(records, u"nobody"_s), QList<qsizetype>());
    EXPECT_EQ(found({}, u"said"_s), QList<qsizetype>());
}

TEST(HistoryFindTest, OtherKeysAreNotSearched)
{
    const HistoryRecord other = HistoryRecord::fromObject({{u"id"_s, u"secret"_s},
        {u"delivery"_s, u"secret"_s}, {u"mode"_s, u"secret"_s}, {u"finalText"_s, u"open"_s}});
    EXPECT_EQ(found({other}, u"secret"_s), QList<qsizetype>());
    EXPECT_EQ(found({other}, u"finalText"_s), QList<qsizetype>());
}

TEST(HistoryFindTest, TwoChineseCharactersAreEnoughAndOneToo)
{
    EXPECT_TRUE(isFound(u"周四上午十点的评审改到三楼"_s, u"评审"_s));
    EXPECT_TRUE(isFound(u"周四上午十点的评审改到三楼"_s, u"楼"_s));
    EXPECT_FALSE(isFound(u"周四上午十点的评审改到三楼"_s, u"评改"_s));
    EXPECT_TRUE(isFound(u"發到 Slack 群裡"_s, u"到 slack 群"_s));
}

TEST(HistoryFindTest, CaseIsIgnored)
{
    EXPECT_TRUE(isFound(u"The Review is DONE"_s, u"review IS done"_s));
    EXPECT_TRUE(isFound(u"ÜBERSICHT"_s, u"übersicht"_s));
    EXPECT_TRUE(isFound(u"ПРИВЕТ мир"_s, u"привет МИР"_s));
    EXPECT_TRUE(isFound(u"ΣΊΣΥΦΟΣ"_s, u"σίσυφος"_s));
    EXPECT_TRUE(isFound(u"1000 \u212A"_s, u"1000 k"_s)); // The sign of the unit kelvin.
    EXPECT_TRUE(isFound(u"Wachs\u017Ftube"_s, u"wachsstube"_s));
    EXPECT_TRUE(isFound(u"10 \u212B"_s, u"10 å"_s)); // The sign of the unit ångström.
    EXPECT_TRUE(isFound(u"\u023A"_s, u"\u2C65"_s)); // The two have not as many bytes.
    EXPECT_FALSE(isFound(u"ПРИВЕТ мир"_s, u"привёт"_s));
    EXPECT_FALSE(isFound(u"Übersicht"_s, u"ubersicht"_s));
}

TEST(HistoryFindTest, WhatTheFileWritesWithAnEscapeIsFound)
{
    EXPECT_TRUE(isFound(u"first\nsecond"_s, u"second"_s));
    EXPECT_TRUE(isFound(u"first\nsecond"_s, u"t\ns"_s));
    EXPECT_FALSE(isFound(u"first\necond"_s, u"necond"_s));
    EXPECT_FALSE(isFound(u"a\tb"_s, u"tb"_s));
    EXPECT_FALSE(isFound(u"\u001A"_s, u"1a"_s)); // "\u001a" in the file.
    EXPECT_FALSE(isFound(u"\u001A"_s, u"u0"_s));
    EXPECT_TRUE(isFound(u"he said \"hi\" / C:\\x"_s, u"\"HI\" / c:\\X"_s));
    EXPECT_FALSE(isFound(u"a\"b"_s, u"\\"_s));
}

TEST(HistoryFindTest, WhatIsLookedForIsNoPattern)
{
    EXPECT_TRUE(isFound(u"is it .* (50%)?"_s, u".* (50%)?"_s));
    EXPECT_FALSE(isFound(u"anything"_s, u".*"_s));
    EXPECT_TRUE(isFound(u" leading"_s, u" l"_s));
    EXPECT_FALSE(isFound(u"leading"_s, u" l"_s));
}

TEST(HistoryFindTest, LongTextsAndLongQueriesAreSearched)
{
    const QString text = QString(20000, u'x') + u"end"_s;
    EXPECT_TRUE(isFound(text, u"xend"_s));
    EXPECT_TRUE(isFound(text, QString(10000, u'X')));
    EXPECT_FALSE(isFound(text, QString(20001, u'x')));
    EXPECT_FALSE(isFound(u"short"_s, u"much longer than the text"_s));
}

TEST(HistoryFindTest, ItGoesOnWhereItStopped)
{
    HistoryRecords records;
    for (int i = 0; i < 100; ++i)
        records.append(record({}, i % 10 == 3 ? u"needle"_s : u"straw"_s));
    HistoryFind find(records, u"needle"_s);

    int pieces = 1;
    for (; !find.lookOn(1000); ++pieces)
        EXPECT_LT(find.looked(), 100);

    EXPECT_GT(pieces, 4);
    EXPECT_LE(pieces, 20);
    EXPECT_EQ(find.matches(), (QList<qsizetype>{3, 13, 23, 33, 43, 53, 63, 73, 83, 93}));
    EXPECT_TRUE(find.lookOn(1000));
    EXPECT_EQ(find.matches().size(), 10);
}

TEST(HistoryFindTest, ATinyPieceIsOneRecordAtLeast)
{
    HistoryFind find({record({}, u"a"_s), record({}, u"b"_s)}, u"b"_s);
    EXPECT_FALSE(find.lookOn(0));
    EXPECT_EQ(find.looked(), 1);
    EXPECT_TRUE(find.lookOn(0));
    EXPECT_EQ(find.matches(), QList<qsizetype>{1});
}

/// Beside the search of a text that knows nothing of files.
TEST(HistoryFindTest, WhateverIsLookedForIsFoundAsInThePlainText)
{
    const QStringList alphabet =
        u"a A b B i I k K s S n t \u017F \u212A 中 文 ß ẞ é É \" \\ / İ ı ﬁ 😀 "
        u"В в \u1C80 Ⱥ ⱥ Å \u212B µ μ Σ ς \u00B7 \uFEFF \uFFFD 𐐀 𐐨"_s.split(u' ')
        + QStringList{u" "_s, u"\n"_s};
    QRandomGenerator random(20);
    const auto text = [&](int longest) {
        QString made;
        for (int i = random.bounded(longest + 1); i > 0; --i)
            made.append(alphabet.at(random.bounded(static_cast<int>(alphabet.size()))));
        return made;
    };
    for (int round = 0; round < 20000; ++round) {
        const HistoryRecord one = record({}, text(20));
        const QString query =
            text(2) + alphabet.at(random.bounded(static_cast<int>(alphabet.size())));
        const QString plain = one.object().value("finalText"_L1).toString();
        ASSERT_EQ(!found({one}, query).isEmpty(), plain.contains(query, Qt::CaseInsensitive))
            << plain.toStdString() << " / " << query.toStdString();
    }
}

TEST(RangesOfTest, EveryPlaceIsFoundFromLeftToRight)
{
    EXPECT_EQ(rangesOf(u"re"_s, u"Review the REst"_s), (QList<TextRange>{{0, 2}, {11, 2}}));
    EXPECT_EQ(rangesOf(u"aa"_s, u"aaaaa"_s), (QList<TextRange>{{0, 2}, {2, 2}}));
    EXPECT_EQ(rangesOf(u"评审"_s, u"今天评审"_s), (QList<TextRange>{{2, 2}}));
    EXPECT_TRUE(rangesOf(u"x"_s, u"none"_s).isEmpty());
    EXPECT_TRUE(rangesOf({}, u"none"_s).isEmpty());
}

} // namespace
} // namespace tavrin
