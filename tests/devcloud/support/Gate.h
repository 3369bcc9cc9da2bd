#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace tavrin::devcloud::testing {

/// Holds up whoever comes until the test says so. Callable from any thread.
class Gate {
public:
    /// Waits for release(). Not for ever, so that a test comes to its end that waits for whoever is
    /// held up here; it has failed then.
    void pass()
    {
        std::unique_lock lock(m_mutex);
        ++m_asked;
        m_changed.notify_all();
        EXPECT_TRUE(m_changed.wait_for(lock, std::chrono::seconds(10), [this] {
            return m_isReleased;
        })) << "held up what was to release it";
    }

    /// Waits until so many have come.
    void awaitQuestions(int count)
    {
        std::unique_lock lock(m_mutex);
        EXPECT_TRUE(m_changed.wait_for(
            lock, std::chrono::seconds(5), [this, count] { return m_asked >= count; }));
    }

    void awaitQuestion() { awaitQuestions(1); }

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
