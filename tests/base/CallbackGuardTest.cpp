#include "base/CallbackGuard.h"

#include <gtest/gtest.h>

#include <functional>
#include <optional>

namespace tavrin {
namespace {

TEST(CallbackGuardTest, ABoundCallbackRunsWhileItsOwnerLives)
{
    const CallbackGuard guard;
    int sum = 0;
    const std::function<void(int)> callback = guard.bind([&](int value) { sum += value; });

    callback(2);
    callback(3);

    EXPECT_EQ(sum, 5);
}

TEST(CallbackGuardTest, ABoundCallbackDoesNothingAfterItsOwner)
{
    std::optional<CallbackGuard> guard{std::in_place};
    int calls = 0;
    const std::function<void()> callback = guard->bind([&] { ++calls; });

    guard.reset();
    callback();

    EXPECT_EQ(calls, 0);
}

} // namespace
} // namespace tavrin
