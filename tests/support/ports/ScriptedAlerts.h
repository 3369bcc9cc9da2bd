#pragma once

#include "platform/Alerts.h"
#include "support/ports/Note.h"

#include <utility>

namespace tavrin::testing {

/// Alerts that nobody sees: the test reads them and presses their buttons.
class ScriptedAlerts final : public Alerts {
public:
    ~ScriptedAlerts() override
    {
        for (auto& [alert, completion] : m_open)
            completion(AlertAnswer{alert.unanswered(), {}});
    }

    ScriptedAlerts() = default;

    /// Alerts that @p note is told of, and that are answered as soon as they are shown.
    explicit ScriptedAlerts(Note note)
        : m_note(std::move(note))
        , m_answersAtOnce(true)
    {
    }

    ScriptedAlerts(const ScriptedAlerts&) = delete;
    ScriptedAlerts& operator=(const ScriptedAlerts&) = delete;

    void show(const Alert& alert, Completion<AlertAnswer> completion) override
    {
        tell(
            m_note, QStringLiteral("alert: %1 | %2").arg(alert.messageText, alert.informativeText));
        m_shown.append(alert);
        if (m_answersAtOnce)
            completion(AlertAnswer{});
        else
            m_open.append({alert, std::move(completion)});
    }

    void beep() override
    {
        tell(m_note, QStringLiteral("beep"));
        ++m_beeps;
    }

    /// Every alert so far, oldest first.
    [[nodiscard]] const QList<Alert>& shown() const { return m_shown; }

    /// Alerts still without an answer.
    [[nodiscard]] qsizetype open() const { return m_open.size(); }

    /// Answers the oldest open alert.
    void answer(int button, const QStringList& fields = {})
    {
        const auto first = m_open.takeFirst();
        first.second(AlertAnswer{button, fields});
    }

    [[nodiscard]] int beeps() const { return m_beeps; }

private:
    Note m_note;
    bool m_answersAtOnce = false;
    QList<Alert> m_shown;
    QList<std::pair<Alert, Completion<AlertAnswer>>> m_open;
    int m_beeps = 0;
};

} // namespace tavrin::testing
