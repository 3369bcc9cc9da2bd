#include "platform/linux/recognizer/onnx/WholeTranscript.h"

#include "platform/linux/recognizer/onnx/Tones.h"
#include "platform/linux/speech/engine/SpeechEngineErrors.h"
#include "support/QtPrinters.h"

#include <gtest/gtest.h>

namespace tavrin {
namespace {

namespace tones = testing::tones;

constexpr qsizetype second = 16'000;

/// Stands in for a model: a stretch's text is its length in whole seconds.
class WholeTranscriptTest : public ::testing::Test {
protected:
    std::vector<std::size_t> stretches;
    std::stop_source stop;

    WholeTranscript transcript(qsizetype longest)
    {
        const auto decode = [this](std::span<const qint16> samples) -> Result<QString> {
            stretches.push_back(samples.size());
            return QString::number(samples.size() / second);
        };
        return {decode, longest, stop.get_token()};
    }

    /// A second of sound and one of silence.
    static std::vector<qint16> phrase()
    {
        std::vector<qint16> samples = testing::tone(1);
        tones::append(samples, tones::silence(1));
        return samples;
    }
};

TEST_F(WholeTranscriptTest, WhatIsShortIsDecodedAsAWholeAtTheEnd)
{
    WholeTranscript whole = transcript(10 * second);
    for (int i = 0; i < 5; ++i)
        ASSERT_TRUE(whole.add(phrase()));
    EXPECT_TRUE(stretches.empty());
    EXPECT_EQ(whole.textSoFar(), "10");
}

TEST_F(WholeTranscriptTest, WhatIsLongIsCutAtPausesAndNothingIsLost)
{
    WholeTranscript whole = transcript(5 * second);
    for (int i = 0; i < 6; ++i)
        ASSERT_TRUE(whole.add(phrase()));
    ASSERT_TRUE(whole.textSoFar());

    std::size_t sum = 0;
    for (const std::size_t stretch : stretches) {
        EXPECT_LE(stretch, static_cast<std::size_t>(5 * second));
        sum += stretch;
        const double position = static_cast<double>(sum) / second;
        const bool isInPause = position - 2 * static_cast<int>(position / 2) >= 1;
        EXPECT_TRUE(isInPause || sum == static_cast<std::size_t>(12 * second)) << position;
    }
    EXPECT_EQ(sum, static_cast<std::size_t>(12 * second));
    EXPECT_GT(stretches.size(), 2U);
}

TEST_F(WholeTranscriptTest, StretchesThatAreWholeAreNotDecodedAgain)
{
    WholeTranscript whole = transcript(5 * second);
    for (int i = 0; i < 3; ++i)
        ASSERT_TRUE(whole.add(phrase()));
    const std::size_t settled = stretches.size();
    EXPECT_EQ(settled, 1U);
    ASSERT_TRUE(whole.textSoFar());
    ASSERT_TRUE(whole.textSoFar());
    EXPECT_EQ(stretches.size(), settled + 2);
    EXPECT_EQ(stretches[1], stretches[2]);
}

TEST_F(WholeTranscriptTest, SilenceHasNoText)
{
    WholeTranscript whole = transcript(5 * second);
    ASSERT_TRUE(whole.add(tones::silence(20)));
    EXPECT_EQ(whole.textSoFar(), "");
    EXPECT_EQ(transcript(second).textSoFar(), "") << "nothing at all";
    EXPECT_TRUE(stretches.empty());
}

TEST_F(WholeTranscriptTest, AfterTheRequestToStopNothingIsDecoded)
{
    WholeTranscript whole = transcript(5 * second);
    ASSERT_TRUE(whole.add(phrase()));
    stop.request_stop();
    EXPECT_EQ(whole.textSoFar().error(), speechEngineError(SpeechEngineError::Cancelled));
    EXPECT_EQ(
        whole.add(testing::tone(10)).error(), speechEngineError(SpeechEngineError::Cancelled));
    EXPECT_TRUE(stretches.empty());
}

TEST_F(WholeTranscriptTest, WhatTheModelFailsAtIsPassedOn)
{
    const Error unusable = speechEngineError(SpeechEngineError::ModelUnusable);
    WholeTranscript whole([&](auto) -> Result<QString> { return failure(unusable); }, second, {});
    EXPECT_EQ(whole.add(phrase()).error(), unusable);
    EXPECT_EQ(whole.textSoFar().error(), unusable);
}

} // namespace
} // namespace tavrin
