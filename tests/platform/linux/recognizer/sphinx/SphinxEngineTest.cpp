#include "platform/linux/recognizer/sphinx/SphinxEngine.h"

#include "platform/linux/speech/engine/EngineFileRecognizer.h"
#include "platform/linux/speech/engine/SpeechEngineTexts.h"
#include "platform/speech/SpeechAvailability.h"
#include "support/QtPrinters.h"
#include "support/sound/HeardResults.h"
#include "support/sound/Voices.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <cstring>

namespace tavrin {
namespace {

class SphinxEngineTest : public ::testing::Test {
protected:
    QTemporaryDir folder;
    std::shared_ptr<SpeechEngineThread> thread = std::make_shared<SpeechEngineThread>(
        std::make_unique<SphinxEngine>(findSphinxModel({}, sphinxModelRoots())));
    EngineFileRecognizer recognizer{thread};

    QString spoken(const QString& text, const QString& voice = "rms") const
    {
        QString path = folder.filePath("spoken.wav");
        EXPECT_TRUE(testing::speak(text, voice, path));
        return path;
    }

    static std::vector<qint16> samplesOf(const QString& path)
    {
        constexpr qsizetype headerSize = 44;
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        const QByteArray sound = file.readAll().mid(headerSize);
        std::vector<qint16> samples(static_cast<std::size_t>(sound.size()) / sizeof(qint16));
        std::memcpy(samples.data(), sound.data(), samples.size() * sizeof(qint16));
        return samples;
    }

    QString recognized(const QString& path, const QStringList& terms = {})
    {
        const testing::HeardResults heard;
        const auto task = recognizer.recognize(path, {.contextualStrings = terms}, heard.handler());
        return heard.text();
    }
};

TEST_F(SphinxEngineTest, ASpokenSentenceIsUnderstood)
{
    EXPECT_EQ(recognized(spoken("the weather is nice today")), "the weather is nice today");
}

TEST_F(SphinxEngineTest, AFavouredNameIsUnderstoodAndSpelledAsTheUserSpellsIt)
{
    const QString path = spoken("please ask chat g p t to write the letter");

    EXPECT_FALSE(recognized(path).contains("ChatGPT"));
    EXPECT_TRUE(recognized(path, {"ChatGPT", "Notion"}).contains("ChatGPT"));
}

TEST_F(SphinxEngineTest, TermsThatCannotBeSaidDoNoHarm)
{
    const QStringList terms{"", " \n", "\x01\x02", QStringLiteral("张小明"), QString(10'000, u'a'),
        "a(2)", "<s>", "</s>", "[noise]", "\\end\\", "\\data\\", "-99 x", "New York", "the",
        QString(QChar(0)) + "x", "C++", "notion", "Notion", "NOTION"};

    EXPECT_EQ(recognized(spoken("the weather is nice today"), terms), "the weather is nice today");
}

TEST_F(SphinxEngineTest, TheModelIsOpenedOnceForAllRecordings)
{
    const QString path = spoken("good morning");
    for (int recording = 0; recording < 5; ++recording)
        EXPECT_EQ(recognized(path), "good morning");
}

TEST_F(SphinxEngineTest, ALiveUtteranceSurvivesARecordingInBetween)
{
    const QString path = spoken("good morning");
    const testing::HeardResults heard;
    std::unique_ptr<Utterance> live;
    std::vector<qint16> samples(16'000);
    thread->post([&] {
        live = thread->engine()
                   .begin({.shouldReportPartialResults = true, .contextualStrings = {}}, {})
                   .value();
        ASSERT_TRUE(live->feed(samples));
    });
    const auto task = recognizer.recognize(path, {}, heard.handler());
    EXPECT_EQ(heard.text(), "good morning");

    const testing::HeardResults again;
    thread->post([&] {
        ASSERT_TRUE(live->feed(samples));
        const QString text = live->partialText().trimmed();
        live.reset();
        again.handler()(SpeechResult{text, true});
    });
    EXPECT_EQ(again.text(), "");
}

TEST_F(SphinxEngineTest, LiveTextKeepsWhatWasSaidBeforeAPause)
{
    constexpr std::size_t block = speechSampleRate / 10;
    const std::vector<qint16> said = samplesOf(spoken("good morning"));
    std::vector<qint16> samples = said;
    samples.resize(samples.size() + speechSampleRate); // A second of silence.
    samples.insert(samples.end(), said.begin(), said.end());
    const testing::HeardResults heard;
    thread->post([&] {
        const auto live =
            thread->engine()
                .begin({.shouldReportPartialResults = true, .contextualStrings = {}}, {})
                .value();
        for (std::size_t at = 0; at + block <= samples.size(); at += block)
            ASSERT_TRUE(live->feed(std::span(samples).subspan(at, block)));
        heard.handler()(SpeechResult{live->partialText().simplified(), true});
    });

    EXPECT_EQ(heard.text(), "good morning good morning");
}

TEST_F(SphinxEngineTest, AModelThatCannotBeLoadedIsSaidSo)
{
    const auto installed = findSphinxModel({}, sphinxModelRoots());
    ASSERT_TRUE(installed);
    const QString model = folder.filePath("en-us");
    ASSERT_TRUE(QDir().mkpath(model));
    ASSERT_TRUE(QFile::link(installed->acousticModel, model + "/sounds"));
    ASSERT_TRUE(QFile::link(installed->dictionary, model + "/words.dict"));
    QFile languageModel(model + "/words.lm");
    ASSERT_TRUE(languageModel.open(QIODevice::WriteOnly));
    languageModel.write("nonsense\n");
    languageModel.close();
    EngineFileRecognizer broken(
        std::make_shared<SpeechEngineThread>(std::make_unique<SphinxEngine>(sphinxModelIn(model))));
    const testing::HeardResults heard;
    const auto task = broken.recognize(spoken("good morning"), {}, heard.handler());

    EXPECT_EQ(heard.text(), "TavrinSpeechEngine 1");
    EXPECT_FALSE(broken.isAvailable());
    EXPECT_EQ(broken.availability().text.en, texts::brokenSphinxModel.en);
}

} // namespace
} // namespace tavrin
