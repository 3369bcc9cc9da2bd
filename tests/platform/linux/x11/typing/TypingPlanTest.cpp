#include "platform/linux/x11/typing/TypingPlan.h"

#include "platform/linux/x11/Keyboards.h"
#include "support/QtPrinters.h"

#include <gtest/gtest.h>

#include <map>

namespace tavrin::testing {
namespace {

/// A letter and a digit with a second layout, a key of the keypad, and eight codes to spare.
KeyboardLayouts keyboard()
{
    return keyboardWith("key <AC01> { [a, A], [Cyrillic_ef, Cyrillic_EF] };"
                        "key <AE01> { [1, exclam], [1, exclam] };"
                        "key <KP7> { [KP_Home, KP_7] };");
}

constexpr KeyboardState first{0, 0, 0, 0};
constexpr KeyboardState second{1, 1, 0, 0};

/// What a program that follows the map reads.
class Reader {
public:
    Reader(KeyboardLayouts layouts, KeyboardState state)
        : m_layouts(std::move(layouts))
        , m_state(state)
    {
    }

    [[nodiscard]] QString read(const std::vector<TypingBatch>& batches)
    {
        QString text;
        for (const TypingBatch& batch : batches) {
            m_assigned.clear();
            for (const CodeAssignment& assignment : batch.assignments)
                m_assigned[assignment.code] = assignment;
            for (const KeyStroke& stroke : batch.strokes)
                text += character(stroke);
        }
        return text;
    }

private:
    [[nodiscard]] QString character(const KeyStroke& stroke) const
    {
        const xcb_keysym_t symbol = symbolOf(stroke);
        if (symbol == keysyms::enter)
            return QStringLiteral("\n");
        if (symbol == keysyms::tab)
            return QStringLiteral("\t");
        if (symbol == keysyms::none)
            return QStringLiteral("nothing");
        constexpr xcb_keysym_t unicode = 0x0100'0000;
        const char32_t character = symbol == cyrillicEf ? U'ф' : symbol & ~unicode;
        return QString::fromUcs4(&character, 1);
    }

    [[nodiscard]] xcb_keysym_t symbolOf(const KeyStroke& stroke) const
    {
        if (const auto own = m_assigned.find(stroke.code); own != m_assigned.end())
            return stroke.shift ? own->second.shifted : own->second.plain;
        const quint8 shift = stroke.shift ? XCB_MOD_MASK_SHIFT : 0;
        return m_layouts.symbol(stroke.code, m_state.group, m_state.locked | shift);
    }

    static constexpr xcb_keysym_t cyrillicEf = 0x6c6;

    KeyboardLayouts m_layouts;
    KeyboardState m_state;
    std::map<xcb_keycode_t, CodeAssignment> m_assigned;
};

class TypingPlanTest : public ::testing::Test {
protected:
    [[nodiscard]] std::vector<TypingBatch> plan(
        const QString& text, const KeyboardState& state = first) const
    {
        return planTyping(text, m_layouts, m_spare, state);
    }

    /// What a program reads when @p text is typed.
    [[nodiscard]] QString typed(const QString& text, const KeyboardState& state = first) const
    {
        return Reader(m_layouts, state).read(plan(text, state));
    }

    KeyboardLayouts m_layouts = keyboard();
    std::vector<xcb_keycode_t> m_spare{230, 231, 232, 233, 234, 235, 236, 237};
};

TEST_F(TypingPlanTest, WhatTheKeyboardHasNeedsNoOtherMap)
{
    const auto batches = plan(QStringLiteral("aA1!\n\t"));
    ASSERT_EQ(batches.size(), 1U);
    EXPECT_TRUE(batches[0].assignments.empty());
    const std::vector<KeyStroke> strokes{
        {38, false}, {38, true}, {10, false}, {10, true}, {keys::enter, false}, {keys::tab, false}};
    EXPECT_EQ(batches[0].strokes, strokes);
}

TEST_F(TypingPlanTest, EverythingElseGoesOnSpareCodesTwoOnEach)
{
    const auto batches = plan(QStringLiteral("a字😀字é"));
    ASSERT_EQ(batches.size(), 1U);
    const std::vector<CodeAssignment> assignments{
        {230, 0x0100'5b57, 0x0101'f600}, {231, 0xe9, 0xe9}};
    EXPECT_EQ(batches[0].assignments, assignments);
    EXPECT_EQ(typed(QStringLiteral("a字😀字é")), QStringLiteral("a字😀字é"));
}

TEST_F(TypingPlanTest, AnotherMapIsMadeOnlyWhenTheCodesAreUsedUp)
{
    ASSERT_EQ(m_spare.size(), 8U);
    QString text;
    for (char16_t unit = 0x4e00; unit < 0x4e00 + 40; ++unit)
        text += QChar(unit);
    text += text.last(8);
    const auto batches = plan(text);
    ASSERT_EQ(batches.size(), 3U);
    EXPECT_EQ(batches[0].strokes.size(), 16U);
    EXPECT_EQ(batches[2].strokes.size(), 16U);
    EXPECT_EQ(typed(text), text);
}

TEST_F(TypingPlanTest, LineEndsOfEveryKindAreOneReturn)
{
    EXPECT_EQ(typed(QStringLiteral("a\r\na\ra\na")), QStringLiteral("a\na\na\na"));
}

TEST_F(TypingPlanTest, WhatNoKeyCanMeanIsLeftOut)
{
    const QString odd = QStringLiteral("a") + QChar(u'\0') + QChar(0x01) + QChar(0x1b) + QChar(0x7f)
        + QChar(0x85) + QStringLiteral("a");
    EXPECT_EQ(typed(odd), QStringLiteral("aa"));
    const QString lone = QStringLiteral("a") + QChar(0xd83d) + QStringLiteral("a");
    EXPECT_EQ(typed(lone).remove(QChar::ReplacementCharacter), QStringLiteral("aa"));
}

TEST_F(TypingPlanTest, CapsLockExchangesTheLettersOfTheKeyboardAndNothingElse)
{
    const KeyboardState locked{0, 0, 0, XCB_MOD_MASK_LOCK};
    const std::vector<KeyStroke> strokes{{38, true}, {38, false}, {10, false}, {10, true}};
    EXPECT_EQ(plan(QStringLiteral("aA1!"), locked)[0].strokes, strokes);
    EXPECT_EQ(typed(QStringLiteral("aA1!"), locked), QStringLiteral("aA1!"));
}

TEST_F(TypingPlanTest, LettersThatTheLayoutInUseLacksAreAssigned)
{
    const std::vector<CodeAssignment> assignments{{230, 'a', 'a'}};
    EXPECT_EQ(plan(QStringLiteral("a1"), second)[0].assignments, assignments);
    EXPECT_EQ(typed(QStringLiteral("a1"), second), QStringLiteral("a1"));
}

TEST_F(TypingPlanTest, LettersOfEveryScriptAreTypedOnTheirOwnKeys)
{
    EXPECT_TRUE(plan(QStringLiteral("ф"), second)[0].assignments.empty());
    EXPECT_EQ(typed(QStringLiteral("ф"), second), QStringLiteral("ф"));
}

TEST_F(TypingPlanTest, TheThirdAndFourthLayoutHaveTheirOwnKeys)
{
    m_layouts = keyboardWith("key <AC01> { [q, Q, at, at], [a, A], [Cyrillic_ef], [a, b] };");
    const KeyboardState third{2, 2, 0, 0};
    const KeyboardState fourth{3, 3, 0, 0};
    EXPECT_EQ(plan(QStringLiteral("@"), third)[0].assignments.size(), 1U);
    EXPECT_EQ(typed(QStringLiteral("@ф"), third), QStringLiteral("@ф"));
    EXPECT_TRUE(plan(QStringLiteral("ab"), fourth)[0].assignments.empty());
    EXPECT_EQ(typed(QStringLiteral("ab"), fourth), QStringLiteral("ab"));
}

TEST_F(TypingPlanTest, TheKeypadTypesNothing)
{
    const KeyboardState numLock{0, 0, 0, XCB_MOD_MASK_2};
    EXPECT_EQ(plan(QStringLiteral("7"), numLock)[0].assignments.size(), 1U);
}

TEST_F(TypingPlanTest, AKeyboardWithoutSpareCodesTypesWhatItHas)
{
    m_spare.clear();
    EXPECT_EQ(plan(QStringLiteral("a字1")).size(), 1U);
    EXPECT_EQ(typed(QStringLiteral("a字1")), QStringLiteral("a1"));
}

TEST_F(TypingPlanTest, NoTextNeedsNoStrokes)
{
    EXPECT_TRUE(plan(QString()).front().strokes.empty());
}

} // namespace
} // namespace tavrin::testing
