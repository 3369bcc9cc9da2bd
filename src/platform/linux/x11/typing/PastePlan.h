#pragma once

#include "platform/linux/x11/keyboard/KeyboardLayouts.h"
#include "platform/linux/x11/typing/PasteShortcuts.h"
#include "platform/linux/x11/typing/TypingPlan.h"

namespace tavrin {

/// The keys that paste, and the symbols that spare codes need for them.
struct PastePlan {
    std::vector<CodeAssignment> assignments; ///< Empty: the map as it is will do.
    std::vector<Chord> chords; ///< One after another.

    friend bool operator==(const PastePlan&, const PastePlan&) = default;
};

/// How to press @p shortcut as a whole: a part of it would be another one. What the layout in use
/// lacks is borrowed from another one of the keyboard, which is put into use for that moment. On a
/// keyboard without Latin letters Ctrl+V becomes Shift+Insert (Chromium knows letters by the places
/// of their keys, so that no spare code can be one); every other character is put on a spare code.
/// Empty when nothing would be sure to paste.
[[nodiscard]] std::optional<PastePlan> planPaste(std::span<const KeyChord> shortcut,
    const KeyboardLayouts& layouts, const std::vector<xcb_keycode_t>& spareCodes,
    const KeyboardState& state);

} // namespace tavrin
