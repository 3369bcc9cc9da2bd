#include "app/health/HealthController.h"

#include "app/health/HealthNotes.h"
#include "app/health/HealthTexts.h"
#include "app/settings/Localization.h"
#include "app/vocabulary/SettingsTexts.h"
#include "platform/Alerts.h"
#include "platform/DesktopTexts.h"
#include "platform/MainQueue.h"
#include "platform/Permissions.h"
#include "platform/programs/Accessibility.h"
#include "platform/programs/Workspace.h"

#include <algorithm>
#include <utility>

using namespace std::chrono_literals;

namespace tavrin {
namespace {

constexpr Seconds refreshInterval = 3s;

Localization::DesktopText adviceFor(SettingsPane pane)
{
    switch (pane) {
    case SettingsPane::Accessibility:
        return &DesktopTexts::noAccessibilitySettings;
    case SettingsPane::Microphone:
        return &DesktopTexts::noMicrophoneSettings;
    case SettingsPane::SpeechRecognition:
        return &DesktopTexts::noSpeechSettings;
    }
    Q_UNREACHABLE();
}

} // namespace

HealthController::HealthController(Neighbours neighbours)
    : m_neighbours(std::move(neighbours))
    , m_check(m_neighbours.sources)
    , m_content(m_check.unread())
{
}

HealthController::~HealthController() = default;

void HealthController::setView(View<HealthContent>* view)
{
    m_view = view;
    if (!view)
        m_timer.reset();
    show();
}

void HealthController::pageShown()
{
    refreshHealthStatus();
    m_timer = m_neighbours.mainQueue.every(refreshInterval, [this] { refreshHealthStatus(); });
}

void HealthController::pageHidden()
{
    m_timer.reset();
}

void HealthController::refreshHealthStatus()
{
    if (!m_view)
        return;
    m_content = m_check.read();
    addRestartNote();
    show();
}

void HealthController::updateAccessibilityStatus()
{
    if (!m_view)
        return;
    m_content.row(HealthItem::Accessibility) = m_check.readRow(HealthItem::Accessibility);
    show();
}

void HealthController::press(HealthItem item)
{
    switch (item) {
    case HealthItem::Accessibility:
        return requestAccessibilityPermission();
    case HealthItem::Microphone:
        return requestMicrophonePermission();
    case HealthItem::Speech:
        return requestSpeechPermission();
    case HealthItem::Api:
        return m_neighbours.configureActiveService();
    case HealthItem::Delivery:
        return m_neighbours.showHistoryWindow();
    }
}

void HealthController::press(HealthNoteAction action)
{
    switch (action) {
    case HealthNoteAction::None:
        return;
    case HealthNoteAction::OpenSoundSettings:
        return openSettings(SettingsPane::Microphone);
    case HealthNoteAction::ChangeShortcuts:
        return m_neighbours.showShortcuts();
    }
}

void HealthController::requestAccessibilityPermission()
{
    Accessibility& accessibility = m_neighbours.sources.accessibility;
    const bool wasTrusted = accessibility.isProcessTrusted();
    const bool isTrusted = accessibility.requestTrust();
    if (isTrusted && !wasTrusted) {
        m_startedWithoutAccessibility = m_neighbours.sources.workspace.runningApplications();
        refreshHealthStatus(); // With what must be restarted.
    } else {
        updateAccessibilityStatus();
    }
    if (!isTrusted)
        openSettings(SettingsPane::Accessibility);
}

void HealthController::requestMicrophonePermission()
{
    Permissions& permissions = m_neighbours.sources.permissions;
    switch (permissions.microphoneStatus()) {
    case AuthorizationStatus::Authorized:
        return refreshHealthStatus();
    case AuthorizationStatus::NotDetermined:
        return permissions.requestMicrophone(onMainQueue(m_neighbours.mainQueue,
            m_guard.bind([this](AuthorizationStatus) { refreshHealthStatus(); })));
    case AuthorizationStatus::Denied:
    case AuthorizationStatus::Restricted:
        return openSettings(SettingsPane::Microphone);
    }
}

void HealthController::requestSpeechPermission()
{
    Permissions& permissions = m_neighbours.sources.permissions;
    switch (permissions.speechStatus()) {
    case AuthorizationStatus::Authorized:
        refreshHealthStatus();
        // Allowed, and yet the row has its button: there is nothing that could recognise.
        if (m_content.row(HealthItem::Speech).hasButton)
            openSettings(SettingsPane::SpeechRecognition);
        return;
    case AuthorizationStatus::NotDetermined:
        return permissions.requestSpeech(onMainQueue(m_neighbours.mainQueue,
            m_guard.bind([this](AuthorizationStatus) { refreshHealthStatus(); })));
    case AuthorizationStatus::Denied:
    case AuthorizationStatus::Restricted:
        return openSettings(SettingsPane::SpeechRecognition);
    }
}

void HealthController::openSettings(SettingsPane pane)
{
    if (m_neighbours.sources.workspace.openSettings(pane))
        return;
    constexpr LocalizedText nothing{u""};
    const Localization& localization = m_neighbours.sources.localization;
    Alert alert;
    alert.messageText = localization.LT(texts::noSettingsToOpen);
    alert.informativeText = localization.desktopText(adviceFor(pane), nothing);
    alert.buttons = {localization.LT(texts::ok)};
    m_neighbours.alerts.show(alert, [](const AlertAnswer&) {});
}

void HealthController::addRestartNote()
{
    const QStringList names = programsToRestart();
    if (names.isEmpty())
        return;
    const qsizetype second = std::min<qsizetype>(m_content.notes.size(), 1);
    m_content.notes.insert(second, restartNote(m_neighbours.sources.localization, names));
}

QStringList HealthController::programsToRestart() const
{
    QStringList names;
    if (m_startedWithoutAccessibility.isEmpty())
        return names;
    const HealthSources& sources = m_neighbours.sources;
    const std::optional<QSet<qint64>> exposed = sources.accessibility.exposedProcesses();
    if (!exposed)
        return names;
    const QList<RunningApplication> running = sources.workspace.runningApplications();
    for (const RunningApplication& program : m_startedWithoutAccessibility) {
        const bool stillRuns = std::ranges::count(running, program.processIdentifier,
                                   &RunningApplication::processIdentifier)
            > 0;
        if (stillRuns && !exposed->contains(program.processIdentifier))
            names.append(program.localizedName);
    }
    names.removeDuplicates();
    return names;
}

void HealthController::show()
{
    if (m_view)
        m_view->setContent(m_content);
}

} // namespace tavrin
