#include "platform/linux/x11/keyboard/KeyTracker.h"

#include <gtest/gtest.h>

#include <set>

namespace tavrin::testing {
namespace {

using namespace std::chrono_literals;

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
    using Events = KeyTracker::Events;

    /// The one event of a press.
    KeyEvent press(xcb_keycode_t code)
    {
        const Events events = m_tracker.pressed(keyRole(m_map, code), code);
        EXPECT_EQ(events.size(), 1U);
        return events.empty() ? KeyEvent() : events.front();
    }

    Events release(xcb_keycode_t code) { return m_tracker.released(keyRole(m_map, code), code); }

    /// A change @p time after the start, while the server has only @p serverKeys down.
    Events change(const KeyRole& role, xcb_keycode_t code, bool press,
        std::chrono::milliseconds time, const std::set<xcb_keycode_t>& serverKeys)
    {
        const std::chrono::steady_clock::time_point start(24h);
        return m_tracker.changed({role, code, press, start + time}, [this, serverKeys] {
            ++m_questions;
            return [serverKeys](xcb_keycode_t key) { return serverKeys.contains(key); };
        });
    }

    Events change(xcb_keycode_t code, bool press, std::chrono::milliseconds time,
        const std::set<xcb_keycode_t>& serverKeys)
    {
        return change(keyRole(m_map, code), code, press, time, serverKeys);
    }

    Events pressAltGr() { return m_tracker.pressed(altGr, rightAltCode); }

    const KeyRole altGr{key_codes::rightOption, {}, true};
    const Events tap{{Kind::FlagsChanged, key_codes::rightOption, KeyModifier::Option, false},
        {Kind::FlagsChanged, key_codes::rightOption, {}, false}};
    KeyboardMap m_map = keyboard({{9, keysyms::escape}, {37, keysyms::leftControl},
        {50, keysyms::leftShift}, {54, 'c'}, {62, keysyms::rightShift}, {64, keysyms::leftAlt},
        {65, keysyms::space}, {105, keysyms::rightControl}, {108, 0xfe03},
        {133, keysyms::leftSuper}, {134, keysyms::rightSuper}});
    KeyTracker m_tracker;
    int m_questions = 0;
};

TEST_F(KeyTrackerTest, TheRightOneOfTwoModifierKeysMeansTheSame)
{
    EXPECT_EQ(press(105).modifiers, KeyModifier::Control);
    EXPECT_EQ(release(105).front().modifiers, KeyModifiers());
    EXPECT_EQ(press(62).modifiers, KeyModifier::Shift);
    EXPECT_EQ(release(62).front().modifiers, KeyModifiers());
    EXPECT_EQ(press(134).modifiers, KeyModifier::Command);
    EXPECT_EQ(release(134).front().modifiers, KeyModifiers());
}

TEST_F(KeyTrackerTest, TheRightAltIsKnownByItsPlaceWhateverItsSymbol)
{
    EXPECT_EQ(press(108),
        (KeyEvent{Kind::FlagsChanged, key_codes::rightOption, KeyModifier::Option, false}));
    EXPECT_EQ(release(108), (Events{{Kind::FlagsChanged, key_codes::rightOption, {}, false}}));
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
    const auto events = release(50);
    ASSERT_EQ(events.size(), 1U);
    EXPECT_EQ(events[0].modifiers, KeyModifiers(KeyModifier::Shift));
}

TEST_F(KeyTrackerTest, AKeyThatIsDownAlreadyRepeats)
{
    EXPECT_FALSE(press(65).isRepeat);
    EXPECT_TRUE(press(65).isRepeat);
    EXPECT_TRUE(release(65).empty());
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

TEST_F(KeyTrackerTest, AReleaseThatNobodySawIsReportedOnceItIsNoticed)
{
    press(37);
    press(64);
    press(54);
    const auto events = m_tracker.synchronize([](xcb_keycode_t code) { return code == 37; });
    EXPECT_EQ(
        events, (Events{{Kind::FlagsChanged, key_codes::leftOption, KeyModifier::Control, false}}));
    EXPECT_TRUE(m_tracker.anyDown());
    EXPECT_EQ(press(65).modifiers, KeyModifiers(KeyModifier::Control));
}

TEST_F(KeyTrackerTest, WhereNothingRepeatsASecondPressFollowsAnUnseenRelease)
{
    press(64);
    EXPECT_EQ(m_tracker.pressedAnew(keyRole(m_map, 64), 64),
        (Events{{Kind::FlagsChanged, key_codes::leftOption, {}, false},
            {Kind::FlagsChanged, key_codes::leftOption, KeyModifier::Option, false}}));
    EXPECT_EQ(m_tracker.pressedAnew(keyRole(m_map, 65), 65),
        (Events{{Kind::KeyDown, key_codes::space, KeyModifier::Option, false}}));
    EXPECT_EQ(m_tracker.pressedAnew(keyRole(m_map, 65), 65),
        (Events{{Kind::KeyDown, key_codes::space, KeyModifier::Option, false}}));
}

TEST_F(KeyTrackerTest, AfterALongPauseTheReleasesThatWentByUnseenAreToldFirst)
{
    static_cast<void>(change(37, true, 0ms, {37}));
    static_cast<void>(change(64, true, 10ms, {37, 64}));
    EXPECT_EQ(change(65, true, 1011ms, {37, 65}),
        (Events{{Kind::FlagsChanged, key_codes::leftOption, KeyModifier::Control, false},
            {Kind::KeyDown, key_codes::space, KeyModifier::Control, false}}));
    EXPECT_EQ(m_questions, 1);
}

TEST_F(KeyTrackerTest, WithoutALongPauseNobodyIsAsked)
{
    static_cast<void>(change(64, true, 0ms, {64}));
    EXPECT_EQ(change(65, true, 1000ms, {65}),
        (Events{{Kind::KeyDown, key_codes::space, KeyModifier::Option, false}}));
    static_cast<void>(change(65, false, 1010ms, {}));
    EXPECT_EQ(m_questions, 0);
}

TEST_F(KeyTrackerTest, WhenNoKeyIsDownNobodyIsAsked)
{
    static_cast<void>(change(64, true, 0ms, {64}));
    static_cast<void>(change(64, false, 10ms, {}));
    static_cast<void>(change(64, true, 5000ms, {64}));
    EXPECT_EQ(m_questions, 0);
}

TEST_F(KeyTrackerTest, ARawSourceDoesNotRepeat)
{
    static_cast<void>(change(64, true, 0ms, {64}));
    EXPECT_EQ(change(64, true, 100ms, {64}),
        (Events{{Kind::FlagsChanged, key_codes::leftOption, {}, false},
            {Kind::FlagsChanged, key_codes::leftOption, KeyModifier::Option, false}}));
}

TEST_F(KeyTrackerTest, AKeyThatWasHeldForLongIsReleasedOnce)
{
    static_cast<void>(change(64, true, 0ms, {64}));
    EXPECT_EQ(change(64, false, 3000ms, {}),
        (Events{{Kind::FlagsChanged, key_codes::leftOption, {}, false}}));
}

TEST_F(KeyTrackerTest, AltGrThatWasHeldForLongByItselfIsATap)
{
    static_cast<void>(change(altGr, rightAltCode, true, 0ms, {rightAltCode}));
    EXPECT_EQ(change(altGr, rightAltCode, false, 3000ms, {}), tap);
}

TEST_F(KeyTrackerTest, ATapOfAltGrIsToldOnceItIsOver)
{
    EXPECT_EQ(pressAltGr(), Events{});
    EXPECT_EQ(release(rightAltCode), tap);
    EXPECT_EQ(pressAltGr(), Events{});
    EXPECT_EQ(release(rightAltCode), tap);
}

TEST_F(KeyTrackerTest, AltGrWithACharacterIsNothingOfOurs)
{
    pressAltGr();
    EXPECT_EQ(press(54).modifiers, KeyModifiers());
    release(54);
    EXPECT_EQ(release(rightAltCode), Events{});
    pressAltGr();
    press(54);
    EXPECT_EQ(release(rightAltCode), Events{});
}

TEST_F(KeyTrackerTest, AKeyThatComesUpWhileAltGrIsDownMakesItNoTap)
{
    press(54);
    pressAltGr();
    release(54);
    EXPECT_EQ(release(rightAltCode), Events{});
}

TEST_F(KeyTrackerTest, AltGrWithAButtonOfTheMouseIsNoTap)
{
    pressAltGr();
    m_tracker.buttonPressed();
    EXPECT_EQ(release(rightAltCode), Events{});
}

TEST_F(KeyTrackerTest, AltGrWithSpaceIsACharacterAndNoShortcut)
{
    pressAltGr();
    EXPECT_EQ(press(65), (KeyEvent{Kind::KeyDown, key_codes::space, {}, false}));
}

TEST_F(KeyTrackerTest, AltGrTappedWhileAnotherModifierIsHeldIsNotAlone)
{
    press(50);
    pressAltGr();
    const auto events = release(rightAltCode);
    ASSERT_EQ(events.size(), 2U);
    EXPECT_EQ(events[0].modifiers, KeyModifiers(KeyModifier::Shift) | KeyModifier::Option);
}

TEST_F(KeyTrackerTest, AltGrReleasedUnseenIsNoTap)
{
    pressAltGr();
    EXPECT_EQ(m_tracker.synchronize([](xcb_keycode_t) { return false; }), Events{});
    EXPECT_EQ(m_tracker.pressedAnew(altGr, rightAltCode), Events{});
    EXPECT_EQ(release(rightAltCode), tap);
}

} // namespace
} // namespace tavrin::testing
