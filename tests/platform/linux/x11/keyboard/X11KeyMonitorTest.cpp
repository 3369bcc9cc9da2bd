#include "platform/linux/x11/keyboard/X11KeyMonitor.h"

#include "platform/linux/x11/SecondKeyboard.h"
#include "platform/linux/x11/TestClient.h"
#include "platform/linux/x11/keyboard/KeyTracker.h"

#include <QLineEdit>
#include <gtest/gtest.h>

#include <chrono>
#include <mutex>
#include <thread>
#include <unistd.h>

namespace tavrin::testing {
namespace {

using Kind = KeyEvent::Kind;

constexpr xcb_keycode_t leftAltCode = 64;
constexpr quint8 uselessButton = 9; // Nobody listens to it.

const std::vector<KeyEvent> altGrTap{
    {Kind::FlagsChanged, key_codes::rightOption, KeyModifier::Option, false},
    {Kind::FlagsChanged, key_codes::rightOption, {}, false}};

/// What a handler was given, from whatever thread.
class Events {
public:
    void add(const KeyEvent& event)
    {
        const std::lock_guard lock(m_mutex);
        m_events.push_back(event);
    }

    [[nodiscard]] std::vector<KeyEvent> all() const
    {
        const std::lock_guard lock(m_mutex);
        return m_events;
    }

    [[nodiscard]] bool eventuallyAre(const std::vector<KeyEvent>& expected) const
    {
        return TestClient::eventually([&] { return all() == expected; });
    }

private:
    mutable std::mutex m_mutex;
    std::vector<KeyEvent> m_events;
};

class X11KeyMonitorTest : public ::testing::Test {
protected:
    /// Gives the keyboard to another program.
    void otherProgramInFront()
    {
        m_other = m_client.createWindow("other", "Other", static_cast<quint32>(::getppid()));
    }

    [[nodiscard]] xcb_keycode_t codeOf(xcb_keysym_t symbol) const
    {
        return KeyboardMap::read(m_client.connection()).codeOf(symbol).value_or(0);
    }

    void TearDown() override
    {
        if (m_other != XCB_WINDOW_NONE)
            m_client.destroyWindow(m_other);
    }

    [[nodiscard]] std::unique_ptr<KeyObservation> watch()
    {
        return m_monitor.addGlobalMonitor([this](const KeyEvent& event) { m_events.add(event); });
    }

    TestClient m_client;
    X11KeyMonitor m_monitor;
    Events m_events;

private:
    xcb_window_t m_other = XCB_WINDOW_NONE;
};

TEST_F(X11KeyMonitorTest, TheTwoAltKeysAreToldApart)
{
    otherProgramInFront();
    const auto observation = watch();
    ASSERT_TRUE(observation);
    for (const xcb_keycode_t code : {rightAltCode, leftAltCode}) {
        m_client.pressKey(code);
        m_client.releaseKey(code);
    }
    EXPECT_TRUE(m_events.eventuallyAre(
        {{Kind::FlagsChanged, key_codes::rightOption, KeyModifier::Option, false},
            {Kind::FlagsChanged, key_codes::rightOption, {}, false},
            {Kind::FlagsChanged, key_codes::leftOption, KeyModifier::Option, false},
            {Kind::FlagsChanged, key_codes::leftOption, {}, false}}));
}

TEST_F(X11KeyMonitorTest, KeysComeWithTheModifiersThatAreDown)
{
    otherProgramInFront();
    const auto observation = watch();
    ASSERT_TRUE(observation);
    const auto control = *KeyboardMap::read(m_client.connection()).codeOf(keysyms::leftControl);
    m_client.pressKey(control);
    m_client.pressKey(leftAltCode);
    m_client.tap(keysyms::space);
    m_client.releaseKey(leftAltCode);
    m_client.releaseKey(control);
    m_client.tap(keysyms::escape);
    ASSERT_TRUE(TestClient::eventually([this] { return m_events.all().size() == 6; }));
    const auto events = m_events.all();
    const KeyEvent space{Kind::KeyDown, key_codes::space,
        KeyModifiers(KeyModifier::Control) | KeyModifier::Option, false};
    EXPECT_EQ(events[2], space);
    EXPECT_EQ(events[5], (KeyEvent{Kind::KeyDown, key_codes::escape, {}, false}));
}

TEST_F(X11KeyMonitorTest, WhatIsWatchedStillReachesTheOtherProgram)
{
    TestClient other;
    const xcb_window_t window =
        other.createWindow("other", "Other", static_cast<quint32>(::getppid()));
    other.listenToKeys(window);
    const auto observation = watch();
    ASSERT_TRUE(observation);
    m_client.tap('a');
    m_client.tap(keysyms::escape);
    m_client.pressKey(rightAltCode);
    m_client.releaseKey(rightAltCode);
    m_client.tap(keysyms::space);
    for (const xcb_keycode_t code :
        {codeOf('a'), codeOf(keysyms::escape), rightAltCode, codeOf(keysyms::space)})
        EXPECT_EQ(other.nextKey(), code);
    EXPECT_TRUE(TestClient::eventually([this] { return m_events.all().size() == 5; }));
    other.destroyWindow(window);
}

TEST_F(X11KeyMonitorTest, AfterALongPauseTheServerIsAskedWhichKeysAreDown)
{
    SecondKeyboard elsewhere;
    ASSERT_TRUE(elsewhere.isThere());
    otherProgramInFront();
    const auto observation = watch();
    ASSERT_TRUE(observation);
    elsewhere.pressKey(leftAltCode);
    ASSERT_TRUE(TestClient::eventually([this] { return m_events.all().size() == 1; }));
    std::this_thread::sleep_for(std::chrono::milliseconds(1200)); // The pause itself.
    m_client.tap(keysyms::space);
    EXPECT_TRUE(m_events.eventuallyAre(
        {{Kind::FlagsChanged, key_codes::leftOption, KeyModifier::Option, false},
            {Kind::FlagsChanged, key_codes::leftOption, {}, false},
            {Kind::KeyDown, key_codes::space, {}, false}}));
}

TEST_F(X11KeyMonitorTest, GlobalHandlersRunWhileTheMainThreadIsBusy)
{
    otherProgramInFront();
    const auto observation = watch();
    ASSERT_TRUE(observation);
    m_client.pressKey(rightAltCode);
    m_client.releaseKey(rightAltCode);
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(2);
    while (m_events.all().size() < 2 && std::chrono::steady_clock::now() < end)
        std::this_thread::yield(); // Without the event loop.
    EXPECT_EQ(m_events.all().size(), 2U);
}

TEST_F(X11KeyMonitorTest, NothingIsReportedAfterTheObservationEnded)
{
    otherProgramInFront();
    auto observation = watch();
    ASSERT_TRUE(observation);
    observation.reset();
    m_client.tap(keysyms::escape);
    EXPECT_TRUE(m_events.all().empty());
}

TEST_F(X11KeyMonitorTest, OwnWindowsBelongToTheLocalMonitorWhichCanSwallow)
{
    QLineEdit field;
    field.show();
    ASSERT_TRUE(TestClient::eventually([&] { return field.hasFocus(); }));
    const auto global = watch();
    Events local;
    const auto observation = m_monitor.addLocalMonitor([&](const KeyEvent& event) {
        local.add(event);
        return event.keyCode == key_codes::space;
    });
    m_client.tap('a');
    m_client.tap(keysyms::space);
    m_client.tap('b');
    EXPECT_TRUE(TestClient::eventually([&] { return field.text() == QStringLiteral("ab"); }));
    ASSERT_EQ(local.all().size(), 3U);
    EXPECT_EQ(local.all()[1], (KeyEvent{Kind::KeyDown, key_codes::space, {}, false}));
    EXPECT_TRUE(m_events.all().empty());
}

TEST_F(X11KeyMonitorTest, ALocalModifierComesWithTheStateAfterwards)
{
    QLineEdit field;
    field.show();
    ASSERT_TRUE(TestClient::eventually([&] { return field.hasFocus(); }));
    Events local;
    const auto observation = m_monitor.addLocalMonitor([&](const KeyEvent& event) {
        local.add(event);
        return true;
    });
    m_client.pressKey(rightAltCode);
    m_client.releaseKey(rightAltCode);
    EXPECT_TRUE(local.eventuallyAre(
        {{Kind::FlagsChanged, key_codes::rightOption, KeyModifier::Option, false},
            {Kind::FlagsChanged, key_codes::rightOption, {}, false}}));
}

TEST_F(X11KeyMonitorTest, AHeldKeyRepeats)
{
    QLineEdit field;
    field.show();
    ASSERT_TRUE(TestClient::eventually([&] { return field.hasFocus(); }));
    Events local;
    const auto observation = m_monitor.addLocalMonitor([&](const KeyEvent& event) {
        local.add(event);
        return true;
    });
    const auto space = *KeyboardMap::read(m_client.connection()).codeOf(keysyms::space);
    m_client.pressKey(space);
    const bool repeated = TestClient::eventually([&] { return local.all().size() >= 3; });
    m_client.releaseKey(space);
    ASSERT_TRUE(repeated);
    const auto events = local.all();
    EXPECT_FALSE(events[0].isRepeat);
    for (std::size_t i = 1; i < events.size(); ++i)
        EXPECT_TRUE(events[i].isRepeat) << i;
}

TEST_F(X11KeyMonitorTest, ATapOfAltGrIsRightOptionAndItsCharactersAreNone)
{
    const TestLayouts layouts({QStringLiteral("de")});
    otherProgramInFront();
    const auto observation = watch();
    ASSERT_TRUE(observation);
    m_client.pressKey(rightAltCode);
    m_client.tap('q');
    m_client.releaseKey(rightAltCode);
    m_client.pressKey(rightAltCode);
    m_client.click(uselessButton);
    m_client.releaseKey(rightAltCode);
    m_client.pressKey(rightAltCode);
    m_client.releaseKey(rightAltCode);
    ASSERT_TRUE(TestClient::eventually([this] { return m_events.all().size() >= 3; }));
    const auto events = m_events.all();
    EXPECT_EQ(events[0].kind, Kind::KeyDown);
    EXPECT_EQ(events[0].modifiers, KeyModifiers());
    EXPECT_EQ(std::vector<KeyEvent>(events.begin() + 1, events.end()), altGrTap);
}

TEST_F(X11KeyMonitorTest, WhetherTheRightAltIsAltGrIsUpToTheLayoutInUse)
{
    const TestLayouts layouts({QStringLiteral("us,de")});
    otherProgramInFront();
    const auto observation = watch();
    ASSERT_TRUE(observation);
    m_client.pressKey(rightAltCode);
    EXPECT_TRUE(m_events.eventuallyAre({altGrTap[0]}));
    m_client.releaseKey(rightAltCode);
    EXPECT_TRUE(m_events.eventuallyAre(altGrTap));

    m_client.useLayout(1);
    m_client.pressKey(rightAltCode);
    m_client.tap('q');
    EXPECT_TRUE(TestClient::eventually([this] { return m_events.all().size() == 3; }));
    m_client.releaseKey(rightAltCode);
    m_client.useLayout(0);
    m_client.tap('a');
    EXPECT_TRUE(TestClient::eventually([this] { return m_events.all().size() == 4; }));
}

TEST_F(X11KeyMonitorTest, KeysHeldWhenAnOwnWindowLosesTheKeyboardAreForgotten)
{
    QLineEdit field;
    field.show();
    ASSERT_TRUE(TestClient::eventually([&] { return field.hasFocus(); }));
    Events local;
    const auto observation = m_monitor.addLocalMonitor([&](const KeyEvent& event) {
        local.add(event);
        return false;
    });
    m_client.pressKey(leftAltCode);
    ASSERT_TRUE(TestClient::eventually([&] { return local.all().size() == 1; }));
    const xcb_window_t other =
        m_client.createWindow("other", "Other", static_cast<quint32>(::getppid()));
    ASSERT_TRUE(TestClient::eventually([&] { return !field.hasFocus(); }));
    m_client.releaseKey(leftAltCode);
    m_client.destroyWindow(other);
    ASSERT_TRUE(TestClient::eventually([&] { return field.hasFocus(); }));
    m_client.tap(keysyms::space);
    ASSERT_TRUE(TestClient::eventually([&] { return field.text() == u" "; }));
    ASSERT_GE(local.all().size(), 2U);
    EXPECT_EQ(local.all()[1], (KeyEvent{Kind::KeyDown, key_codes::space, {}, false}));
}

TEST_F(X11KeyMonitorTest, AltGrTypesIntoOwnWindows)
{
    const TestLayouts layouts({QStringLiteral("de")});
    QLineEdit field;
    field.show();
    ASSERT_TRUE(TestClient::eventually([&] { return field.hasFocus(); }));
    Events local;
    const auto observation = m_monitor.addLocalMonitor([&](const KeyEvent& event) {
        local.add(event);
        return event.kind == Kind::FlagsChanged;
    });
    m_client.pressKey(rightAltCode);
    m_client.tap('q');
    m_client.releaseKey(rightAltCode);
    m_client.tap('a');
    EXPECT_TRUE(TestClient::eventually([&] { return field.text() == QStringLiteral("@a"); }))
        << field.text().toStdString();
    ASSERT_EQ(local.all().size(), 2U);
    EXPECT_EQ(local.all()[0].modifiers, KeyModifiers());

    m_client.pressKey(rightAltCode);
    m_client.click(uselessButton);
    m_client.releaseKey(rightAltCode);
    m_client.pressKey(rightAltCode);
    m_client.releaseKey(rightAltCode);
    ASSERT_TRUE(TestClient::eventually([&] { return local.all().size() >= 4; }));
    const auto events = local.all();
    EXPECT_EQ(std::vector<KeyEvent>(events.begin() + 2, events.end()), altGrTap);
}

TEST_F(X11KeyMonitorTest, OwnWindowsLearnOfExchangedKeys)
{
    QLineEdit field;
    field.show();
    ASSERT_TRUE(TestClient::eventually([&] { return field.hasFocus(); }));
    Events local;
    const auto observation = m_monitor.addLocalMonitor([&](const KeyEvent& event) {
        local.add(event);
        return true;
    });
    const TestLayouts layouts(
        {QStringLiteral("us"), QStringLiteral("-option"), QStringLiteral("altwin:swap_lalt_lwin")});
    m_client.pressKey(leftAltCode);
    m_client.releaseKey(leftAltCode);
    ASSERT_TRUE(TestClient::eventually([&] { return local.all().size() == 2; }));
    EXPECT_EQ(local.all()[0].modifiers, KeyModifiers(KeyModifier::Command));
}

} // namespace
} // namespace tavrin::testing
