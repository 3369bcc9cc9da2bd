#pragma once

#include "platform/Workspace.h"
#include "platform/linux/x11/KeyChords.h"

#include <span>

namespace tavrin {

/// How a program is told to paste.
struct PasteShortcut {
    std::span<const KeyChord> chords; ///< One after another; they live as long as the program.
    bool pastesPrimary = false; ///< What the mouse has selected, not what was copied.
};

[[nodiscard]] PasteShortcut pasteShortcutOf(const RunningApplication& application);

} // namespace tavrin
