#include "delivery/TextDelivery.h"

#include "delivery/TargetContext.h"
#include "support/CapturedLog.h"
#include "support/InMemoryAccessibility.h"
#include "support/InMemoryPasteboard.h"
#include "support/InMemoryWorkspace.h"
#include "support/QtPrinters.h"
#include "support/RecordingKeyboard.h"
#include "support/VirtualTime.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tavrin {
namespace {

using testing::FakeElement;

constexpr qint64 editorProcess = 4711;
constexpr qint64 otherProcess = 815;
constexpr Seconds untilPaste = 260ms;
constexpr Seconds untilFirstCheck = 520ms;

class TextDeliveryTest : public ::testing::Test {
protected:
    testing::VirtualTime time;
    testing::InMemoryPasteboard pasteboard;
    testing::InMemoryWorkspace workspace;
    testing::InMemoryAccessibility accessibility;
    testing::RecordingKeyboard keyboard;
    TargetContext target{workspace, accessibility};
    TextDelivery delivery{{pasteboard, workspace, accessibility, keyboard, time}, target};
    std::shared_ptr<FakeElement> editor = std::make_shared<FakeElement>();
    std::optional<DeliveryOutcome> outcome;
    Seconds finishedAt{-1};

    /// An editor in front whose paste works, with the caret after "Dear ".
    void SetUp() override
    {
        editor->processIdentifier = editorProcess;
        editor->text = u"Dear "_s;
        editor->selection = {5, 0};
        accessibility.focusedElements[editorProcess] = editor;
        workspace.frontmost = RunningApplication{editorProcess, u"Editor"_s, u"editor"_s, 0};
        target.capture();
        keyboard.onPaste = [this] { editor->insert(pasteboard.string()); };
    }

    void TearDown() override { EXPECT_EQ(time.pending(), 0); }

    void swallowPastes()
    {
        keyboard.onPaste = [] {};
    }

    void paste(const QString& text)
    {
        delivery.pasteText(text, [this](const DeliveryOutcome& result) {
            outcome = result;
            finishedAt = time.uptime();
        });
    }

    void pasteToTheEnd(const QString& text)
    {
        paste(text);
        time.advance(10s);
    }

    void expectVerifiedAt(Seconds when)
    {
        EXPECT_EQ(outcome, (DeliveryOutcome{true, {}}));
        EXPECT_DOUBLE_EQ(finishedAt.count(), when.count());
    }

    void expectFailure(const QString& reason)
    {
        EXPECT_EQ(outcome, (DeliveryOutcome{false, reason}));
        EXPECT_EQ(finishedAt, 0s);
        EXPECT_TRUE(keyboard.pastes.isEmpty());
    }

    [[nodiscard]] bool verify(const QString& text, const std::optional<QString>& expected,
        const EditorObservation& before)
    {
        const ElementHandle element = accessibility.focusedElement(editorProcess);
        return delivery.verifyInsertionOfText(text, element.get(), expected, before);
    }

    [[nodiscard]] std::optional<QString> insert(const QString& text)
    {
        const ElementHandle element = accessibility.focusedElement(editorProcess);
        return delivery.insertText(text, element.get());
    }
};

// The four early failures.

TEST_F(TextDeliveryTest, ARefusingPasteboardFailsAtOnce)
{
    pasteboard.accepts = false;
    pasteToTheEnd(u"Anna"_s);
    expectFailure(u"无法将结果写入系统剪贴板"_s);
    EXPECT_TRUE(workspace.activations.isEmpty());
}

TEST_F(TextDeliveryTest, WithoutATargetTheTextStaysOnThePasteboard)
{
    target.clear();
    pasteToTheEnd(u"Anna"_s);
    expectFailure(u"没有记录到目标应用"_s);
    EXPECT_EQ(pasteboard.string(), u"Anna"_s);
}

TEST_F(TextDeliveryTest, TavrinItselfIsNoTarget)
{
    workspace.frontmost = RunningApplication{1, u"Tavrin"_s, workspace.bundleIdentifier(), 0};
    target.capture();
    pasteToTheEnd(u"Anna"_s);
    expectFailure(u"开始录音时焦点仍在 Tavrin"_s);
    EXPECT_EQ(pasteboard.string(), u"Anna"_s);
    EXPECT_TRUE(workspace.activations.isEmpty());
}

TEST_F(TextDeliveryTest, ATargetThatHasQuitCannotBeActivated)
{
    workspace.activationSucceeds = false;
    pasteToTheEnd(u"Anna"_s);
    expectFailure(u"无法重新激活目标应用"_s);
    EXPECT_EQ(pasteboard.string(), u"Anna"_s);
}

// The way through.

TEST_F(TextDeliveryTest, APasteThatShowsIsVerifiedAtTheFirstCheck)
{
    paste(u"Anna"_s);
    EXPECT_EQ(workspace.activations.size(), 1);
    time.advance(untilPaste - 1ms);
    EXPECT_TRUE(keyboard.pastes.isEmpty());
    time.advance(1ms);
    ASSERT_EQ(keyboard.pastes.size(), 1);
    EXPECT_EQ(keyboard.pastes.first().processIdentifier, editorProcess);

    time.advance(untilFirstCheck - 1ms);
    EXPECT_FALSE(outcome.has_value());
    time.advance(1ms);

    expectVerifiedAt(780ms);
    EXPECT_EQ(editor->text, u"Dear Anna"_s);
    EXPECT_EQ(pasteboard.string(), u"Anna"_s);
    EXPECT_TRUE(keyboard.typed.isEmpty());
}

TEST_F(TextDeliveryTest, TheCapturedWindowAndElementGetTheFocusBackFirst)
{
    accessibility.focusedWindows[editorProcess] = std::make_shared<FakeElement>();
    target.capture();
    accessibility.calls.clear();

    pasteToTheEnd(u"Anna"_s);

    EXPECT_EQ(accessibility.calls, (QStringList{u"setFocusedWindow 4711"_s, u"setFocused"_s}));
}

TEST_F(TextDeliveryTest, OnlyTheReferencesOfTheTargetRemainAfterwards)
{
    swallowPastes();
    pasteToTheEnd(u"Anna"_s);
    EXPECT_EQ(accessibility.liveReferences, 1);
}

TEST_F(TextDeliveryTest, ACapturedElementOfAnotherProcessIsReplacedByTheOneInFocus)
{
    const auto stranger = std::make_shared<FakeElement>(*editor);
    accessibility.focusedElements[editorProcess] = stranger;
    target.capture();
    stranger->processIdentifier = otherProcess;
    accessibility.focusedElements[editorProcess] = editor;
    swallowPastes();
    keyboard.onTyping = [this](const QString& text) { editor->insert(text); };

    pasteToTheEnd(u"Anna"_s);

    EXPECT_EQ(editor->text, u"Dear Anna"_s);
    EXPECT_EQ(stranger->text, u"Dear "_s);
}

TEST_F(TextDeliveryTest, ACapturedElementWithoutARoleIsReplacedByTheOneInFocus)
{
    const auto mute = std::make_shared<FakeElement>(*editor);
    mute->role.reset();
    accessibility.focusedElements[editorProcess] = mute;
    target.capture();
    accessibility.focusedElements[editorProcess] = editor;

    pasteToTheEnd(u"Anna"_s);

    expectVerifiedAt(780ms);
}

TEST_F(TextDeliveryTest, WithoutTrustTheTextIsPastedAndNothingIsRead)
{
    accessibility.trusted = false;
    target.capture();
    pasteToTheEnd(u"Anna"_s);
    expectVerifiedAt(780ms);
    EXPECT_EQ(accessibility.reads, 0);
    EXPECT_EQ(editor->text, u"Dear Anna"_s);
}

TEST_F(TextDeliveryTest, NothingIsReadFromAPasswordField)
{
    editor->isProtected = true;
    swallowPastes();
    pasteToTheEnd(u"Anna"_s);
    expectVerifiedAt(780ms);
    EXPECT_EQ(accessibility.reads, 0);
    EXPECT_TRUE(keyboard.typed.isEmpty());
}

TEST_F(TextDeliveryTest, AnEditorThatReportsNothingCountsAsDelivered)
{
    editor->exposesText = false;
    editor->exposesSelection = false;
    editor->exposesCount = false;
    editor->exposesStringForRange = false;
    pasteToTheEnd(u"Anna"_s);
    expectVerifiedAt(780ms);
    EXPECT_TRUE(keyboard.typed.isEmpty());
}

TEST_F(TextDeliveryTest, AnIncompleteViewOfASwallowedPasteEndsTheLadder)
{
    swallowPastes();
    for (bool FakeElement::*const hidden :
        {&FakeElement::exposesText, &FakeElement::exposesSelection, &FakeElement::exposesCount}) {
        editor.get()->*hidden = false;
        pasteToTheEnd(u"Anna"_s);
        EXPECT_EQ(outcome, (DeliveryOutcome{true, {}}));
        EXPECT_TRUE(keyboard.typed.isEmpty());
        editor.get()->*hidden = true;
    }
}

TEST_F(TextDeliveryTest, LineEndsMayDiffer)
{
    keyboard.onPaste = [this] { editor->text = u"Dear Anna\r\nHello"_s; };
    editor->claimedSelection = TextRange{5, 0};
    editor->claimedCount = 5;
    editor->exposesStringForRange = false;

    pasteToTheEnd(u"Anna\nHello"_s);

    expectVerifiedAt(780ms);
}

TEST_F(TextDeliveryTest, APasteThatChangedTheTextOtherwiseIsNotTypedAgain)
{
    keyboard.onPaste = [this] { editor->text = u"Dear \"Anna\""_s; };
    pasteToTheEnd(u"Anna"_s);
    expectVerifiedAt(780ms);
    EXPECT_TRUE(keyboard.typed.isEmpty());
}

TEST_F(TextDeliveryTest, AnInactiveTargetLeavesTheVisibleChangeToDecide)
{
    paste(u"Anna"_s);
    time.advance(untilPaste);
    workspace.frontmost = RunningApplication{otherProcess, u"Other"_s, u"other"_s, 0};
    time.advance(untilFirstCheck);
    expectVerifiedAt(780ms);
}

// Typing.

TEST_F(TextDeliveryTest, ASwallowedPasteIsTyped)
{
    swallowPastes();
    keyboard.onTyping = [this](const QString& text) { editor->insert(text); };

    pasteToTheEnd(u"0123456789abcde😀!"_s);

    ASSERT_EQ(keyboard.typed.size(), 1);
    EXPECT_EQ(keyboard.typed.first(), (QStringList{u"0123456789abcde"_s, u"😀!"_s}));
    EXPECT_EQ(editor->text, u"Dear 0123456789abcde😀!"_s);
    expectVerifiedAt(780ms + 2ms * 18 + 260ms);
}

TEST_F(TextDeliveryTest, TheWaitForTypingIsCapped)
{
    swallowPastes();
    keyboard.onTyping = [this](const QString& text) { editor->insert(text); };

    pasteToTheEnd(QString(1000, u'x'));

    expectVerifiedAt(780ms + 1200ms);
}

TEST_F(TextDeliveryTest, TypingThatMovedTheSelectionIsEnough)
{
    swallowPastes();
    keyboard.onTyping = [this](const QString&) { editor->claimedSelection = TextRange{0, 2}; };
    pasteToTheEnd(u"Anna"_s);
    expectVerifiedAt(780ms + 268ms);
    EXPECT_EQ(editor->text, u"Dear "_s);
}

TEST_F(TextDeliveryTest, TypingThatChangedOnlyTheCountIsEnough)
{
    swallowPastes();
    keyboard.onTyping = [this](const QString&) { editor->claimedCount = 6; };
    pasteToTheEnd(u"Anna"_s);
    expectVerifiedAt(780ms + 268ms);
    EXPECT_EQ(editor->text, u"Dear "_s);
}

// The direct write.

TEST_F(TextDeliveryTest, WhatNeitherPasteNorTypingBroughtIsWrittenDirectly)
{
    swallowPastes();
    pasteToTheEnd(u"Anna"_s);
    expectVerifiedAt(780ms + 268ms + 180ms);
    EXPECT_EQ(editor->text, u"Dear Anna"_s);
}

TEST_F(TextDeliveryTest, ACountThatBecameUnknownLeadsToTheDirectWrite)
{
    swallowPastes();
    keyboard.onTyping = [this](const QString&) { editor->exposesCount = false; };
    pasteToTheEnd(u"Anna"_s);
    expectVerifiedAt(780ms + 268ms + 180ms);
    EXPECT_EQ(editor->text, u"Dear Anna"_s);
}

TEST_F(TextDeliveryTest, ARefusedDirectWriteStillCountsAsDelivered)
{
    swallowPastes();
    editor->writesSucceed = false;
    pasteToTheEnd(u"Anna"_s);
    expectVerifiedAt(780ms + 268ms + 180ms);
    EXPECT_EQ(pasteboard.string(), u"Anna"_s);
}

TEST_F(TextDeliveryTest, TheLogTellsTheMeansAndNothingOfTheText)
{
    const testing::CapturedLog log;
    const auto pasteWith = [this](std::function<void()> onPaste) {
        keyboard.onPaste = std::move(onPaste);
        pasteToTheEnd(u"Anna"_s);
    };

    pasteWith([this] { editor->insert(pasteboard.string()); });
    pasteWith([this] { editor->insert(u"Ann"_s); });
    editor->exposesText = false;
    pasteWith([] {});
    editor->exposesText = true;
    keyboard.onTyping = [this](const QString& text) { editor->insert(text); };
    pasteWith([] {});
    keyboard.onTyping = [](const QString& /*text*/) {};
    pasteWith([] {});

    EXPECT_EQ(testing::CapturedLog::lines(),
        (QStringList{u"delivered by paste, verified"_s, u"delivered by paste, changed the editor"_s,
            u"delivered by paste, unseen"_s, u"delivered by typing"_s,
            u"delivered by direct write"_s}));
}

TEST_F(TextDeliveryTest, TheSelectedTextIsWrittenWhereThatIsAllowed)
{
    editor->selection = {0, 4};
    EXPECT_EQ(insert(u"Hi"_s), std::nullopt);
    EXPECT_EQ(editor->text, u"Hi "_s);
    EXPECT_EQ(accessibility.calls.last(), u"setSelectedText"_s);
}

TEST_F(TextDeliveryTest, TheWholeValueIsWrittenWhereOnlyThatIsAllowed)
{
    editor->selectedTextSettable = false;
    editor->selection = {0, 4};
    EXPECT_EQ(insert(u"Hi"_s), std::nullopt);
    EXPECT_EQ(editor->text, u"Hi "_s);
    EXPECT_EQ(editor->selection, (TextRange{2, 0}));
}

TEST_F(TextDeliveryTest, ARangeThatDoesNotFitIsNeverWritten)
{
    editor->selectedTextSettable = false;
    for (const TextRange range : {TextRange{-1, 0}, {0, -1}, {0, 6}, {6, 0}}) {
        editor->claimedSelection = range;
        EXPECT_EQ(insert(u"Hi"_s), u"当前应用不允许辅助功能直接写入"_s);
    }
    EXPECT_EQ(editor->text, u"Dear "_s);
}

TEST_F(TextDeliveryTest, AFieldThatLetsNothingBeWrittenSaysSo)
{
    editor->selectedTextSettable = false;
    editor->valueSettable = false;
    EXPECT_EQ(insert(u"Hi"_s), u"当前应用不允许辅助功能直接写入"_s);
    editor->valueSettable = true;
    editor->exposesText = false;
    EXPECT_EQ(insert(u"Hi"_s), u"当前应用不允许辅助功能直接写入"_s);
    EXPECT_EQ(delivery.insertText(u"Hi"_s, nullptr), u"找不到目标输入框"_s);
}

// The strict verification.

TEST_F(TextDeliveryTest, WithoutAnElementNothingIsVerified)
{
    EXPECT_FALSE(delivery.verifyInsertionOfText(u"a"_s, nullptr, u"a"_s, {}));
}

TEST_F(TextDeliveryTest, AnInactiveTargetIsNeverVerified)
{
    workspace.frontmost = RunningApplication{otherProcess, {}, {}, 0};
    EXPECT_FALSE(verify(u"Dear "_s, u"Dear "_s, {}));
}

TEST_F(TextDeliveryTest, TheExpectedValueIsProofWithoutAnyRange)
{
    EXPECT_TRUE(verify(u"Dear "_s, u"Dear "_s, {}));
    EXPECT_FALSE(verify(u"Dear "_s, u"Dear Anna"_s, {}));
}

TEST_F(TextDeliveryTest, TheTextAtItsPlaceIsProof)
{
    editor->text = u"Dear Anna\r\n..."_s;
    const EditorObservation before{std::nullopt, TextRange{5, 0}, std::nullopt};
    EXPECT_TRUE(verify(u"Anna\r"_s, std::nullopt, before));
    EXPECT_FALSE(verify(u"Nana"_s, std::nullopt, before));
}

TEST_F(TextDeliveryTest, CaretAndCountAreProofForAReplacedSelection)
{
    editor->exposesStringForRange = false;
    editor->claimedSelection = TextRange{8, 0};
    editor->claimedCount = 20;
    const EditorObservation before{std::nullopt, TextRange{5, 3}, 20};

    EXPECT_TRUE(verify(u"abc"_s, std::nullopt, before));
    editor->claimedCount = 23;
    EXPECT_FALSE(verify(u"abc"_s, std::nullopt, before));
    editor->claimedCount = 20;
    editor->claimedSelection = TextRange{8, 1};
    EXPECT_FALSE(verify(u"abc"_s, std::nullopt, before));
    editor->exposesSelection = false;
    EXPECT_FALSE(verify(u"abc"_s, std::nullopt, before));
}

TEST_F(TextDeliveryTest, ANegativeRangeAsksForNoText)
{
    const ElementHandle element = accessibility.focusedElement(editorProcess);
    EXPECT_EQ(delivery.stringForRange({-1, 2}, element.get()), std::nullopt);
    EXPECT_EQ(delivery.stringForRange({0, -2}, element.get()), std::nullopt);
    EXPECT_EQ(delivery.stringForRange({0, 2}, nullptr), std::nullopt);
    EXPECT_EQ(delivery.stringForRange({0, 2}, element.get()), u"De"_s);
}

TEST_F(TextDeliveryTest, ADeliveryThatOutlivesItsOwnerDoesNothing)
{
    allowDroppedCompletions(true);
    {
        TextDelivery ended{{pasteboard, workspace, accessibility, keyboard, time}, target};
        ended.pasteText(u"Anna"_s, [this](const DeliveryOutcome& result) { outcome = result; });
    }
    time.advance(10s);
    allowDroppedCompletions(false);

    EXPECT_TRUE(keyboard.pastes.isEmpty());
    EXPECT_FALSE(outcome.has_value());
}

} // namespace
} // namespace tavrin
