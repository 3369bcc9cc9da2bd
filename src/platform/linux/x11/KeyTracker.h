#pragma once

#include "platform/KeyMonitor.h"
#include "platform/linux/x11/KeyboardMap.h"

#include <functional>
#include <map>
#include <optional>

namespace tavrin {

/// What a key is to a shortcut.
struct KeyRole {
    int keyCode = -1; ///< The virtual key code on macOS; for other keys one that is none of theirs.
    std::optional<KeyModifier> modifier; ///< Set for modifier keys.
};

/// The role of an X key code. The right Alt is known by its code, because many layouts give it
/// another symbol; everything else by the symbol, so that exchanged keys count as what they are.
[[nodiscard]] KeyRole keyRole(const KeyboardMap& map, xcb_keycode_t code);

/// Makes key events out of bare presses and releases, with modifiers of its own counting: the
/// server's state has moved on by the time an event is handled.
class KeyTracker {
public:
    /// The event of a key that went down; a key that is down already repeats.
    [[nodiscard]] KeyEvent pressed(const KeyRole& role, xcb_keycode_t code);

    /// The event of a key that went up; only modifiers make one.
    [[nodiscard]] std::optional<KeyEvent> released(const KeyRole& role, xcb_keycode_t code);

    /// Forgets keys whose release went by unseen: those that @p isDown denies.
    void synchronize(const std::function<bool(xcb_keycode_t)>& isDown);

    [[nodiscard]] bool anyDown() const { return !m_down.empty(); }

private:
    [[nodiscard]] KeyModifiers modifiers() const;

    std::map<xcb_keycode_t, std::optional<KeyModifier>> m_down;
};

} // namespace tavrin
