#pragma once

#include "base/Seconds.h"
#include "platform/linux/speech/protocol/RecognizerProtocol.h"

#include <chrono>
#include <optional>
#include <stop_token>
#include <tl/expected.hpp>

namespace tavrin::recognizer {

/// Why a message did not come or go.
enum class ChannelFailure {
    Ended, ///< The other side is gone.
    TimedOut,
    Stopped, ///< On request; the channel stays good.
    Malformed, ///< What came is no message.
};

/// How long to wait, and for whose sake to stop.
struct Waiting {
    std::optional<std::chrono::steady_clock::time_point> deadline; ///< None: for ever.
    std::stop_token stop;

    [[nodiscard]] static Waiting atMost(Seconds patience, std::stop_token stop = {})
    {
        return {std::chrono::steady_clock::now()
                + std::chrono::duration_cast<std::chrono::steady_clock::duration>(patience),
            std::move(stop)};
    }
};

/// Messages over two pipes. One thread. A side that is gone is a failure, never a signal.
class MessageChannel {
public:
    /// Takes both descriptors over: they become non-blocking, and are closed at the end.
    MessageChannel(int input, int output);
    ~MessageChannel();

    MessageChannel(const MessageChannel&) = delete;
    MessageChannel& operator=(const MessageChannel&) = delete;

    /// After TimedOut or Stopped part of the message may be out: the channel is of no use then.
    [[nodiscard]] tl::expected<void, ChannelFailure> send(
        const Message& message, const Waiting& waiting) const;

    [[nodiscard]] tl::expected<Message, ChannelFailure> receive(const Waiting& waiting);

private:
    int m_input;
    int m_output;
    MessageReader m_reader;
};

} // namespace tavrin::recognizer
