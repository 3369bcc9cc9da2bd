#pragma once

#include "devcloud/model/LanguageModel.h"

#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace tavrin::devcloud::testing {

/// Answers when the test says so.
class HeldModel : public LanguageModel {
public:
    std::optional<std::string> answer(const Prompt& /*prompt*/) override
    {
        std::unique_lock lock(m_mutex);
        ++m_asked;
        m_changed.notify_all();
        // Not for ever, so that a test that fails comes to its end.
        m_changed.wait_for(lock, std::chrono::seconds(10), [this] { return m_isReleased; });
        return "the model's answer";
    }

    [[nodiscard]] std::string name() const override { return "held"; }

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
