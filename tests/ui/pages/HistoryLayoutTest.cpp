#include "ui/pages/HistoryLayout.h"

#include "history/HistoryJson.h"
#include "support/QtPrinters.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tavrin::ui {

void PrintTo(const HistoryLayout::Item& item, std::ostream* out)
{
    *out << (item.isDay ? "day " : "row ") << item.index << " at " << item.top << ", "
         << item.height;
}

namespace {

constexpr double day = 86400;

/// Rows of these results, the first @p today of them from today, the others from the day before.
HistoryRows rows(const QByteArrayList& results, qsizetype today)
{
    QByteArrayList objects;
    for (qsizetype i = 0; i < results.size(); ++i)
        objects.append(R"({"id":"R)" + QByteArray::number(i) + R"(","mode":"chat","timestamp":)"
            + QByteArray::number(10 * day - (i < today ? 0 : day), 'f', 0) + R"(,"finalText":")"
            + results[i] + R"("})");
    HistoryRowWords words;
    words.today = u"Today"_s;
    words.yesterday = u"Yesterday"_s;
    return HistoryRows({.records = parseHistory('[' + objects.join(',') + ']')->records,
        .listed = {},
        .expanded = {},
        .now = Seconds(10 * day + 60),
        .timeZone = QTimeZone::utc(),
        .words = words});
}

int noCount(qsizetype /*row*/)
{
    ADD_FAILURE() << "a text was laid out";
    return 1;
}

TEST(HistoryLayoutTest, DaysAndRecordsStandBelowOneAnother)
{
    const QByteArray twoLines(100, 'x');
    const HistoryLayout layout(rows({"short", twoLines, "short"}, 2), {}, noCount);

    EXPECT_EQ(layout.itemsBetween(0, 1000),
        (QList<HistoryLayout::Item>{{true, 0, 0, 34}, {false, 0, 34, 94}, {false, 1, 138, 114},
            {true, 1, 262, 34}, {false, 2, 296, 94}}));
    EXPECT_EQ(layout.height(), 412);
    EXPECT_EQ(layout.linesOf(1), 2);
}

TEST(HistoryLayoutTest, OnlyWhatIsInSightIsGiven)
{
    const HistoryLayout layout(rows({"a", "b", "c", "d"}, 2), {}, noCount);
    // Rows at 34, 138, 276, 380; days at 0 and 242.
    EXPECT_EQ(layout.itemsBetween(130, 240), (QList<HistoryLayout::Item>{{false, 1, 138, 94}}));
    EXPECT_EQ(layout.itemsBetween(128, 138), QList<HistoryLayout::Item>());
    EXPECT_EQ(layout.itemsBetween(231, 243),
        (QList<HistoryLayout::Item>{{false, 1, 138, 94}, {true, 1, 242, 34}}));
    EXPECT_EQ(layout.itemsBetween(0, 10), (QList<HistoryLayout::Item>{{true, 0, 0, 34}}));
    EXPECT_EQ(layout.itemsBetween(379, 380), QList<HistoryLayout::Item>());
    EXPECT_EQ(layout.itemsBetween(5000, 6000), QList<HistoryLayout::Item>());
}

TEST(HistoryLayoutTest, TheFirstRowInSightIsFound)
{
    const HistoryLayout layout(rows({"a", "b", "c"}, 3), {}, noCount);
    EXPECT_EQ(layout.firstRowBelow(0), 0);
    EXPECT_EQ(layout.firstRowBelow(127), 0);
    EXPECT_EQ(layout.firstRowBelow(128), 1);
    EXPECT_EQ(layout.firstRowBelow(138), 1);
    EXPECT_EQ(layout.firstRowBelow(10000), 3);
    EXPECT_EQ(HistoryLayout().firstRowBelow(0), 0);
}

TEST(HistoryLayoutTest, AnOpenedRecordHasTheLinesThatAreCounted)
{
    QList<qsizetype> counted;
    const HistoryLayout layout(rows({"a", "b", "c"}, 3), {u"R1"_s, u"gone"_s}, [&](qsizetype row) {
        counted.append(row);
        return 7;
    });
    EXPECT_EQ(counted, QList<qsizetype>{1});
    EXPECT_EQ(layout.itemOfRow(1).height, 214);
    EXPECT_EQ(layout.itemOfRow(2).top, 138 + 214 + 10);
}

TEST(HistoryLayoutTest, NothingIsNothingHigh)
{
    EXPECT_EQ(HistoryLayout(HistoryRows(), {}, noCount).height(), 0);
    EXPECT_TRUE(HistoryLayout().itemsBetween(0, 1000).isEmpty());
}

TEST(EstimatedLinesTest, WideAndNarrowCharactersFillALine)
{
    const auto repeated = [](const char* character, int times) {
        return QByteArray(character).repeated(times);
    };
    EXPECT_EQ(estimatedLines({}), 1);
    EXPECT_EQ(estimatedLines(repeated("x", 76)), 1); // 6.5 each, of 494.
    EXPECT_EQ(estimatedLines(repeated("x", 77)), 2);
    EXPECT_EQ(estimatedLines(repeated("é", 76)), 1);
    EXPECT_EQ(estimatedLines(repeated("é", 77)), 2);
    EXPECT_EQ(estimatedLines(repeated("“", 76)), 1);
    EXPECT_EQ(estimatedLines(repeated("中", 39)), 1); // 12.5 each.
    EXPECT_EQ(estimatedLines(repeated("中", 40)), 2);
    EXPECT_EQ(estimatedLines(repeated("，", 40)), 2);
    EXPECT_EQ(estimatedLines(repeated("한", 40)), 2);
    EXPECT_EQ(estimatedLines(repeated("😀", 39)), 1);
    EXPECT_EQ(estimatedLines(repeated("😀", 40)), 2);
}

TEST(EstimatedLinesTest, EscapesAreTheCharactersThatTheyStandFor)
{
    EXPECT_EQ(estimatedLines(QByteArray("\\\"").repeated(76)), 1);
    EXPECT_EQ(estimatedLines(QByteArray("\\\"").repeated(77)), 2);
    EXPECT_EQ(estimatedLines("\\u4e2d\\u4e2d"), 1);
    EXPECT_EQ(estimatedLines(QByteArray("\\u4e2d").repeated(40)), 2);
}

TEST(EstimatedLinesTest, ALineBreakWithinTheTextIsASecondLine)
{
    EXPECT_EQ(estimatedLines("a\\nb"), 2);
    EXPECT_EQ(estimatedLines("a\\n\\n \\r\\n"), 1);
    EXPECT_EQ(estimatedLines("\\n  a"), 1);
    EXPECT_EQ(estimatedLines("a\\n\\\"b\\\""), 2);
    EXPECT_EQ(estimatedLines("a\\\\nb"), 1); // A backslash and an n.
}

TEST(EstimatedLinesTest, WhateverTheBytesAreItEnds)
{
    EXPECT_EQ(estimatedLines("\\"), 1);
    EXPECT_EQ(estimatedLines("\\u12"), 1);
    EXPECT_EQ(estimatedLines("\xE4"), 1);
    EXPECT_EQ(estimatedLines("\xF0\x9F"), 1);
}

} // namespace
} // namespace tavrin::ui
