#pragma once

#include "base/Seconds.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

struct _GMainContext; // NOLINT(bugprone-reserved-identifier): GLib's own name
struct _GSource; // NOLINT(bugprone-reserved-identifier): GLib's own name
struct _GMainLoop; // NOLINT(bugprone-reserved-identifier): GLib's own name

namespace tavrin {

/// The thread that speaks with the accessibility bus. libatspi belongs to one thread and to GLib's
/// default main context, so this thread runs that context; the process must run no other loop on it
/// (QT_NO_GLIB=1).
///
/// Every public method is called on the main thread.
class AtspiWorker {
public:
    /// Longest time that questions in a row keep their caller waiting, all together.
    static constexpr Seconds patience{0.4};

    /// Questions with no more than this between them are in a row.
    static constexpr Seconds pauseWithinRow{0.05};

    /// @p stop runs last, on the worker's thread.
    explicit AtspiWorker(std::function<void()> stop);
    ~AtspiWorker();

    AtspiWorker(const AtspiWorker&) = delete;
    AtspiWorker& operator=(const AtspiWorker&) = delete;

    /// Runs @p job on the thread, some time.
    void post(std::function<void()> job);

    /// Runs @p job on the thread, @p pause from now or later.
    void postAfter(Seconds pause, std::function<void()> job);

    /// Runs @p job on the thread and returns its answer. Empty when the answer takes too long, and
    /// at once when those before it in the row have used up the patience, or one of them still
    /// hangs: then @p job never runs, or its answer is dropped.
    template <class Answer>
    [[nodiscard]] std::optional<Answer> ask(std::function<Answer()> job);

private:
    /// One question: what its asker waits for.
    template <class Answer>
    struct Question {
        std::mutex mutex;
        std::condition_variable answered;
        std::optional<Answer> answer;
        bool abandoned = false;
    };

    void attach(_GSource* source, std::function<void()> job);
    void run(const std::function<void()>& stop);

    /// How long a question that begins now may take.
    [[nodiscard]] Seconds patienceLeft() const;
    void noteWait(std::chrono::steady_clock::time_point start);

    Seconds m_waited{0}; // In the row of questions that ended last.
    std::chrono::steady_clock::time_point m_rowEnd;
    std::atomic<int> m_unanswered = 0; // Questions whose asker gave up and whose job has not ended.
    _GMainContext* m_context = nullptr;
    _GMainLoop* m_loop = nullptr;
    std::thread m_thread;
};

template <class Answer>
std::optional<Answer> AtspiWorker::ask(std::function<Answer()> job)
{
    const Seconds left = patienceLeft();
    if (m_unanswered > 0 || left <= Seconds(0))
        return std::nullopt;

    const auto start = std::chrono::steady_clock::now();
    const auto question = std::make_shared<Question<Answer>>();
    post([this, question, job = std::move(job)] {
        {
            const std::lock_guard lock(question->mutex);
            if (question->abandoned) {
                --m_unanswered;
                return;
            }
        }
        Answer answer = job();
        const std::lock_guard lock(question->mutex);
        if (question->abandoned) {
            --m_unanswered;
            return;
        }
        question->answer = std::move(answer);
        question->answered.notify_one();
    });

    std::unique_lock lock(question->mutex);
    question->answered.wait_for(lock, left, [&] { return question->answer.has_value(); });
    noteWait(start);
    if (!question->answer) {
        question->abandoned = true;
        ++m_unanswered;
    }
    return std::move(question->answer);
}

} // namespace tavrin
