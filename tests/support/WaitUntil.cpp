#include "support/WaitUntil.h"

#include <QCoreApplication>
#include <QTimer>

namespace tavrin::testing {

bool waitUntil(const std::function<bool()>& condition, Seconds limit)
{
    bool expired = false;
    QTimer deadline;
    deadline.setSingleShot(true);
    QObject::connect(&deadline, &QTimer::timeout, [&] { expired = true; });
    deadline.start(std::chrono::duration_cast<std::chrono::milliseconds>(limit));
    QTimer look;
    look.start(std::chrono::milliseconds{5});
    while (!condition() && !expired)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    return condition();
}

} // namespace tavrin::testing
