#pragma once

#include "platform/linux/atspi/AtspiFocus.h"
#include "platform/linux/atspi/AtspiText.h"
#include "platform/linux/atspi/AtspiWorker.h"
#include "platform/programs/Accessibility.h"

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <optional>

namespace tavrin {

/// Refers to an element of another program. Created and destroyed on the main thread; its GObject
/// is touched on the worker alone, and released there.
class AtspiElement final : public AccessibleElement {
public:
    AtspiElement(
        AtspiWorker& worker, std::shared_ptr<AtspiAccessible> accessible, unsigned process);
    ~AtspiElement() override;

    AtspiElement(const AtspiElement&) = delete;
    AtspiElement& operator=(const AtspiElement&) = delete;

    [[nodiscard]] const std::shared_ptr<AtspiAccessible>& accessible() const
    {
        return m_accessible;
    }

    /// 0 when the bus did not know it.
    [[nodiscard]] unsigned process() const { return m_process; }

private:
    AtspiWorker& m_worker;
    std::shared_ptr<AtspiAccessible> m_accessible;
    unsigned m_process;
};

/// The connection to the accessibility bus, and questions to programs through it. Main thread only.
///
/// A program that has let a question run into the time-out is left alone for two seconds: until
/// then every question about it is answered "unknown" at once.
class AtspiConnection {
public:
    using Find = std::function<GObjectHandle<AtspiAccessible>(AtspiFocus&, unsigned process)>;

    /// Connects after @p startPause, or when it is asked something before.
    explicit AtspiConnection(Seconds startPause);

    /// Whether the bus is there and the desktop lets programs use it. Connects when it was not
    /// there before.
    [[nodiscard]] bool isEnabled();

    /// Asks the desktop to switch accessibility on.
    void enable();

    /// The element that @p find finds in @p process, or without one in the process that announced
    /// the focus last. Null when there is none, or when the process hangs. This process itself is
    /// not asked: its answers come from the thread that waits here.
    [[nodiscard]] ElementHandle find(std::optional<unsigned> process, Find find);

    /// The processes that have joined the bus; empty without a bus, and when it does not answer.
    [[nodiscard]] std::optional<QSet<qint64>> processesOnBus();

    [[nodiscard]] ElementHandle retain(const AtspiElement& element);

    /// Asks about the element's program; empty when it hangs, is known to, or @p element is null.
    template <class Answer>
    [[nodiscard]] std::optional<Answer> ask(const AccessibleElement* element,
        std::function<Answer(AtspiTextReader&, AtspiAccessible*)> question);

private:
    /// What only the worker touches.
    struct Bus {
        std::unique_ptr<AtspiFocus> focus; // Null while there is no bus.
        AtspiTextReader text;
        std::map<unsigned, std::chrono::steady_clock::time_point> hungUntil; // By process.
        bool wasTried = false; // To connect.

        void connect();
        void connectFirst();
        [[nodiscard]] bool mayBeAsked(unsigned process) const;

        /// To be called with the time at which a question to @p process began.
        void noteAnswer(unsigned process, std::chrono::steady_clock::time_point start);
    };

    std::shared_ptr<Bus> m_bus;
    AtspiWorker m_worker;
};

template <class Answer>
std::optional<Answer> AtspiConnection::ask(const AccessibleElement* element,
    std::function<Answer(AtspiTextReader&, AtspiAccessible*)> question)
{
    if (!element)
        return std::nullopt;
    const auto& target = static_cast<const AtspiElement&>(*element);
    using Reply = std::optional<Answer>;
    return m_worker
        .ask<Reply>([bus = m_bus, accessible = target.accessible(), process = target.process(),
                        question = std::move(question)]() -> Reply {
            if (!bus->focus || !bus->mayBeAsked(process))
                return std::nullopt;
            const auto start = std::chrono::steady_clock::now();
            Answer answer = question(bus->text, accessible.get());
            bus->noteAnswer(process, start);
            return answer;
        })
        .value_or(std::nullopt);
}

} // namespace tavrin
