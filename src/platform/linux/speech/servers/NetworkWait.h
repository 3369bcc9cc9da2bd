#pragma once

#include "base/Seconds.h"

#include <QEventLoop>

#include <stop_token>

namespace tavrin {

/// Lets the worker thread wait for a server: runs the thread's network events until somebody calls
/// finish(), the time is over or the request is cancelled. One thread; cancelling may come from
/// any.
class NetworkWait {
public:
    explicit NetworkWait(std::stop_token stop);

    /// Waits at most @p longest, and not at all when finish() was called since the last wait. False
    /// when the time was over first.
    bool wait(Seconds longest);

    void finish();

private:
    QEventLoop m_loop;
    std::stop_token m_stop;
    bool m_finished = false;
};

} // namespace tavrin
