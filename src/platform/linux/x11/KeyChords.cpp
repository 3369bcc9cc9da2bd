#include "platform/linux/x11/KeyChords.h"

#include <QChar>

#include <optional>

namespace tavrin {
namespace {

/// What has to be held for a key to give a symbol.
struct Position {
    xcb_keycode_t code = 0;
    bool shift = false;
    bool levelThree = false;
};

/// The key that gives the symbol in the layout in use.
std::optional<Position> positionOf(
    xcb_keysym_t symbol, const KeyboardMap& map, const KeyboardState& state)
{
    constexpr int layouts = 2; // The columns of further ones have no fixed place.
    constexpr int thirdLevels = 4; // They stand behind the other levels of both layouts.
    for (int level = 0; level < 4 && state.group < layouts; ++level) {
        const int column = 2 * state.group + (level < 2 ? level : thirdLevels + level - 2);
        for (int row = 0; row < map.codeCount(); ++row) {
            const auto code = static_cast<xcb_keycode_t>(map.firstCode() + row);
            if (map.symbol(code, column) == symbol)
                return Position{code, level % 2 == 1, level >= 2};
        }
    }
    return {};
}

std::optional<Position> positionOf(
    const KeyChord& chord, const KeyboardMap& map, const KeyboardState& state)
{
    if (const auto position = positionOf(chord.symbol, map, state))
        return position;
    // Keys that are no characters are the same in all layouts, and programs look for the letter of
    // a shortcut in the other layouts too. A character of another layout would be another one.
    const bool isCharacter = chord.symbol < 0xff00;
    const auto code = map.codeOf(chord.symbol);
    if (!code || (isCharacter && !chord.control))
        return {};
    return Position{*code};
}

} // namespace

std::vector<xcb_keycode_t> codesOf(
    const KeyChord& chord, const KeyboardMap& map, const KeyboardState& state)
{
    const auto position = positionOf(chord, map, state);
    const auto control = map.codeOf(keysyms::leftControl);
    const auto shift = map.codeOf(keysyms::leftShift);
    const auto levelThree = map.codeOf(keysyms::levelThreeShift);
    if (!position || !control || !shift || (position->levelThree && !levelThree))
        return {};
    // To shortcuts a capital is the same letter; a letter that stands for itself is not.
    const bool isInverted = state.capsLock && !chord.control && QChar::isLetter(chord.symbol);
    std::vector<xcb_keycode_t> codes;
    if (chord.control)
        codes.push_back(*control);
    if (position->levelThree)
        codes.push_back(*levelThree);
    if (chord.shift || position->shift != isInverted)
        codes.push_back(*shift);
    codes.push_back(position->code);
    return codes;
}

} // namespace tavrin
