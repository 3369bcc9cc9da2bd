#include "platform/linux/recognizer/RecognizerServer.h"

#include "platform/linux/speech/protocol/MessageChannel.h"
#include "support/QtPrinters.h"
#include "support/sound/ScriptedSpeechEngine.h"

#include <gtest/gtest.h>

#include <array>
#include <optional>
#include <thread>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tavrin {
namespace {

using namespace recognizer;

/// The program at the other end of a server's pipes.
class RecognizerServerTest : public ::testing::Test {
protected:
    testing::ScriptedSpeechEngine engine;
    std::optional<MessageChannel> channel;
    std::optional<bool> endedInPeace;
    std::thread server;

    void start()
    {
        std::array<int, 2> there{};
        std::array<int, 2> back{};
        ASSERT_EQ(pipe(there.data()), 0);
        ASSERT_EQ(pipe(back.data()), 0);
        channel.emplace(back[0], there[1]);
        server = std::thread([this, input = there[0], output = back[1]] {
            endedInPeace = serveRecognizer(engine, input, output);
        });
    }

    void TearDown() override
    {
        channel.reset();
        if (server.joinable())
            server.join();
    }

    /// Goes away, and learns how the server took it.
    bool leave()
    {
        channel.reset();
        server.join();
        return endedInPeace.value_or(false);
    }

    void send(const Message& message) { ASSERT_TRUE(channel->send(message, Waiting::atMost(10s))); }

    Message receive()
    {
        const auto message = channel->receive(Waiting::atMost(10s));
        EXPECT_TRUE(message);
        return message.value_or(Message());
    }

    Message ask(const Message& message)
    {
        send(message);
        return receive();
    }

    void takeGreeting()
    {
        start();
        receive();
        receive();
    }

    /// The server ends at this.
    void expectRefused(const Message& message)
    {
        send(message);
        const auto answer = channel->receive(Waiting::atMost(10s));
        EXPECT_FALSE(answer);
        server.join();
        EXPECT_EQ(endedInPeace, false);
    }

    static Message begin(quint32 request, quint32 utterance, const SpeechRequest& asked = {})
    {
        return {MessageKind::Begin, request, utterance, requestContent(asked)};
    }

    static Message sound(quint32 request, quint32 utterance, std::size_t samples)
    {
        return {
            MessageKind::Sound, request, utterance, soundContent(std::vector<qint16>(samples, 3))};
    }
};

TEST_F(RecognizerServerTest, ItSaysItsVersionAndHowItStands)
{
    start();
    EXPECT_EQ(receive(), (Message{MessageKind::Hello, 0, 0, versionContent(1)}));
    const Message state = receive();
    EXPECT_EQ(state.kind, MessageKind::State);
    EXPECT_EQ(engine.notes().opened, 1);
    ASSERT_TRUE(readState(state.content));
    EXPECT_TRUE(readState(state.content)->isAvailable);
    EXPECT_TRUE(leave());
}

TEST_F(RecognizerServerTest, AnUtteranceIsHeardAndAnswered)
{
    engine.texts = {u"你好，world"_s};
    takeGreeting();
    const SpeechRequest asked{true, SpeechTaskHint::Dictation, {u"Tavrin"_s}, true};
    EXPECT_EQ(ask(begin(1, 9, asked)), (Message{MessageKind::Begun, 1, 9, {}}));
    EXPECT_EQ(
        ask(sound(2, 9, 320)), (Message{MessageKind::Heard, 2, 9, textContent(u"heard 320"_s)}));
    EXPECT_EQ(ask({MessageKind::Finish, 3, 9, {}}),
        (Message{MessageKind::Done, 3, 9, textContent(u"你好，world"_s)}));
    EXPECT_TRUE(leave());
    EXPECT_EQ(engine.notes().requests, std::vector{asked});
    EXPECT_EQ(engine.notes().utterances.at(0), std::vector<qint16>(320, 3));
}

TEST_F(RecognizerServerTest, WithoutPartialResultsNoneAreSent)
{
    takeGreeting();
    ask(begin(1, 1));
    EXPECT_EQ(ask(sound(2, 1, 320)).content, textContent({}));
}

TEST_F(RecognizerServerTest, AnAbandonedUtteranceIsGivenUpWithoutAnAnswer)
{
    takeGreeting();
    ask(begin(1, 1));
    send({MessageKind::Abandon, 0, 1, {}});
    EXPECT_EQ(ask(begin(2, 2)).request, 2U);
    EXPECT_EQ(engine.notes().givenUp, 1);
}

TEST_F(RecognizerServerTest, WhatTheEngineCannotDoIsAnsweredWithItsCode)
{
    engine.failure = speechEngineError(SpeechEngineError::ModelUnusable);
    takeGreeting();
    EXPECT_EQ(ask(begin(1, 1)), (Message{MessageKind::Failed, 1, 1, failureContent(1)}));
}

TEST_F(RecognizerServerTest, AFailedUtteranceIsOver)
{
    engine.finishFailure = speechEngineError(SpeechEngineError::UnusableAnswer);
    takeGreeting();
    ask(begin(1, 1));
    EXPECT_EQ(ask({MessageKind::Finish, 2, 1, {}}),
        (Message{MessageKind::Failed, 2, 1, failureContent(6)}));
    EXPECT_EQ(ask(sound(3, 1, 320)).kind, MessageKind::Failed);
    EXPECT_EQ(ask({MessageKind::Finish, 4, 1, {}}).kind, MessageKind::Failed);
    EXPECT_EQ(ask(begin(5, 2)).kind, MessageKind::Begun);
}

TEST_F(RecognizerServerTest, ARequestThatMakesNoSenseEndsIt)
{
    takeGreeting();
    expectRefused({MessageKind::Begin, 1, 1, "nonsense"});
}

TEST_F(RecognizerServerTest, SoundThatMakesNoSenseEndsIt)
{
    takeGreeting();
    ask(begin(1, 1));
    expectRefused({MessageKind::Sound, 2, 1, "odd"});
}

TEST_F(RecognizerServerTest, AnAnswerForAQuestionEndsIt)
{
    takeGreeting();
    expectRefused({MessageKind::Heard, 1, 1, textContent({})});
}

TEST_F(RecognizerServerTest, AnUtteranceDoesNotBeginTwice)
{
    takeGreeting();
    ask(begin(1, 1));
    expectRefused(begin(2, 1));
}

TEST_F(RecognizerServerTest, MoreUtterancesThanAProgramHasEndIt)
{
    takeGreeting();
    for (quint32 i = 1; i <= 8; ++i)
        EXPECT_EQ(ask(begin(i, i)).kind, MessageKind::Begun);
    expectRefused(begin(9, 9));
}

} // namespace
} // namespace tavrin
