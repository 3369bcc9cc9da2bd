#include "ui/alerts/DrawnAlerts.h"

#include "ui/alerts/AlertWindow.h"

#include <QApplication>

namespace tavrin::ui {

DrawnAlerts::DrawnAlerts() = default;

DrawnAlerts::~DrawnAlerts()
{
    m_window.reset();
    for (const auto& [alert, completion] : std::exchange(m_entries, {})) {
        AlertAnswer answer{alert.unanswered(), {}};
        for (const AlertField& field : alert.fields)
            answer.fields.append(field.text);
        completion(answer);
    }
}

void DrawnAlerts::show(const Alert& alert, Completion<AlertAnswer> completion)
{
    m_entries.emplace_back(alert, std::move(completion));
    showNext();
}

void DrawnAlerts::beep()
{
    QApplication::beep();
}

void DrawnAlerts::showNext()
{
    if (m_window || m_entries.empty())
        return;
    m_window = std::make_unique<AlertWindow>(
        m_entries.front().first, [this](const AlertAnswer& answer) { finish(answer); });
    m_window->show();
    m_window->raise();
    m_window->activateWindow();
}

void DrawnAlerts::finish(const AlertAnswer& answer)
{
    m_window.release()->deleteLater(); // It is in the middle of its own signal.
    const Entry entry = std::move(m_entries.front());
    m_entries.pop_front();
    entry.second(answer);
    showNext();
}

} // namespace tavrin::ui
