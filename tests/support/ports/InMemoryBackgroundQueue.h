#pragma once

#include "platform/BackgroundQueue.h"

#include <deque>
#include <utility>

namespace tavrin::testing {

/// Background work that waits until the test lets it run.
class InMemoryBackgroundQueue final : public BackgroundQueue {
public:
    void run(Task work, Task done) override
    {
        m_waiting.emplace_back(std::move(work), std::move(done));
    }

    void drain() override
    {
        while (!m_waiting.empty())
            runNext();
    }

    /// Pieces of work that have not run yet.
    [[nodiscard]] std::size_t pending() const { return m_waiting.size(); }

    void runNext() { runWork()(); }

    /// Runs the next piece of work, and hands back what is to be done on the main thread after it.
    [[nodiscard]] Task runWork()
    {
        const auto [work, done] = std::move(m_waiting.front());
        m_waiting.pop_front();
        work();
        return done;
    }

private:
    std::deque<std::pair<Task, Task>> m_waiting;
};

} // namespace tavrin::testing
