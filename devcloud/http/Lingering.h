#pragma once

#include "devcloud/http/Descriptor.h"

#include <chrono>
#include <cstddef>
#include <unordered_map>

namespace tavrin::devcloud {

/// Connections that have got their last answer while their request was still coming. Closing them
/// at once would reset them, and the answer would be lost with what was not read: so the rest is
/// read for a while and thrown away. One thread; holds at most 256, and gives up on more.
class Lingering {
public:
    /// @param poller an epoll descriptor; what is to be read is announced there with the descriptor
    /// of its socket as data.
    explicit Lingering(int poller);

    /// Keeps a duplicate of @p socket, whose owner is about to close it.
    void adopt(int socket);
    /// Reads from one of ours that @p poller announced.
    void read(int socket);
    void closeOverdue(std::chrono::steady_clock::time_point now);

    [[nodiscard]] bool isEmpty() const { return m_sockets.empty(); }

private:
    struct Rest {
        Descriptor socket;
        std::chrono::steady_clock::time_point deadline;
        std::size_t drained = 0;
    };

    const int m_poller;
    std::unordered_map<int, Rest> m_sockets;
};

} // namespace tavrin::devcloud
