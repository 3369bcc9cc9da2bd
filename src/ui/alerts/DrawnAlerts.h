#pragma once

#include "platform/Alerts.h"

#include <deque>
#include <memory>
#include <utility>

namespace tavrin::ui {

class AlertWindow;

/// Alerts in the looks of the program, one at a time, while the event loop goes on: for desktops
/// that have none of their own. Alerts that are open or still wait when this is destroyed are
/// answered as if they were closed.
class DrawnAlerts final : public Alerts {
public:
    DrawnAlerts();
    ~DrawnAlerts() override;

    DrawnAlerts(const DrawnAlerts&) = delete;
    DrawnAlerts& operator=(const DrawnAlerts&) = delete;

    void show(const Alert& alert, Completion<AlertAnswer> completion) override;
    void beep() override;

private:
    using Entry = std::pair<Alert, Completion<AlertAnswer>>;

    void showNext();
    void finish(const AlertAnswer& answer);

    std::deque<Entry> m_entries; // The first one is that of the window.
    std::unique_ptr<AlertWindow> m_window;
};

} // namespace tavrin::ui
