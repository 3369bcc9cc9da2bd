#pragma once

#include "platform/linux/x11/typing/TypingPlan.h"

#include <array>
#include <optional>
#include <vector>

namespace tavrin {

/// The symbols of neighbouring key codes as the keyboard extension knows them: with every layout
/// and level, so that codes which are only in between are written back as they were. Core requests
/// would give them the few symbols that the core protocol can tell.
class KeySymbols {
public:
    /// The codes from @p first to @p last. Empty when the server does not have the extension.
    [[nodiscard]] static std::optional<KeySymbols> read(
        const X11Connection& connection, xcb_keycode_t first, xcb_keycode_t last);

    /// The same two symbols in every layout, or none at all; codes outside are ignored.
    void assign(const CodeAssignment& assignment);

    /// Whether the code has these two symbols and no others.
    [[nodiscard]] bool carries(const CodeAssignment& assignment) const;

    /// In one request: whoever follows the map reads it anew for every one.
    void write(const X11Connection& connection) const;

private:
    struct Key {
        std::array<quint8, 4> types{}; ///< By layout: which modifiers lead to which level.
        quint8 layouts = 0;
        quint8 levels = 0; ///< Symbols a layout.
        std::vector<xcb_keysym_t> symbols;
    };

    xcb_keycode_t m_first = 0;
    std::vector<Key> m_keys;
};

} // namespace tavrin
