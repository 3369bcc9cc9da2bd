#pragma once

#include <QString>

#include <atspi/atspi.h>

namespace tavrin {

/// The role under the name that the same control has on macOS: what kind of field it is must read
/// the same to the service on both desktops. "AXUnknown" for what has no counterpart.
/// @param singleLine whether the control says that it holds one line only.
[[nodiscard]] QString axRoleName(AtspiRole role, bool singleLine);

/// Containers that hold no text field worth looking for; skipping them keeps a search short.
[[nodiscard]] bool isSkippedInFocusSearch(AtspiRole role);

} // namespace tavrin
