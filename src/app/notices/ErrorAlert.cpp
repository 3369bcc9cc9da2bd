#include "app/notices/ErrorAlert.h"

#include "app/notices/SharedAlertTexts.h"
#include "app/settings/Localization.h"
#include "app/vocabulary/SettingsTexts.h"
#include "platform/Alerts.h"

#include <QString>

namespace tavrin {

ErrorAlert::ErrorAlert(Alerts& alerts, const Localization& localization)
    : m_alerts(alerts)
    , m_localization(localization)
{
}

void ErrorAlert::showError(const QString& title, const QString& detail)
{
    Alert alert;
    alert.style = Alert::Style::Warning;
    alert.messageText = title;
    alert.informativeText = orElse(detail, texts::unknownError);
    alert.buttons = {m_localization.LT(texts::ok)};
    m_alerts.show(alert, [](const AlertAnswer&) {});
}

} // namespace tavrin
