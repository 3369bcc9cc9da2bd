#pragma once

#include "platform/linux/desktop/DesktopFiles.h"
#include "platform/linux/desktop/ReducedMotion.h"
#include "platform/linux/x11/X11Windows.h"
#include "platform/programs/Workspace.h"

namespace tavrin {

/// The desktop as the window manager and the XDG folders describe it. Names and identifiers of
/// programs are those of their desktop files.
class X11Workspace final : public Workspace {
public:
    X11Workspace();

    void warmUp() override;

    [[nodiscard]] std::optional<RunningApplication> frontmostApplication() const override;
    bool activate(const RunningApplication& application) override;
    [[nodiscard]] bool isActive(const RunningApplication& application) const override;
    void activateThisApplication() override;
    [[nodiscard]] QString bundleIdentifier() const override;
    bool openUrl(const QUrl& url) override;
    bool openFolder(const QString& path) override;
    bool openSettings(SettingsPane pane) override;
    [[nodiscard]] QList<RunningApplication> runningApplications() const override;
    [[nodiscard]] QStringList preferredLanguages() const override;
    [[nodiscard]] std::optional<QPoint> frontmostPoint() const override;
    [[nodiscard]] bool isCompositing() const override;

    [[nodiscard]] bool reachesEveryProgram() const override { return m_reachesEveryProgram; }

    [[nodiscard]] bool prefersReducedMotion() const override;

private:
    [[nodiscard]] RunningApplication applicationOf(xcb_window_t window) const;
    [[nodiscard]] xcb_window_t windowOf(const RunningApplication& application) const;

    X11Windows m_windows;
    mutable DesktopFiles m_desktopFiles; // Remembers what it found.
    ReducedMotion m_reducedMotion;
    bool m_reachesEveryProgram;
};

} // namespace tavrin
