#pragma once

#include "platform/KeyMonitor.h"

namespace tavrin {

/// Finds out whether another program holds a key combination. Main thread only.
class HotKeyProbe {
public:
    virtual ~HotKeyProbe() = default;

    /// Registers the combination and gives it back at once. False when it could not be registered:
    /// somebody else holds it. Linux also knows Alt+Space as the window menu of its managers.
    [[nodiscard]] virtual bool isAvailable(int keyCode, KeyModifiers modifiers) = 0;
};

} // namespace tavrin
