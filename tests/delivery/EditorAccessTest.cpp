#include "delivery/DeliveryFixture.h"

using namespace Qt::StringLiterals;

// What a delivery reads from the editor, what it concludes from it, and what it writes.
namespace tavrin {
namespace {

class EditorAccessTest : public testing::DeliveryFixture {
protected:
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

TEST_F(EditorAccessTest, TheSelectedTextIsWrittenWhereThatIsAllowed)
{
    editor->selection = {0, 4};
    EXPECT_EQ(insert(u"Hi"_s), std::nullopt);
    EXPECT_EQ(editor->text, u"Hi "_s);
    EXPECT_EQ(accessibility.calls.last(), u"setSelectedText"_s);
}

TEST_F(EditorAccessTest, TheWholeValueIsWrittenWhereOnlyThatIsAllowed)
{
    editor->selectedTextSettable = false;
    editor->selection = {0, 4};
    EXPECT_EQ(insert(u"Hi"_s), std::nullopt);
    EXPECT_EQ(editor->text, u"Hi "_s);
    EXPECT_EQ(editor->selection, (TextRange{2, 0}));
}

TEST_F(EditorAccessTest, ARangeThatDoesNotFitIsNeverWritten)
{
    editor->selectedTextSettable = false;
    for (const TextRange range : {TextRange{-1, 0}, {0, -1}, {0, 6}, {6, 0}}) {
        editor->claimedSelection = range;
        EXPECT_EQ(insert(u"Hi"_s), u"当前应用不允许辅助功能直接写入"_s);
    }
    EXPECT_EQ(editor->text, u"Dear "_s);
}

TEST_F(EditorAccessTest, AFieldThatLetsNothingBeWrittenSaysSo)
{
    editor->selectedTextSettable = false;
    editor->valueSettable = false;
    EXPECT_EQ(insert(u"Hi"_s), u"当前应用不允许辅助功能直接写入"_s);
    editor->valueSettable = true;
    editor->exposesText = false;
    EXPECT_EQ(insert(u"Hi"_s), u"当前应用不允许辅助功能直接写入"_s);
    EXPECT_EQ(delivery.insertText(u"Hi"_s, nullptr), u"找不到目标输入框"_s);
}

TEST_F(EditorAccessTest, ASelectionThatCannotBeWrittenAfterAllLeadsToTheValue)
{
    editor->selectedTextWritesSucceed = false;
    const ElementHandle element = accessibility.focusedElement(editorProcess);
    EXPECT_EQ(delivery.insertText(u"Anna"_s, element.get()), std::nullopt);
    EXPECT_EQ(editor->text, u"Dear Anna"_s);
    EXPECT_EQ(editor->selection, (TextRange{9, 0}));
}

TEST_F(EditorAccessTest, AWriteThatIsDeniedAndDoneIsNotDoneAgain)
{
    editor->selectedTextWritesSucceed = false;
    editor->deniedWritesAreDone = true;
    const ElementHandle element = accessibility.focusedElement(editorProcess);
    EXPECT_EQ(delivery.insertText(u"Anna"_s, element.get()), std::nullopt);
    EXPECT_EQ(editor->text, u"Dear Anna"_s);
}

// The strict verification.

TEST_F(EditorAccessTest, WithoutAnElementNothingIsVerified)
{
    EXPECT_FALSE(delivery.verifyInsertionOfText(u"a"_s, nullptr, u"a"_s, {}));
}

TEST_F(EditorAccessTest, AnInactiveTargetIsNeverVerified)
{
    workspace.frontmost = RunningApplication{otherProcess, {}, {}, 0};
    EXPECT_FALSE(verify(u"Dear "_s, u"Dear "_s, {}));
}

TEST_F(EditorAccessTest, TheExpectedValueIsProofWithoutAnyRange)
{
    EXPECT_TRUE(verify(u"Dear "_s, u"Dear "_s, {}));
    EXPECT_FALSE(verify(u"Dear "_s, u"Dear Anna"_s, {}));
}

TEST_F(EditorAccessTest, TheTextAtItsPlaceIsProof)
{
    editor->text = u"Anna\rDear Anna\nBob..."_s;
    const EditorObservation before{std::nullopt, TextRange{10, 0}, std::nullopt};
    EXPECT_TRUE(verify(u"Anna\rBob"_s, std::nullopt, before));
    EXPECT_TRUE(verify(u"Anna"_s, std::nullopt, before));
    EXPECT_FALSE(verify(u"Nana"_s, std::nullopt, before));
    EXPECT_FALSE(verify(u"Dear"_s, std::nullopt, before)); // It stands elsewhere.
}

TEST_F(EditorAccessTest, CaretAndCountAreProofForAReplacedSelection)
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

TEST_F(EditorAccessTest, ANegativeRangeAsksForNoText)
{
    const ElementHandle element = accessibility.focusedElement(editorProcess);
    EXPECT_EQ(delivery.stringForRange({-1, 2}, element.get()), std::nullopt);
    EXPECT_EQ(delivery.stringForRange({0, -2}, element.get()), std::nullopt);
    EXPECT_EQ(delivery.stringForRange({0, 2}, nullptr), std::nullopt);
    EXPECT_EQ(delivery.stringForRange({0, 2}, element.get()), u"De"_s);
}

} // namespace
} // namespace tavrin
