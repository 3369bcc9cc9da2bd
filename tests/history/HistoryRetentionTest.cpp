#include "history/HistoryRetention.h"

#include "support/QtPrinters.h"

#include <QVariant>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

constexpr Seconds now{10'000'000};

struct CutoffRow {
    QString retention;
    double cutoff;
};

TEST(HistoryRetentionTest, EachSettingHasItsCutoff)
{
    const QList<CutoffRow> rows{
        {u"none"_s, 10'000'001},
        {u"7"_s, 10'000'000 - 7 * 86400.0},
        {u"30"_s, 10'000'000 - 30 * 86400.0},
        {u"90"_s, 10'000'000 - 90 * 86400.0},
        {u"forever"_s, 0},
        {u"14"_s, 10'000'000 - 14 * 86400.0},
        {u"3 weeks"_s, 10'000'000 - 3 * 86400.0},
        {u"abc"_s, 10'000'000},
        {QString(), 10'000'000},
    };
    for (const CutoffRow& row : rows)
        EXPECT_DOUBLE_EQ(retentionCutoff(row.retention, now), row.cutoff)
            << row.retention.toStdString();
}

TEST(HistoryRetentionTest, RecordsBeforeTheCutoffAreRemoved)
{
    const auto recordAt = [](double timestamp) {
        return HistoryRecord::fromObject({{u"timestamp"_s, timestamp}});
    };
    HistoryRecords records{recordAt(30), recordAt(20), recordAt(10)};

    EXPECT_FALSE(pruneHistory(records, 0));
    EXPECT_FALSE(pruneHistory(records, 10));
    EXPECT_TRUE(pruneHistory(records, 20));
    ASSERT_EQ(records.size(), 2);
    EXPECT_EQ(records.last().timestamp(), 20);
}

TEST(HistoryRetentionTest, TheMenuHasItsLabelsInThreeLanguages)
{
    const QList<QStringList> labels{
        {u"none"_s, u"不保存"_s, u"不儲存"_s, u"Don't save"_s},
        {u"7"_s, u"7 天"_s, u"7 天"_s, u"7 days"_s},
        {u"30"_s, u"30 天"_s, u"30 天"_s, u"30 days"_s},
        {u"90"_s, u"90 天"_s, u"90 天"_s, u"90 days"_s},
        {u"forever"_s, u"永久保存"_s, u"永久儲存"_s, u"Forever"_s},
    };
    ASSERT_EQ(retentionChoices.size(), std::size_t(labels.size()));
    for (std::size_t i = 0; i < retentionChoices.size(); ++i) {
        const RetentionChoice& choice = retentionChoices.at(i);
        EXPECT_EQ((QStringList{choice.value.toString(), choice.label.zhHans.toString(),
                      choice.label.zhHant.toString(), choice.label.en.toString()}),
            labels[qsizetype(i)]);
    }
}

} // namespace
} // namespace tavrin
