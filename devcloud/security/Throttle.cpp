#include "devcloud/security/Throttle.h"

namespace tavrin::devcloud {
namespace {

constexpr std::size_t maxKeys = 10000;

} // namespace

Throttle::Throttle(std::size_t limit, std::chrono::seconds window)
    : m_limit(limit)
    , m_window(window.count())
{
}

std::optional<std::chrono::seconds> Throttle::take(const std::string& key, std::int64_t now)
{
    const std::lock_guard lock(m_mutex);
    if (m_events.size() >= maxKeys && !m_events.contains(key))
        makeRoom(now);
    std::deque<std::int64_t>& events = m_events[key];
    dropOld(events, now);
    if (events.size() >= m_limit)
        return std::chrono::seconds(events.front() + m_window - now);
    events.push_back(now);
    return std::nullopt;
}

void Throttle::giveBack(const std::string& key)
{
    const std::lock_guard lock(m_mutex);
    const auto found = m_events.find(key);
    if (found == m_events.end())
        return;
    if (!found->second.empty())
        found->second.pop_back();
    if (found->second.empty())
        m_events.erase(found);
}

void Throttle::forget(const std::string& key)
{
    const std::lock_guard lock(m_mutex);
    m_events.erase(key);
}

void Throttle::dropOld(std::deque<std::int64_t>& events, std::int64_t now) const
{
    while (!events.empty() && events.front() + m_window <= now)
        events.pop_front();
}

void Throttle::makeRoom(std::int64_t now)
{
    std::erase_if(m_events, [this, now](const auto& entry) {
        return entry.second.empty() || entry.second.back() + m_window <= now;
    });
    if (m_events.size() >= maxKeys)
        m_events.clear();
}

} // namespace tavrin::devcloud
