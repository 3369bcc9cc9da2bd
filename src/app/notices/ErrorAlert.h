#pragma once

class QString;

namespace tavrin {

class Alerts;
class Localization;

/// Tells the user that something failed. Main thread only.
class ErrorAlert {
public:
    /// @param alerts, localization must outlive this object.
    ErrorAlert(Alerts& alerts, const Localization& localization);

    /// Shows a modal warning with @p title and, below it, @p detail ("未知错误" when it is empty).
    /// Returns at once.
    void showError(const QString& title, const QString& detail);

private:
    Alerts& m_alerts;
    const Localization& m_localization;
};

} // namespace tavrin
