#include "platform/qt/QtMainQueue.h"
#include "support/WaitUntil.h"
#include "support/ports/VirtualTime.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <optional>
#include <thread>

namespace tavrin::testing {
namespace {

using namespace std::chrono_literals;

/// A queue whose time the test lets pass.
class Subject {
public:
    virtual ~Subject() = default;
    [[nodiscard]] virtual MainQueue& queue() = 0;
    /// Runs the queue for at least @p duration.
    virtual void pass(Seconds duration) = 0;
    /// Runs the queue until @p done, for what has no time of its own.
    virtual void passUntil(const std::function<bool()>& done) = 0;
    virtual void destroyQueue() = 0;
};

class VirtualSubject final : public Subject {
public:
    [[nodiscard]] MainQueue& queue() override { return *m_time; }

    void pass(Seconds duration) override { m_time->advance(duration); }

    void passUntil(const std::function<bool()>& done) override
    {
        m_time->advance(1ms);
        EXPECT_TRUE(done());
    }

    void destroyQueue() override { m_time.reset(); }

private:
    std::optional<VirtualTime> m_time{std::in_place};
};

class QtSubject final : public Subject {
public:
    [[nodiscard]] MainQueue& queue() override { return *m_queue; }

    void pass(Seconds duration) override
    {
        QEventLoop loop;
        const auto end = m_queue->after(duration, [&loop] { loop.quit(); });
        loop.exec();
    }

    void passUntil(const std::function<bool()>& done) override { EXPECT_TRUE(waitUntil(done)); }

    void destroyQueue() override { m_queue.reset(); }

private:
    std::unique_ptr<QtMainQueue> m_queue = std::make_unique<QtMainQueue>();
};

template <class Type>
std::unique_ptr<Subject> make()
{
    return std::make_unique<Type>();
}

struct Case {
    const char* name;
    std::unique_ptr<Subject> (*make)();
};

class MainQueueContractTest : public ::testing::TestWithParam<Case> {
protected:
    std::unique_ptr<Subject> m_subject = GetParam().make();
    MainQueue& m_queue = m_subject->queue();
    std::vector<int> m_calls;

    MainQueue::Task record(int number)
    {
        return [this, number] { m_calls.push_back(number); };
    }
};

INSTANTIATE_TEST_SUITE_P(Implementations, MainQueueContractTest,
    ::testing::Values(Case{"Virtual", make<VirtualSubject>}, Case{"Qt", make<QtSubject>}),
    [](const auto& given) { return given.param.name; });

TEST_P(MainQueueContractTest, PostedTasksRunLaterAndInOrder)
{
    for (int i = 0; i < 5; ++i)
        m_queue.post(record(i));
    EXPECT_TRUE(m_calls.empty());
    m_subject->pass(1ms);
    EXPECT_EQ(m_calls, (std::vector<int>{0, 1, 2, 3, 4}));
}

TEST_P(MainQueueContractTest, ATaskPostedByATaskRunsAfterThoseThatWait)
{
    m_queue.post([this] {
        m_calls.push_back(1);
        m_queue.post(record(3));
    });
    m_queue.post(record(2));
    m_subject->passUntil([this] { return m_calls.size() == 3; });
    EXPECT_EQ(m_calls, (std::vector<int>{1, 2, 3}));
}

TEST_P(MainQueueContractTest, DelayedCallsRunInOrderOfTheirTime)
{
    m_queue.callLater(30ms, record(3));
    const auto first = m_queue.after(10ms, record(1));
    m_queue.callLater(20ms, record(2));
    m_subject->pass(40ms);
    EXPECT_EQ(m_calls, (std::vector<int>{1, 2, 3}));
}

TEST_P(MainQueueContractTest, ADestroyedTimerNeverCalls)
{
    auto timer = m_queue.after(5ms, record(1));
    auto repeating = m_queue.every(5ms, record(2));
    timer.reset();
    repeating.reset();
    m_subject->pass(15ms);
    EXPECT_TRUE(m_calls.empty());
}

TEST_P(MainQueueContractTest, ATimerMayBeDestroyedByItsOwnCall)
{
    std::unique_ptr<Timer> timer;
    std::unique_ptr<Timer> repeating;
    timer = m_queue.after(1ms, [&] {
        timer.reset();
        m_calls.push_back(1);
    });
    repeating = m_queue.every(2ms, [&] {
        repeating.reset();
        m_calls.push_back(2);
    });
    m_subject->pass(20ms);
    EXPECT_EQ(m_calls, (std::vector<int>{1, 2}));
}

TEST_P(MainQueueContractTest, AFiredTimerThatIsDestroyedLateCancelsNothingElse)
{
    auto fired = m_queue.after(1ms, record(1));
    m_subject->pass(3ms);
    const auto next = m_queue.after(1ms, record(2));
    fired.reset();
    m_subject->pass(5ms);
    EXPECT_EQ(m_calls, (std::vector<int>{1, 2}));
}

TEST_P(MainQueueContractTest, RepeatingCallsStartAfterOneInterval)
{
    // Told by the order of the calls: on a busy machine more time passes than was asked for.
    const auto before = m_queue.after(10ms, record(0));
    const auto repeating = m_queue.every(20ms, record(1));
    const auto after = m_queue.after(70ms, record(2));
    m_subject->pass(80ms);
    const auto end = std::ranges::find(m_calls, 2);
    EXPECT_EQ(m_calls.front(), 0);
    EXPECT_LE(std::count(m_calls.begin(), end, 1), 3);
    m_subject->pass(30ms);
    EXPECT_GE(std::ranges::count(m_calls, 1), 2);
}

TEST_P(MainQueueContractTest, TasksThatWaitAreDestroyedWithTheQueue)
{
    const auto held = std::make_shared<int>(1);
    const std::weak_ptr<int> watched = held;
    m_queue.post([held] {});
    m_queue.callLater(1s, [held, again = held] {});
    EXPECT_EQ(watched.use_count(), 4);
    m_subject->destroyQueue();
    EXPECT_EQ(watched.use_count(), 1);
}

TEST(QtMainQueueTest, PostsFromManyThreadsArriveOnceAndInEachThreadsOrder)
{
    QtSubject subject;
    constexpr int threads = 4;
    constexpr int posts = 500;
    std::array<std::vector<int>, threads> arrived;
    const auto main = std::this_thread::get_id();
    std::vector<std::thread> posters;
    posters.reserve(threads);
    for (int thread = 0; thread < threads; ++thread) {
        posters.emplace_back([&, thread] {
            for (int i = 0; i < posts; ++i)
                subject.queue().post([&, thread, i] {
                    EXPECT_EQ(std::this_thread::get_id(), main);
                    arrived.at(static_cast<std::size_t>(thread)).push_back(i);
                });
        });
    }
    for (auto& poster : posters)
        poster.join();
    subject.pass(20ms);
    for (const auto& order : arrived) {
        ASSERT_EQ(order.size(), posts);
        EXPECT_TRUE(std::is_sorted(order.begin(), order.end()));
    }
}

TEST(QtMainQueueTest, DelaysNeverEndEarly)
{
    QtSubject subject;
    for (const auto delay : {1ms, 7ms, 26ms}) {
        QElapsedTimer elapsed;
        elapsed.start();
        subject.pass(delay);
        EXPECT_GE(std::chrono::nanoseconds(elapsed.nsecsElapsed()), delay);
    }
}

TEST(QtMainQueueTest, ANestedEventLoopGoesOnWithTheNextTask)
{
    QtSubject subject;
    bool nestedRan = false;
    subject.queue().post([&] {
        subject.queue().post([&] { nestedRan = true; });
        subject.pass(5ms);
        EXPECT_TRUE(nestedRan);
    });
    subject.pass(20ms);
    EXPECT_TRUE(nestedRan);
}

TEST(QtMainQueueTest, ATimerMayOutliveTheQueue)
{
    QtSubject subject;
    const auto timer = subject.queue().after(1ms, [] { FAIL(); });
    subject.destroyQueue();
    QCoreApplication::processEvents();
}

} // namespace
} // namespace tavrin::testing
