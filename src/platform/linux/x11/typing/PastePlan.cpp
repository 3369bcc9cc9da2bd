#include "platform/linux/x11/typing/PastePlan.h"

namespace tavrin {
namespace {

constexpr xcb_keysym_t firstWithoutCharacter = 0xff00; // Insert, Return and their like.

constexpr KeyChord controlV{.symbol = keysyms::v, .control = true};
constexpr KeyChord shiftInsert{.symbol = keysyms::insert, .shift = true};

quint8 modifiersOf(const KeyChord& chord)
{
    quint8 modifiers = 0;
    if (chord.control)
        modifiers |= XCB_MOD_MASK_CONTROL;
    if (chord.shift)
        modifiers |= XCB_MOD_MASK_SHIFT;
    return modifiers;
}

/// The chord in the layout in use, or else in the first one that has it.
std::optional<Chord> chordInAnyLayout(
    const KeyChord& chord, const KeyboardLayouts& layouts, const KeyboardState& state)
{
    const quint8 modifiers = modifiersOf(chord);
    if (const auto keys = layouts.keysFor(chord.symbol, modifiers, state.group))
        return Chord{*keys, {}};
    // While a key holds a layout in use, putting another one into use has another result.
    if (state.group != state.lockedGroup)
        return {};
    for (int group = 0; group < layouts.groupCount(); ++group) {
        if (const auto keys = layouts.keysFor(chord.symbol, modifiers, group))
            return Chord{*keys, group};
    }
    return {};
}

/// The chord on the next spare code, which is added to @p assignments.
std::optional<Chord> chordOnSpareCode(const KeyChord& chord, const KeyboardLayouts& layouts,
    const std::vector<xcb_keycode_t>& spareCodes, const KeyboardState& state,
    std::vector<CodeAssignment>& assignments)
{
    const auto holding = layouts.keysHolding(modifiersOf(chord), state.group);
    if (!holding || chord.symbol >= firstWithoutCharacter
        || assignments.size() >= spareCodes.size())
        return {};
    const xcb_keycode_t code = spareCodes[spareCodes.size() - 1 - assignments.size()];
    assignments.push_back({code, chord.symbol, chord.symbol});
    Chord pressed{*holding, {}};
    pressed.codes.push_back(code);
    return pressed;
}

} // namespace

std::optional<PastePlan> planPaste(std::span<const KeyChord> shortcut,
    const KeyboardLayouts& layouts, const std::vector<xcb_keycode_t>& spareCodes,
    const KeyboardState& state)
{
    PastePlan plan;
    for (const KeyChord& chord : shortcut) {
        auto pressed = chordInAnyLayout(chord, layouts, state);
        if (!pressed && chord == controlV)
            pressed = chordInAnyLayout(shiftInsert, layouts, state);
        else if (!pressed)
            pressed = chordOnSpareCode(chord, layouts, spareCodes, state, plan.assignments);
        if (!pressed)
            return {};
        plan.chords.push_back(*pressed);
    }
    return plan;
}

} // namespace tavrin
