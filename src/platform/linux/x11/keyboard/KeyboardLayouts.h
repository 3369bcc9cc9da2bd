#pragma once

#include "platform/linux/x11/keyboard/KeyboardMap.h"
#include "platform/linux/x11/keyboard/KeyboardState.h"

#include <memory>
#include <optional>
#include <vector>

struct xkb_keymap;

namespace tavrin {

/// Keys that are pressed one after the other and released in the opposite order.
struct Chord {
    std::vector<xcb_keycode_t> codes;
    std::optional<int> group; ///< The layout to put into use meanwhile, if not the one in use.

    friend bool operator==(const Chord&, const Chord&) = default;
};

/// What every key of the keyboard does in each of its layouts, by the rules of the keyboard
/// extension: how many levels a key has and which modifiers lead to them, which layout a key falls
/// back to that lacks the one in use, and what pressing a modifier key does. A value; groups are
/// the layouts from 0, modifiers are sets of XCB_MOD_MASK_….
class KeyboardLayouts {
public:
    /// A keyboard without keys.
    KeyboardLayouts() = default;

    /// Those of the server; without keys when it does not tell.
    [[nodiscard]] static KeyboardLayouts read(const X11Connection& connection);

    /// Those that a text as of xkbcomp describes.
    [[nodiscard]] static KeyboardLayouts parse(const QByteArray& text);

    [[nodiscard]] int groupCount() const;

    /// The codes that there may be, from first to last; empty without a keyboard.
    [[nodiscard]] std::vector<xcb_keycode_t> codes() const;

    /// The symbol that a program reads when the key is pressed with @p modifiers in force.
    [[nodiscard]] xcb_keysym_t symbol(xcb_keycode_t code, int group, quint8 modifiers = 0) const;

    /// The codes that press @p symbol with @p modifiers, and with what else the symbol itself needs
    /// in that layout (Shift, AltGr). Empty when the layout lacks it, or when the keys would do
    /// something else on the way: with some options Control and Shift together change the layout.
    [[nodiscard]] std::optional<std::vector<xcb_keycode_t>> keysFor(
        xcb_keysym_t symbol, quint8 modifiers, int group) const;

    /// The keys that, pressed after @p down, hold exactly @p modifiers.
    [[nodiscard]] std::optional<std::vector<xcb_keycode_t>> keysHolding(
        quint8 modifiers, int group, const std::vector<xcb_keycode_t>& down = {}) const;

    /// Whether the key changes what others mean for as long as it is held, and then no more.
    [[nodiscard]] bool isModifier(xcb_keycode_t code, int group) const;

    /// The modifiers that the keys with this symbol hold or lock, such as that of Num Lock.
    [[nodiscard]] quint8 modifiersOf(xcb_keysym_t symbol) const;

private:
    /// What holds once these keys are down, on a keyboard that was at rest.
    struct Effect {
        quint8 held = 0;
        quint8 locked = 0;
    };

    explicit KeyboardLayouts(xkb_keymap* keymap);

    [[nodiscard]] Effect effectOf(const std::vector<xcb_keycode_t>& codes, int group) const;

    std::shared_ptr<xkb_keymap> m_keymap;
};

/// The modifier keys that are down now, whoever holds them.
[[nodiscard]] std::vector<xcb_keycode_t> heldModifiers(
    const X11Connection& connection, const KeyboardLayouts& layouts, int group);

} // namespace tavrin
