#include "platform/linux/speech/engine/WorkerThread.h"

#include <utility>

namespace tavrin {

WorkerThread::WorkerThread(Seconds idleTime, Task whenIdle)
    : m_idleTime(idleTime)
    , m_whenIdle(std::move(whenIdle))
    , m_thread([this] { run(); })
{
}

WorkerThread::~WorkerThread()
{
    {
        const std::lock_guard lock(m_mutex);
        m_ending = true;
    }
    m_changed.notify_one();
    m_thread.join();
}

void WorkerThread::post(Task task)
{
    {
        const std::lock_guard lock(m_mutex);
        m_tasks.push_back(std::move(task));
    }
    m_changed.notify_one();
}

void WorkerThread::run()
{
    std::unique_lock lock(m_mutex);
    while (true) {
        waitForTask(lock);
        if (m_tasks.empty())
            return;
        {
            const Task task = std::move(m_tasks.front());
            m_tasks.pop_front();
            lock.unlock();
            task();
        }
        lock.lock();
    }
}

void WorkerThread::waitForTask(std::unique_lock<std::mutex>& lock)
{
    const auto isDue = [this] { return m_ending || !m_tasks.empty(); };
    if (m_whenIdle && m_idleTime > Seconds{0} && !m_changed.wait_for(lock, m_idleTime, isDue)) {
        lock.unlock();
        m_whenIdle();
        lock.lock();
    }
    m_changed.wait(lock, isDue);
}

} // namespace tavrin
