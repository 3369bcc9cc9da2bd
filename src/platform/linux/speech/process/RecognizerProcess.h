#pragma once

#include "base/Seconds.h"
#include "platform/linux/speech/protocol/MessageChannel.h"

#include <QString>
#include <QStringList>

#include <memory>
#include <stop_token>
#include <sys/types.h>

namespace tavrin::recognizer {

/// A program that recognises, and what it is told at its start.
struct RecognizerCommand {
    QString program; ///< Its path.
    QStringList arguments;
};

/// A recogniser in a process of its own. It lives as long as this object and the thread that
/// started it; whatever state it is in, the end is immediate. One thread.
class RecognizerProcess {
public:
    /// Starts it and waits until its model is loaded, or known to be unusable: state() tells.
    [[nodiscard]] static tl::expected<std::unique_ptr<RecognizerProcess>, ChannelFailure> start(
        const RecognizerCommand& command, const Waiting& waiting);

    ~RecognizerProcess();

    RecognizerProcess(const RecognizerProcess&) = delete;
    RecognizerProcess& operator=(const RecognizerProcess&) = delete;

    [[nodiscard]] const EngineState& state() const { return m_state; }

    /// Sends a request, of which kind and content count, and waits for its answer. When it was
    /// stopped the answer is passed over as it comes; after any other failure, and when the request
    /// was stopped before it was out, isLost().
    [[nodiscard]] tl::expected<Message, ChannelFailure> ask(
        Message request, const Waiting& waiting);

    /// Sends what has no answer. Does not wait: what cannot go at once is not sent, and isLost().
    void tell(Message message);

    /// Whether it is of no use any more.
    [[nodiscard]] bool isLost() const { return m_isLost; }

    [[nodiscard]] qint64 number() const { return m_number; }

private:
    RecognizerProcess(pid_t number, int input, int output);

    [[nodiscard]] tl::expected<void, ChannelFailure> greet(const Waiting& waiting);
    [[nodiscard]] tl::expected<Message, ChannelFailure> receive(const Waiting& waiting);
    [[nodiscard]] tl::expected<void, ChannelFailure> send(
        const Message& message, const Waiting& waiting);

    const pid_t m_number;
    MessageChannel m_channel;
    EngineState m_state;
    quint32 m_requests = 0;
    bool m_isLost = false;
};

} // namespace tavrin::recognizer
