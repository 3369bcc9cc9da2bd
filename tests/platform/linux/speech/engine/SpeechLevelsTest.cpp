#include "platform/linux/speech/engine/SpeechLevels.h"

#include "support/sound/Sounds.h"

#include <gtest/gtest.h>

#include <random>

namespace tavrin {
namespace {

constexpr qsizetype rate = 16'000;

std::vector<qint16> silence(double seconds)
{
    return std::vector<qint16>(static_cast<std::size_t>(seconds * static_cast<double>(rate)));
}

std::vector<qint16> noise(double seconds, double amplitude)
{
    std::mt19937 random(1);
    std::normal_distribution<double> distribution(0, amplitude * 32'767);
    std::vector<qint16> samples(static_cast<std::size_t>(seconds * static_cast<double>(rate)));
    for (qint16& sample : samples)
        sample = static_cast<qint16>(std::clamp(distribution(random), -32'000.0, 32'000.0));
    return samples;
}

SpeechLevels levelsOf(const std::vector<std::vector<qint16>>& parts)
{
    SpeechLevels levels;
    for (const auto& part : parts)
        levels.append(part);
    return levels;
}

bool hasSpeech(const std::vector<std::vector<qint16>>& parts)
{
    return levelsOf(parts).hasSpeech();
}

TEST(SpeechLevelsTest, EveryTwentyMillisecondsHaveALevel)
{
    const SpeechLevels levels = levelsOf({silence(0.02), testing::tone(0.05, 1.0)});

    ASSERT_EQ(levels.frames().size(), 3U); // The last 10 ms make no frame.
    EXPECT_EQ(levels.frames()[0], SpeechLevels::silentLevel);
    EXPECT_NEAR(levels.frames()[1], -3, 0.3); // A full sine is 3 dB below a square wave.
    EXPECT_EQ(levels.samples(), 1'120);
}

TEST(SpeechLevelsTest, TheSizeOfThePiecesDoesNotMatter)
{
    const auto sound = testing::tone(1, 0.3);
    SpeechLevels pieces;
    for (std::size_t i = 0; i < sound.size(); i += 77)
        pieces.append(std::span(sound).subspan(i, std::min<std::size_t>(77, sound.size() - i)));
    const SpeechLevels whole = levelsOf({sound});

    EXPECT_TRUE(std::ranges::equal(pieces.frames(), whole.frames()));
}

TEST(SpeechLevelsTest, NothingAndSilenceAreNoSpeech)
{
    EXPECT_FALSE(hasSpeech({}));
    EXPECT_FALSE(hasSpeech({silence(0.01)}));
    EXPECT_FALSE(hasSpeech({silence(10)}));
}

TEST(SpeechLevelsTest, SteadyNoiseAndHumAreNoSpeech)
{
    EXPECT_FALSE(hasSpeech({noise(10, 0.001)}));
    EXPECT_FALSE(hasSpeech({noise(10, 0.01)}));
    EXPECT_FALSE(hasSpeech({testing::tone(10, 0.02, 16'000, 1, 50)}));
}

TEST(SpeechLevelsTest, AClickIsNoSpeech)
{
    EXPECT_FALSE(hasSpeech({noise(2, 0.001), noise(0.04, 0.5), noise(2, 0.001)}));
    EXPECT_FALSE(
        hasSpeech({silence(1), noise(0.02, 0.5), silence(1), noise(0.02, 0.5), silence(1)}));
}

TEST(SpeechLevelsTest, AShortWordInALongRecordingIsSpeech)
{
    EXPECT_TRUE(hasSpeech({noise(60, 0.001), testing::tone(0.2, 0.1), noise(60, 0.001)}));
}

TEST(SpeechLevelsTest, AQuietVoiceAboveAQuietRoomIsSpeech)
{
    EXPECT_TRUE(hasSpeech({noise(1, 0.0003), testing::tone(0.5, 0.003), noise(1, 0.0003)}));
}

TEST(SpeechLevelsTest, AVoiceWithoutAnyPauseIsSpeech)
{
    EXPECT_TRUE(hasSpeech({testing::tone(3, 0.2)}));
}

TEST(SpeechLevelsTest, AShortRecordingIsNotCut)
{
    EXPECT_TRUE(cutAtPauses(levelsOf({}), 20 * rate).empty());
    EXPECT_EQ(cutAtPauses(levelsOf({testing::tone(20)}), 20 * rate),
        (std::vector<SampleRange>{{0, 20 * rate}}));
}

TEST(SpeechLevelsTest, ALongRecordingIsCutInItsPauses)
{
    const SpeechLevels levels = levelsOf(
        {testing::tone(6), silence(0.4), testing::tone(6), silence(0.4), testing::tone(6)});

    const std::vector<SampleRange> ranges = cutAtPauses(levels, 10 * rate);

    ASSERT_EQ(ranges.size(), 3U);
    EXPECT_NEAR(static_cast<double>(ranges[0].end) / rate, 6.2, 0.15);
    EXPECT_NEAR(static_cast<double>(ranges[1].end) / rate, 12.6, 0.15);
    EXPECT_EQ(ranges[1].begin, ranges[0].end);
    EXPECT_EQ(ranges[2], (SampleRange{ranges[1].end, levels.samples()}));
}

TEST(SpeechLevelsTest, ACutIsInTheMiddleOfItsPause)
{
    const SpeechLevels levels =
        levelsOf({testing::tone(6), noise(1.2, 0.001), testing::tone(6), silence(2)});

    const std::vector<SampleRange> ranges = cutAtPauses(levels, 10 * rate);

    ASSERT_EQ(ranges.size(), 2U);
    EXPECT_NEAR(static_cast<double>(ranges[0].end) / rate, 6.6, 0.05);
}

TEST(SpeechLevelsTest, SpeechWithoutPausesIsCutAllTheSame)
{
    const SpeechLevels levels = levelsOf({testing::tone(100)});

    const std::vector<SampleRange> ranges = cutAtPauses(levels, 10 * rate);

    qsizetype expected = 0;
    for (const SampleRange& range : ranges) {
        EXPECT_EQ(range.begin, expected);
        EXPECT_GT(range.end, range.begin);
        EXPECT_LE(range.end - range.begin, 10 * rate);
        expected = range.end;
    }
    EXPECT_EQ(expected, levels.samples());
}

TEST(SpeechLevelsTest, AnAbsurdlySmallLimitStillCoversEverything)
{
    const SpeechLevels levels = levelsOf({testing::tone(5)});
    const std::vector<SampleRange> ranges = cutAtPauses(levels, 1);

    EXPECT_EQ(ranges.front().begin, 0);
    EXPECT_EQ(ranges.back().end, levels.samples());
}

} // namespace
} // namespace tavrin
