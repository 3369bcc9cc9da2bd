#include "platform/linux/speech/engine/EngineFileRecognizer.h"

#include "platform/speech/SpeechAvailability.h"
#include "support/QtPrinters.h"
#include "support/sound/HeardResults.h"
#include "support/sound/ScriptedSpeechEngine.h"
#include "support/sound/Sounds.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <latch>

using namespace std::chrono_literals;

namespace tavrin {
namespace {

class EngineFileRecognizerTest : public ::testing::Test {
protected:
    QTemporaryDir folder;
    testing::ScriptedSpeechEngine* engine =
        new testing::ScriptedSpeechEngine; // The thread owns it.
    testing::HeardResults heard;
    std::shared_ptr<SpeechEngineThread> thread;

    /// Once the engine has been set up.
    EngineFileRecognizer recognizer()
    {
        if (!thread)
            thread = std::make_shared<SpeechEngineThread>(std::unique_ptr<SpeechEngine>(engine));
        return EngineFileRecognizer(thread);
    }

    QString written(const QByteArray& content) const
    {
        QString path = folder.filePath("recording.wav");
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
        return path;
    }

    QString recording(const std::vector<qint16>& samples) const
    {
        return written(testing::wavFile(samples));
    }

    /// Sound, a pause, sound … : one second each of tone.
    static std::vector<qint16> phrases(int count)
    {
        std::vector<qint16> samples;
        for (int phrase = 0; phrase < count; ++phrase) {
            const auto sound = testing::tone(1);
            samples.insert(samples.end(), sound.begin(), sound.end());
            samples.insert(samples.end(), 4'000, 0);
        }
        return samples;
    }

    QString recognized(const QString& path, const SpeechRequest& request = {})
    {
        auto recognizer = this->recognizer();
        const auto task = recognizer.recognize(path, request, heard.handler());
        return heard.text();
    }
};

TEST_F(EngineFileRecognizerTest, TheWholeRecordingIsHeardWithItsRequest)
{
    engine->texts = QStringList{" good  morning "};
    const auto samples = phrases(2);
    const SpeechRequest request{.contextualStrings = {"Tavrin"}};

    EXPECT_EQ(recognized(recording(samples), request), "good morning");

    const auto notes = engine->notes();
    EXPECT_EQ(notes.opened, 1);
    ASSERT_EQ(notes.requests.size(), 1U);
    EXPECT_EQ(notes.requests[0], request);
    EXPECT_EQ(notes.utterances[0], samples);
    ASSERT_EQ(heard.all().size(), 1U);
    EXPECT_TRUE(heard.all()[0]->isFinal);
}

TEST_F(EngineFileRecognizerTest, WhyTheLastRecognitionFailedIsKnownUntilOneSucceeds)
{
    engine->finishFailure = speechEngineError(SpeechEngineError::NoAnswer);
    auto recognizer = this->recognizer();
    EXPECT_EQ(recognizer.availability().lastFailure, "");
    const QString path = recording(phrases(1));
    const auto failed = recognizer.recognize(path, {}, heard.handler());
    ASSERT_FALSE(heard.outcome());
    EXPECT_EQ(recognizer.availability().lastFailure,
        QString::fromUtf8("语音识别服务器没有及时响应，请稍后重试。"));
    EXPECT_TRUE(recognizer.availability().isAvailable);

    engine->finishFailure.reset();
    testing::HeardResults again;
    const auto succeeded = recognizer.recognize(path, {}, again.handler());
    ASSERT_TRUE(again.outcome());
    EXPECT_EQ(recognizer.availability().lastFailure, "");
}

TEST_F(EngineFileRecognizerTest, NeitherACancelledRecognitionNorABrokenFileBlamesTheEngine)
{
    engine->finishFailure = speechEngineError(SpeechEngineError::Cancelled);
    auto recognizer = this->recognizer();
    const auto cancelled = recognizer.recognize(recording(phrases(1)), {}, heard.handler());
    ASSERT_FALSE(heard.outcome());
    EXPECT_EQ(recognizer.availability().lastFailure, "");

    testing::HeardResults again;
    const auto broken = recognizer.recognize(written("no sound"), {}, again.handler());
    ASSERT_FALSE(again.outcome());
    EXPECT_EQ(recognizer.availability().lastFailure, "");
}

TEST_F(EngineFileRecognizerTest, SilenceAnswersNothingWithoutAskingTheEngine)
{
    engine->texts = QStringList{"invented"};

    EXPECT_EQ(recognized(recording(std::vector<qint16>(48'000))), "");
    EXPECT_TRUE(engine->notes().requests.empty());
    EXPECT_TRUE(heard.all()[0]->isFinal);
}

TEST_F(EngineFileRecognizerTest, ALongRecordingIsHeardInStretchesWithoutLosingASample)
{
    engine->longest = 5s;
    for (int stretch = 0; stretch < 200; ++stretch)
        engine->texts.append(QStringLiteral("part%1").arg(stretch));
    const auto samples = phrases(480); // Ten minutes.

    const QString text = recognized(recording(samples));

    std::vector<qint16> joined;
    const auto notes = engine->notes();
    for (const auto& utterance : notes.utterances) {
        EXPECT_LE(utterance.size(), 5U * 16'000);
        joined.insert(joined.end(), utterance.begin(), utterance.end());
    }
    EXPECT_EQ(joined, samples);
    EXPECT_GE(notes.utterances.size(), 120U);
    EXPECT_TRUE(text.startsWith("part0 part1 part2"));
    EXPECT_TRUE(text.endsWith(QStringLiteral("part%1").arg(notes.utterances.size() - 1)));
}

TEST_F(EngineFileRecognizerTest, AZeroByteRecordingIsAnError)
{
    EXPECT_EQ(recognized(written({})), "TavrinAudio 2");
}

TEST_F(EngineFileRecognizerTest, ATruncatedOrDamagedRecordingIsAnError)
{
    EXPECT_EQ(recognized(written(testing::wavFile(phrases(1)).first(20))), "TavrinAudio 3");
}

TEST_F(EngineFileRecognizerTest, ARecordingThatIsNotThereIsAnError)
{
    EXPECT_EQ(recognized(folder.filePath("missing.wav")), "TavrinAudio 1");
}

TEST_F(EngineFileRecognizerTest, AnEnginesFailureIsPassedOn)
{
    engine->finishFailure = Error{"Engine", 4, "slow"};

    EXPECT_EQ(recognized(recording(phrases(1))), "Engine 4");
}

TEST_F(EngineFileRecognizerTest, ARecordingOverWhichTheRecogniserWasLostIsTriedOnceMore)
{
    engine->texts = QStringList{"", "understood"};
    engine->lostFeeds = 1;
    EXPECT_EQ(recognized(recording(phrases(1))), "understood");
    EXPECT_EQ(engine->notes().utterances.back(), phrases(1));
}

TEST_F(EngineFileRecognizerTest, ARecogniserThatHangsAtTheEndIsTriedOnceMoreToo)
{
    engine->texts = QStringList{"", "understood"};
    engine->finishFailure = speechEngineError(SpeechEngineError::RecognizerHung);
    engine->finishFailures = 1;
    EXPECT_EQ(recognized(recording(phrases(1))), "understood");
}

TEST_F(EngineFileRecognizerTest, ARecordingThatLosesEveryRecogniserIsAnError)
{
    engine->lostFeeds = 100;
    auto recognizer = this->recognizer();
    const auto task = recognizer.recognize(recording(phrases(1)), {}, heard.handler());
    EXPECT_EQ(heard.text(), "TavrinSpeechEngine 8");
    EXPECT_EQ(engine->notes().requests.size(), 2U);
    EXPECT_EQ(
        recognizer.availability().lastFailure, QStringLiteral("语音识别程序意外退出，请重试。"));
}

TEST_F(EngineFileRecognizerTest, AnEngineThatCannotBeginIsUnavailable)
{
    engine->failure = Error{"Engine", 1, "no model"};

    EXPECT_FALSE(recognizer().isAvailable());
    EXPECT_FALSE(recognizer().availability().isAvailable);
    EXPECT_EQ(recognized(recording(phrases(1))), "Engine 1");
}

TEST_F(EngineFileRecognizerTest, ACancelledRequestIsAnsweredWithAnError)
{
    const QString path = recording(phrases(1));
    auto recognizer = this->recognizer();
    std::latch cancelled(1);
    thread->post([&] { cancelled.wait(); }); // Keeps the engine busy.
    auto task = recognizer.recognize(path, {}, heard.handler());
    task.reset();
    cancelled.count_down();

    EXPECT_EQ(heard.text(), "TavrinSpeechEngine 2");
    EXPECT_TRUE(engine->notes().requests.empty());
}

TEST_F(EngineFileRecognizerTest, RequestsAreAnsweredOneAfterAnother)
{
    engine->texts = QStringList{"first", "second"};
    const QString path = recording(phrases(1));
    auto recognizer = this->recognizer();
    testing::HeardResults second;
    const auto firstTask = recognizer.recognize(path, {}, heard.handler());
    const auto secondTask = recognizer.recognize(path, {}, second.handler());

    EXPECT_EQ(heard.text(), "first");
    EXPECT_EQ(second.text(), "second");
    EXPECT_EQ(engine->notes().opened, 1);
}

TEST_F(EngineFileRecognizerTest, EveryRequestIsAnsweredBeforeTheThreadEnds)
{
    const QString path = recording(phrases(1));
    {
        auto recognizer = this->recognizer();
        for (int request = 0; request < 10; ++request)
            recognizer.recognize(path, {}, heard.handler()).reset();
        thread.reset();
    }
    EXPECT_EQ(heard.all().size(), 10U);
}

} // namespace
} // namespace tavrin
