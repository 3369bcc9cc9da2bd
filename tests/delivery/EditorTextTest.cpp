#include "delivery/EditorText.h"

#include "support/QtPrinters.h"

#include <QList>
#include <gtest/gtest.h>

#include <limits>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

constexpr qint64 greatest = std::numeric_limits<qint64>::max();
constexpr qint64 least = std::numeric_limits<qint64>::min();

TEST(NormalizedEditorTextTest, AllLineEndsBecomeLineFeeds)
{
    EXPECT_EQ(normalizedEditorText(u"a\r\nb\rc\nd\r\r\ne"_s), u"a\nb\nc\nd\n\ne"_s);
}

TEST(NormalizedEditorTextTest, AnUnknownTextCountsAsEmpty)
{
    EXPECT_EQ(normalizedEditorText(std::nullopt), QString());
}

TEST(ExpectedValueTest, TheSelectionIsReplaced)
{
    EXPECT_EQ(expectedValueFrom(u"Hello old world"_s, {6, 3}, u"new"_s), u"Hello new world"_s);
}

TEST(ExpectedValueTest, ACaretAtTheEndAppends)
{
    EXPECT_EQ(expectedValueFrom(u"ab"_s, {2, 0}, u"c"_s), u"abc"_s);
}

TEST(ExpectedValueTest, ARangeOutsideTheValueGivesNone)
{
    for (const TextRange range : {TextRange{-1, 0}, {0, -1}, {0, 3}, {3, 0}, {2, 1},
             {greatest, greatest}, {1, greatest}, {least, least}})
        EXPECT_FALSE(expectedValueFrom(u"ab"_s, range, u"c"_s).has_value())
            << range.location << ", " << range.length;
}

TEST(ExpectedValueTest, AnUnknownValueGivesNone)
{
    EXPECT_FALSE(expectedValueFrom(std::nullopt, {0, 0}, u"c"_s).has_value());
}

class CaretAndCountTest : public ::testing::Test {
protected:
    EditorObservation before{std::nullopt, TextRange{5, 3}, 20};
    EditorObservation after{std::nullopt, TextRange{8, 0}, 20};

    [[nodiscard]] bool match() const { return caretAndCountMatch(before, after, 3); }
};

TEST_F(CaretAndCountTest, AReplacedSelectionMatches)
{
    EXPECT_TRUE(match());
}

TEST_F(CaretAndCountTest, TheCaretMustStandBehindTheText)
{
    after.range = TextRange{7, 0};
    EXPECT_FALSE(match());
}

TEST_F(CaretAndCountTest, NothingMayBeSelectedAfterwards)
{
    after.range = TextRange{8, 1};
    EXPECT_FALSE(match());
}

TEST_F(CaretAndCountTest, TheCountMustHaveGrownByWhatWasInsertedLessWhatWasReplaced)
{
    after.count = 23;
    EXPECT_FALSE(match());
}

TEST_F(CaretAndCountTest, AnUnknownCountIsNoObjection)
{
    before.count.reset();
    EXPECT_TRUE(match());
    before.count = 20;
    after.count.reset();
    EXPECT_TRUE(match());
}

TEST_F(CaretAndCountTest, AnUnknownRangeNeverMatches)
{
    after.range.reset();
    EXPECT_FALSE(match());
    after.range = TextRange{8, 0};
    before.range.reset();
    EXPECT_FALSE(match());
}

TEST_F(CaretAndCountTest, NumbersAtTheEdgeOfTheTypeNeverMatch)
{
    before.range = TextRange{greatest, 0};
    EXPECT_FALSE(match());
    before = {std::nullopt, TextRange{5, least}, greatest};
    EXPECT_FALSE(match());
}

struct ChangeRow {
    EditorObservation before;
    EditorObservation after;
    bool changed;
    bool complete;
};

TEST(ObservationTest, ChangeAndCompletenessFollowFromWhatCouldBeRead)
{
    const EditorObservation whole{u"a"_s, TextRange{1, 0}, 1};
    EditorObservation noText = whole;
    noText.text.reset();
    EditorObservation noRange = whole;
    noRange.range.reset();
    EditorObservation noCount = whole;
    noCount.count.reset();

    const QList<ChangeRow> rows{
        {whole, whole, false, true},
        {whole, {u"ab"_s, TextRange{1, 0}, 1}, true, true},
        {whole, {u"a"_s, TextRange{0, 0}, 1}, true, true},
        {whole, {u"a"_s, TextRange{1, 1}, 1}, true, true},
        {whole, {u"a"_s, TextRange{1, 0}, 2}, true, true},
        {whole, noText, false, false},
        {whole, noRange, false, false},
        {whole, noCount, false, false},
        {noText, whole, false, false},
        {noRange, whole, false, false},
        {noCount, whole, false, false},
        {noText, {u"b"_s, TextRange{2, 0}, 1}, true, false},
        {EditorObservation(), EditorObservation(), false, false},
    };
    for (qsizetype i = 0; i < rows.size(); ++i) {
        EXPECT_EQ(hasVisibleChange(rows[i].before, rows[i].after), rows[i].changed) << "row " << i;
        EXPECT_EQ(isObservationComplete(rows[i].before, rows[i].after), rows[i].complete)
            << "row " << i;
    }
}

} // namespace
} // namespace tavrin
