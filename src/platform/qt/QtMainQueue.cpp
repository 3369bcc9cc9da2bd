#include "platform/qt/QtMainQueue.h"

#include <QCoreApplication>
#include <QEvent>
#include <QObject>
#include <QTimerEvent>

#include <algorithm>
#include <cmath>
#include <deque>
#include <limits>
#include <mutex>
#include <unordered_map>

namespace tavrin {

/// Receives the wake-ups of Qt: one event for every posted task, so that a nested event loop goes
/// on with the next task, and one Qt timer for every pending call.
class QtMainQueue::Dispatcher final : public QObject {
public:
    using CallId = quint64;

    ~Dispatcher() override { close(); }

    Dispatcher() = default;
    Dispatcher(const Dispatcher&) = delete;
    Dispatcher& operator=(const Dispatcher&) = delete;

    void post(Task task)
    {
        {
            const std::lock_guard lock(m_mutex);
            if (m_closed)
                return;
            m_posted.push_back(std::move(task));
        }
        QCoreApplication::postEvent(this, new QEvent(QEvent::User));
    }

    CallId schedule(Seconds delay, Task task, bool repeats)
    {
        const auto milliseconds = std::clamp(std::ceil(delay.count() * 1000.0), 0.0,
            static_cast<double>(std::numeric_limits<int>::max()));
        const int timer = startTimer(static_cast<int>(milliseconds), Qt::PreciseTimer);
        const CallId id = ++m_lastId;
        m_timers.emplace(timer, Call{id, repeats, std::make_shared<const Task>(std::move(task))});
        m_timerOfCall.emplace(id, timer);
        return id;
    }

    void cancel(CallId id)
    {
        const auto call = m_timerOfCall.find(id);
        if (call == m_timerOfCall.end())
            return;
        const int timer = call->second;
        m_timerOfCall.erase(call);
        killTimer(timer);
        const auto dropped = m_timers.extract(timer); // Its destructor may call in here again.
    }

protected:
    void customEvent(QEvent* /*event*/) override
    {
        Task task;
        {
            const std::lock_guard lock(m_mutex);
            if (m_posted.empty())
                return;
            task = std::move(m_posted.front());
            m_posted.pop_front();
        }
        task();
    }

    void timerEvent(QTimerEvent* event) override
    {
        const auto found = m_timers.find(event->timerId());
        if (found == m_timers.end())
            return;
        const std::shared_ptr<const Task> task = found->second.task; // It may cancel its own timer.
        if (!found->second.repeats)
            cancel(found->second.id);
        (*task)();
    }

private:
    struct Call {
        CallId id = 0;
        bool repeats = false;
        std::shared_ptr<const Task> task;
    };

    void close()
    {
        std::deque<Task> dropped;
        {
            const std::lock_guard lock(m_mutex);
            m_closed = true;
            dropped.swap(m_posted);
        }
        while (!m_timerOfCall.empty())
            cancel(m_timerOfCall.begin()->first);
    }

    std::mutex m_mutex; // Guards the two below; the rest belongs to the main thread.
    std::deque<Task> m_posted;
    bool m_closed = false;

    std::unordered_map<int, Call> m_timers; // By Qt's identifier, which Qt uses again.
    std::unordered_map<CallId, int> m_timerOfCall;
    CallId m_lastId = 0;
};

class QtMainQueue::PendingCall final : public Timer {
public:
    PendingCall(std::weak_ptr<Dispatcher> dispatcher, Dispatcher::CallId id)
        : m_dispatcher(std::move(dispatcher))
        , m_id(id)
    {
    }

    ~PendingCall() override
    {
        if (const auto dispatcher = m_dispatcher.lock())
            dispatcher->cancel(m_id);
    }

    PendingCall(const PendingCall&) = delete;
    PendingCall& operator=(const PendingCall&) = delete;

private:
    std::weak_ptr<Dispatcher> m_dispatcher;
    Dispatcher::CallId m_id;
};

QtMainQueue::QtMainQueue()
    : m_dispatcher(std::make_shared<Dispatcher>())
{
}

QtMainQueue::~QtMainQueue() = default;

void QtMainQueue::post(Task task)
{
    m_dispatcher->post(std::move(task));
}

std::unique_ptr<Timer> QtMainQueue::after(Seconds delay, Task task)
{
    const auto id = m_dispatcher->schedule(delay, std::move(task), false);
    return std::make_unique<PendingCall>(m_dispatcher, id);
}

void QtMainQueue::callLater(Seconds delay, Task task)
{
    m_dispatcher->schedule(delay, std::move(task), false);
}

std::unique_ptr<Timer> QtMainQueue::every(Seconds interval, Task task)
{
    const auto id = m_dispatcher->schedule(interval, std::move(task), true);
    return std::make_unique<PendingCall>(m_dispatcher, id);
}

} // namespace tavrin
