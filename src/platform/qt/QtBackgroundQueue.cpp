#include "platform/qt/QtBackgroundQueue.h"

#include "platform/MainQueue.h"

#include <utility>

namespace tavrin {

void QtBackgroundQueue::Ended::callAll()
{
    std::vector<Task> ended;
    {
        const std::lock_guard lock(mutex);
        ended.swap(tasks);
    }
    for (const Task& done : ended)
        done();
}

QtBackgroundQueue::QtBackgroundQueue(MainQueue& mainQueue)
    : m_mainQueue(mainQueue)
    , m_ended(std::make_shared<Ended>())
{
    m_pool.setMaxThreadCount(1);
}

QtBackgroundQueue::~QtBackgroundQueue()
{
    m_pool.clear();
    m_pool.waitForDone();
}

void QtBackgroundQueue::run(Task work, Task done)
{
    m_pool.start([&mainQueue = m_mainQueue, ended = m_ended, work = std::move(work),
                     done = std::move(done)]() mutable {
        work();
        work = nullptr;
        {
            const std::lock_guard lock(ended->mutex);
            ended->tasks.push_back(std::move(done));
        }
        // Held weakly: a queue that is gone calls nothing any more.
        mainQueue.post([waiting = std::weak_ptr(ended)] {
            if (const auto alive = waiting.lock())
                alive->callAll();
        });
    });
}

void QtBackgroundQueue::drain()
{
    m_pool.waitForDone();
    m_ended->callAll();
}

} // namespace tavrin
