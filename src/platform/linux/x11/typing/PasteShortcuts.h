#pragma once

#include "platform/keyboard/SyntheticKeyboard.h"
#include "platform/linux/x11/keyboard/KeyboardMap.h"

#include <span>

namespace tavrin {

/// A key that is pressed and released, and what is held around it. What the keyboard needs for the
/// symbol itself (shift for `"` on most) is not named here: that belongs to the layout.
struct KeyChord {
    xcb_keysym_t symbol = keysyms::none;
    bool control = false;
    bool shift = false;

    friend bool operator==(const KeyChord&, const KeyChord&) = default;
};

/// How a program is told to paste.
struct PasteShortcut {
    std::span<const KeyChord> chords; ///< One after another; they live as long as the program.
    bool pastesPrimary = false; ///< What the mouse has selected, not what was copied.
    std::span<const KeyChord> chordsInVimTerminal = {}; ///< Empty for what is not Vim.

    /// Those for a window of that title, by which Vim tells what it shows.
    [[nodiscard]] std::span<const KeyChord> chordsFor(const QString& title) const;
};

[[nodiscard]] PasteShortcut pasteShortcutOf(const PasteTarget& target);

} // namespace tavrin
