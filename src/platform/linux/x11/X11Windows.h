#pragma once

#include "platform/linux/x11/X11Connection.h"

#include <QPoint>
#include <QString>

#include <chrono>
#include <optional>

namespace tavrin {

/// The windows of other programs, as the window manager (EWMH) describes them.
class X11Windows {
public:
    /// What a window says of its owner; empty parts are unknown.
    struct Owner {
        qint64 processIdentifier = 0;
        QString instance; ///< The parts of WM_CLASS.
        QString className;
    };

    [[nodiscard]] bool isAvailable() const { return m_connection.isOpen(); }

    /// The window that takes the keyboard; 0 when there is none.
    [[nodiscard]] xcb_window_t active() const;

    /// The process is the one that the server knows; what the window says of itself counts only
    /// where the server knows none, and the window is of this machine.
    [[nodiscard]] Owner owner(xcb_window_t window) const;

    [[nodiscard]] qint64 processOf(xcb_window_t window) const;

    /// Whether @p inner is @p outer or stands somewhere in it.
    [[nodiscard]] bool isWithin(xcb_window_t inner, xcb_window_t outer) const;

    /// As the window manager shows it; empty when unknown.
    [[nodiscard]] QString title(xcb_window_t window) const;

    [[nodiscard]] bool exists(xcb_window_t window) const;

    /// The topmost managed window of the process; 0 when it has none.
    [[nodiscard]] xcb_window_t topmostOf(qint64 processIdentifier) const;

    /// The windows of programs, the topmost one first; without panels and the desktop itself.
    [[nodiscard]] QList<xcb_window_t> ofPrograms() const;

    /// Asks for @p window to become the active one, as a task switcher does; a minimised window
    /// comes back.
    void requestActivation(xcb_window_t window) const;

    /// Waits until @p window is the active one: another one of its program is another place.
    /// False when that has not happened within @p patience.
    [[nodiscard]] bool waitUntilActive(
        xcb_window_t window, std::chrono::milliseconds patience) const;

    /// The middle of @p window, in pixels of the whole desktop; empty when it is gone.
    [[nodiscard]] std::optional<QPoint> middleOf(xcb_window_t window) const;

    /// Whether a compositor owns the screen.
    [[nodiscard]] bool isCompositing() const;

private:
    [[nodiscard]] bool isManaged() const;
    [[nodiscard]] bool isPartOfDesktop(xcb_window_t window) const;
    X11Connection m_connection;
};

} // namespace tavrin
