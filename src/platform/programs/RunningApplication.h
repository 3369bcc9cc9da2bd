#pragma once

#include <QString>

namespace tavrin {

/// A program of the user's session, as it was when it was asked for. The program may have quit
/// since then; every operation that takes one answers "no" in that case.
struct RunningApplication {
    qint64 processIdentifier = 0;
    QString localizedName; ///< As shown to the user; empty when the program has none.
    /// Identifies the program across starts; empty when unknown. macOS: the bundle identifier.
    /// Linux: the identifier of its desktop file, else its window class.
    QString bundleIdentifier;
    /// Linux: the X11 window that was in front, so that this window and not another one of the same
    /// program comes back. 0 on desktops that activate programs as a whole.
    quint64 window = 0;

    friend bool operator==(const RunningApplication&, const RunningApplication&) = default;
};

} // namespace tavrin
