#pragma once

#include "platform/linux/x11/keyboard/KeyboardLayouts.h"

#include <QString>

#include <vector>

namespace tavrin {

/// One key stroke.
struct KeyStroke {
    xcb_keycode_t code = 0;
    bool shift = false;

    friend bool operator==(const KeyStroke&, const KeyStroke&) = default;
};

/// Symbols for a key code that carries none.
struct CodeAssignment {
    xcb_keycode_t code = 0;
    xcb_keysym_t plain = keysyms::none;
    xcb_keysym_t shifted = keysyms::none;

    friend bool operator==(const CodeAssignment&, const CodeAssignment&) = default;
};

/// Strokes that can be typed under one keyboard map.
struct TypingBatch {
    std::vector<CodeAssignment> assignments; ///< Empty: the map as it is will do.
    std::vector<KeyStroke> strokes;
};

/// How to type @p text: characters that the keyboard has by its own keys, all others on the spare
/// codes, two on each. As few maps as the text needs, because changing one is slow for everybody.
/// Line feeds become Return; other control characters and lone surrogates are left out. Modifiers
/// that are locked count as far as the keys heed them; latched ones have to be off.
[[nodiscard]] std::vector<TypingBatch> planTyping(const QString& text,
    const KeyboardLayouts& layouts, const std::vector<xcb_keycode_t>& spareCodes,
    const KeyboardState& state);

} // namespace tavrin
