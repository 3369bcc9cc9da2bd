#include "app/session/StageTimes.h"

#include "support/QtPrinters.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tavrin {
namespace {

TEST(StageTimesTest, EveryStageLastsFromTheEndOfTheOneBefore)
{
    StageTimes times;

    times.begin(100s);
    times.ended("start", 100.0081s);
    times.ended("recording", 103.5s);

    EXPECT_EQ(times.toString(), u"start 8.1 ms, recording 3491.9 ms"_s);
}

TEST(StageTimesTest, ANewSessionForgetsTheLast)
{
    StageTimes times;
    times.begin(1s);
    times.ended("start", 2s);

    times.begin(10s);

    EXPECT_EQ(times.toString(), QString());
    times.ended("start", 10.5s);
    EXPECT_EQ(times.toString(), u"start 500.0 ms"_s);
}

} // namespace
} // namespace tavrin
