#pragma once

#include "support/ports/VirtualTime.h"

#include <utility>

namespace tavrin::testing {

/// The virtual time as the clock that a platform owns.
class SharedClock final : public Clock {
public:
    explicit SharedClock(VirtualTime& time)
        : m_time(time)
    {
    }

    [[nodiscard]] Seconds sinceEpoch() const override { return m_time.sinceEpoch(); }

    [[nodiscard]] Seconds uptime() const override { return m_time.uptime(); }

private:
    VirtualTime& m_time;
};

/// The virtual time as the main queue that a platform owns.
class SharedQueue final : public MainQueue {
public:
    explicit SharedQueue(VirtualTime& time)
        : m_time(time)
    {
    }

    void post(Task task) override { m_time.post(std::move(task)); }

    [[nodiscard]] std::unique_ptr<Timer> after(Seconds delay, Task task) override
    {
        return m_time.after(delay, std::move(task));
    }

    void callLater(Seconds delay, Task task) override { m_time.callLater(delay, std::move(task)); }

    [[nodiscard]] std::unique_ptr<Timer> every(Seconds interval, Task task) override
    {
        return m_time.every(interval, std::move(task));
    }

private:
    VirtualTime& m_time;
};

} // namespace tavrin::testing
