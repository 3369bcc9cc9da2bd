#pragma once

#include "platform/SyntheticKeyboard.h"
#include "platform/linux/x11/KeyChords.h"

#include <span>

namespace tavrin {

/// How a program is told to paste.
struct PasteShortcut {
    std::span<const KeyChord> chords; ///< One after another; they live as long as the program.
    bool pastesPrimary = false; ///< What the mouse has selected, not what was copied.
};

[[nodiscard]] PasteShortcut pasteShortcutOf(const PasteTarget& target);

} // namespace tavrin
