#include "platform/linux/x11/KeyChords.h"

#include <gtest/gtest.h>

namespace tavrin::testing {
namespace {

using Codes = std::vector<xcb_keycode_t>;

constexpr xcb_keycode_t control = 8;
constexpr xcb_keycode_t shift = 9;

constexpr xcb_keycode_t levelThree = 16;

/// German, and French in which some keys carry other symbols; the levels under AltGr at the end.
const KeyboardMap& twoLayouts()
{
    static const KeyboardMap map(8, 8,
        {keysyms::leftControl, 0, keysyms::leftControl, 0, 0, 0, 0, 0, //
            keysyms::leftShift, 0, keysyms::leftShift, 0, 0, 0, 0, 0, //
            '2', '"', 0xe9, '2', 0xb2, 0, '~', 0, //
            '3', 0xa7, '"', '3', 0xb3, 0, '#', 0, //
            'p', 'P', 'p', 'P', 0, 0, 0, 0, //
            'v', 'V', 'v', 'V', 0, 0, 0, 0, //
            keysyms::insert, 0, 0, 0, 0, 0, 0, 0, //
            0xdf, '?', ')', 0xb0, '\\', 0xbf, ']', 0, //
            keysyms::levelThreeShift, 0, 0, 0, 0, 0, 0, 0, //
            'y', 'Y', 0x6c1, 0x6e1, 0, 0, 0, 0});
    return map;
}

TEST(KeyChordsTest, ModifiersGoDownFirst)
{
    EXPECT_EQ(
        codesOf({.symbol = keysyms::v, .control = true}, twoLayouts(), {}), (Codes{control, 13}));
    EXPECT_EQ(codesOf({.symbol = keysyms::v, .control = true, .shift = true}, twoLayouts(), {}),
        (Codes{control, shift, 13}));
    EXPECT_EQ(
        codesOf({.symbol = keysyms::insert, .shift = true}, twoLayouts(), {}), (Codes{shift, 14}));
}

TEST(KeyChordsTest, TheLayoutInUseSaysWhereASymbolIs)
{
    EXPECT_EQ(codesOf({.symbol = '"'}, twoLayouts(), {.group = 0}), (Codes{shift, 10}));
    EXPECT_EQ(codesOf({.symbol = '"'}, twoLayouts(), {.group = 1}), (Codes{11}));
}

TEST(KeyChordsTest, ASymbolMayNeedAltGr)
{
    EXPECT_EQ(codesOf({.symbol = keysyms::backslash, .control = true}, twoLayouts(), {}),
        (Codes{control, levelThree, 15}));
    EXPECT_EQ(codesOf({.symbol = 0xbf}, twoLayouts(), {}), (Codes{levelThree, shift, 15}));
    EXPECT_EQ(codesOf({.symbol = '#'}, twoLayouts(), {.group = 1}), (Codes{levelThree, 11}));
}

TEST(KeyChordsTest, AShortcutsLetterMayStandInAnotherLayout)
{
    EXPECT_EQ(codesOf({.symbol = 'y', .control = true}, twoLayouts(), {.group = 1}),
        (Codes{control, 17}));
    EXPECT_EQ(codesOf({.symbol = 'y'}, twoLayouts(), {.group = 1}), Codes());
    EXPECT_EQ(codesOf({.symbol = 0xb2}, twoLayouts(), {.group = 2}), Codes());
}

TEST(KeyChordsTest, AKeyOfTheFirstLayoutServesTheOthers)
{
    EXPECT_EQ(codesOf({.symbol = keysyms::insert, .shift = true}, twoLayouts(), {.group = 1}),
        (Codes{shift, 14}));
}

TEST(KeyChordsTest, CapsLockTurnsLettersThatStandForThemselves)
{
    const KeyboardState locked{.capsLock = true};
    EXPECT_EQ(codesOf({.symbol = 'P'}, twoLayouts(), locked), (Codes{12}));
    EXPECT_EQ(codesOf({.symbol = 'p'}, twoLayouts(), locked), (Codes{shift, 12}));
    EXPECT_EQ(codesOf({.symbol = '"'}, twoLayouts(), locked), (Codes{shift, 10}));
    EXPECT_EQ(codesOf({.symbol = keysyms::v, .control = true}, twoLayouts(), locked),
        (Codes{control, 13}));
}

TEST(KeyChordsTest, WhatTheKeyboardLacksCannotBePressed)
{
    EXPECT_EQ(codesOf({.symbol = 'x', .control = true}, twoLayouts(), {}), Codes());
    EXPECT_EQ(codesOf({.symbol = 'v'}, KeyboardMap(8, 1, {'v'}), {}), Codes());
}

} // namespace
} // namespace tavrin::testing
