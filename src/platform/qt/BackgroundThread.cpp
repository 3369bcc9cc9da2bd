#include "platform/qt/BackgroundThread.h"

#include "platform/MainQueue.h"

#include <functional>
#include <utility>

namespace tavrin {

void BackgroundThread::Shared::callEnded()
{
    std::vector<Task> tasks;
    {
        const std::lock_guard lock(mutex);
        tasks.swap(ended);
    }
    for (const Task& done : tasks)
        done();
}

BackgroundThread::BackgroundThread(MainQueue& mainQueue)
    : m_mainQueue(mainQueue)
    , m_shared(std::make_shared<Shared>())
{
}

BackgroundThread::~BackgroundThread()
{
    m_thread.request_stop();
    // Before the thread is waited for: what it is busy with may wait for what goes with the others.
    std::deque<Job> dropped;
    const std::lock_guard lock(m_shared->mutex);
    dropped.swap(m_shared->waiting);
}

void BackgroundThread::run(Task work, Task done)
{
    {
        const std::lock_guard lock(m_shared->mutex);
        m_shared->waiting.push_back({std::move(work), std::move(done)});
    }
    m_shared->changed.notify_all();
    if (!m_thread.joinable())
        m_thread = std::jthread(&doWaiting, m_shared, std::ref(m_mainQueue));
}

void BackgroundThread::doWaiting(
    const std::stop_token& stop, const std::shared_ptr<Shared>& shared, MainQueue& mainQueue)
{
    std::unique_lock lock(shared->mutex);
    while (shared->changed.wait(lock, stop, [&] { return !shared->waiting.empty(); })) {
        Job job = std::move(shared->waiting.front());
        shared->waiting.pop_front();
        shared->isBusy = true;
        lock.unlock();
        job.work();
        job.work = nullptr; // What it holds goes before anybody learns of its end.
        lock.lock();
        shared->ended.push_back(std::move(job.done));
        shared->isBusy = false;
        // Held weakly: a queue that is gone calls nothing any more.
        mainQueue.post([waiting = std::weak_ptr(shared)] {
            if (const auto alive = waiting.lock())
                alive->callEnded();
        });
        shared->changed.notify_all();
    }
}

void BackgroundThread::drain()
{
    {
        std::unique_lock lock(m_shared->mutex);
        m_shared->changed.wait(
            lock, [&] { return m_shared->waiting.empty() && !m_shared->isBusy; });
    }
    m_shared->callEnded();
}

} // namespace tavrin
