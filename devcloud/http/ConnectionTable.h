#pragma once

#include "devcloud/http/Answer.h"
#include "devcloud/http/Routes.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <list>
#include <optional>
#include <set>
#include <string>
#include <unordered_map>

namespace tavrin::devcloud {

/// What connections may cost.
struct ConnectionLimits {
    std::chrono::milliseconds wholeRequest{
        std::chrono::seconds(20)}; ///< To arrive, however slowly.
    std::chrono::milliseconds wholeAnswer{std::chrono::seconds(20)}; ///< To be taken.
    std::chrono::milliseconds idle{std::chrono::seconds(30)}; ///< Between requests.
    std::size_t connections = 4096;
    std::size_t connectionsPerAddress = 1024; ///< Trusted proxies may have all.
    std::size_t headBytes = std::size_t{32} * 1024; ///< Of one request.
    std::size_t bodyBytes = std::size_t{64} * 1024 * 1024; ///< Of all requests that are arriving.
};

/// One connection and the request that is under way on it.
struct Connection {
    using Clock = std::chrono::steady_clock;

    /// Where the connection stands: between requests, while one arrives, while it is worked on, and
    /// while its answer is taken.
    enum class Phase { Waiting, Reading, Working, Answering };

    int socket = -1; ///< The HTTP library's.
    std::string peer;
    Phase phase = Phase::Waiting;
    Clock::time_point deadline{}; ///< Of the phase; none while it is worked on.
    bool isCut = false; ///< Its end has been brought about and will be noticed soon.
    bool closesEarly = false; ///< After the answer, though bytes of the request may still come.

    bool hasHead = false;
    Endpoint endpoint{};
    std::string authorization;
    std::string address; ///< Of the client, which may stand behind the peer.
    std::string body;
    bool isBodyTooMuch = false; ///< There was no room for it; the rest is not kept.
    std::optional<Answer> answer; ///< Of the service, not yet given to the library.

    std::list<Connection>::iterator position; ///< The table's.
};

/// The open connections: each phase has its time, and who has done nothing for the longest gives
/// way when there are too many. Cutting a connection means shutting its socket down; the HTTP
/// library notices and removes it. One thread.
class ConnectionTable {
public:
    using Clock = Connection::Clock;

    /// @param mayHaveAll addresses without a limit of their own.
    ConnectionTable(const ConnectionLimits& limits, std::set<std::string> mayHaveAll);

    /// A new connection, for which another is cut where there are too many. Lives until remove().
    Connection& add(int socket, std::string peer);
    void remove(Connection& connection);

    /// Begins a phase and its time.
    void enter(Connection& connection, Connection::Phase phase);
    /// Cuts every connection whose phase has taken too long.
    void cutOverdue(Clock::time_point now);
    /// Cuts every connection that is neither worked on nor answered.
    void cutUnserved();

    [[nodiscard]] std::size_t size() const { return m_connections.size(); }

    [[nodiscard]] bool isServing() const;

private:
    void cutOldest(const std::function<bool(const Connection&)>& mayGo);

    const ConnectionLimits m_limits;
    const std::set<std::string> m_mayHaveAll;
    std::list<Connection> m_connections; ///< The oldest first.
    std::unordered_map<std::string, std::size_t> m_countByPeer;
};

} // namespace tavrin::devcloud
