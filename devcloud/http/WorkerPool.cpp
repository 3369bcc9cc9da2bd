#include "devcloud/http/WorkerPool.h"

namespace tavrin::devcloud {

WorkerPool::WorkerPool(std::size_t threads, std::size_t mostWaiting)
    : m_mostWaiting(mostWaiting)
{
    for (std::size_t thread = 0; thread < threads; ++thread)
        m_threads.emplace_back([this] { work(); });
}

WorkerPool::~WorkerPool()
{
    finish();
}

bool WorkerPool::enqueue(std::function<void()> task)
{
    {
        const std::lock_guard lock(m_mutex);
        if (m_tasks.size() >= m_mostWaiting)
            return false;
        m_tasks.push_back(std::move(task));
    }
    m_taskReady.notify_one();
    return true;
}

void WorkerPool::finish()
{
    {
        const std::lock_guard lock(m_mutex);
        m_ended = true;
    }
    m_taskReady.notify_all();
    for (std::thread& thread : m_threads)
        thread.join();
    m_threads.clear();
}

void WorkerPool::work()
{
    std::unique_lock lock(m_mutex);
    for (;;) {
        m_taskReady.wait(lock, [this] { return m_ended || !m_tasks.empty(); });
        if (m_tasks.empty())
            return;
        const std::function<void()> task = std::move(m_tasks.front());
        m_tasks.pop_front();
        lock.unlock();
        task();
        lock.lock();
    }
}

} // namespace tavrin::devcloud
