#include "speech/LiveTranscriber.h"

#include "support/QtPrinters.h"
#include "support/ports/InMemoryPermissions.h"
#include "support/ports/VirtualTime.h"
#include "support/sound/InMemorySpeechRecognizers.h"

#include <gtest/gtest.h>

#include <optional>
#include <thread>

using namespace std::chrono_literals;

namespace tavrin {
namespace {

const Error notPossible{"TavrinLiveSpeech", 1, QStringLiteral("实时语音识别当前不可用")};

class LiveTranscriberTest : public ::testing::Test {
protected:
    testing::VirtualTime time;
    testing::InMemoryLiveSpeechRecognizer recognizer;
    testing::InMemoryPermissions permissions;
    std::optional<LiveTranscriber> transcriber{std::in_place, recognizer, permissions, time, [] {
                                                   return QStringList{"Tavrin", "Anna"};
                                               }};
    QStringList updates;

    Result<void> start()
    {
        return transcriber->startWithUpdate([this](const QString& text) { updates.append(text); });
    }

    void hear(std::size_t run, const QString& text, bool isFinal = false)
    {
        recognizer.calls.at(run).answer(text, isFinal);
        time.advance(0s);
    }
};

class LiveTranscriberStatusTest : public LiveTranscriberTest,
                                  public ::testing::WithParamInterface<AuthorizationStatus> { };

TEST_P(LiveTranscriberStatusTest, WithoutPermissionItFailsAndAsksNobody)
{
    permissions.speech = GetParam();

    const Result<void> started = start();

    ASSERT_FALSE(started);
    EXPECT_EQ(started.error(), notPossible);
    EXPECT_EQ(permissions.speechRequests, 0);
    EXPECT_TRUE(recognizer.calls.empty());
}

INSTANTIATE_TEST_SUITE_P(NotAuthorized, LiveTranscriberStatusTest,
    ::testing::Values(AuthorizationStatus::NotDetermined, AuthorizationStatus::Denied,
        AuthorizationStatus::Restricted),
    testing::authorizationName);

TEST_F(LiveTranscriberTest, AnUnavailableRecognizerFailsTheSameWay)
{
    recognizer.available = false;

    const Result<void> started = start();

    ASSERT_FALSE(started);
    EXPECT_EQ(started.error(), notPossible);
}

TEST_F(LiveTranscriberTest, SpeechIsRecognizedAsPunctuatedDictationWithPartialResults)
{
    ASSERT_TRUE(start());

    ASSERT_EQ(recognizer.calls.size(), 1);
    EXPECT_EQ(recognizer.calls[0].request,
        (SpeechRequest{.shouldReportPartialResults = true,
            .taskHint = SpeechTaskHint::Dictation,
            .contextualStrings = {"Tavrin", "Anna"},
            .addsPunctuation = true}));
    EXPECT_TRUE(recognizer.calls[0].isRunning());
}

TEST_F(LiveTranscriberTest, EveryTextReplacesTheOneBefore)
{
    ASSERT_TRUE(start());
    hear(0, " so ");
    hear(0, "so far\n");
    hear(0, "so far so good", true);

    EXPECT_EQ(updates, (QStringList{"so", "so far", "so far so good"}));
}

TEST_F(LiveTranscriberTest, WhiteSpaceIsNoText)
{
    ASSERT_TRUE(start());
    hear(0, " \n\t");
    hear(0, "");

    EXPECT_TRUE(updates.isEmpty());
}

TEST_F(LiveTranscriberTest, AnErrorDoesNotEndTheRun)
{
    ASSERT_TRUE(start());
    recognizer.calls[0].fail({"SomeEngine", 3, "hiccup"});
    hear(0, "still here");

    EXPECT_EQ(updates, QStringList{"still here"});
}

TEST_F(LiveTranscriberTest, TextsArriveOnTheMainThread)
{
    ASSERT_TRUE(start());
    std::thread([&] { recognizer.calls[0].answer("from afar", false); }).join();
    EXPECT_TRUE(updates.isEmpty());

    time.advance(0s);
    EXPECT_EQ(updates, QStringList{"from afar"});
}

TEST_F(LiveTranscriberTest, StoppingEndsTheTaskAndDropsWhatIsUnderWay)
{
    ASSERT_TRUE(start());
    recognizer.calls[0].answer("too late", false);
    transcriber->stop();
    recognizer.calls[0].answer("much too late", false);
    time.advance(0s);

    EXPECT_FALSE(recognizer.calls[0].isRunning());
    EXPECT_TRUE(updates.isEmpty());
    EXPECT_EQ(time.pending(), 0);
}

TEST_F(LiveTranscriberTest, StoppingWhileNothingRunsIsSafe)
{
    transcriber->stop();
    transcriber->stop();

    EXPECT_TRUE(recognizer.calls.empty());
}

TEST_F(LiveTranscriberTest, ANewRunShowsOnlyWhatIsSaidInIt)
{
    ASSERT_TRUE(start());
    recognizer.calls[0].answer("before", false);
    transcriber->stop();
    ASSERT_TRUE(start());
    recognizer.calls[0].answer("before", false);
    hear(1, "after");

    EXPECT_EQ(updates, QStringList{"after"});
}

TEST_F(LiveTranscriberTest, StartingEndsTheRunBefore)
{
    ASSERT_TRUE(start());
    ASSERT_TRUE(start());

    EXPECT_FALSE(recognizer.calls[0].isRunning());
    EXPECT_TRUE(recognizer.calls[1].isRunning());
}

TEST_F(LiveTranscriberTest, AStartThatIsNotAllowedLeavesTheRunAlone)
{
    ASSERT_TRUE(start());
    permissions.speech = AuthorizationStatus::Denied;
    EXPECT_FALSE(start());
    hear(0, "still listening");

    EXPECT_TRUE(recognizer.calls[0].isRunning());
    EXPECT_EQ(updates, QStringList{"still listening"});
}

TEST_F(LiveTranscriberTest, TheDevicesErrorIsPassedOn)
{
    recognizer.startFailure = Error{"Microphone", 7, "unplugged"};

    const Result<void> started = start();

    ASSERT_FALSE(started);
    EXPECT_EQ(started.error(), (Error{"Microphone", 7, "unplugged"}));
    transcriber->stop();
}

TEST_F(LiveTranscriberTest, TheRunBeforeEndsBeforeTheDeviceIsAskedForAgain)
{
    ASSERT_TRUE(start());
    recognizer.startFailure = Error{"Microphone", 7, "unplugged"};

    EXPECT_FALSE(start());

    EXPECT_FALSE(recognizer.calls[0].isRunning());
}

TEST_F(LiveTranscriberTest, AnUpdateMayStopTheRun)
{
    ASSERT_TRUE(transcriber->startWithUpdate([this](const QString& text) {
        transcriber->stop();
        updates.append(text);
    }));
    hear(0, "enough");
    hear(0, "more");

    EXPECT_EQ(updates, QStringList{"enough"});
}

TEST_F(LiveTranscriberTest, TextThatArrivesAfterTheTranscriberIsGoneIsDropped)
{
    ASSERT_TRUE(start());
    recognizer.calls[0].answer("under way", false);
    transcriber.reset();
    hear(0, "late");

    EXPECT_TRUE(updates.isEmpty());
}

} // namespace
} // namespace tavrin
