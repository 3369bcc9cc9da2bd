#pragma once

#include "platform/Workspace.h"

namespace tavrin {

/// How a program is told to paste.
enum class PasteShortcut {
    ControlV,
    ControlShiftV, ///< Terminals, to which Ctrl+V is a character.
    ShiftInsert, ///< Terminals of old, which paste the primary selection.
};

[[nodiscard]] PasteShortcut pasteShortcutOf(const RunningApplication& application);

} // namespace tavrin
