#include "platform/linux/process/TerminationSignals.h"

#include "support/WaitUntil.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <optional>

namespace tavrin::testing {
namespace {

class TerminationSignalsTest : public ::testing::TestWithParam<int> { };

INSTANTIATE_TEST_SUITE_P(
    Signals, TerminationSignalsTest, ::testing::Values(SIGTERM, SIGINT, SIGHUP));

TEST_P(TerminationSignalsTest, AskOnceForACleanEnd)
{
    int asked = 0;
    const TerminationSignals signals([&] { ++asked; });
    ::raise(GetParam());
    EXPECT_EQ(asked, 0) << "not inside the signal handler";
    EXPECT_TRUE(waitUntil([&] { return asked == 1; }));
}

/// Those that somebody sends twice because the first did not help.
class InsistingSignalsTest : public ::testing::TestWithParam<int> { };

INSTANTIATE_TEST_SUITE_P(Signals, InsistingSignalsTest, ::testing::Values(SIGTERM, SIGINT));

TEST_P(InsistingSignalsTest, ASecondOneEndsTheProcess)
{
    EXPECT_EXIT(
        {
            bool asked = false;
            const TerminationSignals signals([&] { asked = true; });
            ::raise(GetParam());
            (void)waitUntil([&] { return asked; });
            ::raise(GetParam());
        },
        ::testing::KilledBySignal(GetParam()), "");
}

TEST_P(InsistingSignalsTest, ASecondOneEndsTheProcessAlsoWhenTheMainThreadHangs)
{
    EXPECT_EXIT(
        {
            const TerminationSignals signals([] {});
            ::raise(SIGTERM); // Nobody is told: no event loop runs.
            ::raise(GetParam());
            std::_Exit(0);
        },
        ::testing::KilledBySignal(GetParam()), "");
}

TEST(TerminationHangupTest, ATerminalThatClosesHangsUpMoreThanOnce)
{
    int asked = 0;
    const TerminationSignals signals([&] { ++asked; });
    ::raise(SIGHUP);
    ::raise(SIGHUP);
    EXPECT_TRUE(waitUntil([&] { return asked == 1; }));
    ::raise(SIGHUP);
    EXPECT_FALSE(waitUntil([&] { return asked != 1; }, std::chrono::milliseconds(50)));
}

TEST_P(TerminationSignalsTest, TheUsualMeaningReturnsAfterwards)
{
    std::optional<TerminationSignals> signals(std::in_place, [] {});
    signals.reset();
    EXPECT_EXIT(::raise(GetParam()), ::testing::KilledBySignal(GetParam()), "");
}

} // namespace
} // namespace tavrin::testing
