#include "platform/linux/recognizer/onnx/PartialPace.h"

#include "platform/linux/recognizer/onnx/Tones.h"

#include <gtest/gtest.h>

using namespace std::chrono_literals;

namespace tavrin {
namespace {

namespace tones = testing::tones;

const PartialPace::Time start{1h};

TEST(PartialPaceTest, ALookIsDueOnceSomebodySpeaks)
{
    PartialPace pace;
    EXPECT_FALSE(pace.isDue(start));
    pace.hear(tones::silence(2));
    EXPECT_FALSE(pace.isDue(start));
    pace.hear(tones::said({tones::ni}));
    EXPECT_TRUE(pace.isDue(start));
}

TEST(PartialPaceTest, LooksTakeNoMoreThanHalfOfTheTime)
{
    PartialPace pace;
    pace.hear(tones::greeting());
    pace.looked(start, start + 300ms);
    pace.hear(tones::greeting());
    EXPECT_FALSE(pace.isDue(start + 300ms));
    EXPECT_FALSE(pace.isDue(start + 599ms));
    EXPECT_TRUE(pace.isDue(start + 600ms));
}

TEST(PartialPaceTest, WithoutNewSpeechThereIsNothingToLookAt)
{
    PartialPace pace;
    pace.hear(tones::greeting());
    pace.looked(start, start + 1ms);
    pace.hear(tones::silence(60));
    EXPECT_FALSE(pace.isDue(start + 1min));
    pace.hear(tones::greeting());
    EXPECT_TRUE(pace.isDue(start + 1min));
}

} // namespace
} // namespace tavrin
