#include "platform/qt/QtClock.h"
#include "support/ports/VirtualTime.h"

#include <gtest/gtest.h>

#include <memory>

namespace tavrin::testing {
namespace {

template <class Type>
std::shared_ptr<Clock> make()
{
    return std::make_shared<Type>();
}

struct Case {
    const char* name;
    std::shared_ptr<Clock> (*make)();
};

class ClockContractTest : public ::testing::TestWithParam<Case> {
protected:
    [[nodiscard]] Clock& clock() const { return *m_clock; }

private:
    std::shared_ptr<Clock> m_clock = GetParam().make();
};

INSTANTIATE_TEST_SUITE_P(Implementations, ClockContractTest,
    ::testing::Values(Case{"Virtual", make<VirtualTime>}, Case{"Qt", make<QtClock>}),
    [](const auto& given) { return given.param.name; });

TEST_P(ClockContractTest, UptimeNeverRunsBackwards)
{
    Seconds last = clock().uptime();
    for (int i = 0; i < 1000; ++i) {
        const Seconds now = clock().uptime();
        ASSERT_GE(now, last);
        last = now;
    }
}

TEST_P(ClockContractTest, TheWallClockCountsSecondsSince1970)
{
    EXPECT_GT(clock().sinceEpoch(), Seconds{1'600'000'000});
    EXPECT_LT(clock().sinceEpoch(), Seconds{10'000'000'000});
}

} // namespace
} // namespace tavrin::testing
