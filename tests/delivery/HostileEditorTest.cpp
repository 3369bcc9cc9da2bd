#include "delivery/DeliveryFixture.h"

#include <limits>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

using testing::FakeElement;

constexpr qint64 greatest = std::numeric_limits<qint64>::max();
constexpr qint64 least = std::numeric_limits<qint64>::min();

/// Texts that are easily spoilt on their way, and editors whose answers cannot be true.
class HostileEditorTest : public testing::DeliveryFixture {
protected:
    void SetUp() override
    {
        DeliveryFixture::SetUp();
        keyboard.onTyping = [this](const QString& text) { editor->insert(text); };
    }

    void TearDown() override
    {
        DeliveryFixture::TearDown();
        EXPECT_EQ(accessibility.liveReferences, 1); // The target's own.
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
        putText(u"Dear "_s, {5, 0});
        pasteToTheEnd(text);
        EXPECT_EQ(outcome, (DeliveryOutcome{true, {}}));
        EXPECT_TRUE(editor->text == u"Dear "_s + text) << text.left(40).toStdString();
        EXPECT_TRUE(pasteboard.string() == text) << text.left(40).toStdString();
        EXPECT_TRUE(keyboard.typed.isEmpty());
    }
}

TEST_F(HostileEditorTest, EveryTextIsTypedAsItIs)
{
    swallowPastes();
    for (const QString& text : spoilableTexts()) {
        putText(u"Dear "_s, {5, 0});
        pasteToTheEnd(text);
        EXPECT_TRUE(editor->text == u"Dear "_s + text) << text.left(40).toStdString();
    }
    EXPECT_EQ(keyboard.typed.size(), spoilableTexts().size());
}

TEST_F(HostileEditorTest, EveryTextIsWrittenAsItIs)
{
    swallowPastes();
    keyboard.onTyping = [](const QString&) {};
    editor->selectedTextSettable = false;
    for (const QString& text : spoilableTexts()) {
        putText(u"Dear Bob"_s, {5, 3});
        pasteToTheEnd(text);
        EXPECT_TRUE(editor->text == u"Dear "_s + text) << text.left(40).toStdString();
        EXPECT_EQ(editor->selection, (TextRange{5 + text.size(), 0}));
    }
}

TEST_F(HostileEditorTest, RangesThatCannotBeAreOnlyEverCompared)
{
    for (const TextRange range : {TextRange{-1, 0}, {0, -1}, {-5, 12}, {greatest, 0},
             {greatest, greatest}, {least, least}, {0, greatest}, {3, greatest - 2}}) {
        putText(u"Dear "_s, {5, 0});
        editor->claimedSelection = range;
        pasteToTheEnd(u"Anna"_s);
        EXPECT_EQ(outcome, (DeliveryOutcome{true, {}}));
        EXPECT_EQ(editor->text, u"Dear Anna"_s) << range.location << ", " << range.length;
    }
    EXPECT_TRUE(keyboard.typed.isEmpty());
}

TEST_F(HostileEditorTest, CountsThatDoNotMatchTheTextProveNothingAndBreakNothing)
{
    swallowPastes();
    for (const qint64 count : {qint64{-1}, qint64{0}, greatest, least}) {
        putText(u"Dear "_s, {5, 0});
        editor->claimedCount = count;
        pasteToTheEnd(u"Anna"_s);
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

    pasteToTheEnd(u"Anna"_s);

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
    pasteToTheEnd(u"Anna"_s);
    EXPECT_EQ(outcome, (DeliveryOutcome{true, {}}));
    EXPECT_TRUE(keyboard.typed.isEmpty());
}

TEST_F(HostileEditorTest, AHugeDocumentIsNoObstacle)
{
    constexpr qsizetype units = 25'000'000; // 50 MB.
    putText(QString(units, u'x'), {units / 2, 0});
    pasteToTheEnd(u"Anna"_s);
    EXPECT_EQ(outcome, (DeliveryOutcome{true, {}}));
    EXPECT_EQ(editor->text.size(), units + 4);
    EXPECT_TRUE(keyboard.typed.isEmpty());
}

} // namespace
} // namespace tavrin
