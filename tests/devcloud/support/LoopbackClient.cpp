#include "devcloud/support/LoopbackClient.h"

#include <arpa/inet.h>
#include <array>
#include <cstdlib>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace tavrin::devcloud::testing {
namespace {

constexpr int longestWaitMs = 5000;
constexpr std::string_view headEnd = "\r\n\r\n";

std::size_t announcedLength(std::string_view head)
{
    constexpr std::string_view name = "Content-Length: ";
    const std::size_t at = head.find(name);
    return at == std::string_view::npos
        ? 0
        : std::strtoul(std::string(head.substr(at + name.size())).c_str(), nullptr, 10);
}

} // namespace

LoopbackClient::LoopbackClient(int port, std::optional<int> roomBytes)
    : m_socket(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
{
    if (roomBytes)
        setsockopt(m_socket, SOL_SOCKET, SO_RCVBUF, &*roomBytes, sizeof *roomBytes);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (connect(m_socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
        close(m_socket);
        m_socket = -1;
    }
}

LoopbackClient::~LoopbackClient()
{
    if (m_socket >= 0)
        close(m_socket);
}

bool LoopbackClient::send(std::string_view bytes) const
{
    while (!bytes.empty()) {
        const ssize_t sent = ::send(m_socket, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (sent <= 0)
            return false;
        bytes.remove_prefix(static_cast<std::size_t>(sent));
    }
    return true;
}

void LoopbackClient::finishSending() const
{
    shutdown(m_socket, SHUT_WR);
}

bool LoopbackClient::receive()
{
    pollfd waiting{m_socket, POLLIN, 0};
    if (poll(&waiting, 1, longestWaitMs) <= 0)
        return false;
    std::array<char, 4096> bytes{};
    const ssize_t count = recv(m_socket, bytes.data(), bytes.size(), 0);
    if (count <= 0)
        return false;
    m_received.append(bytes.data(), static_cast<std::size_t>(count));
    return true;
}

std::string LoopbackClient::readAnswer()
{
    for (;;) {
        const std::size_t head = m_received.find(headEnd);
        if (head != std::string::npos) {
            const std::size_t size = head + headEnd.size() + announcedLength(m_received);
            if (m_received.size() >= size) {
                std::string answer = m_received.substr(0, size);
                m_received.erase(0, size);
                return answer;
            }
        }
        if (!receive())
            return std::move(m_received);
    }
}

bool LoopbackClient::isClosedByServer(std::chrono::milliseconds wait) const
{
    for (;;) {
        pollfd waiting{m_socket, POLLIN, 0};
        if (poll(&waiting, 1, static_cast<int>(wait.count())) <= 0)
            return false;
        std::array<char, 4096> bytes{};
        if (recv(m_socket, bytes.data(), bytes.size(), 0) <= 0)
            return true;
    }
}

const LoopbackClient& LoopbackClient::firstAnswered(
    const LoopbackClient& first, const LoopbackClient& second)
{
    std::array<pollfd, 2> waiting{{{first.m_socket, POLLIN, 0}, {second.m_socket, POLLIN, 0}}};
    poll(waiting.data(), waiting.size(), longestWaitMs);
    return waiting[1].revents != 0 && waiting[0].revents == 0 ? second : first;
}

int statusIn(std::string_view answer)
{
    constexpr std::string_view version = "HTTP/1.1 ";
    return answer.starts_with(version)
        ? std::atoi(std::string(answer.substr(version.size(), 3)).c_str())
        : 0;
}

std::string_view bodyIn(std::string_view answer)
{
    const std::size_t at = answer.find(headEnd);
    return at == std::string_view::npos ? std::string_view() : answer.substr(at + headEnd.size());
}

} // namespace tavrin::devcloud::testing
