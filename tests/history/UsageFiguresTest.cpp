#include "history/UsageFigures.h"

#include "history/HistoryJson.h"
#include "support/QtPrinters.h"

#include <QDateTime>
#include <QTimeZone>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

/// Seconds since 1970 of a time that says its distance from UTC.
double at(const char* time)
{
    const QDateTime moment = QDateTime::fromString(QLatin1StringView(time), Qt::ISODate);
    EXPECT_TRUE(moment.isValid()) << time;
    return static_cast<double>(moment.toMSecsSinceEpoch()) / 1000;
}

/// A record of @p characters that was saved at @p time.
QByteArray record(double time, const QByteArray& characters)
{
    return R"({"id":"A","mode":"dictation","timestamp":)" + QByteArray::number(time, 'f', 3)
        + R"(,"inputCharacters":)" + characters + '}';
}

HistoryRecords records(const QByteArrayList& objects)
{
    const auto history = parseHistory('[' + objects.join(',') + ']');
    EXPECT_TRUE(history.has_value());
    return history ? history->records : HistoryRecords();
}

UsageFigures figures(
    const QByteArrayList& objects, const char* now, const QByteArray& zone = "Asia/Shanghai")
{
    return usageFigures(records(objects), Seconds(at(now)), QTimeZone(zone));
}

/// The figures of records that say nothing of when they were saved.
UsageFigures undated(const QByteArrayList& objects)
{
    return figures(objects, "2026-11-22T12:00:00+08:00");
}

TEST(UsageFiguresTest, WithoutRecordsEveryFigureIsZero)
{
    EXPECT_EQ(undated({}), UsageFigures());
}

TEST(UsageFiguresTest, CharactersCountFromTheBeginningOfDayWeekAndMonth)
{
    // A Sunday: its week began on Monday, November 16.
    const UsageFigures found = figures(
        {
            record(at("2026-11-22T00:00:00+08:00"), "1"),
            record(at("2026-11-21T23:59:59+08:00"), "10"),
            record(at("2026-11-16T00:00:00+08:00"), "100"),
            record(at("2026-11-15T23:59:59+08:00"), "1000"),
            record(at("2026-11-01T00:00:00+08:00"), "10000"),
            record(at("2026-10-31T23:59:59+08:00"), "100000"),
        },
        "2026-11-22T18:00:00+08:00");

    EXPECT_EQ(found.today, 1);
    EXPECT_EQ(found.week, 111);
    EXPECT_EQ(found.month, 11111);
    EXPECT_EQ(found.total, 111111);
}

TEST(UsageFiguresTest, ASundayIsOfTheWeekThatEndsWithIt)
{
    const QByteArrayList sunday{record(at("2026-11-22T10:00:00+08:00"), "7")};

    EXPECT_EQ(figures(sunday, "2026-11-22T23:00:00+08:00").week, 7);
    EXPECT_EQ(figures(sunday, "2026-11-23T00:00:00+08:00").week, 0);
}

TEST(UsageFiguresTest, AWeekMayBeginInTheMonthBefore)
{
    const UsageFigures found =
        figures({record(at("2026-11-30T10:00:00+08:00"), "7")}, "2026-12-02T10:00:00+08:00");

    EXPECT_EQ(found.week, 7);
    EXPECT_EQ(found.month, 0);
}

TEST(UsageFiguresTest, WhatComesFromTheFutureCountsInEveryPeriod)
{
    const UsageFigures found =
        figures({record(at("2031-01-01T00:00:00+08:00"), "7"), record(1e17, "20")},
            "2026-11-22T12:00:00+08:00");

    EXPECT_EQ(found.today, 27);
    EXPECT_EQ(found.week, 27);
    EXPECT_EQ(found.month, 27);
}

TEST(UsageFiguresTest, RecordsWithoutATimeOrFromBefore1970CountInTheTotalOnly)
{
    const UsageFigures found = undated(
        {R"({"inputCharacters":5})", record(-86400.0 * 365 * 200, "3"), record(-1e18, "1")});

    EXPECT_EQ(found.today, 0);
    EXPECT_EQ(found.month, 0);
    EXPECT_EQ(found.total, 9);
}

TEST(UsageFiguresTest, TheDayIsThatOfTheTimeZone)
{
    const QByteArrayList late{record(at("2026-11-21T20:00:00Z"), "7")};

    EXPECT_EQ(figures(late, "2026-11-22T05:00:00Z", "Asia/Shanghai").today, 7);
    EXPECT_EQ(figures(late, "2026-11-22T05:00:00Z", "Europe/London").today, 0);
    EXPECT_EQ(figures(late, "2026-11-22T04:30:00Z", "America/New_York").today, 7);
}

TEST(UsageFiguresTest, ADayOf25HoursBeginsAtItsMidnight)
{
    const QByteArrayList objects{record(at("2026-10-25T00:00:00+02:00"), "7"),
        record(at("2026-10-24T23:59:59+02:00"), "100")};
    const char* evening = "2026-10-25T23:30:00+01:00"; // 24.5 hours after midnight.

    EXPECT_EQ(figures(objects, evening, "Europe/Berlin").today, 7);
    EXPECT_EQ(figures(objects, evening, "Europe/Berlin").week, 107);
}

TEST(UsageFiguresTest, AWeekWithADayOf23HoursBeginsAtMondaysMidnight)
{
    const QByteArrayList objects{record(at("2026-03-23T00:00:00+01:00"), "7"),
        record(at("2026-03-22T23:59:59+01:00"), "100")};

    EXPECT_EQ(figures(objects, "2026-03-29T12:00:00+02:00", "Europe/Berlin").week, 7);
}

TEST(UsageFiguresTest, ADayWithoutAMidnightBeginsAtItsFirstMoment)
{
    // The clocks went from 23:59:59 to 01:00.
    const QByteArrayList objects{record(at("2018-11-04T01:00:00-02:00"), "7"),
        record(at("2018-11-03T23:59:59-03:00"), "100")};

    EXPECT_EQ(figures(objects, "2018-11-04T12:00:00-02:00", "America/Sao_Paulo").today, 7);
}

TEST(UsageFiguresTest, TheTimeSavedIsThatOfTypingLessThatOfSpeakingAndWaiting)
{
    const UsageFigures found =
        undated({R"({"inputCharacters":60,"audioSeconds":10,"processingSeconds":4})",
            R"({"inputCharacters":30,"audioSeconds":20,"processingSeconds":6})"});

    EXPECT_EQ(found.saved.count(), 80);
    EXPECT_EQ(found.audio.count(), 30);
    EXPECT_EQ(found.speed, 180);
}

TEST(UsageFiguresTest, NoTimeIsSavedBySpeakingSlowerThanTyping)
{
    EXPECT_EQ(undated({R"({"inputCharacters":45,"audioSeconds":61})"}).saved.count(), 0);
}

TEST(UsageFiguresTest, TheSpeedIsRoundedHalfUp)
{
    EXPECT_EQ(undated({R"({"inputCharacters":5,"audioSeconds":120})"}).speed, 3);
    EXPECT_EQ(undated({R"({"inputCharacters":49,"audioSeconds":1200})"}).speed, 2);
    EXPECT_EQ(undated({R"({"inputCharacters":5})"}).speed, 0);
}

TEST(UsageFiguresTest, RecordsOfEveryModeCount)
{
    EXPECT_EQ(undated({R"({"mode":"translation","inputCharacters":1})",
                          R"({"mode":"chat","inputCharacters":10})",
                          R"({"mode":"dictation","inputCharacters":100})",
                          R"({"mode":"else","inputCharacters":1000})"})
                  .total,
        1111);
}

TEST(UsageFiguresTest, WithoutACountTheTranscriptIsCounted)
{
    EXPECT_EQ(undated({R"({"transcript":"😀 ok","finalText":"much longer than that"})"}).total, 5);
    EXPECT_EQ(undated({R"({"transcript":"\ud83d\ude00\n","inputCharacters":"12"})"}).total, 3);
    EXPECT_EQ(undated({R"({"transcript":"four","inputCharacters":true})"}).total, 4);
    EXPECT_EQ(undated({R"({"transcript":"four","inputCharacters":null})"}).total, 4);
    EXPECT_EQ(undated({R"({"transcript":"four","inputCharacters":9})"}).total, 9);
}

TEST(UsageFiguresTest, WithoutCountAndTranscriptThereAreNoCharacters)
{
    for (const QByteArray& object : {R"({})"_ba, R"({"transcript":7})"_ba,
             R"({"transcript":["a"]})"_ba, R"({"transcript":null,"finalText":"abc"})"_ba})
        EXPECT_EQ(undated({object}).total, 0) << object.toStdString();
}

TEST(UsageFiguresTest, LegacyRecordsAddToTheCountsAndNotToTheTimes)
{
    const UsageFigures found =
        undated({R"({"inputCharacters":45,"audioSeconds":10,"processingSeconds":5})",
            R"({"transcript":"123456789012345678901234567890123456789012345"})"});

    EXPECT_EQ(found.total, 90);
    EXPECT_EQ(found.audio.count(), 10);
    EXPECT_EQ(found.saved.count(), 105);
}

TEST(UsageFiguresTest, NegativeNumbersCountAsNothing)
{
    const UsageFigures found = undated({R"({"inputCharacters":-9,"audioSeconds":-60,
        "processingSeconds":-1e9})",
        R"({"inputCharacters":90,"audioSeconds":30,"processingSeconds":10})"});

    EXPECT_EQ(found.total, 90);
    EXPECT_EQ(found.audio.count(), 30);
    EXPECT_EQ(found.saved.count(), 80);
}

TEST(UsageFiguresTest, DurationsThatAreNoNumbersCountAsNothing)
{
    const UsageFigures found = undated({R"({"inputCharacters":90.9,"audioSeconds":"60",
        "processingSeconds":true})",
        R"({"audioSeconds":[1],"processingSeconds":{"a":1}})",
        R"({"audioSeconds":null,"processingSeconds":null})"});

    EXPECT_EQ(found.total, 90);
    EXPECT_EQ(found.audio.count(), 0);
    EXPECT_EQ(found.saved.count(), 120);
}

TEST(UsageFiguresTest, NumbersBeyondEverythingKeepTheFiguresFinite)
{
    const QByteArray huge =
        R"({"inputCharacters":1e300,"audioSeconds":1.7e308,"processingSeconds":1.7e308})";
    const UsageFigures found = undated({huge, huge, huge});

    EXPECT_GT(found.total, 0);
    EXPECT_TRUE(std::isfinite(found.audio.count()));
    EXPECT_GE(found.saved.count(), 0);
    EXPECT_GE(found.speed, 0);

    const HistoryRecords many(10'000, records({R"({"inputCharacters":1e300})"}).first());
    EXPECT_EQ(
        usageFigures(many, Seconds(0), QTimeZone::utc()).total, std::numeric_limits<qint64>::max());
    EXPECT_EQ(undated({R"({"inputCharacters":1e300,"audioSeconds":1e-320})"}).speed,
        1'000'000'000'000'000);
    EXPECT_EQ(undated({R"({"audioSeconds":1e-323})"}).speed, 0);
}

} // namespace
} // namespace tavrin
