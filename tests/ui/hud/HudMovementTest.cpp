#include "ui/hud/HudMovement.h"

#include "support/QtPrinters.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tavrin::hud {
namespace {

TEST(HudMovementTest, TheLevelFallsByADecadeEvery28Decibels)
{
    EXPECT_DOUBLE_EQ(levelForPower(0), 1);
    EXPECT_DOUBLE_EQ(levelForPower(-28), 0.1);
    EXPECT_NEAR(levelForPower(-14), 0.316228, 1e-6);
}

TEST(HudMovementTest, TheBarLevelStaysWithinItsLimits)
{
    EXPECT_DOUBLE_EQ(barLevel(levelForPower(-160)), 0.08);
    EXPECT_DOUBLE_EQ(barLevel(0.5), 0.5);
    EXPECT_DOUBLE_EQ(barLevel(1.7), 1);
}

TEST(HudMovementTest, InSilenceTheBarsKeepMovingAndAreNeverFlat)
{
    double lowest = 100;
    double highest = 0;
    for (Seconds elapsed{0}; elapsed < 10s; elapsed += 1ms) {
        for (const Bar& bar : waveBars(elapsed, barLevel(levelForPower(-160)))) {
            lowest = std::min(lowest, bar.height);
            highest = std::max(highest, bar.height);
        }
    }
    EXPECT_NEAR(lowest, 6.92, 0.001);
    EXPECT_NEAR(highest, 9, 0.001);
}

TEST(HudMovementTest, EachBarFollowsItsOwnPhaseOfTheWave)
{
    const Bars bars = waveBars(500ms, 0.4);

    for (int i = 0; i < barCount; ++i) {
        const double height = 7 + 25 * 0.4 * (0.48 + 0.52 * std::sin(4.5 + 1.17 * i));
        EXPECT_DOUBLE_EQ(bars.at(std::size_t(i)).height, height);
        EXPECT_DOUBLE_EQ(bars.at(std::size_t(i)).y, 76 + (24 - height) / 2);
    }
}

TEST(HudMovementTest, ABarIsAtMost24PointsHigh)
{
    double highest = 0;
    for (Seconds elapsed{0}; elapsed < 1s; elapsed += 1ms)
        highest = std::max(highest, waveBars(elapsed, 1)[0].height);
    EXPECT_DOUBLE_EQ(highest, 24);
}

TEST(HudMovementTest, ProcessingStartsWithAStaircase)
{
    constexpr std::array<double, barCount> heights{8, 12, 16, 20, 8, 12, 16};
    for (std::size_t i = 0; i < heights.size(); ++i)
        EXPECT_EQ(staircaseBars().at(i), (Bar{24, heights.at(i)}));
}

TEST(HudMovementTest, TheLightSweepsAcrossTheTrackAndStartsAgain)
{
    EXPECT_DOUBLE_EQ(lightX(0s, false), -150);
    EXPECT_DOUBLE_EQ(lightX(2s, false), 100);
    EXPECT_DOUBLE_EQ(lightX(2s, true), 230);
    EXPECT_DOUBLE_EQ(lightX(540s / 125.0, false), -150);
    EXPECT_DOUBLE_EQ(lightX(3s, true), 570 - 540 - 150);
}

TEST(HudMovementTest, ProgressCreepsFrom3ToAtMost81Point3)
{
    EXPECT_DOUBLE_EQ(progressValue(0s, 10s), 3);
    EXPECT_DOUBLE_EQ(progressValue(5s, 10s), 46.5);
    EXPECT_DOUBLE_EQ(progressValue(9s, 10s), 81.3);
    EXPECT_DOUBLE_EQ(progressValue(20s, 10s), 81.3);
}

TEST(HudMovementTest, AVeryShortEstimateCountsAsAFifthOfASecond)
{
    EXPECT_DOUBLE_EQ(progressValue(50ms, 100ms), 3 + 87 * 0.25);
}

TEST(HudMovementTest, RecordingTimeIsCutOffToSeconds)
{
    EXPECT_EQ(recordingTime(0s), u"00:00"_s);
    EXPECT_EQ(recordingTime(75.9s), u"01:15"_s);
    EXPECT_EQ(recordingTime(6000s), u"100:00"_s);
}

TEST(HudMovementTest, RemainingTimeIsRoundedUpAndNeverNegative)
{
    EXPECT_EQ(remainingTime(0s, 10s), u"≈ 10s"_s);
    EXPECT_EQ(remainingTime(7.2s, 10s), u"≈ 3s"_s);
    EXPECT_EQ(remainingTime(20s, 10s), u"≈ 0s"_s);
}

} // namespace
} // namespace tavrin::hud
