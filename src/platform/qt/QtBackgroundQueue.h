#pragma once

#include "platform/BackgroundQueue.h"

#include <QThreadPool>

#include <memory>
#include <mutex>
#include <vector>

namespace tavrin {

class MainQueue;

/// One thread of Qt's pool, started with the first work and ended when it has been idle for long.
class QtBackgroundQueue final : public BackgroundQueue {
public:
    /// @param mainQueue must outlive it.
    explicit QtBackgroundQueue(MainQueue& mainQueue);
    ~QtBackgroundQueue() override;

    QtBackgroundQueue(const QtBackgroundQueue&) = delete;
    QtBackgroundQueue& operator=(const QtBackgroundQueue&) = delete;

    void run(Task work, Task done) override;
    void drain() override;

private:
    /// The `done` calls of work that has ended, shared with the thread that adds to it.
    struct Ended {
        std::mutex mutex;
        std::vector<Task> tasks;

        void callAll();
    };

    MainQueue& m_mainQueue;
    std::shared_ptr<Ended> m_ended;
    QThreadPool m_pool;
};

} // namespace tavrin
