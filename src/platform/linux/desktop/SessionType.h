#pragma once

#include "platform/linux/desktop/LocaleLanguages.h"

namespace tavrin {

/// Whether the environment is that of a Wayland session, which gives a program on X only the
/// programs on XWayland.
[[nodiscard]] bool isWaylandSession(const Environment& environment);

} // namespace tavrin
