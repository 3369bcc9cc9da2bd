#pragma once

#include "platform/linux/x11/keyboard/KeyboardLayouts.h"

#include <QByteArray>

namespace tavrin::testing {

/// Codes of the keyboards below; every one of them has these keys.
namespace keys {
inline constexpr xcb_keycode_t tab = 23;
inline constexpr xcb_keycode_t enter = 36;
inline constexpr xcb_keycode_t leftControl = 37;
inline constexpr xcb_keycode_t leftShift = 50;
inline constexpr xcb_keycode_t rightShift = 62;
inline constexpr xcb_keycode_t capsLock = 66;
inline constexpr xcb_keycode_t numLock = 77;
inline constexpr xcb_keycode_t rightControl = 105;
inline constexpr xcb_keycode_t altGr = 108;
} // namespace keys

/// A small keyboard: its modifiers, Return, Tab, and the @p keys that are written as in a file of
/// symbols. Their names are those of the letter keys: <AD01> (code 24), <AC01> (38), <AB04> (55),
/// <KP7> (79), <INS> (118); the codes 230 to 237 are free.
[[nodiscard]] inline KeyboardLayouts keyboardWith(const QByteArray& keys)
{
    return KeyboardLayouts::parse(R"(
xkb_keymap {
  xkb_keycodes {
    minimum = 8; maximum = 255;
    <AE01> = 10; <TAB> = 23; <AD01> = 24; <RTRN> = 36; <LCTL> = 37; <AC01> = 38; <AC02> = 39;
    <LFSH> = 50; <AB03> = 54; <AB04> = 55; <RTSH> = 62; <CAPS> = 66; <NMLK> = 77; <KP7> = 79;
    <RCTL> = 105; <RALT> = 108; <INS> = 118; <LVL3> = 92;
  };
  xkb_types {
    virtual_modifiers NumLock, LevelThree;
    type "ONE_LEVEL" { modifiers = none; };
    type "TWO_LEVEL" { modifiers = Shift; map[Shift] = Level2; };
    type "ALPHABETIC" { modifiers = Shift+Lock; map[Shift] = Level2; map[Lock] = Level2; };
    type "KEYPAD" { modifiers = Shift+NumLock; map[Shift] = Level2; map[NumLock] = Level2; };
    type "FOUR_LEVEL_SEMIALPHABETIC" { modifiers = Shift+Lock+LevelThree; map[Shift] = Level2;
      map[Lock] = Level2; map[LevelThree] = Level3; map[Shift+LevelThree] = Level4; };
    type "TOGGLED_BY_CONTROL" { modifiers = Control; map[Control] = Level2; };
    type "TOGGLED_BY_SHIFT" { modifiers = Shift; map[Shift] = Level2; };
  };
  xkb_compatibility {
    virtual_modifiers NumLock, LevelThree;
    interpret Caps_Lock+AnyOfOrNone(all) { action = LockMods(modifiers=Lock); };
    interpret Num_Lock+AnyOfOrNone(all) { virtualModifier = NumLock;
      action = LockMods(modifiers=NumLock); };
    interpret ISO_Level3_Shift+AnyOfOrNone(all) { virtualModifier = LevelThree;
      action = SetMods(modifiers=LevelThree); };
    interpret ISO_Next_Group+AnyOfOrNone(all) { action = LockGroup(group=+1); };
    interpret Any+AnyOf(all) { action = SetMods(modifiers=modMapMods); };
  };
  xkb_symbols {
    modifier_map Shift { <LFSH>, <RTSH> };
    modifier_map Lock { <CAPS> };
    modifier_map Control { <LCTL>, <RCTL> };
    modifier_map Mod2 { <NMLK> };
    modifier_map Mod5 { <LVL3> };
    key <LVL3> { [ISO_Level3_Shift] };
    key <TAB> { [Tab] };
    key <RTRN> { [Return] };
    key <LCTL> { [Control_L] };
    key <RCTL> { [Control_R] };
    key <LFSH> { [Shift_L] };
    key <RTSH> { [Shift_R] };
    key <CAPS> { [Caps_Lock] };
    key <NMLK> { [Num_Lock] };
)" + keys
        + "};};");
}

} // namespace tavrin::testing
