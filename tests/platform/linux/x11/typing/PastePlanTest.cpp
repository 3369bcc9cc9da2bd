#include "platform/linux/x11/typing/PastePlan.h"

#include "platform/linux/x11/Keyboards.h"

#include <gtest/gtest.h>

#include <array>

namespace tavrin::testing {
namespace {

const std::vector<xcb_keycode_t> spareCodes{230, 231};
const QByteArray insertKey = "key <INS> { [Insert] };";
const QByteArray latin = "key <AB04> { [v, V] };" + insertKey;
const QByteArray cyrillic = "key <AB04> { [Cyrillic_em, Cyrillic_EM] };" + insertKey;
const QByteArray cyrillicAndLatin =
    "key <AB04> { [Cyrillic_em], [Greek_omega], [v, V] };" + insertKey;

constexpr std::array controlVChord{KeyChord{.symbol = keysyms::v, .control = true}};
constexpr std::array controlShiftVChord{
    KeyChord{.symbol = keysyms::v, .control = true, .shift = true}};
constexpr std::array shiftInsertChord{KeyChord{.symbol = keysyms::insert, .shift = true}};
constexpr std::span<const KeyChord> controlV(controlVChord);
constexpr std::span<const KeyChord> controlShiftV(controlShiftVChord);
constexpr std::span<const KeyChord> shiftInsert(shiftInsertChord);

// As for Vim: Ctrl+\ and then a plain " and P.
constexpr std::array sequenceChords{KeyChord{.symbol = keysyms::backslash, .control = true},
    KeyChord{.symbol = keysyms::quote}, KeyChord{.symbol = keysyms::capitalP}};
constexpr std::span<const KeyChord> sequence(sequenceChords);

KeyboardState layout(int group)
{
    return {group, group, 0, 0};
}

TEST(PastePlanTest, EveryShortcutOfALatinLayoutIsPressedAsItIs)
{
    const auto layouts = keyboardWith(latin);
    EXPECT_EQ(planPaste(controlV, layouts, spareCodes, layout(0)),
        (PastePlan{{}, {{{keys::leftControl, 55}, {}}}}));
    EXPECT_EQ(planPaste(controlShiftV, layouts, spareCodes, layout(0)),
        (PastePlan{{}, {{{keys::leftControl, keys::leftShift, 55}, {}}}}));
    EXPECT_EQ(planPaste(shiftInsert, layouts, spareCodes, layout(0)),
        (PastePlan{{}, {{{keys::leftShift, 118}, {}}}}));
}

TEST(PastePlanTest, TheLettersOfAnotherLayoutAreBorrowed)
{
    const auto layouts = keyboardWith(cyrillicAndLatin);
    EXPECT_EQ(planPaste(controlV, layouts, spareCodes, layout(0)),
        (PastePlan{{}, {{{keys::leftControl, 55}, 2}}}));
    EXPECT_EQ(planPaste(controlV, layouts, spareCodes, layout(2)),
        (PastePlan{{}, {{{keys::leftControl, 55}, {}}}}));
}

TEST(PastePlanTest, ALayoutThatAKeyHoldsInUseIsNotExchanged)
{
    const auto layouts = keyboardWith(cyrillicAndLatin);
    const KeyboardState held{1, 0, 0, 0};
    EXPECT_EQ(planPaste(controlV, layouts, spareCodes, held),
        (PastePlan{{}, {{{keys::leftShift, 118}, {}}}}));
}

TEST(PastePlanTest, WithoutLatinLettersControlVBecomesShiftInsert)
{
    EXPECT_EQ(planPaste(controlV, keyboardWith(cyrillic), spareCodes, layout(0)),
        (PastePlan{{}, {{{keys::leftShift, 118}, {}}}}));
}

TEST(PastePlanTest, ATerminalGetsItsLetterOnASpareCode)
{
    // Shift+Insert would paste what the mouse has selected.
    const PastePlan expected{
        {{231, keysyms::v, keysyms::v}}, {{{keys::leftControl, keys::leftShift, 231}, {}}}};
    EXPECT_EQ(planPaste(controlShiftV, keyboardWith(cyrillic), spareCodes, layout(0)), expected);
    EXPECT_FALSE(planPaste(controlShiftV, keyboardWith(cyrillic), {}, layout(0)));
}

TEST(PastePlanTest, ASequenceTakesEachSymbolFromWhereTheLayoutHasIt)
{
    const auto layouts = keyboardWith("key <AB04> { [v, V] };" // German: \\ under AltGr.
                                      "key <AD01> { [p, P] };"
                                      "key <AC01> { type = \"FOUR_LEVEL_SEMIALPHABETIC\", "
                                      "[ssharp, question, backslash] };"
                                      "key <AC02> { [2, quotedbl] };");
    EXPECT_EQ(planPaste(sequence, layouts, spareCodes, layout(0)),
        (PastePlan{{},
            {{{keys::leftControl, 92, 38}, {}}, {{keys::leftShift, 39}, {}},
                {{keys::leftShift, 24}, {}}}}));
}

TEST(PastePlanTest, ASequencesMissingSymbolsComeFromSpareCodes)
{
    const auto layouts = keyboardWith("key <AC02> { [2, quotedbl] };");
    const auto plan = planPaste(sequence, layouts, spareCodes, layout(0));
    ASSERT_TRUE(plan);
    EXPECT_EQ(plan->assignments,
        (std::vector<CodeAssignment>{{231, keysyms::backslash, keysyms::backslash},
            {230, keysyms::capitalP, keysyms::capitalP}}));
    EXPECT_EQ(plan->chords,
        (std::vector<Chord>{
            {{keys::leftControl, 231}, {}}, {{keys::leftShift, 39}, {}}, {{230}, {}}}));
    EXPECT_FALSE(planPaste(sequence, layouts, {231}, layout(0))); // One of them is not enough.
}

TEST(PastePlanTest, WhereNothingWouldPasteNothingIsPressed)
{
    const auto layouts = keyboardWith("key <AB04> { [Cyrillic_em, Cyrillic_EM] };");
    EXPECT_FALSE(planPaste(controlV, layouts, spareCodes, layout(0)));
    EXPECT_FALSE(planPaste(shiftInsert, layouts, spareCodes, layout(0)));
    EXPECT_FALSE(planPaste(controlV, {}, spareCodes, layout(0)));
}

} // namespace
} // namespace tavrin::testing
