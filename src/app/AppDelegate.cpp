#include "app/AppDelegate.h"

#include "app/windows/AccountPanel.h"
#include "app/windows/MainWindow.h"
#include "audio/RecordingFile.h"
#include "base/Log.h"
#include "cloud/Deployment.h"
#include "dictionary/DictionaryStore.h"
#include "platform/DesktopTexts.h"
#include "platform/Platform.h"
#include "speech/SpeechContextualTerms.h"
#include "speech/SpeechTexts.h"

#include <utility>

using namespace std::chrono_literals;

namespace tavrin {
namespace {

constexpr Seconds warmUpDelay = 1s; // Until the window and the status item are there.
// By then a desktop that was still coming up at login has its keys.
constexpr Seconds desktopSettles = 30s;
constexpr Seconds firstRunDelay = 120ms; // Lets the window appear before the first alert.

} // namespace

AppDelegate::AppDelegate(Surroundings surroundings)
    : m_surroundings(std::move(surroundings))
    , m_platform(*m_surroundings.platform)
    , m_localization(
          *m_platform.preferences, *m_platform.workspace, m_platform.keyNames, m_platform.texts)
    , m_settings(*m_platform.preferences, m_localization, m_platform.hotKeyProbe.get())
    , m_errorAlert(*m_platform.alerts, m_localization)
    , m_sounds(*m_platform.soundPlayer)
    , m_estimator(*m_platform.preferences)
    , m_api(*m_platform.httpTransport, *m_platform.preferences, *m_platform.systemInfo,
          {.localize = m_localization.localize(),
              .translationTarget = [this] { return m_settings.TranslationTarget(); }})
    , m_audioEnvironment(*m_platform.audioDevices, *m_platform.preferences, *m_platform.systemInfo,
          *m_platform.mainQueue,
          [this] { return m_session && m_session->state() == SessionState::Recording; })
    , m_transcriber(
          *m_platform.fileSpeechRecognizer, *m_platform.permissions, *m_platform.mainQueue,
          [this] { return contextualTerms(); }, speechMessages())
    , m_liveTranscriber(*m_platform.liveSpeechRecognizer, *m_platform.permissions,
          *m_platform.mainQueue, [this] { return contextualTerms(); })
    , m_target(*m_platform.workspace, *m_platform.accessibility)
    , m_delivery({*m_platform.pasteboard, *m_platform.workspace, *m_platform.accessibility,
                     *m_platform.syntheticKeyboard, *m_platform.mainQueue},
          m_target)
    , m_correctionLearning({*m_platform.accessibility, *m_platform.clock, *m_platform.mainQueue,
                               *m_platform.preferences, *m_platform.wordBreaker},
          m_target,
          [this] {
              if (m_userInterface)
                  m_userInterface->refreshDictionaryView();
          })
    , m_historyStore({*m_platform.preferences, *m_platform.clock, *m_platform.systemInfo,
          *m_platform.backgroundQueue})
    , m_statusMenu({m_localization, m_settings, *m_platform.statusItem}, menuActions())
    , m_shortcutMonitor(
          *m_platform.keyMonitor, *m_platform.mainQueue, m_settings, shortcutActions())
    , m_shortcutSettings({*m_platform.alerts, *m_platform.hotKeyProbe, m_localization,
                             *m_platform.preferences, m_settings, m_shortcutMonitor},
          {.refreshToolTip = [this] { m_statusMenu.refreshToolTip(); },
              .updateUI = [this] { m_statusMenu.refreshUI(); }})
    , m_userInterface(m_surroundings.createUserInterface({
          .api = m_api,
          .audioEnvironment = m_audioEnvironment,
          .historyStore = m_historyStore,
          .localization = m_localization,
          .platform = m_platform,
          .settings = m_settings,
          .shortcutSettings = m_shortcutSettings,
          .statusMenu = m_statusMenu,
          .endCorrectionWatch =
              [this] { m_correctionLearning.finishCorrectionLearningAndAnalyze(false); },
          .playSound = [this](const QString& name) { m_sounds.playSoundNamed(name); },
          .showMainWindow = [this] { showMainWindow(); },
      }))
    , m_cloudSessionCheck(
          {m_userInterface->accountPanel(), m_api, *m_platform.mainQueue, *m_platform.preferences})
    , m_updateChecker(
          [this](Completion<Result<QJsonObject>> completion) {
              m_api.checkForUpdateWithCompletion(std::move(completion));
          },
          {*m_platform.alerts, *m_platform.clock, m_errorAlert, *m_platform.mainQueue,
              *m_platform.preferences, *m_platform.systemInfo, *m_platform.workspace},
          deployment::productWebDomain)
    , m_firstRunNotice({m_userInterface->accountPanel(), *m_platform.alerts, m_localization,
          *m_platform.mainQueue, m_userInterface->mainWindow(), *m_platform.preferences})
{
    createSession();
}

AppDelegate::~AppDelegate() = default;

void AppDelegate::applicationDidFinishLaunching()
{
    if (!m_userInterface->loadApplicationIcon())
        qCWarning(log::app, "The application icon is missing.");
    if (!m_platform.workspace->reachesEveryProgram() && m_platform.texts.limitedReach)
        qCWarning(log::app).noquote() << m_platform.texts.limitedReach->en;
    m_statusMenu.configureMenu();
    m_userInterface->mainWindow().configureMainWindow();
    m_shortcutMonitor.configureHotKey();
    showMainWindow();
    m_cloudSessionCheck.validateStoredSession();
    m_updateChecker.checkForUpdatesIfNeeded(false);
    m_platform.mainQueue->callLater(
        firstRunDelay, m_guard.bind([this] { m_firstRunNotice.showBetaOnboardingIfNeeded(); }));
    m_platform.mainQueue->post(m_guard.bind([this] { undoWhatACrashLeft(); }));
    m_platform.mainQueue->callLater(warmUpDelay, m_guard.bind([this] { warmUp(); }));
    m_platform.mainQueue->callLater(warmUpDelay, m_guard.bind([this] {
        static_cast<void>(takeDefaultsFromDesktop());
        m_shortcutSettings.updateShortcutStatus();
    }));
    m_platform.mainQueue->callLater(desktopSettles, m_guard.bind([this] {
        if (takeDefaultsFromDesktop())
            m_shortcutSettings.updateShortcutStatus();
    }));
}

void AppDelegate::applicationDidBecomeActive()
{
    m_userInterface->refreshHealthStatus();
}

bool AppDelegate::applicationShouldHandleReopen(bool hasVisibleWindows)
{
    if (!hasVisibleWindows)
        showMainWindow();
    return true;
}

void AppDelegate::applicationWillTerminate()
{
    allowDroppedCompletions(true);
    m_audioEnvironment.restoreAudioEnvironment();
    m_historyStore.flush();
    m_target.releaseElements();
}

void AppDelegate::showMainWindow()
{
    m_userInterface->refreshHealthStatus();
    m_platform.workspace->activateThisApplication();
    m_userInterface->mainWindow().show();
}

void AppDelegate::hideMainWindow()
{
    m_userInterface->mainWindow().hide();
}

void AppDelegate::quit()
{
    m_correctionLearning.finishCorrectionLearningAndAnalyze(true);
    m_surroundings.terminate();
}

StatusMenu::Actions AppDelegate::menuActions()
{
    return {
        .toggleOperationMode = [this](OperationMode mode) { toggleOperationMode(mode); },
        .showMainWindow = [this] { showMainWindow(); },
        .showHistoryWindow = [this] { m_userInterface->showHistoryWindow(); },
        .showPersonalizationWindow = [this] { m_userInterface->showPersonalizationWindow(); },
        .checkForUpdatesNow = [this] { m_updateChecker.checkForUpdatesNow(); },
        .quit = [this] { quit(); },
    };
}

ShortcutMonitor::Actions AppDelegate::shortcutActions()
{
    return {
        .coverModifierKey = [this] { m_platform.syntheticKeyboard->coverModifierKey(); },
        .isRecording =
            [this] { return m_session && m_session->state() == SessionState::Recording; },
        .handleEscape =
            [this] {
                if (m_session)
                    m_session->handleEscape();
            },
        .toggleOperationMode = [this](OperationMode mode) { toggleOperationMode(mode); },
    };
}

SystemTranscriber::Messages AppDelegate::speechMessages() const
{
    return {
        .speechNotAllowed =
            [this] {
                return m_localization.desktopText(
                    &DesktopTexts::speechNotAllowed, texts::speechNotAllowed);
            },
        .speechUnavailable =
            [this] {
                return m_localization.desktopText(
                    &DesktopTexts::speechUnavailable, texts::speechUnavailable);
            },
    };
}

QStringList AppDelegate::contextualTerms() const
{
    return SpeechContextualTerms(
        DictionaryTerms(DictionaryEntries(*m_platform.preferences, *m_platform.clock)));
}

void AppDelegate::createSession()
{
    m_processing.emplace(SessionProcessing::Neighbours{
        .api = m_api,
        .audioEnvironment = m_audioEnvironment,
        .clock = *m_platform.clock,
        .correctionLearning = m_correctionLearning,
        .delivery = m_delivery,
        .errorAlert = m_errorAlert,
        .estimator = m_estimator,
        .hud = m_userInterface->hud(),
        .localization = m_localization,
        .mainQueue = *m_platform.mainQueue,
        .preferences = *m_platform.preferences,
        .refreshHealthStatus = [this] { m_userInterface->refreshHealthStatus(); },
        .saveHistoryTranscript =
            [this](
                const NewHistoryRecord& result) { m_historyStore.saveHistoryTranscript(result); },
        .settings = m_settings,
        .sounds = m_sounds,
        .stageTimes = m_stageTimes,
        .target = m_target,
        .transcriber = m_transcriber,
    });
    m_session.emplace(RecordingSession::Neighbours{
        .accountPanel = m_userInterface->accountPanel(),
        .alerts = *m_platform.alerts,
        .audioEnvironment = m_audioEnvironment,
        .audioRecorders = *m_platform.audioRecorders,
        .background = *m_platform.backgroundQueue,
        .clock = *m_platform.clock,
        .correctionLearning = m_correctionLearning,
        .errorAlert = m_errorAlert,
        .hud = m_userInterface->hud(),
        .liveTranscriber = m_liveTranscriber,
        .localization = m_localization,
        .mainQueue = *m_platform.mainQueue,
        .preferences = *m_platform.preferences,
        .processing = *m_processing,
        .settings = m_settings,
        .sounds = m_sounds,
        .stageTimes = m_stageTimes,
        .statusMenu = m_statusMenu,
        .systemInfo = *m_platform.systemInfo,
        .target = m_target,
    });
}

void AppDelegate::toggleOperationMode(OperationMode mode)
{
    m_historyStore.warmUp(); // Read while the user speaks.
    m_session->toggleOperationMode(mode);
}

/// Has everything ready before the first press of a key.
void AppDelegate::warmUp()
{
    m_platform.audioRecorders->warmUp();
    m_platform.workspace->warmUp();
    static_cast<void>(m_historyStore.historyFileURL()); // Making the file waits for the disk.
    m_platform.fileSpeechRecognizer->warmUp(); // Last: it is long at it.
}

bool AppDelegate::takeDefaultsFromDesktop()
{
    if (!m_settings.lookAtDesktop())
        return false;
    m_shortcutSettings.refreshShortcutControls();
    m_statusMenu.refreshUI();
    m_userInterface->mainWindow().refreshShortcuts();
    return true;
}

void AppDelegate::undoWhatACrashLeft()
{
    m_audioEnvironment.restoreAfterCrash();
    removeAbandonedRecordings(*m_platform.systemInfo);
}

} // namespace tavrin
