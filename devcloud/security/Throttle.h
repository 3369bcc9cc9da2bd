#pragma once

#include <chrono>
#include <cstdint>
#include <deque>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>

namespace tavrin::devcloud {

/// Counts events per key over a sliding window, to slow down whoever guesses. Times are seconds
/// since 1970, given by the caller. Any thread. Remembers at most 10,000 keys: past that, those
/// whose events have left the window go first, then all.
class Throttle {
public:
    Throttle(std::size_t limit, std::chrono::seconds window);

    /// Counts one event of @p key, unless the key has reached its limit: then how long it has to
    /// wait.
    [[nodiscard]] std::optional<std::chrono::seconds> take(
        const std::string& key, std::int64_t now);
    /// Takes back the newest event of @p key.
    void giveBack(const std::string& key);
    void forget(const std::string& key);

private:
    void dropOld(std::deque<std::int64_t>& events, std::int64_t now) const;
    void makeRoom(std::int64_t now);

    const std::size_t m_limit;
    const std::int64_t m_window;
    std::mutex m_mutex;
    std::unordered_map<std::string, std::deque<std::int64_t>> m_events;
};

} // namespace tavrin::devcloud
