#pragma once

#include "platform/programs/RunningApplication.h"

#include <QList>
#include <QPoint>
#include <QString>
#include <QStringList>

#include <optional>

class QUrl;

namespace tavrin {

/// The parts of the system's settings that Tavrin sends its user to. macOS:
/// "x-apple.systempreferences:com.apple.preference.security?Privacy_Accessibility",
/// "x-apple.systempreferences:com.apple.preference.security?Privacy_Microphone" and
/// "x-apple.systempreferences:com.apple.preference.security?Privacy_SpeechRecognition".
enum class SettingsPane { Accessibility, Microphone, SpeechRecognition };

/// The desktop around the program: which application is in front, and what the user prefers.
/// Main thread only. No call waits longer than half a second for another process.
class Workspace {
public:
    virtual ~Workspace() = default;

    /// Reads in the background what the first question would otherwise wait for (Linux: the names
    /// of the installed programs, whether motion is to be reduced). Called once, a little after the
    /// launch; every question is answered without.
    virtual void warmUp() = 0;

    /// The application whose window takes the keyboard; empty when there is none or it is unknown.
    [[nodiscard]] virtual std::optional<RunningApplication> frontmostApplication() const = 0;

    /// Brings @p application to the front, ignoring other applications. True once the system
    /// accepted the request (Linux: once the window manager has made the window active, waiting at
    /// most half a second for it); false when the application is gone or the request failed.
    virtual bool activate(const RunningApplication& application) = 0;

    [[nodiscard]] virtual bool isActive(const RunningApplication& application) const = 0;

    /// Brings Tavrin itself to the front, ignoring other applications.
    virtual void activateThisApplication() = 0;

    /// This program's own bundle identifier, in the form of RunningApplication::bundleIdentifier.
    [[nodiscard]] virtual QString bundleIdentifier() const = 0;

    /// Opens @p url with the program that the user chose for it. False when none could be started.
    virtual bool openUrl(const QUrl& url) = 0;

    /// Shows @p path in the file browser. False when that failed.
    virtual bool openFolder(const QString& path) = 0;

    /// Opens the system's settings at @p pane. False when there are none, or they do not start.
    /// Linux: the settings for accessibility and for sound of the desktop that runs; none for
    /// speech.
    virtual bool openSettings(SettingsPane pane) = 0;

    /// The programs that have windows, each once and with the window on top of its others, those of
    /// this program left out. Linux: in no session without a window manager.
    [[nodiscard]] virtual QList<RunningApplication> runningApplications() const = 0;

    /// Languages in the user's order, best first, as BCP 47 tags ("zh-Hant-TW"); may be empty.
    [[nodiscard]] virtual QStringList preferredLanguages() const = 0;

    /// A point on the screen that the window in front is on, in the coordinates of this program's
    /// windows; empty when there is no such window.
    [[nodiscard]] virtual std::optional<QPoint> frontmostPoint() const = 0;

    /// Whether windows may have transparent parts at the moment (Linux: a compositor runs).
    [[nodiscard]] virtual bool isCompositing() const = 0;

    /// Whether every program of the session can be watched and written into. Linux: not in a
    /// Wayland session. There only programs on XWayland are reached; while another one is in front,
    /// no key is heard, and whether the pasteboard, a paste or a text read back is that program's
    /// cannot be told. Does not change while the program runs.
    [[nodiscard]] virtual bool reachesEveryProgram() const = 0;

    /// The user asked the system for less animation.
    [[nodiscard]] virtual bool prefersReducedMotion() const = 0;
};

} // namespace tavrin
