#include "platform/linux/atspi/AtspiWorker.h"

#include <gtest/gtest.h>

#include <latch>
#include <thread>

using namespace std::chrono_literals;

namespace tavrin {
namespace {

using SteadyClock = std::chrono::steady_clock;

class AtspiWorkerTest : public ::testing::Test {
protected:
    std::latch end{1};
    AtspiWorker worker{[] {}};

    void TearDown() override { end.count_down(); }

    /// What a program that hangs until the end of the test would answer.
    [[nodiscard]] std::function<int()> hang()
    {
        return [this] {
            end.wait();
            return 1;
        };
    }
};

TEST_F(AtspiWorkerTest, AQuestionIsAnsweredOnAnotherThread)
{
    const auto thread = worker.ask<std::thread::id>([] { return std::this_thread::get_id(); });
    ASSERT_TRUE(thread.has_value());
    EXPECT_NE(*thread, std::this_thread::get_id());
}

TEST_F(AtspiWorkerTest, WhileAJobHangsEveryQuestionIsUnknownAtOnce)
{
    EXPECT_EQ(worker.ask<int>(hang()), std::nullopt);
    const auto start = SteadyClock::now();
    EXPECT_EQ(worker.ask<int>([] { return 1; }), std::nullopt);
    EXPECT_LT(SteadyClock::now() - start, AtspiWorker::patience / 2);
}

TEST_F(AtspiWorkerTest, QuestionsInARowShareOnePatience)
{
    const auto slow = [] {
        std::this_thread::sleep_for(0.8 * AtspiWorker::patience);
        return 1;
    };
    const auto start = SteadyClock::now();
    EXPECT_EQ(worker.ask<int>(slow), 1);
    EXPECT_EQ(worker.ask<int>(hang()), std::nullopt);
    EXPECT_LT(SteadyClock::now() - start, 1.5 * AtspiWorker::patience);
}

} // namespace
} // namespace tavrin
