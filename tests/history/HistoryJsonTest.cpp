#include "history/HistoryJson.h"

#include "support/QtPrinters.h"

#include <QJsonDocument>
#include <QUuid>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

QByteArray text(const HistoryRecords& records)
{
    QByteArray whole;
    EXPECT_TRUE(writeHistory(records, [&](const QByteArray& piece) {
        whole.append(piece);
        return true;
    }));
    return whole;
}

QByteArray smallExample()
{
    return R"([
    {"id": "A", "mode": "chat", "timestamp": 1.5, "finalText": "He said \"hi\" 😀 \u4e2d"},
    {"id": "B", "mode": "dictation", "timestamp": 2}
])"_ba;
}

TEST(HistoryJsonTest, RecordsKeepTheirOrderAndTheirText)
{
    const auto history = parseHistory(smallExample());

    ASSERT_TRUE(history.has_value());
    EXPECT_FALSE(history->changed);
    ASSERT_EQ(history->records.size(), 2);
    EXPECT_EQ(history->records[0].id(), u"A"_s);
    EXPECT_EQ(history->records[0].timestamp(), 1.5);
    EXPECT_EQ(
        history->records[0].object().value("finalText"_L1).toString(), u"He said \"hi\" 😀 中"_s);
    EXPECT_EQ(history->records[1].timestamp(), 2);
}

TEST(HistoryJsonTest, WhatIsWrittenIsReadBack)
{
    const auto history = parseHistory(smallExample());

    const QByteArray written = text(history->records);
    const auto again = parseHistory(written);

    ASSERT_TRUE(again.has_value());
    EXPECT_EQ(QJsonDocument::fromJson(written), QJsonDocument::fromJson(smallExample()));
    EXPECT_EQ(text(again->records), written);
}

TEST(HistoryJsonTest, NoRecordsAreAnEmptyArray)
{
    EXPECT_EQ(text({}), "[]"_ba);
    EXPECT_TRUE(parseHistory("[]"_ba)->records.isEmpty());
}

TEST(HistoryJsonTest, UnknownKeysAndExactNumbersSurvive)
{
    const QByteArray file =
        R"([{"id":"A","mode":"x","big":9007199254740993,"more":{"a":[1,null,true]}}])"_ba;

    EXPECT_TRUE(text(parseHistory(file)->records).contains("9007199254740993"));
}

TEST(HistoryJsonTest, ElementsThatAreNoObjectsAreLeftOut)
{
    const auto history = parseHistory(R"([1, "a", null, [], {"id":"A","mode":"chat"}, true])"_ba);

    EXPECT_TRUE(history->changed);
    ASSERT_EQ(history->records.size(), 1);
    EXPECT_EQ(history->records[0].id(), u"A"_s);
}

TEST(HistoryJsonTest, AMissingOrWrongIdIsSuppliedAndTheRestKept)
{
    const auto history =
        parseHistory(R"([{"mode":"chat","finalText":"a"}, {"id":7,"mode":"chat"}])"_ba);

    EXPECT_TRUE(history->changed);
    ASSERT_EQ(history->records.size(), 2);
    for (const HistoryRecord& record : history->records) {
        EXPECT_EQ(record.id().size(), 36);
        EXPECT_EQ(record.id(), record.id().toUpper());
        EXPECT_FALSE(QUuid::fromString(record.id()).isNull());
        EXPECT_EQ(record.object().value("id"_L1).toString(), record.id());
    }
    EXPECT_EQ(history->records[0].object().value("finalText"_L1).toString(), u"a"_s);
}

TEST(HistoryJsonTest, AnIdIsReadAsTheTextThatItIs)
{
    const auto history =
        parseHistory(R"([{"id":"\u0041\"B","mode":"m"}, {"mode":"m","id" : "名" }])"_ba);

    EXPECT_FALSE(history->changed);
    EXPECT_EQ(history->records[0].id(), u"A\"B"_s);
    EXPECT_EQ(history->records[1].id(), u"名"_s);
}

TEST(HistoryJsonTest, AMissingOrWrongModeBecomesDictation)
{
    const auto history = parseHistory(R"([{"id":"A"}, {"id":"B","mode":3}])"_ba);

    EXPECT_TRUE(history->changed);
    for (const HistoryRecord& record : history->records)
        EXPECT_EQ(record.object().value("mode"_L1).toString(), u"dictation"_s);
}

TEST(HistoryJsonTest, ATimestampThatIsNoNumberReadsAsZeroUnlessItIsOneInQuotes)
{
    const auto history = parseHistory(R"([
        {"id":"A","mode":"m"}, {"id":"B","mode":"m","timestamp":null},
        {"id":"C","mode":"m","timestamp":{}}, {"id":"D","mode":"m","timestamp":"12.5"}])"_ba);

    EXPECT_EQ(history->records[0].timestamp(), 0);
    EXPECT_EQ(history->records[1].timestamp(), 0);
    EXPECT_EQ(history->records[2].timestamp(), 0);
    EXPECT_EQ(history->records[3].timestamp(), 12.5);
}

TEST(HistoryJsonTest, AMendedRecordKeepsItsTimestamp)
{
    const auto history =
        parseHistory(R"([{"timestamp":"12.5"}, {"timestamp":"nan"}, {"timestamp":7.25}])"_ba);

    EXPECT_EQ(history->records[0].timestamp(), 12.5);
    EXPECT_EQ(history->records[1].timestamp(), 0);
    EXPECT_EQ(history->records[2].timestamp(), 7.25);
    const auto again = parseHistory(text(history->records));
    EXPECT_EQ(again->records[0].timestamp(), 12.5);
}

TEST(HistoryJsonTest, OfAKeyThatStandsTwiceTheLastOneCounts)
{
    const auto history = parseHistory(R"([
        {"id":"A","mode":"m","id":7}, {"id":7,"mode":1,"id":"B","mode":"m"}])"_ba);

    EXPECT_TRUE(history->changed);
    EXPECT_EQ(history->records[0].id().size(), 36);
    EXPECT_EQ(history->records[0].object().value("id"_L1).toString(), history->records[0].id());
    EXPECT_EQ(history->records[1].id(), u"B"_s);
}

TEST(HistoryJsonTest, ANumberThatNoReaderTakesStaysAsItIsAndHarmsNoRecord)
{
    for (const QByteArray& number :
        {"123456789012345678901234567890"_ba, "-123456789012345678901"_ba, "1e400"_ba,
            "-1.5E+400"_ba, "1e-400"_ba, QByteArray(400, '7')}) {
        const QByteArray odd =
            R"({"id":"B","mode":"chat","timestamp":2,"finalText":"b","x":)" + number + "}";
        const QByteArray file = R"([{"id":"A","mode":"m"}, )" + odd + R"(, {"id":"C","mode":"m"}])";

        const auto history = parseHistory(file);

        ASSERT_TRUE(history.has_value()) << number.constData();
        EXPECT_FALSE(history->changed) << number.constData();
        ASSERT_EQ(history->records.size(), 3) << number.constData();
        EXPECT_EQ(history->records[1].json(), QByteArrayView(odd));
        EXPECT_EQ(history->records[1].timestamp(), 2);
        EXPECT_EQ(history->records[1].object().value("finalText"_L1).toString(), u"b"_s)
            << number.constData();
        EXPECT_EQ(history->records[2].id(), u"C"_s);
        EXPECT_TRUE(parseHistory(text(history->records)).has_value());
    }
}

TEST(HistoryJsonTest, ATimestampBeyondEveryNumberIsALateOne)
{
    const auto history = parseHistory(R"([
        {"id":"A","mode":"m","timestamp":1e400},
        {"id":"B","mode":"m","timestamp":123456789012345678901}])"_ba);

    ASSERT_TRUE(history.has_value());
    EXPECT_GT(history->records[0].timestamp(), 1e300);
    EXPECT_DOUBLE_EQ(history->records[1].timestamp(), 123456789012345678901.0);
}

TEST(HistoryJsonTest, AMendedRecordKeepsItsNumbersToTheLastDigit)
{
    for (const QByteArray& number :
        {"1e-400"_ba, "1e400"_ba, "123456789012345678901234567890"_ba}) {
        const auto history =
            parseHistory(R"([{"finalText":"a","timestamp":3,"id":7,"x":)" + number + " }]");

        ASSERT_TRUE(history.has_value()) << number.constData();
        ASSERT_EQ(history->records.size(), 1);
        EXPECT_TRUE(history->changed);
        const HistoryRecord& record = history->records[0];
        EXPECT_TRUE(record.json().toByteArray().contains("\"x\":" + number));
        EXPECT_EQ(record.id().size(), 36);
        EXPECT_EQ(record.timestamp(), 3);
        EXPECT_EQ(record.object().value("id"_L1).toString(), record.id());
        EXPECT_EQ(record.object().value("mode"_L1).toString(), u"dictation"_s);
        EXPECT_EQ(record.object().value("finalText"_L1).toString(), u"a"_s);
        const auto again = parseHistory(text(history->records));
        EXPECT_FALSE(again->changed);
        EXPECT_EQ(again->records[0].id(), record.id());
    }
}

TEST(HistoryJsonTest, HalvesOfPairsAndNumbersBeyondAllReadersGoTogether)
{
    const auto history =
        parseHistory(R"([{"id":"A","mode":"m","finalText":"\ud83d","x":1e400}])"_ba);

    ASSERT_TRUE(history.has_value());
    EXPECT_TRUE(history->changed);
    EXPECT_EQ(history->records[0].object().value("finalText"_L1).toString(), u"\uFFFD"_s);
    EXPECT_TRUE(history->records[0].json().toByteArray().contains("1e400"));
}

TEST(HistoryJsonTest, HalvesOfSurrogatePairsDoNotSpoilTheFile)
{
    const auto history =
        parseHistory(R"([{"id":"A","mode":"m","finalText":"\ud83d \ud83d\ude00"}])"_ba);

    ASSERT_TRUE(history.has_value());
    EXPECT_TRUE(history->changed);
    EXPECT_EQ(history->records[0].object().value("finalText"_L1).toString(), u"\uFFFD 😀"_s);
}

TEST(HistoryJsonTest, AFileCutOffAnywhereIsNoHistory)
{
    const QByteArray whole = smallExample();
    for (qsizetype length = 0; length < whole.size(); ++length)
        EXPECT_FALSE(parseHistory(whole.left(length)).has_value()) << "cut at " << length;
}

TEST(HistoryJsonTest, WhatIsNoArrayIsNoHistory)
{
    for (const char* file : {"", " ", "{}", "7", "null", R"("a")", "[", "[]x", "[{]", "[tru]",
             R"([{"id":"A","mode":"m","x":tru}])", R"([{"a":1,}])", "[{\"a\":01e400}]",
             "[{\"a\":1.e400}]", "[{\"a\":1e+}]", "[{\"a\":-}]", "[{\"a\":+1e400}]",
             "[{\"a\":1e400e1}]", "\xFF\xFE", "[\"\xC3\"]"})
        EXPECT_FALSE(parseHistory(file).has_value()) << file;
}

TEST(HistoryJsonTest, DeepNestingIsRefusedAndDoesNoHarm)
{
    const QByteArray deep = QByteArray(10'000, '[') + QByteArray(10'000, ']');
    EXPECT_FALSE(parseHistory(deep).has_value());
}

TEST(HistoryJsonTest, AByteOrderMarkIsNoObstacle)
{
    EXPECT_EQ(parseHistory("\xEF\xBB\xBF[]"_ba)->records.size(), 0);
}

TEST(HistoryJsonTest, AFailingWriteEndsTheWriting)
{
    HistoryRecords records;
    const QJsonObject large{{u"id"_s, u"A"_s}, {u"finalText"_s, QString(700'000, u'x')}};
    for (int i = 0; i < 6; ++i)
        records.append(HistoryRecord::fromObject(large));
    int pieces = 0;

    EXPECT_FALSE(writeHistory(records, [&](const QByteArray&) { return ++pieces < 2; }));
    EXPECT_EQ(pieces, 2);
}

TEST(HistoryJsonTest, TheTextsOfARecordAreThoseOfItsObject)
{
    const auto history = parseHistory(R"([
        {"id": "A", "mode": "chat", "transcript" : "said \"so\" \n中😀" , "finalText":"\ud83d\ude00"  },
        {"transcript":"first","finalText":"no \"id\"","transcript":"the last one counts"},
        {"id":"C","mode":"chat","final\u0054ext":"its key is escaped","transcript":["a"]},
        {"id":"D","mode":"chat","more":{"transcript":"not this one"},"finalText":""},
        {"finalText":"beside a number","big":123456789012345678901234567890}
    ])"_ba);

    ASSERT_TRUE(history.has_value());
    ASSERT_EQ(history->records.size(), 5);
    const QStringList transcripts{
        u"said \"so\" \n中😀"_s, u"the last one counts"_s, QString(), QString(), QString()};
    const QStringList finalTexts{
        u"😀"_s, u"no \"id\""_s, u"its key is escaped"_s, QString(), u"beside a number"_s};
    for (qsizetype i = 0; i < 5; ++i) {
        const HistoryRecord& record = history->records[i];
        EXPECT_EQ(record.transcript(), transcripts[i]) << i;
        EXPECT_EQ(record.finalText(), finalTexts[i]) << i;
        EXPECT_EQ(record.object().value("finalText"_L1).toString(), finalTexts[i]) << i;
    }
}

TEST(HistoryJsonTest, ARecordMadeOfAnObjectHasItsTextsToo)
{
    const HistoryRecord record = HistoryRecord::fromObject({{u"id"_s, u"A"_s},
        {u"transcript"_s, u"\uFEFFa \"quoted\" 😀"_s}, {u"finalText"_s, u"line\nline"_s},
        {u"inputCharacters"_s, 12}, {u"audioSeconds"_s, 2.5}, {u"processingSeconds"_s, 0.5}});

    EXPECT_EQ(record.transcript(), u"\uFEFFa \"quoted\" 😀"_s);
    EXPECT_EQ(record.finalText(), u"line\nline"_s);
    EXPECT_EQ(record.digest().characters, 12);
    EXPECT_EQ(record.digest().audioSeconds, 2.5);
    EXPECT_EQ(record.digest().processingSeconds, 0.5);
}

TEST(HistoryJsonTest, AMendedRecordHasItsDigest)
{
    const auto history = parseHistory(
        R"([{"transcript":"said","inputCharacters":4,"audioSeconds":3},
            {"finalText":"big","big":123456789012345678901234567890,"processingSeconds":2}])"_ba);

    ASSERT_EQ(history->records.size(), 2);
    EXPECT_EQ(history->records[0].transcript(), u"said"_s);
    EXPECT_EQ(history->records[0].digest().audioSeconds, 3);
    EXPECT_EQ(history->records[1].finalText(), u"big"_s);
    EXPECT_EQ(history->records[1].digest().processingSeconds, 2);
}

TEST(HistoryJsonTest, TheSizeOfTheTextIsKnownBeforeItIsWritten)
{
    const HistoryRecords records = parseHistory(smallExample())->records;

    EXPECT_EQ(writtenSize({}), text({}).size());
    EXPECT_EQ(writtenSize(records.first(1)), text(records.first(1)).size());
    EXPECT_EQ(writtenSize(records), text(records).size());
}

} // namespace
} // namespace tavrin
