#include "app/pages/history/HistoryRows.h"

#include "history/HistoryJson.h"
#include "support/QtPrinters.h"

#include <QDateTime>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

/// Seconds since 1970 of a time that says its distance from UTC.
double at(const char* time)
{
    return static_cast<double>(
               QDateTime::fromString(QLatin1StringView(time), Qt::ISODate).toMSecsSinceEpoch())
        / 1000;
}

HistoryRecords parsed(const QByteArrayList& objects)
{
    const auto history = parseHistory('[' + objects.join(',') + ']');
    EXPECT_TRUE(history.has_value());
    return history ? history->records : HistoryRecords();
}

QByteArray record(double time)
{
    return R"({"id":"A","mode":"dictation","timestamp":)" + QByteArray::number(time, 'f', 3) + '}';
}

HistoryRowWords words()
{
    return {.today = u"Today"_s,
        .yesterday = u"Yesterday"_s,
        .dictation = u"Dictation"_s,
        .translation = u"Translation"_s,
        .chat = u"Chat"_s,
        .editedResult = u"Edited result"_s,
        .originalTranscript = u"Original transcript"_s,
        .targetName = [](const QString& target) { return u"<"_s + target + u">"_s; }};
}

class HistoryRowsTest : public ::testing::Test {
protected:
    const char* now = "2026-11-22T12:00:00+08:00";
    QByteArray zone = "Asia/Shanghai";
    QSet<QString> expanded;
    std::optional<QList<qsizetype>> listed;

    [[nodiscard]] HistoryRows rows(const QByteArrayList& objects) const
    {
        return HistoryRows({.records = parsed(objects),
            .listed = listed,
            .expanded = expanded,
            .now = Seconds(at(now)),
            .timeZone = QTimeZone(zone),
            .words = words()});
    }

    [[nodiscard]] HistoryRow only(const QByteArray& object) const { return rows({object}).row(0); }

    /// The groups of records of these times.
    [[nodiscard]] QStringList days(const QList<double>& times) const
    {
        QByteArrayList objects;
        for (const double time : times)
            objects.append(record(time));
        QStringList found;
        const HistoryRows made = rows(objects);
        for (const HistoryRows::Day& day : made.days())
            found.append(u"%1 %2"_s.arg(day.firstRow).arg(day.label));
        return found;
    }
};

TEST_F(HistoryRowsTest, RecordsAreGroupedByDays)
{
    EXPECT_EQ(days({at("2026-11-22T11:00:00+08:00"), at("2026-11-22T00:00:00+08:00"),
                  at("2026-11-21T23:59:59+08:00"), at("2026-11-20T23:59:59+08:00"),
                  at("2026-11-20T10:00:00+08:00"), at("2026-01-02T10:00:00+08:00")}),
        (QStringList{u"0 Today"_s, u"2 Yesterday"_s, u"3 11 月 20 日"_s, u"5 1 月 2 日"_s}));
}

TEST_F(HistoryRowsTest, TheOrderIsThatOfTheFileWhateverTheTimesSay)
{
    EXPECT_EQ(days({at("2026-11-20T10:00:00+08:00"), at("2026-11-22T10:00:00+08:00"),
                  at("2026-11-20T11:00:00+08:00")}),
        (QStringList{u"0 11 月 20 日"_s, u"1 Today"_s, u"2 11 月 20 日"_s}));
}

TEST_F(HistoryRowsTest, DaysOfDifferentYearsWithOneLabelAreOneGroup)
{
    EXPECT_EQ(days({at("2025-03-01T10:00:00+08:00"), at("2024-03-01T10:00:00+08:00")}),
        QStringList{u"0 3 月 1 日"_s});
}

TEST_F(HistoryRowsTest, TomorrowIsADate)
{
    EXPECT_EQ(days({at("2026-11-23T00:00:00+08:00")}), QStringList{u"0 11 月 23 日"_s});
}

TEST_F(HistoryRowsTest, DaysAreThoseOfTheTimeZone)
{
    const QList<double> evening{at("2026-11-21T20:00:00Z")};
    EXPECT_EQ(days(evening), QStringList{u"0 Today"_s});
    zone = "Europe/London";
    EXPECT_EQ(days(evening), QStringList{u"0 Yesterday"_s});
}

TEST_F(HistoryRowsTest, ADayOf25HoursIsOneDay)
{
    zone = "Europe/Berlin";
    now = "2026-10-26T00:30:00+01:00";
    EXPECT_EQ(days({at("2026-10-26T00:00:00+01:00"), at("2026-10-25T23:59:00+01:00"),
                  at("2026-10-25T00:00:00+02:00"), at("2026-10-24T23:59:00+02:00")}),
        (QStringList{u"0 Today"_s, u"1 Yesterday"_s, u"3 10 月 24 日"_s}));
}

TEST_F(HistoryRowsTest, DatesBeforeTheEpochAndBeyondAllYearsAreShown)
{
    EXPECT_EQ(days({1e300, at("2300-05-06T10:00:00+08:00"), at("1969-07-20T20:00:00Z"), -1e300}),
        (QStringList{u"0 1 月 1 日"_s, u"1 5 月 6 日"_s, u"2 7 月 21 日"_s, u"3 1 月 1 日"_s}));
    EXPECT_EQ(only(record(at("1969-07-20T20:17:00Z"))).time, u"04:17"_s);
}

TEST_F(HistoryRowsTest, ARecordWithoutATimeIsOfTheEpoch)
{
    const HistoryRows found = rows({R"({"id":"A"})"});
    EXPECT_EQ(found.days().first().label, u"1 月 1 日"_s);
    EXPECT_EQ(found.row(0).time, u"08:00"_s);
}

TEST_F(HistoryRowsTest, TheHeaderHasTheTimeAndTheMode)
{
    const auto header = [&](const QByteArray& keys) {
        return only(R"({"id":"A","timestamp":1795314600,)" + keys + "}").header;
    };
    EXPECT_EQ(header(R"("mode":"dictation")"), u"10:30  ·  Dictation"_s);
    EXPECT_EQ(header(R"("mode":"chat")"), u"10:30  ·  Chat"_s);
    EXPECT_EQ(header(R"("mode":"ask")"), u"10:30  ·  Chat"_s);
    EXPECT_EQ(header(R"("mode":"something else")"), u"10:30  ·  Dictation"_s);
    EXPECT_EQ(header(R"("mode":7)"), u"10:30  ·  Dictation"_s);
    EXPECT_EQ(header(R"("mode":"translation","targetLanguage":"japanese")"),
        u"10:30  ·  Translation · <japanese>"_s);
    EXPECT_EQ(header(R"("mode":"translation")"), u"10:30  ·  Translation · <english>"_s);
    EXPECT_EQ(header(R"("mode":"translation","targetLanguage":["a"])"),
        u"10:30  ·  Translation · <english>"_s);
    // What looks like a placeholder stays what it is.
    EXPECT_EQ(header(R"("mode":"translation","targetLanguage":"%1 %2")"),
        u"10:30  ·  Translation · <%1 %2>"_s);
}

TEST_F(HistoryRowsTest, TheResultIsShownAndTheTranscriptWhenItIsExpanded)
{
    const QByteArray both = R"({"id":"A","transcript":"said","finalText":"written"})";
    EXPECT_EQ(only(both).text, u"written"_s);
    EXPECT_EQ(only(both).caption, u"Edited result"_s);
    EXPECT_FALSE(only(both).showsOriginal);
    EXPECT_EQ(rows({both}).writtenText(0).toByteArray(), "written"_ba);

    expanded = {u"A"_s};
    EXPECT_EQ(only(both).text, u"said"_s);
    EXPECT_EQ(only(both).caption, u"Original transcript"_s);
    EXPECT_TRUE(only(both).showsOriginal);
    EXPECT_EQ(rows({both}).writtenText(0).toByteArray(), "said"_ba);
}

TEST_F(HistoryRowsTest, MissingAndWrongTypedTextsAreEmpty)
{
    for (const QByteArray& object : {R"({"id":"A"})"_ba, R"({"id":"A","finalText":7})"_ba,
             R"({"id":"A","finalText":{"a":"b"}})"_ba, R"({"id":"A","finalText":null})"_ba}) {
        EXPECT_EQ(only(object).text, QString());
        EXPECT_TRUE(rows({object}).writtenText(0).isEmpty());
    }
}

TEST_F(HistoryRowsTest, LongTextsAndMarkupAreWhatTheyAre)
{
    const QByteArray text = "<b>bold</b> &amp; " + QByteArray(10000, 'x');
    EXPECT_EQ(only(R"({"id":"A","finalText":")" + text + R"("})").text, QString::fromUtf8(text));
}

TEST_F(HistoryRowsTest, SomeOfTheRecordsCanBeListed)
{
    const QByteArrayList objects{
        R"({"id":"A","timestamp":1795314600})", R"({"id":"B"})", R"({"id":"C"})", R"({"id":"D"})"};
    EXPECT_EQ(rows(objects).size(), 4);

    listed = {1, 3};
    const HistoryRows found = rows(objects);
    EXPECT_EQ(found.size(), 2);
    EXPECT_EQ(found.idOf(0), u"B"_s);
    EXPECT_EQ(found.row(1).id, u"D"_s);
    EXPECT_EQ(found.indexOf(u"D"_s), 1);
    EXPECT_EQ(found.indexOf(u"A"_s), std::nullopt);
    EXPECT_EQ(found.days(), QList<HistoryRows::Day>({{0, u"1 月 1 日"_s}}));

    listed = QList<qsizetype>();
    EXPECT_TRUE(rows(objects).isEmpty());
    EXPECT_TRUE(rows(objects).days().isEmpty());
}

TEST_F(HistoryRowsTest, CopiesAreTheSameRowsAndOthersAreNot)
{
    const HistoryRows first = rows({R"({"id":"A"})"});
    HistoryRows copy;
    copy = first;
    EXPECT_TRUE(first.isSameAs(copy));
    EXPECT_FALSE(first.isSameAs(rows({R"({"id":"A"})"})));
    EXPECT_TRUE(HistoryRows().isEmpty());
}

} // namespace
} // namespace tavrin
