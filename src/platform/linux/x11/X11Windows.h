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

    [[nodiscard]] Owner owner(xcb_window_t window) const;

    /// The process of @p window, or of the nearest window around it that names one; 0 when unknown.
    [[nodiscard]] qint64 processAround(xcb_window_t window) const;

    [[nodiscard]] bool exists(xcb_window_t window) const;

    /// The topmost managed window of the process; 0 when it has none.
    [[nodiscard]] xcb_window_t topmostOf(qint64 processIdentifier) const;

    /// Asks for @p window to become the active one, as a task switcher does; a minimised window
    /// comes back.
    void requestActivation(xcb_window_t window) const;

    /// Waits until the active window is @p window or another one of its process.
    /// False when that has not happened within @p patience.
    [[nodiscard]] bool waitUntilActive(
        xcb_window_t window, std::chrono::milliseconds patience) const;

    /// The middle of @p window, in pixels of the whole desktop; empty when it is gone.
    [[nodiscard]] std::optional<QPoint> middleOf(xcb_window_t window) const;

    /// Whether a compositor owns the screen.
    [[nodiscard]] bool isCompositing() const;

private:
    [[nodiscard]] bool isManaged() const;
    [[nodiscard]] bool isInFront(xcb_window_t window, qint64 processIdentifier) const;

    X11Connection m_connection;
};

} // namespace tavrin
