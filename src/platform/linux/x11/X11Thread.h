#pragma once

#include "base/Seconds.h"
#include "platform/linux/x11/X11Connection.h"

#include <atomic>
#include <chrono>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>

namespace tavrin {

/// A thread with an X connection of its own: sleeps until an event arrives or a task is posted, so
/// that the X server is answered whatever the main thread does.
///
/// A subclass calls stop() in its destructor; its handlers run on the thread. Without an X server
/// it runs tasks alone.
class X11Thread {
public:
    using Clock = std::chrono::steady_clock;

    X11Thread();
    virtual ~X11Thread();

    X11Thread(const X11Thread&) = delete;
    X11Thread& operator=(const X11Thread&) = delete;

    /// Starts the thread. It connects @p pause later, or for the first task.
    void start(Seconds pause = Seconds(0));

    /// Ends the thread after the tasks that were posted before. From any other thread.
    void stop();

    /// Runs @p task on the thread, after those posted before. From any thread.
    void post(std::function<void()> task);

protected:
    /// Only on the thread itself, and before start().
    [[nodiscard]] const X11Connection& connection() const { return m_connection; }

    /// Called once on the thread, before any task, where there is an X server.
    virtual void connected() { }

    virtual void handleEvent(const xcb_generic_event_t& event) = 0;

    /// Called once the deadline has passed; sets the next one.
    virtual void deadlinePassed() { }

    void setDeadline(std::optional<Clock::time_point> deadline) { m_deadline = deadline; }

    /// Handles the events that have arrived, and waits for the first one until @p end.
    /// False when none came, or the server is gone.
    bool handleEventsUntil(Clock::time_point end);

private:
    void run(Seconds pause);
    bool handlePending();
    void runTasks();
    /// Until a task is posted or @p end; until an event arrives too, if @p watchServer.
    void sleep(std::optional<Clock::time_point> end, bool watchServer) const;

    X11Connection m_connection;
    int m_wakeUp;
    std::mutex m_mutex; // Guards m_tasks.
    std::deque<std::function<void()>> m_tasks;
    std::atomic<bool> m_stopping = false;
    std::optional<Clock::time_point> m_deadline;
    std::thread m_thread;
};

} // namespace tavrin
