#pragma once

#include "platform/keyboard/KeyMonitor.h"

#include <QString>

#include <optional>

namespace tavrin {

/// Finds out whether another program holds a key combination. Main thread only.
class HotKeyProbe {
public:
    virtual ~HotKeyProbe() = default;

    /// Registers the combination and gives it back at once. False when it could not be registered:
    /// somebody else holds it. Linux also knows Alt+Space as the window menu of its managers.
    [[nodiscard]] virtual bool isAvailable(int keyCode, KeyModifiers modifiers) = 0;

    /// The name of the program that holds a combination which is not available; empty when unknown.
    /// Linux: the window manager's for Alt+Space, which opens its window menu; the X server tells
    /// of no others.
    [[nodiscard]] virtual QString holder(int keyCode, KeyModifiers modifiers) = 0;

    /// Whether the desktop keeps the combination for itself, so that it suits no default. Linux:
    /// true while somebody holds it, most often the window manager; empty otherwise, as one that
    /// comes later at login may still take it. macOS keeps none of those that Tavrin has: false.
    [[nodiscard]] virtual std::optional<bool> isKeptByDesktop(
        int keyCode, KeyModifiers modifiers) = 0;
};

} // namespace tavrin
