#pragma once

#include <QString>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <future>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <unordered_map>
#include <vector>

struct pa_context;
struct pa_mainloop;
struct pa_operation;

namespace tavrin {

/// The connection to the sound server (PulseAudio, or PipeWire in its place) that everything but
/// the playing of sounds shares.
///
/// A thread of its own talks to the server; everybody else asks and waits a bounded time. A server
/// that does not answer is not asked again until it does, so that a hung one costs one wait, not
/// one per question. A server that is away is looked for anew with each question.
/// Callable from any thread unless noted. Shared by all that use it; destroyed on another thread
/// than its own.
class PulseConnection {
public:
    using Deadline = std::chrono::steady_clock::time_point;

    PulseConnection();
    ~PulseConnection();

    PulseConnection(const PulseConnection&) = delete;
    PulseConnection& operator=(const PulseConnection&) = delete;

    /// When a caller that begins to wait now gives up: in less than half a second.
    [[nodiscard]] static Deadline patience();

    /// A question under way; lives on the connection's thread, which is the only one to call it.
    class QuestionBase;
    template <class Answer>
    class Question;

    /// Asks the server by @p start, which is called on the connection's thread with the connected
    /// context and the question. It returns the operation it began with the question as its user
    /// data, or just whether it began; a callback of libpulse then answers the question and
    /// finishes it. Empty without an answer in time, or when the server is away.
    template <class Answer, class Start>
    [[nodiscard]] std::optional<Answer> ask(Deadline deadline, Start start);

    /// What became of an order.
    enum class Order {
        Refused, ///< Not carried out, now or later.
        CarriedOut,
        UnderWay, ///< The server has it and has not answered in time: it may come yet.
    };

    /// Orders by @p start, as ask() asks; the answer tells whether it was carried out.
    template <class Start>
    [[nodiscard]] Order order(Deadline deadline, Start start);

    /// Begins to connect, so that the first question need not wait for it.
    void warmUp();

    /// Runs @p task on the connection's thread.
    void post(std::function<void()> task);

    /// Grows with every change of a device, of a default and of the connection itself.
    [[nodiscard]] quint64 changes() const;

    /// Waits until changes() differs from @p seen; false at the deadline.
    bool waitForChange(quint64 seen, Deadline deadline) const;

private:
    using WhenConnected = std::function<void(pa_context*)>;

    /// What came of a question: its answer, or else whether the server has it.
    template <class Answer>
    struct Outcome {
        std::optional<Answer> answer;
        bool isBegun = false;
    };

    template <class Answer, class Start>
    [[nodiscard]] Outcome<Answer> put(Deadline deadline, Start start);

    // On the connection's thread.
    void run();
    void runTasks();
    void whenConnected(WhenConnected task);
    void connect();
    void contextStateChanged();
    void dropContext();
    void countChange();
    void close(QuestionBase* question);
    void begin(const std::shared_ptr<QuestionBase>& question, pa_operation* operation);
    void begin(const std::shared_ptr<QuestionBase>& question, bool begun);

    int m_tasksWaiting; ///< Readable while m_tasks is not empty.

    std::atomic<bool> m_quit = false;

    // On the connection's thread.
    pa_mainloop* m_loop = nullptr; ///< Null until the first task.
    pa_context* m_context = nullptr;
    int m_contexts = 0; ///< Made so far; tells the present one from earlier ones.
    std::vector<WhenConnected> m_waiting; ///< For the connection.
    std::unordered_map<QuestionBase*, std::shared_ptr<QuestionBase>> m_open; ///< With the server.

    /// Questions that nobody waits for any more and the server has not answered.
    std::atomic<int> m_unanswered = 0;

    mutable std::mutex m_mutex; ///< Guards what follows.
    mutable std::condition_variable m_changed;
    std::vector<std::function<void()>> m_tasks;
    quint64 m_changes = 0;

    std::thread m_thread; // Last: it uses all of the above.
};

class PulseConnection::QuestionBase {
public:
    explicit QuestionBase(PulseConnection& connection)
        : m_connection(connection)
    {
    }

    virtual ~QuestionBase()
    {
        if (m_fate->wait.exchange(Wait::Over) == Wait::Abandoned)
            --m_connection.m_unanswered;
    }

    QuestionBase(const QuestionBase&) = delete;
    QuestionBase& operator=(const QuestionBase&) = delete;

    /// Ends the question, answered or not, and deletes it.
    void finish() { m_connection.close(this); }

private:
    friend class PulseConnection;

    enum class Wait { Waiting, Begun, Abandoned, Over };

    /// Shared by the question and the one who asks: either may be gone first.
    struct Fate {
        std::atomic<Wait> wait = Wait::Waiting;
        std::atomic<bool> isBegun = false; ///< The server has the question.

        /// Turns @p from into @p to; false when it is something else by now.
        bool turn(Wait from, Wait to) { return wait.compare_exchange_strong(from, to); }
    };

    PulseConnection& m_connection;
    std::shared_ptr<Fate> m_fate = std::make_shared<Fate>();
};

template <class Answer>
class PulseConnection::Question final : public QuestionBase {
public:
    using QuestionBase::QuestionBase;

    /// The question behind the user data of a callback of libpulse.
    [[nodiscard]] static Question& in(void* data) { return *static_cast<Question*>(data); }

    ~Question() override { m_promise.set_value(std::move(m_answer)); }

    /// What finish() will hand to the one who asks; kept here while it is collected.
    std::optional<Answer>& answer() { return m_answer; }

private:
    friend class PulseConnection;

    std::optional<Answer> m_answer;
    std::promise<std::optional<Answer>> m_promise;
};

template <class Answer, class Start>
PulseConnection::Outcome<Answer> PulseConnection::put(Deadline deadline, Start start)
{
    using Wait = QuestionBase::Wait;
    if (m_unanswered > 0)
        return {};
    auto question = std::make_shared<Question<Answer>>(*this);
    auto answer = question->m_promise.get_future();
    const auto fate = question->m_fate;
    post([this, question = std::move(question), start = std::move(start)]() mutable {
        whenConnected([this, question = std::move(question), start](pa_context* context) {
            // What nobody waits for any more is not begun: its owner may be gone.
            if (context && question->m_fate->turn(Wait::Waiting, Wait::Begun))
                begin(question, start(context, question.get()));
        });
    });
    if (answer.wait_until(deadline) != std::future_status::ready) {
        if (fate->turn(Wait::Waiting, Wait::Abandoned)) {
            ++m_unanswered;
            return {};
        }
        if (fate->turn(Wait::Begun, Wait::Abandoned)) {
            ++m_unanswered;
            return {std::nullopt, true};
        }
    } // Else it has been answered just now.
    return {answer.get(), fate->isBegun};
}

template <class Answer, class Start>
std::optional<Answer> PulseConnection::ask(Deadline deadline, Start start)
{
    return put<Answer>(deadline, std::move(start)).answer;
}

template <class Start>
PulseConnection::Order PulseConnection::order(Deadline deadline, Start start)
{
    const Outcome<bool> outcome = put<bool>(deadline, std::move(start));
    if (outcome.answer)
        return *outcome.answer ? Order::CarriedOut : Order::Refused;
    return outcome.isBegun ? Order::UnderWay : Order::Refused;
}

} // namespace tavrin
