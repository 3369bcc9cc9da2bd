#include "platform/linux/x11/X11Thread.h"

#include <algorithm>
#include <array>
#include <limits>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

namespace tavrin {

X11Thread::X11Thread()
    : m_wakeUp(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
{
}

X11Thread::~X11Thread()
{
    ::close(m_wakeUp);
}

void X11Thread::start(Seconds pause)
{
    m_thread = std::thread([this, pause] { run(pause); });
}

void X11Thread::stop()
{
    if (!m_thread.joinable())
        return;
    post([this] { m_stopping = true; });
    m_thread.join();
}

void X11Thread::post(std::function<void()> task)
{
    {
        const std::lock_guard lock(m_mutex);
        m_tasks.push_back(std::move(task));
    }
    const quint64 one = 1;
    [[maybe_unused]] const auto written = ::write(m_wakeUp, &one, sizeof one);
}

bool X11Thread::handleEventsUntil(Clock::time_point end)
{
    while (m_connection.isOpen()) {
        if (handlePending())
            return true;
        if (Clock::now() >= end)
            return false;
        pollfd server{xcb_get_file_descriptor(m_connection.get()), POLLIN, 0};
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now());
        ::poll(&server, 1, static_cast<int>(std::max<qint64>(left.count(), 0)));
    }
    return false;
}

void X11Thread::run(Seconds pause)
{
    if (pause > Seconds(0))
        sleep(Clock::now() + std::chrono::ceil<Clock::duration>(pause), false);
    if (m_connection.isOpen())
        connected();
    while (!m_stopping) {
        runTasks();
        handlePending();
        if (m_deadline && Clock::now() >= *m_deadline) {
            m_deadline.reset();
            deadlinePassed();
        }
        xcb_flush(m_connection.get());
        if (!m_stopping && !handlePending())
            sleep(m_deadline, m_connection.isOpen());
    }
}

bool X11Thread::handlePending()
{
    bool handled = false;
    while (const XcbPointer<xcb_generic_event_t> event{xcb_poll_for_event(m_connection.get())}) {
        if (event->response_type != 0) // Errors have no handler: what they speak of is gone.
            handleEvent(*event);
        handled = true;
    }
    return handled;
}

void X11Thread::runTasks()
{
    quint64 count = 0;
    [[maybe_unused]] const auto read = ::read(m_wakeUp, &count, sizeof count);
    std::deque<std::function<void()>> tasks;
    {
        const std::lock_guard lock(m_mutex);
        tasks.swap(m_tasks);
    }
    for (const auto& task : tasks)
        task();
}

void X11Thread::sleep(std::optional<Clock::time_point> end, bool watchServer) const
{
    int timeout = -1;
    if (end) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(*end - Clock::now());
        timeout =
            static_cast<int>(std::clamp<qint64>(left.count(), 0, std::numeric_limits<int>::max()));
    }
    std::array<pollfd, 2> sources{pollfd{m_wakeUp, POLLIN, 0}, pollfd{-1, POLLIN, 0}};
    if (watchServer) // One that is gone would wake us without end.
        sources[1].fd = xcb_get_file_descriptor(m_connection.get());
    ::poll(sources.data(), sources.size(), timeout);
}

} // namespace tavrin
