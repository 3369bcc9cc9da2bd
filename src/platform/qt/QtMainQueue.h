#pragma once

#include "platform/MainQueue.h"

#include <memory>

namespace tavrin {

/// The event loop of Qt's main thread as the main queue.
///
/// Created and destroyed on the main thread; post() works from any thread. Delays are precise to
/// the millisecond and never end early. Tasks that still wait when the queue is destroyed are
/// dropped there, on the main thread, and none is accepted from then on; timers may outlive it.
class QtMainQueue final : public MainQueue {
public:
    QtMainQueue();
    ~QtMainQueue() override;

    QtMainQueue(const QtMainQueue&) = delete;
    QtMainQueue& operator=(const QtMainQueue&) = delete;

    void post(Task task) override;
    [[nodiscard]] std::unique_ptr<Timer> after(Seconds delay, Task task) override;
    void callLater(Seconds delay, Task task) override;
    [[nodiscard]] std::unique_ptr<Timer> every(Seconds interval, Task task) override;

private:
    class Dispatcher;
    class PendingCall;

    std::shared_ptr<Dispatcher> m_dispatcher; // Timers hold it weakly.
};

} // namespace tavrin
