#pragma once

#include "app/health/HealthVerdicts.h"
#include "app/windows/View.h"
#include "base/CallbackGuard.h"
#include "platform/programs/RunningApplication.h"

#include <functional>
#include <memory>

namespace tavrin {

class Alerts;
class MainQueue;
class Timer;
enum class SettingsPane;
struct LocalizedText;
struct DesktopTexts;

/// The permissions and health page: says whether Tavrin can work, and mends or explains what keeps
/// it from that. Looks again every few seconds while somebody looks at it. Main thread only.
class HealthController {
public:
    struct Neighbours {
        HealthSources sources;
        Alerts& alerts;
        MainQueue& mainQueue;
        std::function<void()> configureActiveService; ///< Opens the account page to sign in.
        std::function<void()> showHistoryWindow;
        std::function<void()> showShortcuts; ///< The page on which they are changed.
    };

    /// @param neighbours must outlive the controller.
    explicit HealthController(Neighbours neighbours);
    ~HealthController();

    HealthController(const HealthController&) = delete;
    HealthController& operator=(const HealthController&) = delete;

    /// The page; null while there is none, and then no refresh does anything.
    void setView(View<HealthContent>* view);

    [[nodiscard]] const HealthContent& content() const { return m_content; }

    /// The page came into sight: it is refreshed now, and then every three seconds.
    void pageShown();
    void pageHidden();

    /// Reads everything afresh.
    void refreshHealthStatus();

    /// Looks at the row of accessibility alone.
    void updateAccessibilityStatus();

    // The buttons.
    void press(HealthItem item);
    void press(HealthNoteAction action);
    void requestAccessibilityPermission();
    void requestMicrophonePermission();
    void requestSpeechPermission();

private:
    void openSettings(SettingsPane pane);
    void addRestartNote();
    [[nodiscard]] QStringList programsToRestart() const;
    void show();

    Neighbours m_neighbours;
    HealthVerdicts m_check;
    View<HealthContent>* m_view = nullptr;
    HealthContent m_content;
    /// Those that ran when accessibility was switched on here.
    QList<RunningApplication> m_startedWithoutAccessibility;
    std::unique_ptr<Timer> m_timer; ///< Set while the page is in sight.
    CallbackGuard m_guard;
};

} // namespace tavrin
