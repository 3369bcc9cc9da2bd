#pragma once

#include "devcloud/security/Passwords.h"

#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace tavrin::devcloud::testing {

/// Compares a password when the test says so.
class HeldPasswords : public Passwords {
public:
    HeldPasswords()
        : Passwords(PasswordCost::least())
    {
    }

    bool matches(const std::optional<std::string>& hash, std::string_view password) override
    {
        {
            std::unique_lock lock(m_mutex);
            ++m_asked;
            m_changed.notify_all();
            // Not for ever, so that a test that fails comes to its end.
            m_changed.wait_for(lock, std::chrono::seconds(10), [this] { return m_isReleased; });
        }
        return Passwords::matches(hash, password);
    }

    /// Waits until so many passwords are being compared or have been.
    void awaitQuestions(int count)
    {
        std::unique_lock lock(m_mutex);
        EXPECT_TRUE(m_changed.wait_for(
            lock, std::chrono::seconds(5), [this, count] { return m_asked >= count; }));
    }

    void release()
    {
        {
            const std::lock_guard lock(m_mutex);
            m_isReleased = true;
        }
        m_changed.notify_all();
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    int m_asked = 0;
    bool m_isReleased = false;
};

} // namespace tavrin::devcloud::testing
