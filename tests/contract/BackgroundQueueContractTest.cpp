#include "contract/Subject.h"
#include "platform/qt/BackgroundThread.h"
#include "platform/qt/QtMainQueue.h"
#include "support/WaitUntil.h"
#include "support/ports/InMemoryBackgroundQueue.h"

#include <QSemaphore>
#include <QStringList>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <optional>
#include <thread>
#include <utility>

using namespace Qt::StringLiterals;

namespace tavrin::testing {
namespace {

/// A queue whose work the test lets run.
class Subject {
public:
    virtual ~Subject() = default;
    [[nodiscard]] virtual BackgroundQueue& queue() = 0;
    virtual void passUntil(const std::function<bool()>& done) = 0;
    virtual void destroyQueue() = 0;
};

class InMemorySubject final : public Subject {
public:
    [[nodiscard]] BackgroundQueue& queue() override { return *m_queue; }

    void passUntil(const std::function<bool()>& done) override
    {
        while (m_queue->pending() > 0)
            m_queue->runNext();
        EXPECT_TRUE(done());
    }

    void destroyQueue() override { m_queue.reset(); }

private:
    std::optional<InMemoryBackgroundQueue> m_queue{std::in_place};
};

class QtSubject final : public Subject {
public:
    [[nodiscard]] BackgroundQueue& queue() override { return *m_queue; }

    void passUntil(const std::function<bool()>& done) override { EXPECT_TRUE(waitUntil(done)); }

    void destroyQueue() override { m_queue.reset(); }

private:
    QtMainQueue m_mainQueue;
    std::optional<BackgroundThread> m_queue{std::in_place, m_mainQueue};
};

class BackgroundQueueContractTest : public ContractTest<Subject> {
protected:
    BackgroundQueue& queue() { return subject().queue(); }

    /// Work that notes itself and its end. What it shares with the other is its alone until then.
    void run(const QString& name)
    {
        const auto shared = std::make_shared<QString>();
        queue().run([shared, name] { *shared = name + u" worked"_s; },
            [this, shared] { ended.append(*shared); });
    }

    QStringList ended;
};

INSTANTIATE_TEST_SUITE_P(Implementations, BackgroundQueueContractTest,
    ::testing::Values(Implementation<Subject>{"InMemory", makeSubject<Subject, InMemorySubject>},
        Implementation<Subject>{"Qt", makeSubject<Subject, QtSubject>}),
    implementationName);

TEST_P(BackgroundQueueContractTest, WhatIsToBeDoneAfterItsWorkComesInOrder)
{
    for (const auto* name : {u"one", u"two", u"three"})
        run(QString::fromUtf16(name));

    EXPECT_TRUE(ended.isEmpty()); // Never from within run().
    subject().passUntil([&] { return ended.size() == 3; });
    EXPECT_EQ(ended, QStringList({u"one worked"_s, u"two worked"_s, u"three worked"_s}));
}

TEST_P(BackgroundQueueContractTest, WhatIsToBeDoneAfterItIsDoneOnTheMainThread)
{
    std::thread::id thread;
    queue().run([] {}, [&] { thread = std::this_thread::get_id(); });

    subject().passUntil([&] { return thread != std::thread::id{}; });
    EXPECT_EQ(thread, std::this_thread::get_id());
}

TEST_P(BackgroundQueueContractTest, DrainingEndsEverythingBeforeItReturns)
{
    run(u"one"_s);
    run(u"two"_s);

    queue().drain();
    EXPECT_EQ(ended, QStringList({u"one worked"_s, u"two worked"_s}));
    queue().drain();
    EXPECT_EQ(ended.size(), 2);
}

TEST_P(BackgroundQueueContractTest, WorkThatStillWaitsGoesWithTheQueue)
{
    bool ran = false;
    QSemaphore dropped;
    std::shared_ptr<void> guard(nullptr, [&](void*) { dropped.release(); });
    // Keeps the queue busy until the work behind it has gone.
    queue().run([&] { EXPECT_TRUE(dropped.tryAcquire(1, 10'000)); }, [&] { ran = true; });
    queue().run([&ran, held = std::move(guard)] { ran = true; }, [] {});

    subject().destroyQueue();
    EXPECT_FALSE(ran);
}

TEST(BackgroundThreadTest, WorkRunsOffTheMainThread)
{
    QtMainQueue mainQueue;
    BackgroundThread queue(mainQueue);
    std::thread::id thread;

    queue.run([&] { thread = std::this_thread::get_id(); }, [] {});
    queue.drain();

    EXPECT_NE(thread, std::thread::id{});
    EXPECT_NE(thread, std::this_thread::get_id());
}

} // namespace
} // namespace tavrin::testing
