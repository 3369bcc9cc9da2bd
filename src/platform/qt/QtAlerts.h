#pragma once

#include "platform/Alerts.h"

#include <deque>
#include <memory>
#include <utility>

namespace tavrin {

class AlertDialog;

/// Alerts as dialogs of Qt, one at a time, while the event loop goes on. Alerts that are open or
/// still wait when this is destroyed are answered as if they were closed.
class QtAlerts final : public Alerts {
public:
    QtAlerts();
    ~QtAlerts() override;

    QtAlerts(const QtAlerts&) = delete;
    QtAlerts& operator=(const QtAlerts&) = delete;

    void show(const Alert& alert, Completion<AlertAnswer> completion) override;
    void beep() override;

private:
    using Entry = std::pair<Alert, Completion<AlertAnswer>>;

    void showNext();
    void finish(const AlertAnswer& answer);

    std::deque<Entry> m_entries; // The first one is that of the dialog.
    std::unique_ptr<AlertDialog> m_dialog;
};

} // namespace tavrin
