#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <httplib.h>
#include <mutex>
#include <thread>
#include <vector>

namespace tavrin::devcloud {

/// A fixed number of threads that serve one connection each, and a queue before them.
class WorkerPool : public httplib::TaskQueue {
public:
    explicit WorkerPool(std::size_t threads);
    ~WorkerPool() override;

    void enqueue(std::function<void()> task) override;
    /// Finishes what is queued and ends the threads.
    void shutdown() override;

    /// Whether connections wait for a thread: an idle one should give way.
    [[nodiscard]] bool isCrowded() const;

private:
    void work();
    void endThreads();

    mutable std::mutex m_mutex;
    std::condition_variable m_taskReady;
    std::deque<std::function<void()>> m_tasks;
    bool m_ended = false;
    std::vector<std::thread> m_threads;
};

} // namespace tavrin::devcloud
