#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace tavrin::devcloud {

/// A fixed number of threads, and before them a queue of bounded length. Any thread.
class WorkerPool {
public:
    WorkerPool(std::size_t threads, std::size_t mostWaiting);
    ~WorkerPool();
    WorkerPool(const WorkerPool&) = delete;
    WorkerPool& operator=(const WorkerPool&) = delete;

    /// False, without taking @p task, when as many tasks wait as may.
    bool enqueue(std::function<void()> task);
    /// Carries out what is queued and ends the threads.
    void finish();

private:
    void work();

    const std::size_t m_mostWaiting;
    std::mutex m_mutex;
    std::condition_variable m_taskReady;
    std::deque<std::function<void()>> m_tasks;
    bool m_ended = false;
    std::vector<std::thread> m_threads;
};

} // namespace tavrin::devcloud
