#include "support/ports/VirtualTime.h"

namespace tavrin::testing {

class VirtualTime::Registration final : public Timer {
public:
    Registration(VirtualTime& time, std::shared_ptr<Key> key)
        : m_time(time)
        , m_key(std::move(key))
    {
    }

    ~Registration() override { m_time.m_tasks.erase(*m_key); }

    Registration(const Registration&) = delete;
    Registration& operator=(const Registration&) = delete;

private:
    VirtualTime& m_time;
    std::shared_ptr<Key> m_key; // Shared with the repeating task, which moves it to its next turn.
};

void VirtualTime::callLater(Seconds delay, Task task)
{
    schedule(std::chrono::round<Ticks>(delay), std::move(task));
}

std::unique_ptr<Timer> VirtualTime::after(Seconds delay, Task task)
{
    const Key key = schedule(std::chrono::round<Ticks>(delay), std::move(task));
    return std::make_unique<Registration>(*this, std::make_shared<Key>(key));
}

std::unique_ptr<Timer> VirtualTime::every(Seconds interval, Task task)
{
    auto key = std::make_shared<Key>();
    repeat(key, std::chrono::round<Ticks>(interval), task);
    return std::make_unique<Registration>(*this, key);
}

void VirtualTime::advance(Seconds duration)
{
    const Ticks end = m_now + std::chrono::round<Ticks>(duration);
    while (!m_tasks.empty() && m_tasks.begin()->first.first <= end) {
        const auto next = m_tasks.begin();
        m_now = next->first.first;
        const Task task = std::move(next->second); // It may schedule and cancel others.
        m_tasks.erase(next);
        task();
    }
    m_now = end;
}

VirtualTime::Key VirtualTime::schedule(Ticks delay, Task task)
{
    const Key key{m_now + delay, m_scheduled++};
    m_tasks.emplace(key, std::move(task));
    return key;
}

void VirtualTime::repeat(const std::shared_ptr<Key>& key, Ticks interval, const Task& task)
{
    *key = schedule(interval, [this, key, interval, task] {
        repeat(key, interval, task); // Before the task, which may destroy the timer.
        task();
    });
}

} // namespace tavrin::testing
