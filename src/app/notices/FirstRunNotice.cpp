#include "app/notices/FirstRunNotice.h"

#include "app/notices/FirstRunTexts.h"
#include "app/notices/SharedAlertTexts.h"
#include "app/settings/Localization.h"
#include "app/windows/AccountPanel.h"
#include "app/windows/MainWindow.h"
#include "base/Seconds.h"
#include "cloud/StoredSession.h"
#include "platform/Alerts.h"
#include "platform/DesktopTexts.h"
#include "platform/MainQueue.h"
#include "platform/preferences/PreferenceKeys.h"
#include "platform/preferences/PreferenceValues.h"

#include <utility>

using namespace std::chrono_literals;

namespace tavrin {
namespace {

constexpr Seconds pageSettles = 120ms; // Lets the account page appear before its dialog.
constexpr int continueButton = 0;
constexpr int guideButton = 1;

} // namespace

FirstRunNotice::FirstRunNotice(const Neighbours& neighbours)
    : m_neighbours(neighbours)
{
}

void FirstRunNotice::showBetaOnboardingIfNeeded()
{
    if (valueOf(m_neighbours.preferences, keys::tavrinBetaOnboardingSeen)) {
        offerSignIn();
        return;
    }
    Alert alert;
    alert.messageText = texts::welcomeToBeta.toString();
    alert.informativeText =
        m_neighbours.localization.desktopText(&DesktopTexts::betaNotice, texts::betaNotice);
    alert.buttons = {texts::understood.toString(), texts::showInstallationGuide.toString()};
    alert.escapeButton = continueButton; // Whoever closes the welcome did not ask for the guide.
    m_neighbours.alerts.show(alert, m_guard.bind([this](const AlertAnswer& answer) {
        m_neighbours.preferences.setValue(keys::tavrinBetaOnboardingSeen, true);
        if (answer.button == guideButton)
            showBetaInstallationGuide([this] { offerSignIn(); });
        else
            offerSignIn();
    }));
}

void FirstRunNotice::showBetaInstallationGuide(std::function<void()> afterwards)
{
    Alert alert;
    alert.messageText = m_neighbours.localization.desktopText(
        &DesktopTexts::installationGuide, texts::installationGuide);
    alert.informativeText = m_neighbours.localization.desktopText(
        &DesktopTexts::installationSteps, texts::installationSteps);
    alert.buttons = {texts::allRight.toString()};
    m_neighbours.alerts.show(
        alert, m_guard.bind([then = std::move(afterwards)](const AlertAnswer&) { then(); }));
}

void FirstRunNotice::offerSignIn()
{
    if (hasCloudSession(m_neighbours.preferences))
        return;
    m_neighbours.mainWindow.selectSettingsPage(sidebarButtons.back());
    m_neighbours.mainQueue.callLater(
        pageSettles, m_guard.bind([this] { m_neighbours.accountPanel.showLoginDialog(); }));
}

} // namespace tavrin
