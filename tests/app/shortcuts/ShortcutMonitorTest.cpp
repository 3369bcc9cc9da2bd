#include "app/shortcuts/ShortcutMonitor.h"

#include "app/settings/Localization.h"
#include "app/settings/Settings.h"
#include "platform/preferences/PreferenceKeys.h"
#include "support/QtPrinters.h"
#include "support/ports/InMemoryKeyMonitor.h"
#include "support/ports/InMemoryPreferences.h"
#include "support/ports/InMemoryWorkspace.h"
#include "support/ports/VirtualTime.h"

#include <gtest/gtest.h>

#include <optional>
#include <thread>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tavrin {

void PrintTo(OperationMode mode, std::ostream* out)
{
    *out << "mode " << static_cast<int>(mode);
}

namespace {

constexpr KeyModifiers noModifiers;
constexpr KeyModifiers shift = KeyModifier::Shift;
constexpr KeyModifiers control = KeyModifier::Control;
constexpr KeyModifiers option = KeyModifier::Option;
constexpr KeyModifiers command = KeyModifier::Command;
constexpr int letterA = 0;

KeyEvent keyDown(int keyCode, KeyModifiers modifiers = {}, bool isRepeat = false)
{
    return {KeyEvent::Kind::KeyDown, keyCode, modifiers, isRepeat};
}

KeyEvent flagsChanged(int keyCode, KeyModifiers modifiers)
{
    return {KeyEvent::Kind::FlagsChanged, keyCode, modifiers, false};
}

class ShortcutMonitorTest : public ::testing::Test {
protected:
    testing::VirtualTime time;
    testing::InMemoryKeyMonitor keyboard;
    testing::InMemoryPreferences preferences;
    testing::InMemoryWorkspace workspace;
    Localization localization{preferences, workspace, KeyNames()};
    Settings settings{preferences, localization};
    bool recording = false;
    int escapes = 0;
    QList<OperationMode> presses;
    QList<qsizetype> covered; ///< How many presses there had been each time.
    std::optional<ShortcutMonitor> monitor;

    ShortcutMonitorTest()
    {
        monitor.emplace(keyboard, time, settings,
            ShortcutMonitor::Actions{
                .coverModifierKey = [this] { covered.append(presses.size()); },
                .isRecording = [this] { return recording; },
                .handleEscape = [this] { ++escapes; },
                .toggleOperationMode = [this](OperationMode mode) { presses.append(mode); },
            });
        assign({u"rightOption"_s, u"optionSpace"_s}, {u"leftOption"_s, u"controlOptionSpace"_s},
            {u"commandShiftSpace"_s});
    }

    void assign(
        const QStringList& dictation, const QStringList& translation, const QStringList& chat)
    {
        preferences.setValue(keys::dictationShortcutIdentifiers, dictation);
        preferences.setValue(keys::translationShortcutIdentifiers, translation);
        preferences.setValue(keys::chatShortcutIdentifiers, chat);
    }

    std::optional<OperationMode> operationFor(const KeyEvent& event)
    {
        return monitor->operationForHotKeyEvent(event);
    }

    std::optional<OperationMode> pressRightOption(KeyModifiers others = {})
    {
        return operationFor(flagsChanged(key_codes::rightOption, option | others));
    }

    std::optional<OperationMode> releaseRightOption(KeyModifiers others = {})
    {
        return operationFor(flagsChanged(key_codes::rightOption, others));
    }
};

TEST_F(ShortcutMonitorTest, KeysAndModifiersHaveTheirNumbers)
{
    EXPECT_EQ(key_codes::space, 49);
    EXPECT_EQ(key_codes::escape, 53);
    EXPECT_EQ(key_codes::leftOption, 58);
    EXPECT_EQ(key_codes::rightOption, 61);
    EXPECT_EQ(shift.toInt(), 0x20000U);
    EXPECT_EQ(control.toInt(), 0x40000U);
    EXPECT_EQ(option.toInt(), 0x80000U);
    EXPECT_EQ(command.toInt(), 0x100000U);
}

TEST_F(ShortcutMonitorTest, TheOptionKeysCountWhenTheyGoDown)
{
    EXPECT_EQ(pressRightOption(), OperationMode::Dictation);
    EXPECT_EQ(
        operationFor(flagsChanged(key_codes::leftOption, option)), OperationMode::Translation);
}

TEST_F(ShortcutMonitorTest, AHeldOptionKeyCountsOnce)
{
    EXPECT_EQ(pressRightOption(), OperationMode::Dictation);
    EXPECT_EQ(pressRightOption(), std::nullopt);
    EXPECT_EQ(releaseRightOption(), std::nullopt);
    EXPECT_EQ(pressRightOption(), OperationMode::Dictation);
}

TEST_F(ShortcutMonitorTest, EachOptionKeyIsHeldForItself)
{
    EXPECT_EQ(pressRightOption(), OperationMode::Dictation);
    EXPECT_EQ(
        operationFor(flagsChanged(key_codes::leftOption, option)), OperationMode::Translation);
    EXPECT_EQ(pressRightOption(), std::nullopt);
    EXPECT_EQ(operationFor(flagsChanged(key_codes::leftOption, noModifiers)), std::nullopt);
    EXPECT_EQ(pressRightOption(), std::nullopt);
    EXPECT_EQ(
        operationFor(flagsChanged(key_codes::leftOption, option)), OperationMode::Translation);
}

TEST_F(ShortcutMonitorTest, AnOptionKeyPressedWithAnotherModifierIsHeldButDoesNothing)
{
    for (const KeyModifiers other : {shift, control, command}) {
        EXPECT_EQ(pressRightOption(other), std::nullopt);
        EXPECT_EQ(pressRightOption(), std::nullopt); // The other one is released.
        EXPECT_EQ(releaseRightOption(), std::nullopt);
    }
    EXPECT_EQ(pressRightOption(), OperationMode::Dictation);
}

TEST_F(ShortcutMonitorTest, OtherModifierKeysMeanNothing)
{
    constexpr int leftShift = 56;

    EXPECT_EQ(operationFor(flagsChanged(leftShift, shift)), std::nullopt);
    EXPECT_EQ(operationFor(flagsChanged(leftShift, option)), std::nullopt);
    EXPECT_EQ(operationFor(flagsChanged(key_codes::space, option)), std::nullopt);
    EXPECT_EQ(operationFor(keyDown(key_codes::rightOption, option)), std::nullopt);
    EXPECT_EQ(operationFor(keyDown(key_codes::leftOption, option)), std::nullopt);
}

TEST_F(ShortcutMonitorTest, SpaceCountsWithExactlyTheModifiersOfAShortcut)
{
    for (unsigned bits = 0; bits < 16; ++bits) {
        KeyModifiers modifiers;
        modifiers.setFlag(KeyModifier::Shift, bits & 1U);
        modifiers.setFlag(KeyModifier::Control, bits & 2U);
        modifiers.setFlag(KeyModifier::Option, bits & 4U);
        modifiers.setFlag(KeyModifier::Command, bits & 8U);

        std::optional<OperationMode> expected;
        if (modifiers == option)
            expected = OperationMode::Dictation;
        else if (modifiers == (control | option))
            expected = OperationMode::Translation;
        else if (modifiers == (shift | command))
            expected = OperationMode::Chat;
        EXPECT_EQ(operationFor(keyDown(key_codes::space, modifiers)), expected) << bits;
    }
}

TEST_F(ShortcutMonitorTest, OtherFlagsOfAnEventAreIgnored)
{
    const auto capsLock = static_cast<KeyModifier>(0x10000);

    EXPECT_EQ(operationFor(keyDown(key_codes::space, option | capsLock)), OperationMode::Dictation);
    EXPECT_EQ(pressRightOption(capsLock), OperationMode::Dictation);
}

TEST_F(ShortcutMonitorTest, ARepeatedSpaceAndOtherKeysMeanNothing)
{
    EXPECT_EQ(operationFor(keyDown(key_codes::space, option, true)), std::nullopt);
    EXPECT_EQ(operationFor(keyDown(letterA, option)), std::nullopt);
    EXPECT_EQ(operationFor(keyDown(-1, option)), std::nullopt);
}

TEST_F(ShortcutMonitorTest, AShortcutOfNoOperationMeansNothing)
{
    assign({}, {}, {});

    EXPECT_EQ(pressRightOption(), std::nullopt);
    EXPECT_EQ(operationFor(keyDown(key_codes::space, option)), std::nullopt);
}

TEST_F(ShortcutMonitorTest, DictationWinsOverTranslationOverChat)
{
    assign({u"rightOption"_s}, {u"rightOption"_s, u"leftOption"_s},
        {u"rightOption"_s, u"leftOption"_s});
    EXPECT_EQ(monitor->operationForShortcutIdentifier(u"rightOption"_s), OperationMode::Dictation);
    EXPECT_EQ(monitor->operationForShortcutIdentifier(u"leftOption"_s), OperationMode::Translation);

    assign({}, {}, {u"optionSpace"_s});
    EXPECT_EQ(monitor->operationForShortcutIdentifier(u"optionSpace"_s), OperationMode::Chat);
    EXPECT_EQ(monitor->operationForShortcutIdentifier(u"rightOption"_s), std::nullopt);
    EXPECT_EQ(monitor->operationForShortcutIdentifier(u"none"_s), std::nullopt);
}

TEST_F(ShortcutMonitorTest, EscapeMeansSomethingOnlyWhileRecording)
{
    const KeyEvent escape = keyDown(key_codes::escape);
    EXPECT_FALSE(monitor->isEscapeEvent(escape));

    recording = true;
    EXPECT_TRUE(monitor->isEscapeEvent(escape));
    EXPECT_TRUE(monitor->isEscapeEvent(keyDown(key_codes::escape, shift)));
    EXPECT_FALSE(monitor->isEscapeEvent(keyDown(key_codes::escape, noModifiers, true)));
    EXPECT_FALSE(monitor->isEscapeEvent(keyDown(key_codes::space)));
    EXPECT_FALSE(monitor->isEscapeEvent(flagsChanged(key_codes::escape, noModifiers)));
}

TEST_F(ShortcutMonitorTest, NothingIsWatchedBeforeItIsConfigured)
{
    EXPECT_EQ(keyboard.globalMonitors(), 0);
    EXPECT_EQ(keyboard.localMonitors(), 0);

    monitor->configureHotKey();

    EXPECT_EQ(keyboard.globalMonitors(), 1);
    EXPECT_EQ(keyboard.localMonitors(), 1);
}

TEST_F(ShortcutMonitorTest, APressElsewhereArrivesThroughTheMainQueue)
{
    monitor->configureHotKey();

    keyboard.sendToOtherProgram(flagsChanged(key_codes::rightOption, option));
    EXPECT_TRUE(presses.isEmpty());

    time.advance(0s);
    EXPECT_EQ(presses, QList{OperationMode::Dictation});
    EXPECT_EQ(time.pending(), 0U);
}

TEST_F(ShortcutMonitorTest, EventsMayComeFromAnyThread)
{
    monitor->configureHotKey();
    recording = true;

    std::thread([this] {
        keyboard.sendToOtherProgram(keyDown(key_codes::space, shift | command));
        keyboard.sendToOtherProgram(keyDown(key_codes::escape));
    }).join();
    EXPECT_TRUE(presses.isEmpty());
    EXPECT_EQ(escapes, 0);

    time.advance(0s);
    EXPECT_EQ(presses, QList{OperationMode::Chat});
    EXPECT_EQ(escapes, 1);
}

TEST_F(ShortcutMonitorTest, APressInAnOwnWindowActsAtOnceAndIsSwallowed)
{
    monitor->configureHotKey();

    EXPECT_TRUE(keyboard.sendToOwnWindow(keyDown(key_codes::space, control | option)));

    EXPECT_EQ(presses, QList{OperationMode::Translation});
    EXPECT_EQ(time.pending(), 0U);
}

TEST_F(ShortcutMonitorTest, OtherKeysInAnOwnWindowPass)
{
    monitor->configureHotKey();

    EXPECT_FALSE(keyboard.sendToOwnWindow(keyDown(letterA)));
    EXPECT_FALSE(keyboard.sendToOwnWindow(keyDown(key_codes::space)));
    EXPECT_FALSE(keyboard.sendToOwnWindow(keyDown(key_codes::escape)));
    EXPECT_TRUE(presses.isEmpty());
    EXPECT_EQ(escapes, 0);
}

TEST_F(ShortcutMonitorTest, EscapeWhileRecordingIsHandledAndInAnOwnWindowSwallowed)
{
    monitor->configureHotKey();
    recording = true;

    EXPECT_TRUE(keyboard.sendToOwnWindow(keyDown(key_codes::escape)));
    EXPECT_EQ(escapes, 1);

    keyboard.sendToOtherProgram(keyDown(key_codes::escape));
    time.advance(0s);
    EXPECT_EQ(escapes, 2);
    EXPECT_TRUE(presses.isEmpty());
}

TEST_F(ShortcutMonitorTest, AKeyPressedElsewhereAndHeldDoesNotCountAgainInAnOwnWindow)
{
    monitor->configureHotKey();

    keyboard.sendToOtherProgram(flagsChanged(key_codes::rightOption, option));
    time.advance(0s);
    EXPECT_FALSE(keyboard.sendToOwnWindow(flagsChanged(key_codes::rightOption, option)));

    EXPECT_EQ(presses, QList{OperationMode::Dictation});
}

TEST_F(ShortcutMonitorTest, AnOptionKeyThatAnotherProgramSawIsCoveredBeforeItActs)
{
    monitor->configureHotKey();

    keyboard.sendToOtherProgram(flagsChanged(key_codes::rightOption, option));
    time.advance(0s);
    EXPECT_EQ(covered, QList<qsizetype>{0});
    EXPECT_EQ(presses.size(), 1);

    keyboard.sendToOtherProgram(flagsChanged(key_codes::rightOption, option));
    keyboard.sendToOtherProgram(flagsChanged(key_codes::rightOption, noModifiers));
    time.advance(0s);
    EXPECT_EQ(covered.size(), 1);
}

TEST_F(ShortcutMonitorTest, OtherShortcutsAreNotCovered)
{
    monitor->configureHotKey();

    keyboard.sendToOtherProgram(keyDown(key_codes::space, control | option));
    time.advance(0s);
    EXPECT_TRUE(keyboard.sendToOwnWindow(flagsChanged(key_codes::rightOption, option)));
    assign({}, {}, {});
    keyboard.sendToOtherProgram(flagsChanged(key_codes::leftOption, option));
    time.advance(0s);

    EXPECT_EQ(presses.size(), 2);
    EXPECT_TRUE(covered.isEmpty());
}

TEST_F(ShortcutMonitorTest, AfterClearingEvenAHeldKeyCounts)
{
    EXPECT_EQ(pressRightOption(), OperationMode::Dictation);
    EXPECT_EQ(
        operationFor(flagsChanged(key_codes::leftOption, option)), OperationMode::Translation);

    monitor->clearHeldKeys();

    EXPECT_EQ(pressRightOption(), OperationMode::Dictation);
    EXPECT_EQ(
        operationFor(flagsChanged(key_codes::leftOption, option)), OperationMode::Translation);
}

TEST_F(ShortcutMonitorTest, PressesInOwnWindowsCountWhenTheSystemRefusesTheOthers)
{
    keyboard.refusesGlobalMonitors = true;

    monitor->configureHotKey();

    EXPECT_TRUE(keyboard.sendToOwnWindow(keyDown(key_codes::space, option)));
    EXPECT_EQ(presses, QList{OperationMode::Dictation});
}

TEST_F(ShortcutMonitorTest, NothingHappensAfterItsEnd)
{
    monitor->configureHotKey();
    keyboard.sendToOtherProgram(keyDown(key_codes::space, option));

    monitor.reset();
    time.advance(0s);

    EXPECT_TRUE(presses.isEmpty());
    EXPECT_EQ(keyboard.globalMonitors(), 0);
    EXPECT_EQ(keyboard.localMonitors(), 0);
}

} // namespace
} // namespace tavrin
