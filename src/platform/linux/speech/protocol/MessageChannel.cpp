#include "platform/linux/speech/protocol/MessageChannel.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

using namespace std::chrono_literals;

namespace tavrin::recognizer {
namespace {

using std::chrono::steady_clock;

// A request to stop is seen after so long.
constexpr auto stopLook = 20ms;
constexpr auto longestLook = 60'000ms;

constexpr std::size_t readAtOnce = std::size_t{64} << 10;

void makeNonBlocking(int descriptor)
{
    const int flags = fcntl(descriptor, F_GETFL);
    if (flags >= 0)
        fcntl(descriptor, F_SETFL, flags | O_NONBLOCK);
}

/// Waits until @p descriptor can be read or written.
tl::expected<void, ChannelFailure> waitFor(int descriptor, short events, const Waiting& waiting)
{
    while (true) {
        if (waiting.stop.stop_requested())
            return tl::unexpected(ChannelFailure::Stopped);
        auto look = waiting.stop.stop_possible() ? stopLook : longestLook;
        if (waiting.deadline) {
            const auto left = std::chrono::ceil<std::chrono::milliseconds>(
                *waiting.deadline - steady_clock::now());
            if (left <= 0ms)
                return tl::unexpected(ChannelFailure::TimedOut);
            look = std::min<std::chrono::milliseconds>(look, left);
        }
        pollfd entry{descriptor, events, 0};
        const int ready = poll(&entry, 1, static_cast<int>(look.count()));
        if (ready > 0)
            return {};
        if (ready < 0 && errno != EINTR)
            return tl::unexpected(ChannelFailure::Ended);
    }
}

/// While it lives, writing to whom is gone raises no signal on this thread.
class WithoutPipeSignal {
public:
    WithoutPipeSignal()
    {
        sigset_t pipe;
        sigemptyset(&pipe);
        sigaddset(&pipe, SIGPIPE);
        pthread_sigmask(SIG_BLOCK, &pipe, &m_before);
    }

    ~WithoutPipeSignal()
    {
        const int before = errno;
        sigset_t pipe;
        sigemptyset(&pipe);
        sigaddset(&pipe, SIGPIPE);
        const timespec now{};
        while (sigismember(&m_before, SIGPIPE) == 0 && sigtimedwait(&pipe, nullptr, &now) > 0) { }
        pthread_sigmask(SIG_SETMASK, &m_before, nullptr);
        errno = before;
    }

    WithoutPipeSignal(const WithoutPipeSignal&) = delete;
    WithoutPipeSignal& operator=(const WithoutPipeSignal&) = delete;

private:
    sigset_t m_before{};
};

} // namespace

MessageChannel::MessageChannel(int input, int output)
    : m_input(input)
    , m_output(output)
{
    makeNonBlocking(input);
    makeNonBlocking(output);
}

MessageChannel::~MessageChannel()
{
    close(m_input);
    close(m_output);
}

tl::expected<void, ChannelFailure> MessageChannel::send(
    const Message& message, const Waiting& waiting) const
{
    const WithoutPipeSignal quiet;
    const QByteArray bytes = toBytes(message);
    if (bytes.isEmpty())
        return tl::unexpected(ChannelFailure::Malformed);
    QByteArrayView rest = bytes;
    while (!rest.isEmpty()) {
        const ssize_t written = write(m_output, rest.data(), static_cast<std::size_t>(rest.size()));
        if (written >= 0) {
            rest = rest.sliced(written);
        } else if (errno == EAGAIN) {
            if (const auto ready = waitFor(m_output, POLLOUT, waiting); !ready)
                return ready;
        } else if (errno != EINTR) {
            return tl::unexpected(ChannelFailure::Ended);
        }
    }
    return {};
}

tl::expected<Message, ChannelFailure> MessageChannel::receive(const Waiting& waiting)
{
    while (true) {
        if (std::optional<Message> message = m_reader.next())
            return *std::move(message);
        if (m_reader.isBroken())
            return tl::unexpected(ChannelFailure::Malformed);
        std::array<char, readAtOnce>
            bytes; // NOLINT(cppcoreguidelines-pro-type-member-init): read into
        const ssize_t count = read(m_input, bytes.data(), bytes.size());
        if (count > 0) {
            m_reader.append({bytes.data(), count});
        } else if (count == 0 || (errno != EAGAIN && errno != EINTR)) {
            return tl::unexpected(ChannelFailure::Ended);
        } else if (errno == EAGAIN) {
            if (const auto ready = waitFor(m_input, POLLIN, waiting); !ready)
                return tl::unexpected(ready.error());
        }
    }
}

} // namespace tavrin::recognizer
