#include "app/pages/DayWatch.h"

#include "support/ports/VirtualTime.h"

#include <gtest/gtest.h>

#include <optional>

using namespace std::chrono_literals;

namespace tavrin {
namespace {

/// It is 06:13:20 in Shanghai: 17 hours, 46 minutes and 40 seconds before midnight.
class DayWatchTest : public ::testing::Test {
protected:
    testing::VirtualTime time;
    QTimeZone zone{"Asia/Shanghai"};
    int days = 0;
    std::optional<DayWatch> watch{std::in_place,
        DayWatch::Neighbours{time, time, [this] { return zone; }, [this] { ++days; }}};
};

TEST_F(DayWatchTest, ANewDayIsToldOnceAndWithinAMinute)
{
    watch->begin();
    time.advance(17h + 46min + 39s);
    EXPECT_EQ(days, 0);
    time.advance(61s);
    EXPECT_EQ(days, 1);
    time.advance(23h + 58min);
    EXPECT_EQ(days, 1);
    time.advance(2min);
    EXPECT_EQ(days, 2);
}

TEST_F(DayWatchTest, TheFirstLookTellsNothing)
{
    watch->begin();
    EXPECT_EQ(days, 0);
}

TEST_F(DayWatchTest, ADayThatBeganWhileNobodyLookedIsToldAtTheNextLook)
{
    watch->begin();
    watch->end();
    EXPECT_EQ(time.pending(), 0U);
    time.advance(18h);
    EXPECT_EQ(days, 0);
    watch->begin();
    EXPECT_EQ(days, 1);
}

TEST_F(DayWatchTest, InAnotherTimeZoneItMayBeAnotherDay)
{
    watch->begin();
    zone = QTimeZone("America/New_York"); // The evening before.
    time.advance(60s);
    EXPECT_EQ(days, 1);
}

TEST_F(DayWatchTest, WhoIsGoneLooksNoMore)
{
    watch->begin();
    watch.reset();
    EXPECT_EQ(time.pending(), 0U);
}

} // namespace
} // namespace tavrin
