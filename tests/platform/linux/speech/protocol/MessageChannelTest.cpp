#include "platform/linux/speech/protocol/MessageChannel.h"

#include <gtest/gtest.h>

#include <array>
#include <csignal>
#include <optional>
#include <thread>
#include <unistd.h>

using namespace std::chrono_literals;

namespace tavrin::recognizer {
namespace {

/// Two channels that talk to each other.
class MessageChannelTest : public ::testing::Test {
protected:
    std::optional<MessageChannel> near;
    std::optional<MessageChannel> far;
    int intoNear = -1; ///< The far channel's.

    void SetUp() override
    {
        std::array<int, 2> there{};
        std::array<int, 2> back{};
        ASSERT_EQ(pipe(there.data()), 0);
        ASSERT_EQ(pipe(back.data()), 0);
        near.emplace(back[0], there[1]);
        far.emplace(there[0], back[1]);
        intoNear = back[1];
    }

    static Waiting patiently() { return Waiting::atMost(10s); }
};

TEST_F(MessageChannelTest, MessagesGoBothWays)
{
    const Message question{MessageKind::Sound, 1, 2, "sound"};
    const Message answer{MessageKind::Heard, 1, 2, "text"};
    ASSERT_TRUE(near->send(question, patiently()));
    EXPECT_EQ(far->receive(patiently()), question);
    ASSERT_TRUE(far->send(answer, patiently()));
    EXPECT_EQ(near->receive(patiently()), answer);
}

TEST_F(MessageChannelTest, AMessageThatIsLargerThanAPipeArrivesWhole)
{
    const Message large{MessageKind::Done, 1, 2, QByteArray(1'000'000, 'x')};
    std::thread sender([&] { EXPECT_TRUE(near->send(large, Waiting::atMost(20s))); });
    EXPECT_EQ(far->receive(Waiting::atMost(20s)), large);
    sender.join();
}

TEST_F(MessageChannelTest, WhoSaysNothingIsNotWaitedForLonger)
{
    EXPECT_EQ(near->receive(Waiting::atMost(30ms)).error(), ChannelFailure::TimedOut);
}

TEST_F(MessageChannelTest, WhoDoesNotListenIsNotWaitedForLonger)
{
    const Message large{MessageKind::Done, 1, 2, QByteArray(1'000'000, 'x')};
    EXPECT_EQ(near->send(large, Waiting::atMost(30ms)).error(), ChannelFailure::TimedOut);
}

TEST_F(MessageChannelTest, ARequestToStopEndsTheWaiting)
{
    std::stop_source source;
    std::thread stopper([&] {
        std::this_thread::sleep_for(30ms);
        source.request_stop();
    });
    EXPECT_EQ(
        near->receive(Waiting::atMost(20s, source.get_token())).error(), ChannelFailure::Stopped);
    stopper.join();
}

TEST_F(MessageChannelTest, AfterAStopTheChannelIsGood)
{
    std::stop_source source;
    source.request_stop();
    EXPECT_EQ(near->receive({{}, source.get_token()}).error(), ChannelFailure::Stopped);
    const Message late{MessageKind::Heard, 1, 2, "late"};
    ASSERT_TRUE(far->send(late, patiently()));
    EXPECT_EQ(near->receive(patiently()), late);
}

TEST_F(MessageChannelTest, WhoIsGoneIsAFailureAndNoSignal)
{
    far.reset();
    EXPECT_EQ(near->receive(patiently()).error(), ChannelFailure::Ended);
    EXPECT_EQ(
        near->send({MessageKind::Begin, 1, 1, {}}, patiently()).error(), ChannelFailure::Ended);
    sigset_t pending;
    sigpending(&pending);
    EXPECT_EQ(sigismember(&pending, SIGPIPE), 0);
}

TEST_F(MessageChannelTest, WhatIsNoMessageIsAFailure)
{
    const QByteArray rubbish("GET / HTTP/1.1\r\n\r\n");
    ASSERT_EQ(write(intoNear, rubbish.constData(), static_cast<std::size_t>(rubbish.size())),
        rubbish.size());
    EXPECT_EQ(near->receive(patiently()).error(), ChannelFailure::Malformed);
}

} // namespace
} // namespace tavrin::recognizer
