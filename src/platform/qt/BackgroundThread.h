#pragma once

#include "platform/BackgroundQueue.h"

#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace tavrin {

class MainQueue;

/// One thread, started with the first work. It is no pool of Qt's: no checker of threads sees how
/// those wait for each other.
class BackgroundThread final : public BackgroundQueue {
public:
    /// @param mainQueue must outlive it.
    explicit BackgroundThread(MainQueue& mainQueue);
    /// Waits for what is being done.
    ~BackgroundThread() override;

    BackgroundThread(const BackgroundThread&) = delete;
    BackgroundThread& operator=(const BackgroundThread&) = delete;

    void run(Task work, Task done) override;
    void drain() override;

private:
    struct Job {
        Task work;
        Task done;
    };

    /// What the thread has and what it leaves behind, for both threads.
    struct Shared {
        std::mutex mutex;
        std::condition_variable_any changed;
        std::deque<Job> waiting;
        bool isBusy = false;
        std::vector<Task> ended;

        void callEnded();
    };

    static void doWaiting(
        const std::stop_token& stop, const std::shared_ptr<Shared>& shared, MainQueue& mainQueue);

    MainQueue& m_mainQueue;
    std::shared_ptr<Shared> m_shared;
    std::jthread m_thread;
};

} // namespace tavrin
