#include "base/Completion.h"

#include <gtest/gtest.h>

namespace tavrin {
namespace {

TEST(CompletionTest, PassesItsArgumentsOn)
{
    int sum = 0;
    const Completion<int, int> completion = [&](int left, int right) { sum = left + right; };

    completion(2, 3);

    EXPECT_EQ(sum, 5);
}

TEST(CompletionTest, ACallOfOneCopyCountsForAll)
{
    int calls = 0;
    {
        const Completion<> original = [&] { ++calls; };
        const Completion<> copy = original; // NOLINT(performance-unnecessary-copy-initialization)
        copy();
    }

    EXPECT_EQ(calls, 1);
}

TEST(CompletionTest, DroppedCompletionsAreAllowedAtTheEndOfTheProcess)
{
    allowDroppedCompletions(true);
    {
        const Completion<> never = [] {};
    }
    allowDroppedCompletions(false);
}

#ifndef QT_NO_DEBUG
TEST(CompletionDeathTest, ASecondCallAborts)
{
    EXPECT_DEATH(
        {
            const Completion<> completion = [] {};
            completion();
            completion();
        },
        "called twice");
}

TEST(CompletionDeathTest, DroppingItAborts)
{
    EXPECT_DEATH({ const Completion<> completion = [] {}; }, "dropped");
}
#endif

} // namespace
} // namespace tavrin
