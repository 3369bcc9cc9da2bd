#include "app/notices/UpdateChecker.h"

#include "app/notices/ErrorAlert.h"
#include "app/notices/SharedAlertTexts.h"
#include "app/notices/UpdateOffer.h"
#include "app/notices/UpdateTexts.h"
#include "platform/Alerts.h"
#include "platform/Clock.h"
#include "platform/MainQueue.h"
#include "platform/SystemInfo.h"
#include "platform/preferences/PreferenceKeys.h"
#include "platform/preferences/PreferenceValues.h"
#include "platform/programs/Workspace.h"

#include <utility>

using namespace std::chrono_literals;

namespace tavrin {
namespace {

constexpr Seconds checkInterval = 6h;
constexpr int downloadButton = 0;

} // namespace

UpdateChecker::UpdateChecker(Request request, const Neighbours& neighbours, QString productDomain)
    : m_request(std::move(request))
    , m_neighbours(neighbours)
    , m_productDomain(std::move(productDomain))
{
}

void UpdateChecker::checkForUpdatesIfNeeded(bool userInitiated)
{
    if (!userInitiated && checkedRecently())
        return;
    // Before asking, so that a service in trouble is not asked again at every start.
    m_neighbours.preferences.setValue(
        keys::tavrinLastUpdateCheckAt, m_neighbours.clock.sinceEpoch().count());

    m_request(onMainQueue(m_neighbours.mainQueue,
        m_guard.bind([this, userInitiated](
                         const Result<QJsonObject>& answer) { handle(answer, userInitiated); })));
}

bool UpdateChecker::checkedRecently() const
{
    const Seconds last{valueOf(m_neighbours.preferences, keys::tavrinLastUpdateCheckAt)};
    const Seconds since = m_neighbours.clock.sinceEpoch() - last;
    // A check that lies in the future was noted by a clock that was wrong.
    return last > 0s && since >= 0s && since < checkInterval;
}

void UpdateChecker::handle(const Result<QJsonObject>& answer, bool userInitiated)
{
    if (!answer) {
        if (userInitiated) {
            m_neighbours.errorAlert.showError(texts::cannotCheckForUpdates.toString(),
                orElse(answer.error().message, texts::tryAgainLater));
        }
        return;
    }
    if (const auto update = updateOffer(*answer, currentBuild(), m_productDomain))
        offer(*update);
    else if (userInitiated)
        reportUpToDate();
}

void UpdateChecker::offer(const UpdateOffer& update)
{
    Alert alert;
    alert.messageText =
        texts::updateReady.toString().arg(orElse(update.version, texts::newVersion));
    alert.informativeText =
        texts::updateBody.toString().arg(orElse(update.notes, texts::defaultNotes));
    alert.buttons = {texts::downloadUpdate.toString(), texts::later.toString()};
    m_neighbours.alerts.show(
        alert, m_guard.bind([this, url = update.downloadUrl](const AlertAnswer& answer) {
            if (answer.button == downloadButton)
                m_neighbours.workspace.openUrl(url);
        }));
}

void UpdateChecker::reportUpToDate()
{
    Alert alert;
    alert.messageText = texts::upToDate.toString();
    alert.informativeText = texts::currentBuild.toString().arg(
        orElse(m_neighbours.systemInfo.bundleShortVersion(), texts::currentVersion),
        QString::number(currentBuild()));
    alert.buttons = {texts::allRight.toString()};
    m_neighbours.alerts.show(alert, [](const AlertAnswer&) {});
}

qint64 UpdateChecker::currentBuild() const
{
    return m_neighbours.systemInfo.bundleVersion().toLongLong();
}

} // namespace tavrin
