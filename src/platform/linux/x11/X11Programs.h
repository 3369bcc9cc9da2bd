#pragma once

#include "platform/linux/x11/X11Connection.h"

namespace tavrin {

/// The process at the other end of the connection that made @p window, as the server knows it (X
/// Resource extension 1.2): unlike what the window says of itself, the number is that of our own
/// process namespace, and for a program on another machine that of the one that brings its windows
/// here. 0 when the server does not know.
[[nodiscard]] qint64 processOf(const X11Connection& connection, xcb_window_t window);

/// Whether two windows belong to one connection or process.
[[nodiscard]] bool isSameProgram(
    const X11Connection& connection, xcb_window_t one, xcb_window_t other);

} // namespace tavrin
