#include "devcloud/http/ConnectionTable.h"

#include <algorithm>
#include <sys/socket.h>

namespace tavrin::devcloud {
namespace {

using Phase = Connection::Phase;

bool isServed(const Connection& connection)
{
    return connection.phase == Phase::Working || connection.phase == Phase::Answering;
}

void cut(Connection& connection)
{
    connection.isCut = true;
    shutdown(connection.socket, SHUT_RDWR);
}

} // namespace

ConnectionTable::ConnectionTable(const ConnectionLimits& limits, std::set<std::string> mayHaveAll)
    : m_limits(limits)
    , m_mayHaveAll(std::move(mayHaveAll))
{
}

Connection& ConnectionTable::add(int socket, std::string peer)
{
    const std::size_t ofPeer = m_countByPeer[peer];
    if (ofPeer >= m_limits.connectionsPerAddress && !m_mayHaveAll.contains(peer))
        cutOldest([&peer](const Connection& other) { return other.peer == peer; });
    else if (m_connections.size() >= m_limits.connections)
        cutOldest([](const Connection& /*other*/) { return true; });

    const auto position = m_connections.emplace(m_connections.end());
    Connection& connection = *position;
    connection.position = position;
    connection.socket = socket;
    connection.peer = std::move(peer);
    ++m_countByPeer[connection.peer];
    connection.deadline = Clock::now() + m_limits.wholeRequest;
    return connection;
}

void ConnectionTable::remove(Connection& connection)
{
    const auto count = m_countByPeer.find(connection.peer);
    if (count != m_countByPeer.end() && --count->second == 0)
        m_countByPeer.erase(count);
    m_connections.erase(connection.position);
}

void ConnectionTable::enter(Connection& connection, Phase phase)
{
    const auto now = Clock::now();
    connection.phase = phase;
    switch (phase) {
    case Phase::Waiting:
        connection.deadline = now + m_limits.idle;
        break;
    case Phase::Reading:
        connection.deadline = now + m_limits.wholeRequest;
        break;
    case Phase::Working:
        connection.deadline = Clock::time_point::max();
        break;
    case Phase::Answering:
        connection.deadline = now + m_limits.wholeAnswer;
        break;
    }
}

void ConnectionTable::cutOverdue(Clock::time_point now)
{
    for (Connection& connection : m_connections) {
        if (connection.deadline <= now && !connection.isCut)
            cut(connection);
    }
}

void ConnectionTable::cutUnserved()
{
    for (Connection& connection : m_connections) {
        if (!isServed(connection) && !connection.isCut)
            cut(connection);
    }
}

bool ConnectionTable::isServing() const
{
    return std::ranges::any_of(m_connections, isServed);
}

void ConnectionTable::cutOldest(const std::function<bool(const Connection&)>& mayGo)
{
    const auto oldest = std::ranges::find_if(m_connections, [&mayGo](const Connection& connection) {
        return !connection.isCut && !isServed(connection) && mayGo(connection);
    });
    if (oldest != m_connections.end())
        cut(*oldest);
}

} // namespace tavrin::devcloud
