#include "devcloud/http/Sockets.h"

#include "devcloud/http/ClientAddress.h"

#include <arpa/inet.h>
#include <array>
#include <memory>
#include <netdb.h>
#include <netinet/in.h>
#include <sys/socket.h>

namespace tavrin::devcloud {
namespace {

constexpr int backlog = 1024;

struct AddressesEnd {
    void operator()(addrinfo* addresses) const { freeaddrinfo(addresses); }
};

Descriptor listenOn(const addrinfo& address)
{
    Descriptor listening(
        socket(address.ai_family, address.ai_socktype | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    const int yes = 1;
    // Two services never share a port, but a restarted one need not wait for old connections.
    const bool listens = listening.isOpen()
        && setsockopt(listening.value(), SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes) == 0
        && bind(listening.value(), address.ai_addr, address.ai_addrlen) == 0
        && listen(listening.value(), backlog) == 0;
    return listens ? std::move(listening) : Descriptor();
}

int portOf(int socket)
{
    sockaddr_storage storage{};
    socklen_t size = sizeof storage;
    if (getsockname(socket, reinterpret_cast<sockaddr*>(&storage), &size) != 0)
        return 0;
    return ntohs(storage.ss_family == AF_INET6
            ? reinterpret_cast<const sockaddr_in6*>(&storage)->sin6_port
            : reinterpret_cast<const sockaddr_in*>(&storage)->sin_port);
}

} // namespace

ListeningSocket listenOn(const std::string& host, int port)
{
    addrinfo wanted{};
    wanted.ai_family = AF_UNSPEC;
    wanted.ai_socktype = SOCK_STREAM;
    wanted.ai_flags = AI_PASSIVE | AI_NUMERICSERV;
    addrinfo* found = nullptr;
    if (getaddrinfo(host.c_str(), std::to_string(port).c_str(), &wanted, &found) != 0)
        return {};
    const std::unique_ptr<addrinfo, AddressesEnd> addresses(found);
    for (const addrinfo* address = found; address; address = address->ai_next) {
        Descriptor listening = listenOn(*address);
        if (listening.isOpen()) {
            const int taken = portOf(listening.value());
            return {std::move(listening), taken};
        }
    }
    return {};
}

std::string numericAddress(const sockaddr* address)
{
    std::array<char, INET6_ADDRSTRLEN> text{};
    if (address && address->sa_family == AF_INET)
        inet_ntop(AF_INET, &reinterpret_cast<const sockaddr_in*>(address)->sin_addr, text.data(),
            text.size());
    else if (address && address->sa_family == AF_INET6)
        inet_ntop(AF_INET6, &reinterpret_cast<const sockaddr_in6*>(address)->sin6_addr, text.data(),
            text.size());
    return normalizedAddress(text.data()).value_or(std::string());
}

} // namespace tavrin::devcloud
