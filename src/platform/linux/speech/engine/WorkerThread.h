#pragma once

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

    WorkerThread();
    ~WorkerThread();

    WorkerThread(const WorkerThread&) = delete;
    WorkerThread& operator=(const WorkerThread&) = delete;

    /// Callable from any thread.
    void post(Task task);

private:
    void run();

    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<Task> m_tasks;
    bool m_ending = false;
    std::thread m_thread;
};

} // namespace tavrin
