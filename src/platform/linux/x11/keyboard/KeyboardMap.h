#pragma once

#include "platform/linux/x11/X11Connection.h"

#include <optional>
#include <vector>

namespace tavrin {

/// The symbols of X that this program looks for.
namespace keysyms {
inline constexpr xcb_keysym_t none = 0;
inline constexpr xcb_keysym_t space = 0x20;
inline constexpr xcb_keysym_t quote = 0x22;
inline constexpr xcb_keysym_t plus = 0x2b;
inline constexpr xcb_keysym_t capitalP = 0x50;
inline constexpr xcb_keysym_t backslash = 0x5c;
inline constexpr xcb_keysym_t g = 0x67;
inline constexpr xcb_keysym_t o = 0x6f;
inline constexpr xcb_keysym_t v = 0x76;
inline constexpr xcb_keysym_t w = 0x77;
inline constexpr xcb_keysym_t thirdLevel = 0xfe03; ///< ISO_Level3_Shift: AltGr.
inline constexpr xcb_keysym_t tab = 0xff09;
inline constexpr xcb_keysym_t enter = 0xff0d;
inline constexpr xcb_keysym_t escape = 0xff1b;
inline constexpr xcb_keysym_t insert = 0xff63;
inline constexpr xcb_keysym_t numLock = 0xff7f;
inline constexpr xcb_keysym_t leftShift = 0xffe1;
inline constexpr xcb_keysym_t rightShift = 0xffe2;
inline constexpr xcb_keysym_t leftControl = 0xffe3;
inline constexpr xcb_keysym_t rightControl = 0xffe4;
inline constexpr xcb_keysym_t leftMeta = 0xffe7;
inline constexpr xcb_keysym_t rightMeta = 0xffe8;
inline constexpr xcb_keysym_t leftAlt = 0xffe9;
inline constexpr xcb_keysym_t rightAlt = 0xffea;
inline constexpr xcb_keysym_t leftSuper = 0xffeb;
inline constexpr xcb_keysym_t rightSuper = 0xffec;
} // namespace keysyms

/// Which symbols the key codes of the keyboard carry, as the core protocol tells: good for keys
/// that are the same in every layout, and to see which codes carry none. KeyboardLayouts knows
/// more.
class KeyboardMap {
public:
    KeyboardMap() = default;
    KeyboardMap(xcb_keycode_t firstCode, int symbolsPerCode, std::vector<xcb_keysym_t> symbols);

    [[nodiscard]] static KeyboardMap read(const X11Connection& connection);

    [[nodiscard]] xcb_keycode_t firstCode() const { return m_firstCode; }

    [[nodiscard]] int codeCount() const;

    [[nodiscard]] int symbolsPerCode() const { return m_symbolsPerCode; }

    /// The symbol in column @p level of the code's row, 0 being the first level of the first
    /// layout; keysyms::none beyond the end.
    [[nodiscard]] xcb_keysym_t symbol(xcb_keycode_t code, int level) const;

    /// The first code that carries @p symbol in any column, best in the first one.
    [[nodiscard]] std::optional<xcb_keycode_t> codeOf(xcb_keysym_t symbol) const;

    /// The codes that carry nothing.
    [[nodiscard]] std::vector<xcb_keycode_t> emptyCodes() const;

private:
    xcb_keycode_t m_firstCode = 8;
    int m_symbolsPerCode = 0;
    std::vector<xcb_keysym_t> m_symbols;
};

} // namespace tavrin
