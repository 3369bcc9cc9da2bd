#pragma once

#include "platform/keyboard/KeyMonitor.h"
#include "platform/linux/x11/keyboard/KeyboardMap.h"

#include <chrono>
#include <functional>
#include <map>
#include <optional>
#include <vector>

namespace tavrin {

/// Every Linux keyboard driver gives the key right of the space bar this code.
inline constexpr xcb_keycode_t rightAltCode = 108;

/// What a key is to a shortcut.
struct KeyRole {
    int keyCode = -1; ///< The virtual key code on macOS; for other keys one that is none of theirs.
    std::optional<KeyModifier> modifier; ///< Set for modifier keys.
    bool countsWhenTapped = false; ///< AltGr: types characters, and is a shortcut only by itself.
};

/// The role of an X key code. The right Alt is known by its code, because many layouts give it
/// another symbol; everything else by the symbol, so that exchanged keys count as what they are.
[[nodiscard]] KeyRole keyRole(const KeyboardMap& map, xcb_keycode_t code);

/// The same when the key goes down now: the right Alt is AltGr where the layout in use says so.
[[nodiscard]] KeyRole roleOfPressedKey(
    const X11Connection& connection, const KeyboardMap& map, xcb_keycode_t code);

/// A key that went down or up.
struct KeyChange {
    KeyRole role;
    xcb_keycode_t code = 0;
    bool press = false;
    std::chrono::steady_clock::time_point time;
};

/// Makes key events out of bare presses and releases, with modifiers of its own counting: the
/// server's state has moved on by the time an event is handled.
///
/// A key that counts when tapped is no modifier. Its press and release are told together once it is
/// up, when no other key and no button went down or up meanwhile.
class KeyTracker {
public:
    using Events = std::vector<KeyEvent>;
    using IsDown = std::function<bool(xcb_keycode_t)>;

    /// The events of a change from a source that does not repeat and may have missed releases.
    /// After a long pause @p keysDown is asked which keys are down.
    [[nodiscard]] Events changed(const KeyChange& change, const std::function<IsDown()>& keysDown);

    /// The events of a key that went down; a key that is down already repeats.
    [[nodiscard]] Events pressed(const KeyRole& role, xcb_keycode_t code);

    /// The same from a source that does not repeat: a key that is down already was released unseen.
    [[nodiscard]] Events pressedAnew(const KeyRole& role, xcb_keycode_t code);

    /// The events of a key that went up; only modifiers and taps make some. @p role for keys whose
    /// press was not seen.
    [[nodiscard]] Events released(const KeyRole& role, xcb_keycode_t code);

    /// The releases that went by unseen: of the keys that @p isDown denies.
    [[nodiscard]] Events synchronize(const IsDown& isDown);

    /// A button of the mouse: what is held is part of something else.
    void buttonPressed() { m_tap.reset(); }

    [[nodiscard]] bool anyDown() const { return !m_down.empty(); }

private:
    [[nodiscard]] KeyModifiers modifiers() const;
    [[nodiscard]] KeyEvent flagsChanged(const KeyRole& role) const;

    std::map<xcb_keycode_t, KeyRole> m_down;
    std::chrono::steady_clock::time_point m_lastChange;
    std::optional<xcb_keycode_t> m_tap; // The key that is down and counts if it goes up next.
};

} // namespace tavrin
