#pragma once

#include "base/CallbackGuard.h"
#include "base/Completion.h"
#include "base/Result.h"

#include <QJsonObject>
#include <QString>

#include <functional>

namespace tavrin {

class Alerts;
class Clock;
class ErrorAlert;
class MainQueue;
class Preferences;
class SystemInfo;
class Workspace;
struct UpdateOffer;

/// Asks the cloud service for a newer version, by itself at most every six hours, and offers it.
/// Nothing is downloaded here: the user's browser does that. Main thread only.
class UpdateChecker {
public:
    /// `checkForUpdateWithCompletion` of the cloud client.
    using Request = std::function<void(Completion<Result<QJsonObject>>)>;

    struct Neighbours {
        Alerts& alerts;
        const Clock& clock;
        ErrorAlert& errorAlert;
        MainQueue& mainQueue;
        Preferences& preferences;
        const SystemInfo& systemInfo;
        Workspace& workspace;
    };

    /// @param neighbours must outlive the checker.
    /// @param productDomain is where downloads must come from.
    UpdateChecker(Request request, const Neighbours& neighbours, QString productDomain);

    /// Asks the service, and stays silent unless there is a newer version. With @p userInitiated,
    /// asks in any case and reports every outcome.
    void checkForUpdatesIfNeeded(bool userInitiated);

    void checkForUpdatesNow() { checkForUpdatesIfNeeded(true); }

private:
    [[nodiscard]] bool checkedRecently() const;
    void handle(const Result<QJsonObject>& answer, bool userInitiated);
    void offer(const UpdateOffer& update);
    void reportUpToDate();
    [[nodiscard]] qint64 currentBuild() const;

    Request m_request;
    Neighbours m_neighbours;
    QString m_productDomain;
    CallbackGuard m_guard;
};

} // namespace tavrin
