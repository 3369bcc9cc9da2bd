#include "platform/linux/x11/X11Workspace.h"

#include "platform/linux/desktop/DesktopSettings.h"
#include "platform/linux/desktop/LocaleLanguages.h"
#include "platform/linux/desktop/SessionType.h"
#include "platform/linux/desktop/XdgFolders.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QScreen>
#include <QSet>
#include <QUrl>
#include <QWindow>

#include <algorithm>

namespace tavrin {
namespace {

using namespace std::chrono_literals;

// Below the half second that a call may take, with room for the calls around it.
constexpr auto activationPatience = 450ms;

QString environmentVariable(const QString& name)
{
    return qEnvironmentVariable(name.toUtf8().constData());
}

/// The file name of the program that the process runs; empty for a process of somebody else.
QString programOf(qint64 processIdentifier)
{
    if (processIdentifier <= 0)
        return {};
    const QString link = QStringLiteral("/proc/%1/exe").arg(processIdentifier);
    return QFileInfo(QFile::symLinkTarget(link)).fileName();
}

bool takesKeyboard(const QWindow& window)
{
    const Qt::WindowType type = window.type();
    return window.isVisible() && (type == Qt::Window || type == Qt::Dialog)
        && !window.flags().testFlag(Qt::WindowDoesNotAcceptFocus);
}

} // namespace

X11Workspace::X11Workspace()
    : m_desktopFiles(xdg::dataFolders(), preferredLocales(environmentVariable))
    , m_reachesEveryProgram(!isWaylandSession(environmentVariable))
{
}

std::optional<RunningApplication> X11Workspace::frontmostApplication() const
{
    const xcb_window_t window = m_windows.active();
    if (window == XCB_WINDOW_NONE)
        return {};
    return applicationOf(window);
}

RunningApplication X11Workspace::applicationOf(xcb_window_t window) const
{
    const X11Windows::Owner owner = m_windows.owner(window);
    RunningApplication application;
    application.processIdentifier = owner.processIdentifier;
    application.window = window;
    if (owner.processIdentifier == QCoreApplication::applicationPid()) {
        application.localizedName = QGuiApplication::applicationDisplayName();
        application.bundleIdentifier = bundleIdentifier();
        return application;
    }
    const QString program = programOf(owner.processIdentifier);
    const auto file = m_desktopFiles.find({owner.instance, owner.className, program});
    const QString fallback = owner.className.isEmpty() ? program : owner.className;
    application.localizedName = file ? file->name : fallback;
    application.bundleIdentifier = file ? file->identifier : fallback;
    return application;
}

bool X11Workspace::activate(const RunningApplication& application)
{
    const xcb_window_t window = windowOf(application);
    if (window == XCB_WINDOW_NONE)
        return false;
    if (window == m_windows.active())
        return true;
    m_windows.requestActivation(window);
    return m_windows.waitUntilActive(window, activationPatience);
}

bool X11Workspace::isActive(const RunningApplication& application) const
{
    const xcb_window_t front = m_windows.active();
    if (front == XCB_WINDOW_NONE)
        return false;
    if (application.processIdentifier <= 0)
        return front == application.window;
    return m_windows.processOf(front) == application.processIdentifier;
}

void X11Workspace::activateThisApplication()
{
    const auto windows = QGuiApplication::topLevelWindows();
    // The last one is the newest: a dialog before the window that it belongs to.
    const auto found = std::find_if(windows.rbegin(), windows.rend(),
        [](const QWindow* window) { return takesKeyboard(*window); });
    if (found == windows.rend())
        return;
    (*found)->raise();
    if (QGuiApplication::platformName() == u"xcb")
        m_windows.requestActivation(static_cast<xcb_window_t>((*found)->winId()));
    else
        (*found)->requestActivate();
}

QString X11Workspace::bundleIdentifier() const
{
    const QString name = QGuiApplication::desktopFileName();
    return name.isEmpty() ? QStringLiteral("tavrin") : name;
}

bool X11Workspace::openUrl(const QUrl& url)
{
    return url.isValid() && !url.scheme().isEmpty() && QDesktopServices::openUrl(url);
}

bool X11Workspace::openFolder(const QString& path)
{
    return QFileInfo::exists(path) && QDesktopServices::openUrl(QUrl::fromLocalFile(path));
}

bool X11Workspace::openSettings(SettingsPane pane)
{
    return startFirstInstalled(
        settingsCommands(pane, environmentVariable(QStringLiteral("XDG_CURRENT_DESKTOP"))));
}

QList<RunningApplication> X11Workspace::runningApplications() const
{
    QList<RunningApplication> applications;
    QSet<qint64> known{0, QCoreApplication::applicationPid()};
    for (const xcb_window_t window : m_windows.ofPrograms()) {
        const qint64 process = m_windows.processOf(window);
        if (known.contains(process))
            continue;
        known.insert(process);
        applications.append(applicationOf(window));
    }
    return applications;
}

QStringList X11Workspace::preferredLanguages() const
{
    QStringList tags;
    for (const QString& locale : preferredLocales(environmentVariable))
        tags.append(languageTag(locale));
    tags.removeDuplicates();
    return tags;
}

std::optional<QPoint> X11Workspace::frontmostPoint() const
{
    const std::optional<QPoint> pixel = m_windows.middleOf(m_windows.active());
    if (!pixel)
        return std::nullopt;
    for (const QScreen* screen : QGuiApplication::screens()) {
        // Where Qt enlarges everything, it counts within a screen in larger steps, but screens
        // begin where they do.
        const QRect shown = screen->geometry();
        const double scale = screen->devicePixelRatio();
        if (QRect(shown.topLeft(), shown.size() * scale).contains(*pixel))
            return shown.topLeft() + (*pixel - shown.topLeft()) / scale;
    }
    return std::nullopt; // Somewhere beyond all screens.
}

bool X11Workspace::isCompositing() const
{
    return m_windows.isCompositing();
}

void X11Workspace::warmUp()
{
    m_desktopFiles.readAhead();
    static_cast<void>(m_windows.isAvailable()); // Connects.
    m_reducedMotion.follow();
}

bool X11Workspace::prefersReducedMotion() const
{
    return m_reducedMotion.isPreferred();
}

xcb_window_t X11Workspace::windowOf(const RunningApplication& application) const
{
    const auto window = static_cast<xcb_window_t>(application.window);
    if (window == XCB_WINDOW_NONE)
        return m_windows.topmostOf(application.processIdentifier);
    // A window number is given out again once its program has quit. Another window of the program
    // is another place: what was meant for a letter that is closed does not belong into the next.
    const bool isStillTheirs =
        m_windows.exists(window) && m_windows.processOf(window) == application.processIdentifier;
    return isStillTheirs ? window : xcb_window_t{XCB_WINDOW_NONE};
}

} // namespace tavrin
