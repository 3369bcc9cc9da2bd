#include "delivery/TargetContext.h"
#include "delivery/TextDelivery.h"
#include "support/InMemoryAccessibility.h"
#include "support/InMemoryPasteboard.h"
#include "support/InMemoryWorkspace.h"
#include "support/QtPrinters.h"
#include "support/RecordingKeyboard.h"
#include "support/VirtualTime.h"

#include <gtest/gtest.h>

#include <limits>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tavrin {
namespace {

using testing::FakeElement;

constexpr qint64 editorProcess = 4711;
constexpr qint64 greatest = std::numeric_limits<qint64>::max();
constexpr qint64 least = std::numeric_limits<qint64>::min();

/// Texts that are easily spoilt on their way, and editors whose answers cannot be true.
class HostileEditorTest : public ::testing::Test {
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

    void SetUp() override
    {
        editor->processIdentifier = editorProcess;
        editor->text = u"Dear "_s;
        editor->selection = {5, 0};
        accessibility.focusedElements[editorProcess] = editor;
        workspace.frontmost = RunningApplication{editorProcess, u"Editor"_s, u"editor"_s, 0};
        target.capture();
        keyboard.onPaste = [this] { editor->insert(pasteboard.string()); };
        keyboard.onTyping = [this](const QString& text) { editor->insert(text); };
    }

    void TearDown() override
    {
        EXPECT_EQ(time.pending(), 0);
        EXPECT_EQ(accessibility.liveReferences, 1); // The target's own.
    }

    void deliver(const QString& text)
    {
        outcome.reset();
        delivery.pasteText(text, [this](const DeliveryOutcome& result) { outcome = result; });
        time.advance(10s);
    }

    [[nodiscard]] static QStringList spoilableTexts()
    {
        return {u"a"_s + QChar(u'\0') + u"b"_s, QString(QChar(0xD83D)),
            u"0123456789abcde"_s + QChar(0xD83D) + QChar(0xD83D) + u"x"_s,
            QString(QChar(0xDE00)) + u"x"_s, u"\u202Eright to left\u202C \u200Fعربى\u200F"_s,
            u"a\r\nb\rc\nd"_s, u"\uFEFFa"_s, u"中文 and 😀"_s.repeated(100'000)};
    }
};

TEST_F(HostileEditorTest, EveryTextIsPastedAsItIs)
{
    for (const QString& text : spoilableTexts()) {
        editor->text = u"Dear "_s;
        editor->selection = {5, 0};
        deliver(text);
        EXPECT_EQ(outcome, (DeliveryOutcome{true, {}}));
        EXPECT_TRUE(editor->text == u"Dear "_s + text) << text.left(40).toStdString();
        EXPECT_TRUE(pasteboard.string() == text) << text.left(40).toStdString();
        EXPECT_TRUE(keyboard.typed.isEmpty());
    }
}

TEST_F(HostileEditorTest, EveryTextIsTypedAsItIs)
{
    keyboard.onPaste = [] {};
    for (const QString& text : spoilableTexts()) {
        editor->text = u"Dear "_s;
        editor->selection = {5, 0};
        deliver(text);
        EXPECT_TRUE(editor->text == u"Dear "_s + text) << text.left(40).toStdString();
    }
    EXPECT_EQ(keyboard.typed.size(), spoilableTexts().size());
}

TEST_F(HostileEditorTest, EveryTextIsWrittenAsItIs)
{
    keyboard.onPaste = [] {};
    keyboard.onTyping = [](const QString&) {};
    editor->selectedTextSettable = false;
    for (const QString& text : spoilableTexts()) {
        editor->text = u"Dear Bob"_s;
        editor->selection = {5, 3};
        deliver(text);
        EXPECT_TRUE(editor->text == u"Dear "_s + text) << text.left(40).toStdString();
        EXPECT_EQ(editor->selection, (TextRange{5 + text.size(), 0}));
    }
}

TEST_F(HostileEditorTest, RangesThatCannotBeAreOnlyEverCompared)
{
    for (const TextRange range : {TextRange{-1, 0}, {0, -1}, {-5, 12}, {greatest, 0},
             {greatest, greatest}, {least, least}, {0, greatest}, {3, greatest - 2}}) {
        editor->text = u"Dear "_s;
        editor->selection = {5, 0};
        editor->claimedSelection = range;
        deliver(u"Anna"_s);
        EXPECT_EQ(outcome, (DeliveryOutcome{true, {}}));
        EXPECT_EQ(editor->text, u"Dear Anna"_s) << range.location << ", " << range.length;
    }
    EXPECT_TRUE(keyboard.typed.isEmpty());
}

TEST_F(HostileEditorTest, CountsThatDoNotMatchTheTextProveNothingAndBreakNothing)
{
    keyboard.onPaste = [] {};
    for (const qint64 count : {qint64{-1}, qint64{0}, greatest, least}) {
        editor->text = u"Dear "_s;
        editor->selection = {5, 0};
        editor->claimedCount = count;
        deliver(u"Anna"_s);
        EXPECT_EQ(editor->text, u"Dear Anna"_s) << count;
    }
    EXPECT_EQ(keyboard.typed.size(), 4);
}

TEST_F(HostileEditorTest, StaleAnswersLeadToTheDirectWriteAtMost)
{
    editor->claimedText = u"Dear "_s;
    editor->claimedSelection = TextRange{5, 0};
    editor->claimedCount = 5;
    editor->exposesStringForRange = false;
    editor->selectedTextSettable = false;
    editor->valueSettable = false;

    deliver(u"Anna"_s);

    EXPECT_EQ(outcome, (DeliveryOutcome{true, {}}));
    EXPECT_EQ(keyboard.pastes.size(), 1);
    EXPECT_EQ(keyboard.typed.size(), 1);
}

TEST_F(HostileEditorTest, AnEditorThatVanishesMeanwhileEndsTheDelivery)
{
    keyboard.onPaste = [this] {
        for (bool FakeElement::*const ability :
            {&FakeElement::exposesProcess, &FakeElement::exposesText,
                &FakeElement::exposesSelection, &FakeElement::exposesCount,
                &FakeElement::exposesStringForRange, &FakeElement::writesSucceed})
            editor.get()->*ability = false;
    };
    deliver(u"Anna"_s);
    EXPECT_EQ(outcome, (DeliveryOutcome{true, {}}));
    EXPECT_TRUE(keyboard.typed.isEmpty());
}

TEST_F(HostileEditorTest, AHugeDocumentIsNoObstacle)
{
    constexpr qsizetype units = 25'000'000; // 50 MB.
    editor->text = QString(units, u'x');
    editor->selection = {units / 2, 0};
    deliver(u"Anna"_s);
    EXPECT_EQ(outcome, (DeliveryOutcome{true, {}}));
    EXPECT_EQ(editor->text.size(), units + 4);
    EXPECT_TRUE(keyboard.typed.isEmpty());
}

} // namespace
} // namespace tavrin
