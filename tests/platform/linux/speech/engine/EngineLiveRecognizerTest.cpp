#include "platform/linux/speech/engine/EngineLiveRecognizer.h"

#include "support/QtPrinters.h"
#include "support/sound/HeardResults.h"
#include "support/sound/ScriptedSpeechEngine.h"
#include "support/sound/Sounds.h"

#include <gtest/gtest.h>

#include <latch>

using namespace std::chrono_literals;

namespace tavrin {
namespace {

using SamplesHandler = std::function<void(std::span<const qint16>)>;

/// A microphone that the test speaks into.
struct Microphone {
    SamplesHandler handler;
    int captures = 0;
    std::optional<Error> failure;

    OpenSpeechCapture opener()
    {
        return [this](SamplesHandler samples) -> Result<std::unique_ptr<SpeechCapture>> {
            if (failure)
                return tavrin::failure(*failure);
            handler = std::move(samples);
            ++captures;
            return std::make_unique<Capture>(*this);
        };
    }

private:
    class Capture final : public SpeechCapture {
    public:
        explicit Capture(Microphone& microphone)
            : m_microphone(microphone)
        {
        }

        ~Capture() override { --m_microphone.captures; }

        Capture(const Capture&) = delete;
        Capture& operator=(const Capture&) = delete;

    private:
        Microphone& m_microphone;
    };
};

class EngineLiveRecognizerTest : public ::testing::Test {
protected:
    testing::ScriptedSpeechEngine* engine =
        new testing::ScriptedSpeechEngine; // The thread owns it.
    std::shared_ptr<SpeechEngineThread> thread =
        std::make_shared<SpeechEngineThread>(std::unique_ptr<SpeechEngine>(engine));
    Microphone microphone;
    EngineLiveRecognizer recognizer{thread, microphone.opener()};
    testing::HeardResults heard;

    std::unique_ptr<SpeechTask> start(const SpeechRequest& request = {})
    {
        auto task = recognizer.start(request, heard.handler());
        EXPECT_TRUE(task);
        return task ? std::move(*task) : nullptr;
    }

    /// Returns when the engine has heard everything so far.
    void settle() const
    {
        std::latch done(1);
        thread->post([&] { done.count_down(); });
        done.wait();
    }

    void say(const std::vector<qint16>& samples) const
    {
        microphone.handler(samples);
        settle();
    }
};

TEST_F(EngineLiveRecognizerTest, TextsComeWhileSomebodySpeaks)
{
    const SpeechRequest request{.shouldReportPartialResults = true, .contextualStrings = {"Anna"}};
    const auto task = start(request);
    say(std::vector<qint16>(1'600));
    say(testing::tone(0.3));
    say(testing::tone(0.1));

    EXPECT_EQ(heard.partialTexts(), (QStringList{"heard 6400", "heard 8000"}));
    EXPECT_EQ(engine->notes().requests.at(0), request);
}

TEST_F(EngineLiveRecognizerTest, WhatIsInventedFromSilenceIsNotReported)
{
    const auto task = start();
    for (int second = 0; second < 40; ++second)
        say(std::vector<qint16>(16'000));

    EXPECT_TRUE(heard.all().empty());
    EXPECT_EQ(engine->notes().utterances.at(0).size(), 40U * 16'000);
}

TEST_F(EngineLiveRecognizerTest, TheSameTextIsReportedOnce)
{
    const auto task = start();
    say(testing::tone(0.5));
    say({});

    EXPECT_EQ(heard.partialTexts(), QStringList{"heard 8000"});
}

TEST_F(EngineLiveRecognizerTest, SoundWaitsWhileTheEngineIsBusy)
{
    const auto task = start();
    std::latch loaded(1);
    thread->post([&] { loaded.wait(); });
    for (int block = 0; block < 10; ++block)
        microphone.handler(testing::tone(0.1));
    loaded.count_down();
    settle();

    EXPECT_EQ(heard.partialTexts(), QStringList{"heard 16000"});
}

TEST_F(EngineLiveRecognizerTest, SoundThatWaitsTooLongEndsTheRun)
{
    const auto task = start();
    std::latch loaded(1);
    thread->post([&] { loaded.wait(); });
    for (int second = 0; second < 31; ++second)
        microphone.handler(testing::tone(1));
    loaded.count_down();

    EXPECT_EQ(heard.text(), "TavrinSpeechEngine 7");
    say(testing::tone(1));
    EXPECT_EQ(heard.all().size(), 1U);
}

TEST_F(EngineLiveRecognizerTest, EndingTheTaskEndsCaptureAndUtterance)
{
    auto task = start();
    say(testing::tone(0.5));
    EXPECT_EQ(microphone.captures, 1);
    task.reset();
    settle();

    EXPECT_EQ(microphone.captures, 0);
    EXPECT_EQ(engine->notes().givenUp, 1);
}

TEST_F(EngineLiveRecognizerTest, AFailingEngineIsReportedOnceAndNotAskedAgain)
{
    engine->failure = Error{"Engine", 3, "gone"};
    const auto task = start();
    say(testing::tone(0.5));
    say(testing::tone(0.5));

    ASSERT_EQ(heard.all().size(), 1U);
    EXPECT_EQ(heard.text(), "Engine 3");
}

TEST_F(EngineLiveRecognizerTest, WhenTheRecogniserIsLostTheTextGoesOnBehindWhatItUnderstood)
{
    const auto task = start();
    say(testing::tone(0.5));
    engine->lostFeeds = 1;
    say(testing::tone(0.25));
    say(testing::tone(0.25));

    EXPECT_EQ(heard.partialTexts(),
        (QStringList{"heard 8000", "heard 8000 heard 4000", "heard 8000 heard 8000"}));
    EXPECT_EQ(engine->notes().requests.size(), 2U);
}

TEST_F(EngineLiveRecognizerTest, ARecogniserThatIsLostTimeAndAgainEndsTheRun)
{
    const auto task = start();
    say(testing::tone(0.5));
    engine->lostFeeds = 4;
    say(testing::tone(0.25));
    say(testing::tone(0.25));

    EXPECT_EQ(heard.text(), "TavrinSpeechEngine 8");
    EXPECT_EQ(heard.partialTexts(), QStringList{"heard 8000"});
    EXPECT_EQ(engine->notes().requests.size(), 4U);
}

TEST_F(EngineLiveRecognizerTest, ADeviceThatCannotBeOpenedFailsTheStart)
{
    microphone.failure = Error{"TavrinAudio", 11, "no microphone"};

    const auto task = recognizer.start({}, heard.handler());

    ASSERT_FALSE(task);
    EXPECT_EQ(task.error().code, 11);
}

TEST_F(EngineLiveRecognizerTest, AnEngineThatHearsOnlyRecordingsIsNotAvailable)
{
    EXPECT_TRUE(recognizer.isAvailable());
    engine->live = false;
    EXPECT_FALSE(recognizer.isAvailable());
}

} // namespace
} // namespace tavrin
