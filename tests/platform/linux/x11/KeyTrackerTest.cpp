#include "platform/linux/x11/KeyTracker.h"

#include <gtest/gtest.h>

namespace tavrin::testing {
namespace {

using Kind = KeyEvent::Kind;

/// A small keyboard: one symbol a code.
KeyboardMap keyboard(const std::vector<std::pair<int, xcb_keysym_t>>& keys)
{
    std::vector<xcb_keysym_t> symbols(248, keysyms::none);
    for (const auto& [code, symbol] : keys)
        symbols.at(static_cast<std::size_t>(code - 8)) = symbol;
    return {8, 1, symbols};
}

class KeyTrackerTest : public ::testing::Test {
protected:
    KeyEvent press(xcb_keycode_t code) { return m_tracker.pressed(keyRole(m_map, code), code); }

    std::optional<KeyEvent> release(xcb_keycode_t code)
    {
        return m_tracker.released(keyRole(m_map, code), code);
    }

    KeyboardMap m_map = keyboard({{9, keysyms::escape}, {37, keysyms::leftControl},
        {50, keysyms::leftShift}, {54, 'c'}, {62, keysyms::rightShift}, {64, keysyms::leftAlt},
        {65, keysyms::space}, {108, 0xfe03}, {133, keysyms::leftSuper}});
    KeyTracker m_tracker;
};

TEST_F(KeyTrackerTest, TheRightAltIsKnownByItsPlaceWhateverItsSymbol)
{
    EXPECT_EQ(press(108),
        (KeyEvent{Kind::FlagsChanged, key_codes::rightOption, KeyModifier::Option, false}));
    EXPECT_EQ(release(108), (KeyEvent{Kind::FlagsChanged, key_codes::rightOption, {}, false}));
}

TEST_F(KeyTrackerTest, ExchangedKeysCountAsWhatTheyAre)
{
    m_map = keyboard({{64, keysyms::leftSuper}, {133, keysyms::leftAlt}});
    EXPECT_EQ(press(64).modifiers, KeyModifiers(KeyModifier::Command));
    EXPECT_EQ(press(133).keyCode, key_codes::leftOption);
}

TEST_F(KeyTrackerTest, EveryModifierAddsItsFlagUntilItIsReleased)
{
    press(50);
    press(37);
    press(133);
    EXPECT_EQ(press(64).modifiers,
        KeyModifiers(KeyModifier::Shift) | KeyModifier::Control | KeyModifier::Command
            | KeyModifier::Option);
    release(50);
    release(133);
    const KeyEvent space{Kind::KeyDown, key_codes::space,
        KeyModifiers(KeyModifier::Control) | KeyModifier::Option, false};
    EXPECT_EQ(press(65), space);
}

TEST_F(KeyTrackerTest, TheSecondShiftKeepsTheFlag)
{
    press(50);
    press(62);
    const auto event = release(50);
    ASSERT_TRUE(event);
    EXPECT_EQ(event->modifiers, KeyModifiers(KeyModifier::Shift));
}

TEST_F(KeyTrackerTest, AKeyThatIsDownAlreadyRepeats)
{
    EXPECT_FALSE(press(65).isRepeat);
    EXPECT_TRUE(press(65).isRepeat);
    EXPECT_FALSE(release(65));
    EXPECT_FALSE(press(65).isRepeat);
}

TEST_F(KeyTrackerTest, OtherKeysAreNoneOfThoseThatShortcutsKnow)
{
    const int code = press(54).keyCode;
    for (const int known :
        {key_codes::space, key_codes::escape, key_codes::leftOption, key_codes::rightOption})
        EXPECT_NE(code, known);
    EXPECT_EQ(press(9).keyCode, key_codes::escape);
}

TEST_F(KeyTrackerTest, AReleaseThatNobodySawIsMadeUpFor)
{
    press(37);
    m_tracker.synchronize([](xcb_keycode_t) { return false; });
    EXPECT_FALSE(m_tracker.anyDown());
    EXPECT_EQ(press(65).modifiers, KeyModifiers());
}

} // namespace
} // namespace tavrin::testing
