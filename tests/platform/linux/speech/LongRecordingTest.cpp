#include "platform/linux/audio/AacFile.h"
#include "platform/linux/audio/AudioDecoder.h"
#include "platform/linux/recognizer/sphinx/SphinxEngine.h"
#include "platform/linux/speech/engine/EngineFileRecognizer.h"
#include "platform/linux/speech/engine/SpeechLevels.h"
#include "support/QtPrinters.h"
#include "support/sound/HeardResults.h"
#include "support/sound/Voices.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>

namespace tavrin {
namespace {

constexpr int highQuality = 96;

const QStringList& sentences()
{
    static const QStringList all{
        "the meeting starts at nine tomorrow morning",
        "i will call you back when i get home",
        "we need to talk about the budget for next year",
        "the train was late again because of the snow",
        "can you check whether the door is locked",
        "my sister is coming to visit us in the summer",
        "he left his keys on the kitchen table",
        "the weather is nice today and we are going home",
        "the children are playing in the garden behind the house",
        "i have not read that book but i heard it is good",
        "turn left at the church and follow the river",
        "she asked me a question that i could not answer",
        "it is going to rain so take an umbrella with you",
        "the doctor told him to drink more water",
        "nobody knew how to open the old window",
        "our teacher explained the problem one more time",
        "what time does the library close on saturday",
        "the music was so loud that we could not talk",
    };
    return all;
}

/// Minutes of speech, which the real recogniser hears in several stretches.
class LongRecordingTest : public ::testing::Test {
protected:
    QTemporaryDir folder;
    QString path = folder.filePath("recording.m4a");
    std::vector<qint16> samples;

    void append(const QString& file)
    {
        auto decoder = AudioDecoder::open(file);
        ASSERT_TRUE(decoder);
        for (auto piece = decoder->read(); piece && !piece->empty(); piece = decoder->read())
            samples.insert(samples.end(), piece->begin(), piece->end());
    }

    /// Says the sentences with short pauses in between, again until they last @p seconds.
    void record(int seconds)
    {
        constexpr std::size_t pause = AacFile::sampleRate * 2 / 5;
        for (const QString& sentence : sentences()) {
            const QString spoken = folder.filePath("spoken.wav");
            ASSERT_TRUE(testing::speak(sentence, "rms", spoken));
            append(spoken);
            samples.resize(samples.size() + pause);
        }
        const std::size_t passage = samples.size();
        const auto file = AacFile::create(path, highQuality);
        ASSERT_TRUE(file);
        for (m_times = 0;
             m_times * passage < static_cast<std::size_t>(seconds) * AacFile::sampleRate; ++m_times)
            ASSERT_EQ((*file)->add(samples), Error{});
    }

    [[nodiscard]] QStringList said() const
    {
        QStringList words;
        for (std::size_t i = 0; i < m_times; ++i)
            words += sentences().join(u' ').split(u' ');
        return words;
    }

private:
    std::size_t m_times = 0;
};

/// How many words both lists have in the same order.
int wordsInCommon(const QStringList& one, const QStringList& other)
{
    std::vector<int> longest(static_cast<std::size_t>(other.size()) + 1);
    for (const QString& word : one) {
        int before = 0;
        for (std::size_t i = 1; i < longest.size(); ++i) {
            const int both = word == other[static_cast<qsizetype>(i) - 1] ? before + 1 : 0;
            before = std::exchange(longest[i], std::max({longest[i], longest[i - 1], both}));
        }
    }
    return longest.back();
}

TEST_F(LongRecordingTest, NoWordIsLostWhereItIsCut)
{
    ASSERT_NO_FATAL_FAILURE(record(60));
    SphinxEngine engine(findSphinxModel({}, sphinxModelRoots()));
    SpeechLevels levels;
    levels.append(samples);
    const auto longest =
        static_cast<qsizetype>(engine.longestUtterance().count() * speechSampleRate);
    ASSERT_GE(cutAtPauses(levels, longest).size(), 3U);
    EngineFileRecognizer recognizer(std::make_shared<SpeechEngineThread>(
        std::make_unique<SphinxEngine>(findSphinxModel({}, sphinxModelRoots()))));
    const testing::HeardResults heard;

    const auto task = recognizer.recognize(path, {}, heard.handler());

    const QStringList understood = heard.text().split(u' ');
    const auto words = static_cast<double>(said().size());
    // The recogniser mistakes some words of a voice anyway, but no more here than elsewhere.
    EXPECT_GT(wordsInCommon(said(), understood), 0.98 * words) << qPrintable(heard.text());
    EXPECT_LT(static_cast<double>(understood.size()), 1.02 * words);
}

} // namespace
} // namespace tavrin
