#include "devcloud/http/ClientStream.h"

#include <algorithm>
#include <arpa/inet.h>
#include <array>
#include <cerrno>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>

using namespace std::chrono_literals;

namespace tavrin::devcloud {
namespace {

constexpr std::size_t bufferBytes = std::size_t{16} * 1024;
constexpr std::size_t maxDrainedBytes = std::size_t{16} * 1024 * 1024;
constexpr auto drainTime = 2s;

void describe(const sockaddr_storage& storage, std::string& address, int& port)
{
    std::array<char, INET6_ADDRSTRLEN> text{};
    if (storage.ss_family == AF_INET) {
        const auto* v4 = reinterpret_cast<const sockaddr_in*>(&storage);
        inet_ntop(AF_INET, &v4->sin_addr, text.data(), text.size());
        port = ntohs(v4->sin_port);
    } else if (storage.ss_family == AF_INET6) {
        const auto* v6 = reinterpret_cast<const sockaddr_in6*>(&storage);
        inet_ntop(AF_INET6, &v6->sin6_addr, text.data(), text.size());
        port = ntohs(v6->sin6_port);
    }
    address = text.data();
}

} // namespace

ClientStream::ClientStream(socket_t socket, const RequestLimits& limits)
    : m_socket(socket)
    , m_limits(limits)
    , m_readDeadline(Clock::now() + limits.wholeRequest)
{
}

void ClientStream::beginRequest()
{
    m_readDeadline = Clock::now() + m_limits.wholeRequest;
    m_headBytes = 0;
    m_lineBreaks = 0;
    m_headEnded = false;
}

bool ClientStream::waitForBytes(std::chrono::milliseconds wait)
{
    return m_bufferAt < m_buffer.size() || waitUntil(POLLIN, Clock::now() + wait);
}

void ClientStream::finish()
{
    shutdown(m_socket, SHUT_WR);
    const auto deadline = Clock::now() + drainTime;
    std::array<char, bufferBytes> unread{};
    std::size_t drained = 0;
    while (drained < maxDrainedBytes && waitUntil(POLLIN, deadline)) {
        const ssize_t count = recv(m_socket, unread.data(), unread.size(), 0);
        if (count <= 0)
            return;
        drained += static_cast<std::size_t>(count);
    }
}

bool ClientStream::is_readable() const
{
    return m_bufferAt < m_buffer.size() || waitUntil(POLLIN, m_readDeadline);
}

bool ClientStream::is_writable() const
{
    return waitUntil(POLLOUT, Clock::now() + m_limits.wholeAnswer);
}

ssize_t ClientStream::read(char* bytes, size_t size)
{
    if (m_bufferAt == m_buffer.size()) {
        const ssize_t received = receive();
        m_broken = received <= 0;
        if (m_broken)
            return received;
    }
    const std::size_t count = std::min(size, m_buffer.size() - m_bufferAt);
    std::copy_n(m_buffer.data() + m_bufferAt, count, bytes);
    m_bufferAt += count;
    // The library reads the head byte by byte.
    m_broken = !std::all_of(bytes, bytes + count, [this](char c) { return countHeadByte(c); });
    return m_broken ? -1 : static_cast<ssize_t>(count);
}

ssize_t ClientStream::receive()
{
    if (!waitUntil(POLLIN, m_readDeadline))
        return -1;
    m_buffer.resize(bufferBytes);
    m_bufferAt = 0;
    ssize_t count = 0;
    do {
        count = recv(m_socket, m_buffer.data(), m_buffer.size(), 0);
    } while (count < 0 && errno == EINTR);
    m_buffer.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
    return count;
}

bool ClientStream::countHeadByte(char byte)
{
    if (m_headEnded)
        return true;
    if (byte == '\n')
        m_headEnded = ++m_lineBreaks == 2;
    else if (byte != '\r')
        m_lineBreaks = 0;
    return ++m_headBytes <= m_limits.headBytes;
}

ssize_t ClientStream::write(const char* bytes, size_t size)
{
    const auto deadline = Clock::now() + m_limits.wholeAnswer;
    std::size_t sent = 0;
    while (sent < size) {
        if (!waitUntil(POLLOUT, deadline))
            return -1;
        const ssize_t count =
            send(m_socket, bytes + sent, size - sent, MSG_NOSIGNAL | MSG_DONTWAIT);
        if (count < 0 && errno != EINTR && errno != EAGAIN)
            return -1;
        sent += count > 0 ? static_cast<std::size_t>(count) : 0;
    }
    return static_cast<ssize_t>(sent);
}

bool ClientStream::waitUntil(short events, Clock::time_point deadline) const
{
    for (;;) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
        pollfd waiting{m_socket, events, 0};
        const int ready =
            poll(&waiting, 1, static_cast<int>(std::max<std::int64_t>(left.count(), 0)));
        if (ready > 0)
            return true;
        if (ready == 0 || errno != EINTR)
            return false;
    }
}

void ClientStream::get_remote_ip_and_port(std::string& address, int& port) const
{
    sockaddr_storage storage{};
    socklen_t size = sizeof storage;
    if (getpeername(m_socket, reinterpret_cast<sockaddr*>(&storage), &size) == 0)
        describe(storage, address, port);
}

void ClientStream::get_local_ip_and_port(std::string& address, int& port) const
{
    sockaddr_storage storage{};
    socklen_t size = sizeof storage;
    if (getsockname(m_socket, reinterpret_cast<sockaddr*>(&storage), &size) == 0)
        describe(storage, address, port);
}

} // namespace tavrin::devcloud
