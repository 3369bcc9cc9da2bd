#include "platform/qt/QtAlerts.h"

#include "platform/qt/AlertDialog.h"

#include <QApplication>

namespace tavrin {

QtAlerts::QtAlerts() = default;

QtAlerts::~QtAlerts()
{
    m_dialog.reset();
    for (const auto& [alert, completion] : std::exchange(m_entries, {})) {
        AlertAnswer answer{alert.unanswered(), {}};
        for (const AlertField& field : alert.fields)
            answer.fields.append(field.text);
        completion(answer);
    }
}

void QtAlerts::show(const Alert& alert, Completion<AlertAnswer> completion)
{
    m_entries.emplace_back(alert, std::move(completion));
    showNext();
}

void QtAlerts::beep()
{
    QApplication::beep();
}

void QtAlerts::showNext()
{
    if (m_dialog || m_entries.empty())
        return;
    m_dialog = std::make_unique<AlertDialog>(
        m_entries.front().first, [this](const AlertAnswer& answer) { finish(answer); });
    m_dialog->show();
    m_dialog->raise();
    m_dialog->activateWindow();
}

void QtAlerts::finish(const AlertAnswer& answer)
{
    m_dialog.release()->deleteLater(); // It is in the middle of its own signal.
    const Entry entry = std::move(m_entries.front());
    m_entries.pop_front();
    entry.second(answer);
    showNext();
}

} // namespace tavrin
