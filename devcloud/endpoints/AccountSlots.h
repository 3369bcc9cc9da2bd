#pragma once

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <unordered_map>

namespace tavrin::devcloud {

/// How many requests of one account are worked on at the same time, so that none holds all workers.
/// Any thread.
class AccountSlots {
public:
    explicit AccountSlots(std::size_t most)
        : m_most(most)
    {
    }

    /// One place, given back at its end.
    class Place {
    public:
        Place(AccountSlots& slots, std::int64_t account)
            : m_slots(slots)
            , m_account(account)
        {
            const std::lock_guard lock(m_slots.m_mutex);
            m_isTaken = m_slots.m_taken[m_account] < m_slots.m_most;
            if (m_isTaken)
                ++m_slots.m_taken[m_account];
        }

        ~Place()
        {
            if (!m_isTaken)
                return;
            const std::lock_guard lock(m_slots.m_mutex);
            if (--m_slots.m_taken[m_account] == 0)
                m_slots.m_taken.erase(m_account);
        }

        Place(const Place&) = delete;
        Place& operator=(const Place&) = delete;

        /// False when the account has as many as it may.
        [[nodiscard]] bool isTaken() const { return m_isTaken; }

    private:
        AccountSlots& m_slots;
        const std::int64_t m_account;
        bool m_isTaken = false;
    };

private:
    const std::size_t m_most;
    std::mutex m_mutex;
    std::unordered_map<std::int64_t, std::size_t> m_taken;
};

} // namespace tavrin::devcloud
