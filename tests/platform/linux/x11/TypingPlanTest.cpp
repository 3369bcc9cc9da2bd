#include "platform/linux/x11/TypingPlan.h"

#include "support/QtPrinters.h"

#include <gtest/gtest.h>

#include <map>

namespace tavrin::testing {
namespace {

/// Codes 8 to 19: two keys with a second layout, Return, Tab, and eight that are empty.
KeyboardMap keyboard()
{
    constexpr int perCode = 4;
    std::vector<xcb_keysym_t> symbols{'a', 'A', 0x6c6, 0x6e6, //
        '1', '!', '1', '!', //
        keysyms::enter, 0, 0, 0, //
        keysyms::tab, 0, 0, 0};
    symbols.resize(std::size_t{12} * perCode, keysyms::none);
    return {8, perCode, symbols};
}

/// What a program that follows the map reads.
class Reader {
public:
    Reader(KeyboardMap map, KeyboardState state)
        : m_map(std::move(map))
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
        xcb_keysym_t symbol = symbolOf(stroke);
        if (symbol == keysyms::enter)
            symbol = '\n';
        if (symbol == keysyms::tab)
            symbol = '\t';
        const char32_t character = symbol & 0x00ffffff;
        return QString::fromUcs4(&character, 1);
    }

    [[nodiscard]] xcb_keysym_t symbolOf(const KeyStroke& stroke) const
    {
        if (const auto own = m_assigned.find(stroke.code); own != m_assigned.end())
            return stroke.shift ? own->second.shifted : own->second.plain;
        const bool inverted = m_state.capsLock && m_map.symbol(stroke.code, 0) == 'a';
        const int level = stroke.shift != inverted ? 1 : 0;
        const xcb_keysym_t symbol = m_map.symbol(stroke.code, 2 * m_state.group + level);
        return symbol == keysyms::none ? m_map.symbol(stroke.code, level) : symbol;
    }

    KeyboardMap m_map;
    KeyboardState m_state;
    std::map<xcb_keycode_t, CodeAssignment> m_assigned;
};

class TypingPlanTest : public ::testing::Test {
protected:
    [[nodiscard]] std::vector<TypingBatch> plan(
        const QString& text, const KeyboardState& state = {}) const
    {
        return planTyping(text, m_map, m_spare, state);
    }

    /// What a program reads when @p text is typed.
    [[nodiscard]] QString typed(const QString& text, const KeyboardState& state = {}) const
    {
        return Reader(m_map, state).read(plan(text, state));
    }

    KeyboardMap m_map = keyboard();
    std::vector<xcb_keycode_t> m_spare = m_map.emptyCodes();
};

TEST_F(TypingPlanTest, WhatTheKeyboardHasNeedsNoOtherMap)
{
    const auto batches = plan(QStringLiteral("aA1!\n\t"));
    ASSERT_EQ(batches.size(), 1U);
    EXPECT_TRUE(batches[0].assignments.empty());
    const std::vector<KeyStroke> strokes{
        {8, false}, {8, true}, {9, false}, {9, true}, {10, false}, {11, false}};
    EXPECT_EQ(batches[0].strokes, strokes);
}

TEST_F(TypingPlanTest, EverythingElseGoesOnSpareCodesTwoOnEach)
{
    const auto batches = plan(QStringLiteral("a字😀字é"));
    ASSERT_EQ(batches.size(), 1U);
    const std::vector<CodeAssignment> assignments{{12, 0x0100'5b57, 0x0101'f600}, {13, 0xe9, 0xe9}};
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

TEST_F(TypingPlanTest, CapsLockExchangesTheLettersOfTheKeyboard)
{
    const KeyboardState locked{0, true};
    const std::vector<KeyStroke> strokes{{8, true}, {8, false}, {9, false}};
    EXPECT_EQ(plan(QStringLiteral("aA1"), locked)[0].strokes, strokes);
    EXPECT_EQ(typed(QStringLiteral("aA1"), locked), QStringLiteral("aA1"));
}

TEST_F(TypingPlanTest, LettersThatTheLayoutInUseLacksAreAssigned)
{
    const KeyboardState second{1, false};
    const std::vector<CodeAssignment> assignments{{12, 'a', 'a'}};
    EXPECT_EQ(plan(QStringLiteral("a1"), second)[0].assignments, assignments);
    EXPECT_EQ(typed(QStringLiteral("a1"), second), QStringLiteral("a1"));
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
