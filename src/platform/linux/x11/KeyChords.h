#pragma once

#include "platform/linux/x11/TypingPlan.h"

namespace tavrin {

/// A key that is pressed and released, and what is held around it. What the keyboard needs
/// for the symbol itself (shift for `"` on most) is not named here: that belongs to the layout.
struct KeyChord {
    xcb_keysym_t symbol = keysyms::none;
    bool control = false;
    bool shift = false;

    friend bool operator==(const KeyChord&, const KeyChord&) = default;
};

/// The codes of @p chord in the order in which they go down; empty when the layout in use lacks
/// one.
[[nodiscard]] std::vector<xcb_keycode_t> codesOf(
    const KeyChord& chord, const KeyboardMap& map, const KeyboardState& state);

} // namespace tavrin
