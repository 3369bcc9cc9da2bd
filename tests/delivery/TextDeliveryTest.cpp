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
    EXPECT_EQ(keyboard.pastes.first().application.processIdentifier, editorProcess);

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

TEST_F(TextDeliveryTest, TheEditorIsReleasedBeforeTheOutcomeIsTold)
{
    swallowPastes();
    int references = -1;
    delivery.pasteText(
        u"Anna"_s, [&](const DeliveryOutcome&) { references = accessibility.liveReferences; });
    time.advance(untilPaste);
    EXPECT_EQ(accessibility.liveReferences, 2);
    time.advance(10s);
    EXPECT_EQ(references, 1); // That of the target.
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

TEST_F(TextDeliveryTest, ACapturedElementWhoseProcessCannotBeReadIsReplacedByTheOneInFocus)
{
    const auto nameless = std::make_shared<FakeElement>(*editor);
    accessibility.focusedElements[editorProcess] = nameless;
    target.capture();
    ASSERT_NE(target.targetFocusedElement(), nullptr);
    nameless->exposesProcess = false;
    accessibility.focusedElements[editorProcess] = editor;

    pasteToTheEnd(u"Anna"_s);

    expectVerifiedAt(780ms);
    EXPECT_EQ(editor->text, u"Dear Anna"_s);
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

TEST_F(TextDeliveryTest, WithoutTrustTheCapturedWindowGetsTheFocusAllTheSame)
{
    accessibility.focusedWindows[editorProcess] = std::make_shared<FakeElement>();
    target.capture();
    accessibility.calls.clear();
    accessibility.trusted = false;
    pasteToTheEnd(u"Anna"_s);
    EXPECT_EQ(accessibility.calls, QStringList{u"setFocusedWindow 4711"_s});
}

TEST_F(TextDeliveryTest, TheTrustAtTheActivationCounts)
{
    accessibility.trusted = false;
    paste(u"Anna"_s);
    accessibility.trusted = true;
    time.advance(10s);
    expectVerifiedAt(780ms);
    EXPECT_EQ(accessibility.reads, 0);

    paste(u"Otto"_s);
    accessibility.trusted = false;
    time.advance(10s);
    EXPECT_GT(accessibility.reads, 0);
}

TEST_F(TextDeliveryTest, ThePasteShortcutIsThatOfTheFocusedElement)
{
    pasteToTheEnd(u"Anna"_s);
    editor->isTerminal = true;
    pasteToTheEnd(u"Bob"_s);
    ASSERT_EQ(keyboard.pastes.size(), 2);
    EXPECT_FALSE(keyboard.pastes.first().isTerminal);
    EXPECT_TRUE(keyboard.pastes.last().isTerminal);
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

TEST_F(TextDeliveryTest, LineEndsOfTheWholeTextMayDiffer)
{
    const testing::CapturedLog log;
    keyboard.onPaste = [this] { editor->text = u"Dear Anna\r\nHello"_s; };
    editor->claimedSelection = TextRange{5, 0};
    editor->claimedCount = 5;
    editor->exposesStringForRange = false;

    pasteToTheEnd(u"Anna\nHello"_s);

    expectVerifiedAt(780ms);
    EXPECT_EQ(testing::CapturedLog::lines(), QStringList{u"delivered by paste, verified"_s});
}

TEST_F(TextDeliveryTest, LineEndsOfTheTextAtItsPlaceMayDiffer)
{
    const testing::CapturedLog log;
    keyboard.onPaste = [this] { editor->text = u"Dear Anna\rHi."_s; };
    editor->claimedText = u"cut off"_s; // Only the place itself can tell.
    editor->claimedSelection = TextRange{5, 0};
    editor->claimedCount = 5;

    pasteToTheEnd(u"Anna\nHi."_s);

    expectVerifiedAt(780ms);
    EXPECT_EQ(testing::CapturedLog::lines(), QStringList{u"delivered by paste, verified"_s});
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
    const testing::CapturedLog log;
    paste(u"Anna"_s);
    time.advance(untilPaste);
    workspace.frontmost = RunningApplication{otherProcess, u"Other"_s, u"other"_s, 0};
    time.advance(untilFirstCheck);
    expectVerifiedAt(780ms);
    EXPECT_EQ(
        testing::CapturedLog::lines(), QStringList{u"delivered by paste, changed the editor"_s});
}

// Keys that take their time, or cannot go out.

TEST_F(TextDeliveryTest, TheWaitForAPasteBeginsWhenItsKeysAreOut)
{
    keyboard.answersLater = true;
    paste(u"Anna"_s);
    time.advance(untilPaste + 700ms);
    EXPECT_FALSE(outcome.has_value());
    keyboard.answer();
    time.advance(untilFirstCheck - 1ms);
    EXPECT_FALSE(outcome.has_value());
    time.advance(1ms);
    expectVerifiedAt(260ms + 700ms + 520ms);
}

TEST_F(TextDeliveryTest, APasteThatCannotGoOutIsNoDelivery)
{
    keyboard.pasteEnds = KeyPosting::Refused;
    pasteToTheEnd(u"Anna"_s);
    EXPECT_EQ(outcome, (DeliveryOutcome{false, u"无法向目标应用发送按键"_s}));
    EXPECT_EQ(finishedAt, untilPaste);
    EXPECT_EQ(pasteboard.string(), u"Anna"_s);
    EXPECT_TRUE(keyboard.typed.isEmpty());
    EXPECT_EQ(editor->text, u"Dear "_s);
}

TEST_F(TextDeliveryTest, TheWaitForTypingBeginsWhenItsKeysAreOut)
{
    swallowPastes();
    keyboard.onTyping = [this](const QString& text) { editor->insert(text); };
    paste(u"Anna"_s);
    time.advance(untilPaste);
    keyboard.answersLater = true;
    time.advance(untilFirstCheck + 3s);
    EXPECT_FALSE(outcome.has_value());
    keyboard.answer();
    time.advance(10s);
    expectVerifiedAt(780ms + 3s + 268ms);
}

TEST_F(TextDeliveryTest, TypingThatCannotBeginIsNoDelivery)
{
    swallowPastes();
    keyboard.typingEnds = KeyPosting::Refused;
    pasteToTheEnd(u"Anna"_s);
    EXPECT_EQ(outcome, (DeliveryOutcome{false, u"无法向目标应用发送按键"_s}));
    EXPECT_EQ(editor->text, u"Dear "_s);
    EXPECT_EQ(pasteboard.string(), u"Anna"_s);
}

TEST_F(TextDeliveryTest, TypingThatIsBrokenOffIsNoDelivery)
{
    swallowPastes();
    keyboard.typingEnds = KeyPosting::Broken;
    keyboard.onTyping = [this](const QString&) { editor->insert(u"An"_s); };
    pasteToTheEnd(u"Anna"_s);
    EXPECT_EQ(outcome, (DeliveryOutcome{false, u"逐字输入被打断，文字不完整"_s}));
    EXPECT_EQ(finishedAt, 780ms);
    EXPECT_EQ(editor->text, u"Dear An"_s);
    EXPECT_EQ(pasteboard.string(), u"Anna"_s);
}

TEST_F(TextDeliveryTest, WhatLiesInTheQueueOfASilentProgramIsNotWrittenToo)
{
    swallowPastes();
    keyboard.typingEnds = KeyPosting::Unanswered;
    pasteToTheEnd(u"Anna"_s);
    expectVerifiedAt(780ms);
    EXPECT_EQ(editor->text, u"Dear "_s);
}

TEST_F(TextDeliveryTest, WhatAProgramWouldMixUpIsWrittenAtOnce)
{
    swallowPastes();
    keyboard.typingEnds = KeyPosting::Unsuitable;
    pasteToTheEnd(u"Anna"_s);
    expectVerifiedAt(780ms + 180ms);
    EXPECT_EQ(editor->text, u"Dear Anna"_s);
}

TEST_F(TextDeliveryTest, WhatCanNeitherBeTypedNorWrittenIsNoDelivery)
{
    swallowPastes();
    keyboard.typingEnds = KeyPosting::Unsuitable;
    editor->writesSucceed = false;
    pasteToTheEnd(u"Anna"_s);
    EXPECT_EQ(outcome, (DeliveryOutcome{false, u"无法向目标应用发送按键"_s}));
    EXPECT_EQ(finishedAt, 780ms);
    EXPECT_EQ(editor->text, u"Dear "_s);
    EXPECT_EQ(pasteboard.string(), u"Anna"_s);
}

TEST_F(TextDeliveryTest, ADeliveryThatEndsWithTheProgramEndsItsTyping)
{
    allowDroppedCompletions(true);
    swallowPastes();
    {
        TextDelivery ended{{pasteboard, workspace, accessibility, keyboard, time}, target};
        ended.pasteText(u"Anna"_s, [](const DeliveryOutcome&) {});
        time.advance(untilPaste);
        EXPECT_EQ(accessibility.liveReferences, 2);
    }
    EXPECT_EQ(keyboard.cancellations, 1);
    EXPECT_EQ(accessibility.liveReferences, 1); // Before the desktop's ports go.
    time.advance(10s);
    allowDroppedCompletions(false);
}

// What the target did about the paste.

TEST_F(TextDeliveryTest, ATextThatTheTargetHasFetchedIsWaitedForAndNotTyped)
{
    swallowPastes();
    keyboard.reception = PasteReception::Fetched;
    paste(u"Anna"_s);
    time.advance(780ms + 450ms);
    EXPECT_FALSE(outcome.has_value());
    editor->insert(u"Anna"_s);
    time.advance(10s);
    expectVerifiedAt(780ms + 500ms);
    EXPECT_TRUE(keyboard.typed.isEmpty());
}

TEST_F(TextDeliveryTest, AFetchedTextThatIsNeverShownCountsAsDelivered)
{
    swallowPastes();
    keyboard.reception = PasteReception::Fetched;
    pasteToTheEnd(u"Anna"_s);
    expectVerifiedAt(780ms + 2s);
    EXPECT_TRUE(keyboard.typed.isEmpty());
    EXPECT_EQ(editor->text, u"Dear "_s);
}

TEST_F(TextDeliveryTest, AFetchedTextThatCannotBeSeenIsNotWaitedFor)
{
    keyboard.reception = PasteReception::Fetched;
    editor->exposesText = false;
    editor->exposesSelection = false;
    pasteToTheEnd(u"Anna"_s);
    expectVerifiedAt(780ms);
}

TEST_F(TextDeliveryTest, ABusyTargetIsWaitedForWithoutAskingWhatItShows)
{
    swallowPastes();
    keyboard.reception = PasteReception::Waiting;
    paste(u"Anna"_s);
    time.advance(untilPaste);
    const int reads = accessibility.reads;
    time.advance(untilFirstCheck + 2950ms);
    EXPECT_EQ(accessibility.reads, reads);
    EXPECT_FALSE(outcome.has_value());

    keyboard.reception = PasteReception::Fetched;
    editor->insert(u"Anna"_s);
    time.advance(10s);
    expectVerifiedAt(780ms + 3s);
    EXPECT_TRUE(keyboard.typed.isEmpty());
}

TEST_F(TextDeliveryTest, ATargetThatHangsIsNeverTypedInto)
{
    swallowPastes();
    keyboard.reception = PasteReception::Waiting;
    pasteToTheEnd(u"Anna"_s);
    expectVerifiedAt(780ms + 4s);
    EXPECT_TRUE(keyboard.typed.isEmpty());
    EXPECT_EQ(editor->text, u"Dear "_s);
}

TEST_F(TextDeliveryTest, ATargetThatSwallowsAPasteInFullViewIsTypedIntoAtOnce)
{
    for (const auto reception : {PasteReception::Ignored, PasteReception::FetchedElsewhere}) {
        putText(u"Dear "_s, {5, 0});
        keyboard.typed.clear();
        swallowPastes();
        keyboard.onTyping = [this](const QString& text) { editor->insert(text); };
        keyboard.reception = reception;
        const Seconds begin = time.uptime();
        pasteToTheEnd(u"Anna"_s);
        EXPECT_EQ(keyboard.typed.size(), 1);
        EXPECT_EQ(outcome, (DeliveryOutcome{true, {}}));
        EXPECT_DOUBLE_EQ((finishedAt - begin).count(), 1.048);
    }
}

TEST_F(TextDeliveryTest, ATextThatNobodyFetchedAndNobodySeesIsNoDelivery)
{
    swallowPastes();
    editor->exposesText = false;
    keyboard.reception = PasteReception::Ignored;
    pasteToTheEnd(u"Anna"_s);
    EXPECT_EQ(outcome, (DeliveryOutcome{false, u"目标应用没有接收粘贴的文字"_s}));
    EXPECT_DOUBLE_EQ(finishedAt.count(), 2.28);
    EXPECT_TRUE(keyboard.typed.isEmpty());
    EXPECT_EQ(pasteboard.string(), u"Anna"_s);
}

TEST_F(TextDeliveryTest, AChangeWithoutAFetchWasNotThePaste)
{
    keyboard.onPaste = [this] { editor->text = u"Dear x"_s; };
    keyboard.reception = PasteReception::Ignored;
    pasteToTheEnd(u"Anna"_s);
    EXPECT_EQ(outcome, (DeliveryOutcome{false, u"目标应用没有接收粘贴的文字"_s}));
    EXPECT_TRUE(keyboard.typed.isEmpty());
}

TEST_F(TextDeliveryTest, AProgramThatFetchesALittleLateHasTheText)
{
    swallowPastes();
    editor->exposesText = false;
    keyboard.reception = PasteReception::Ignored;
    paste(u"Anna"_s);
    time.advance(780ms + 750ms);
    keyboard.reception = PasteReception::Fetched;
    time.advance(10s);
    expectVerifiedAt(780ms + 800ms);
}

TEST_F(TextDeliveryTest, ATextInFullViewIsDeliveredWhoeverFetchedIt)
{
    keyboard.reception = PasteReception::Ignored;
    pasteToTheEnd(u"Anna"_s);
    expectVerifiedAt(780ms);
}

TEST_F(TextDeliveryTest, AnUnseenTextThatAnotherProgramFetchedCountsAsDelivered)
{
    editor->exposesText = false;
    editor->exposesSelection = false;
    editor->exposesCount = false;
    keyboard.reception = PasteReception::FetchedElsewhere;
    pasteToTheEnd(u"Anna"_s);
    expectVerifiedAt(780ms);
}

TEST_F(TextDeliveryTest, WhereNotEveryProgramIsReachedOnlyTheTextItselfOrItsFetchIsASuccess)
{
    workspace.everyProgramReached = false;
    const auto outcomeOf = [this](PasteReception reception, std::function<void()> onPaste) {
        putText(u"Dear "_s, {5, 0});
        keyboard.reception = reception;
        keyboard.onPaste = std::move(onPaste);
        pasteToTheEnd(u"Anna"_s);
        return outcome;
    };
    const DeliveryOutcome delivered{true, {}};
    const DeliveryOutcome unknown{false, u"目标应用没有接收粘贴的文字"_s};
    const auto another = [this] { editor->insert(u"an old text"_s); };
    const auto anotherAsLong = [this] { editor->insert(u"Otto"_s); };
    const auto ours = [this] { editor->insert(pasteboard.string()); };
    const auto nothing = [] {};
    for (const auto reception : {PasteReception::Unknown, PasteReception::Waiting,
             PasteReception::FetchedElsewhere, PasteReception::Ignored}) {
        EXPECT_EQ(outcomeOf(reception, another), unknown);
        EXPECT_EQ(outcomeOf(reception, anotherAsLong), unknown);
        EXPECT_EQ(outcomeOf(reception, nothing), unknown);
        EXPECT_EQ(outcomeOf(reception, ours), delivered);
    }
    EXPECT_EQ(outcomeOf(PasteReception::Fetched, another), delivered);
    EXPECT_TRUE(keyboard.typed.isEmpty());
}

TEST_F(TextDeliveryTest, APasteThatIsFetchedJustBeforeTypingIsWaitedFor)
{
    swallowPastes();
    keyboard.reception = PasteReception::Ignored;
    keyboard.typingEnds = KeyPosting::Fetched;
    paste(u"Anna"_s);
    time.advance(780ms + 250ms);
    EXPECT_FALSE(outcome.has_value());
    editor->insert(u"Anna"_s);
    time.advance(10s);
    expectVerifiedAt(780ms + 300ms);
    EXPECT_EQ(keyboard.typed.size(), 1);
    EXPECT_EQ(editor->text, u"Dear Anna"_s);
}

// Typing.

TEST_F(TextDeliveryTest, ASwallowedPasteIsTyped)
{
    swallowPastes();
    keyboard.onTyping = [this](const QString& text) { editor->insert(text); };

    pasteToTheEnd(u"0123456789abcde😀!"_s);

    ASSERT_EQ(keyboard.typed.size(), 1);
    EXPECT_EQ(keyboard.typed.first(), (QStringList{u"0123456789abcde"_s, u"😀!"_s}));
    EXPECT_EQ(keyboard.typingTargets, QList<RunningApplication>{*target.targetApplication()});
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
