#pragma once

#include "base/Seconds.h"

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

namespace tavrin {

/// A thread that does one thing after another. Destroying it waits until everything is done: what
/// takes long is cancelled first.
class WorkerThread {
public:
    using Task = std::function<void()>;

    WorkerThread()
        : WorkerThread(Seconds{0}, {})
    {
    }

    /// @param whenIdle is run on the thread each time that it has had nothing to do for
    /// @p idleTime; never when that is zero.
    WorkerThread(Seconds idleTime, Task whenIdle);
    ~WorkerThread();

    WorkerThread(const WorkerThread&) = delete;
    WorkerThread& operator=(const WorkerThread&) = delete;

    /// Callable from any thread.
    void post(Task task);

private:
    void run();
    void waitForTask(std::unique_lock<std::mutex>& lock);

    const Seconds m_idleTime;
    const Task m_whenIdle;

    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<Task> m_tasks;
    bool m_ending = false;
    std::thread m_thread;
};

} // namespace tavrin
