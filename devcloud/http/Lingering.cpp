#include "devcloud/http/Lingering.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <sys/epoll.h>
#include <sys/socket.h>

using namespace std::chrono_literals;

namespace tavrin::devcloud {
namespace {

constexpr std::size_t mostSockets = 256;
constexpr std::size_t mostDrained = std::size_t{16} * 1024 * 1024;
constexpr auto longest = 2s;

} // namespace

Lingering::Lingering(int poller)
    : m_poller(poller)
{
}

void Lingering::adopt(int socket)
{
    if (m_sockets.size() >= mostSockets)
        return;
    Descriptor copy(fcntl(socket, F_DUPFD_CLOEXEC, 0));
    if (!copy.isOpen())
        return;
    shutdown(copy.value(), SHUT_WR);
    epoll_event readable{};
    readable.events = EPOLLIN;
    readable.data.fd = copy.value();
    if (epoll_ctl(m_poller, EPOLL_CTL_ADD, copy.value(), &readable) != 0)
        return;
    const int key = copy.value();
    m_sockets.emplace(key, Rest{std::move(copy), std::chrono::steady_clock::now() + longest});
}

void Lingering::read(int socket)
{
    const auto found = m_sockets.find(socket);
    if (found == m_sockets.end())
        return;
    std::array<char, std::size_t{16} * 1024> unread{};
    const ssize_t count = recv(socket, unread.data(), unread.size(), MSG_DONTWAIT);
    if (count < 0 && (errno == EAGAIN || errno == EINTR))
        return;
    found->second.drained += count > 0 ? static_cast<std::size_t>(count) : 0;
    if (count <= 0 || found->second.drained > mostDrained)
        m_sockets.erase(found);
}

void Lingering::closeOverdue(std::chrono::steady_clock::time_point now)
{
    std::erase_if(m_sockets, [now](const auto& entry) { return entry.second.deadline <= now; });
}

} // namespace tavrin::devcloud
