#include "delivery/DeliveryFixture.h"
#include "support/CapturedLog.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

// The way of a text from the pasteboard to the editor.
namespace tavrin {
namespace {

using testing::FakeElement;

constexpr Seconds untilPaste = 260ms;
constexpr Seconds untilFirstCheck = 520ms;

class TextDeliveryTest : public testing::DeliveryFixture {
protected:
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

TEST_F(TextDeliveryTest, AnyVisibleSignOfAPasteIsEnough)
{
    const QList<std::function<void()>> signs{[this] { editor->claimedText = u"other"_s; },
        [this] {
            editor->claimedSelection = TextRange{0, 2};
        },
        [this] { editor->claimedCount = 6; }};
    for (const auto& sign : signs) {
        editor->claimedText.reset();
        editor->claimedSelection.reset();
        editor->claimedCount.reset();
        keyboard.onPaste = sign;
        pasteToTheEnd(u"Anna"_s);
        EXPECT_EQ(outcome, (DeliveryOutcome{true, {}}));
        EXPECT_TRUE(keyboard.typed.isEmpty());
    }
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

TEST_F(TextDeliveryTest, TypingThatChangedOnlyTheTextIsEnough)
{
    swallowPastes();
    keyboard.onTyping = [this](const QString&) { editor->claimedText = u"Dear \"Anna\""_s; };
    pasteToTheEnd(u"Anna"_s);
    expectVerifiedAt(780ms + 268ms);
    EXPECT_EQ(editor->text, u"Dear "_s);
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
