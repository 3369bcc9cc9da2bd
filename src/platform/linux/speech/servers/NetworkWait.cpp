#include "platform/linux/speech/servers/NetworkWait.h"

#include <QTimer>

#include <utility>

namespace tavrin {

NetworkWait::NetworkWait(std::stop_token stop)
    : m_stop(std::move(stop))
{
}

bool NetworkWait::wait(Seconds longest)
{
    if (std::exchange(m_finished, false))
        return true;
    QTimer deadline;
    deadline.setSingleShot(true);
    QObject::connect(&deadline, &QTimer::timeout, &m_loop, &QEventLoop::quit);
    deadline.start(std::chrono::ceil<std::chrono::milliseconds>(longest));
    // Queued: a quit before the loop runs would be lost.
    const std::stop_callback cancel(
        m_stop, [this] { QMetaObject::invokeMethod(&m_loop, "quit", Qt::QueuedConnection); });
    m_loop.exec();
    return std::exchange(m_finished, false) || m_stop.stop_requested();
}

void NetworkWait::finish()
{
    m_finished = true;
    m_loop.quit();
}

} // namespace tavrin
