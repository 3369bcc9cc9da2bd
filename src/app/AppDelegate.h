#pragma once

#include "app/account/CloudSessionCheck.h"
#include "app/menu/StatusMenu.h"
#include "app/notices/ErrorAlert.h"
#include "app/notices/FirstRunNotice.h"
#include "app/notices/UpdateChecker.h"
#include "app/session/CorrectionWatch.h"
#include "app/session/ProcessingTimeEstimator.h"
#include "app/session/RecordingSession.h"
#include "app/session/SessionProcessing.h"
#include "app/session/SoundEffects.h"
#include "app/session/StageTimes.h"
#include "app/settings/Localization.h"
#include "app/settings/Settings.h"
#include "app/shortcuts/ShortcutMonitor.h"
#include "app/shortcuts/ShortcutSettings.h"
#include "app/windows/UserInterface.h"
#include "audio/AudioEnvironment.h"
#include "base/CallbackGuard.h"
#include "cloud/TavrinAPI.h"
#include "delivery/TargetContext.h"
#include "delivery/TextDelivery.h"
#include "history/HistoryStore.h"
#include "speech/LiveTranscriber.h"
#include "speech/SystemTranscriber.h"

#include <functional>
#include <memory>
#include <optional>

namespace tavrin {

struct Platform;

/// The controller of the application: builds, owns and connects everything, and passes on launch,
/// activation, reopening and quitting. It decides nothing that has a class of its own.
/// Main thread only.
class AppDelegate {
public:
    struct Surroundings {
        Platform* platform = nullptr;
        CreateUserInterface createUserInterface;
        std::function<void()>
            terminate; ///< Ends the program, by way of applicationWillTerminate().
    };

    /// @param surroundings must outlive the controller.
    explicit AppDelegate(Surroundings surroundings);
    ~AppDelegate();

    AppDelegate(const AppDelegate&) = delete;
    AppDelegate& operator=(const AppDelegate&) = delete;

    /// Called once, when the event loop runs.
    void applicationDidFinishLaunching();

    /// The program came to the front.
    void applicationDidBecomeActive();

    /// The user started the program while it runs. True: the system does the rest.
    bool applicationShouldHandleReopen(bool hasVisibleWindows);

    /// False: the program stays in the status bar.
    [[nodiscard]] static bool applicationShouldTerminateAfterLastWindowClosed() { return false; }

    [[nodiscard]] static bool applicationSupportsSecureRestorableState() { return true; }

    /// Puts the machine's sound back and finishes writing. Called once, as the last thing before
    /// the end.
    void applicationWillTerminate();

    void showMainWindow();
    void hideMainWindow();

    /// Saves what a correction under way teaches, and ends the program.
    void quit();

private:
    [[nodiscard]] StatusMenu::Actions menuActions();
    [[nodiscard]] ShortcutMonitor::Actions shortcutActions();
    [[nodiscard]] SystemTranscriber::Messages speechMessages() const;
    [[nodiscard]] QStringList contextualTerms() const;
    void createSession();
    /// Whether the desktop holds another one of the defaults than when it was last looked at.
    [[nodiscard]] bool takeDefaultsFromDesktop();
    void toggleOperationMode(OperationMode mode);
    void undoWhatACrashLeft();
    void warmUp();

    Surroundings m_surroundings;
    Platform& m_platform;

    Localization m_localization;
    Settings m_settings;
    ErrorAlert m_errorAlert;
    SoundEffects m_sounds;
    ProcessingTimeEstimator m_estimator;
    TavrinAPI m_api;
    AudioEnvironment m_audioEnvironment;
    SystemTranscriber m_transcriber;
    LiveTranscriber m_liveTranscriber;
    TargetContext m_target;
    TextDelivery m_delivery;
    CorrectionWatch m_correctionLearning;
    HistoryStore m_historyStore;
    StatusMenu m_statusMenu;
    ShortcutMonitor m_shortcutMonitor;
    ShortcutSettings m_shortcutSettings;
    std::unique_ptr<UserInterface> m_userInterface;
    StageTimes m_stageTimes;
    std::optional<SessionProcessing> m_processing;
    std::optional<RecordingSession> m_session;
    CloudSessionCheck m_cloudSessionCheck;
    UpdateChecker m_updateChecker;
    FirstRunNotice m_firstRunNotice;
    CallbackGuard m_guard;
};

} // namespace tavrin
