#include "platform/linux/x11/keyboard/KeyboardLayouts.h"

#include "platform/linux/x11/Keyboards.h"

#include <gtest/gtest.h>

namespace tavrin::testing {
namespace {

using Codes = std::vector<xcb_keycode_t>;

constexpr quint8 shift = XCB_MOD_MASK_SHIFT;
constexpr quint8 control = XCB_MOD_MASK_CONTROL;
constexpr quint8 capsLock = XCB_MOD_MASK_LOCK;
constexpr quint8 altGr = XCB_MOD_MASK_5;

TEST(KeyboardLayoutsTest, EveryLayoutHasItsOwnLevels)
{
    const auto layouts = keyboardWith("key <AD01> { [q, Q, at, Greek_OMEGA], [a, A],"
                                      " [Cyrillic_shorti, Cyrillic_SHORTI], [semicolon, colon] };");
    ASSERT_EQ(layouts.groupCount(), 4);
    EXPECT_EQ(layouts.symbol(24, 0), xcb_keysym_t{'q'});
    EXPECT_EQ(layouts.symbol(24, 0, altGr), xcb_keysym_t{'@'});
    EXPECT_EQ(layouts.symbol(24, 1, shift), xcb_keysym_t{'A'});
    EXPECT_EQ(layouts.symbol(24, 2), xcb_keysym_t{0x6ca});
    EXPECT_EQ(layouts.symbol(24, 3), xcb_keysym_t{';'});
    EXPECT_EQ(layouts.symbol(24, 3, shift), xcb_keysym_t{':'});
}

TEST(KeyboardLayoutsTest, AKeyWithoutTheLayoutInUseFallsBack)
{
    const auto layouts = keyboardWith("key <AD01> { [q], [a], [x] }; key <AE01> { [1, exclam] };");
    EXPECT_EQ(layouts.symbol(10, 2), xcb_keysym_t{'1'});
    EXPECT_EQ(layouts.symbol(10, 2, shift), xcb_keysym_t{'!'});
}

TEST(KeyboardLayoutsTest, CapsLockChangesTheKeysWhoseTypeSaysSo)
{
    const auto layouts = keyboardWith("key <AE01> { [1, exclam] }; key <AC01> { [a, A] };");
    EXPECT_EQ(layouts.symbol(38, 0, capsLock), xcb_keysym_t{'A'});
    EXPECT_EQ(layouts.symbol(38, 0, capsLock | shift), xcb_keysym_t{'a'});
    EXPECT_EQ(layouts.symbol(10, 0, capsLock), xcb_keysym_t{'1'});
    EXPECT_EQ(layouts.symbol(10, 0, capsLock | shift), xcb_keysym_t{'!'});
}

TEST(KeyboardLayoutsTest, TheKeysOfAShortcutAreThoseOfTheLayoutInUse)
{
    const auto layouts = keyboardWith("key <AB03> { [c, C], [v, V] };"
                                      "key <AB04> { [v, V], [k, K] };");
    EXPECT_EQ(layouts.keysFor(keysyms::v, control, 0), (Codes{keys::leftControl, 55}));
    EXPECT_EQ(layouts.keysFor(keysyms::v, control, 1), (Codes{keys::leftControl, 54}));
    EXPECT_EQ(layouts.keysFor(keysyms::v, control | shift, 1),
        (Codes{keys::leftControl, keys::leftShift, 54}));
    EXPECT_FALSE(layouts.keysFor('c', control, 1));
}

TEST(KeyboardLayoutsTest, ASymbolComesWithTheModifiersItNeeds)
{
    const auto layouts = keyboardWith("key <AD01> { [q, Q, at, Greek_OMEGA] };");
    EXPECT_EQ(layouts.keysFor('Q', 0, 0), (Codes{keys::leftShift, 24}));
    EXPECT_EQ(layouts.keysFor('@', 0, 0), (Codes{92, 24}));
    EXPECT_EQ(layouts.keysFor(0x7d9, 0, 0), (Codes{keys::leftShift, 92, 24}));
}

TEST(KeyboardLayoutsTest, ModifierKeysThatTogetherChangeTheLayoutAreAvoided)
{
    const QByteArray letters = "key <AB04> { [v, V], [m, M] };";
    const QByteArray left = "key <LCTL> { type = \"TOGGLED_BY_SHIFT\","
                            " [Control_L, ISO_Next_Group] };"
                            "key <LFSH> { type = \"TOGGLED_BY_CONTROL\","
                            " [Shift_L, ISO_Next_Group] };";
    const QByteArray right = "key <RCTL> { type = \"TOGGLED_BY_SHIFT\","
                             " [Control_R, ISO_Next_Group] };"
                             "key <RTSH> { type = \"TOGGLED_BY_CONTROL\","
                             " [Shift_R, ISO_Next_Group] };";
    EXPECT_EQ(keyboardWith(letters + left).keysFor(keysyms::v, control | shift, 0),
        (Codes{keys::leftControl, keys::rightShift, 55}));
    EXPECT_EQ(
        keyboardWith(letters + left + right).keysFor(keysyms::v, control | shift, 0), std::nullopt);
    EXPECT_TRUE(keyboardWith(letters + left + right).keysFor(keysyms::v, control, 0));
}

TEST(KeyboardLayoutsTest, ExchangedKeysCountAsWhatTheyDo)
{
    const auto layouts = keyboardWith(
        "key <LCTL> { [Caps_Lock] }; key <CAPS> { actions = [SetMods(modifiers=Control)],"
        " symbols = [Control_L] }; key <AB04> { [v, V] };");
    EXPECT_EQ(layouts.keysFor(keysyms::v, control, 0), (Codes{keys::capsLock, 55}));
}

TEST(KeyboardLayoutsTest, ModifiersAreKeysThatHoldAndDoNotLock)
{
    const auto layouts = keyboardWith("key <AC01> { [a, A] }; key <RALT> { [ISO_Level3_Shift] };");
    for (const xcb_keycode_t code : {keys::leftShift, keys::rightControl, keys::altGr})
        EXPECT_TRUE(layouts.isModifier(code, 0)) << int{code};
    for (const xcb_keycode_t code : {keys::capsLock, keys::numLock, keys::enter})
        EXPECT_FALSE(layouts.isModifier(code, 0)) << int{code};
    EXPECT_FALSE(layouts.isModifier(38, 0));
    EXPECT_EQ(layouts.modifiersOf(keysyms::numLock), XCB_MOD_MASK_2);
    EXPECT_EQ(layouts.modifiersOf(keysyms::thirdLevel), XCB_MOD_MASK_5);
}

TEST(KeyboardLayoutsTest, WhatIsNoKeyboardHasNoKeys)
{
    const auto layouts = KeyboardLayouts::parse("xkb_keymap { nonsense");
    EXPECT_EQ(layouts.groupCount(), 0);
    EXPECT_TRUE(layouts.codes().empty());
    EXPECT_EQ(layouts.symbol(38, 0), keysyms::none);
    EXPECT_FALSE(layouts.keysFor(keysyms::v, control, 0));
    EXPECT_FALSE(layouts.isModifier(50, 0));
}

} // namespace
} // namespace tavrin::testing
