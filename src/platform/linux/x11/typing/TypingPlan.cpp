#include "platform/linux/x11/typing/TypingPlan.h"

#include <optional>
#include <unordered_map>
#include <xkbcommon/xkbcommon.h>

namespace tavrin {
namespace {

xcb_keysym_t symbolOf(char32_t character)
{
    constexpr xcb_keysym_t unicode = 0x01000000; // What lies beyond Latin-1 is numbered from here.
    if (character == U'\n')
        return keysyms::enter;
    if (character == U'\t')
        return keysyms::tab;
    return character < 0x100 ? xcb_keysym_t{character} : unicode | xcb_keysym_t{character};
}

bool isTypeable(char32_t character)
{
    if (character == U'\n' || character == U'\t')
        return true;
    const bool control = character < 0x20 || (character >= 0x7f && character < 0xa0);
    const bool surrogate = character >= 0xd800 && character < 0xe000;
    return !control && !surrogate;
}

/// The character that a program reads when it gets @p symbol from a key.
char32_t characterOf(xcb_keysym_t symbol)
{
    constexpr xcb_keysym_t firstOfKeypad = 0xff80;
    constexpr xcb_keysym_t lastOfKeypad = 0xffbd;
    if (symbol == keysyms::enter)
        return U'\n';
    if (symbol == keysyms::tab)
        return U'\t';
    if (symbol >= firstOfKeypad && symbol <= lastOfKeypad)
        return 0; // Some programs do other things with these.
    const char32_t character = xkb_keysym_to_utf32(symbol);
    return character == U'\n' || character == U'\t' || !isTypeable(character) ? 0 : character;
}

using Strokes = std::unordered_map<char32_t, KeyStroke>;

/// The strokes for what the keyboard has on keys of its own in the layout in use.
Strokes ownStrokes(const KeyboardLayouts& layouts, const KeyboardState& state)
{
    Strokes strokes;
    for (const bool shift : {false, true}) {
        const quint8 modifiers = state.locked | static_cast<quint8>(shift ? XCB_MOD_MASK_SHIFT : 0);
        for (const xcb_keycode_t code : layouts.codes()) {
            if (const char32_t character =
                    characterOf(layouts.symbol(code, state.group, modifiers)))
                strokes.try_emplace(character, KeyStroke{code, shift});
        }
    }
    return strokes;
}

/// Hands out the spare codes of one batch.
class Allocation {
public:
    explicit Allocation(const std::vector<xcb_keycode_t>& codes)
        : m_codes(codes)
    {
    }

    /// The stroke for @p symbol; empty when the codes are used up.
    std::optional<KeyStroke> strokeFor(xcb_keysym_t symbol)
    {
        if (const auto known = m_strokes.find(symbol); known != m_strokes.end())
            return known->second;
        const std::size_t index = m_strokes.size();
        if (index / 2 >= m_codes.size())
            return {};
        const bool shift = index % 2 == 1;
        if (shift)
            m_assignments.back().shifted = symbol;
        else // Both levels at first: then no lock key matters.
            m_assignments.push_back({m_codes[index / 2], symbol, symbol});
        return m_strokes[symbol] = KeyStroke{m_codes[index / 2], shift};
    }

    std::vector<CodeAssignment> take()
    {
        m_strokes.clear();
        return std::exchange(m_assignments, {});
    }

private:
    const std::vector<xcb_keycode_t>& m_codes;
    std::unordered_map<xcb_keysym_t, KeyStroke> m_strokes;
    std::vector<CodeAssignment> m_assignments;
};

} // namespace

std::vector<TypingBatch> planTyping(const QString& text, const KeyboardLayouts& layouts,
    const std::vector<xcb_keycode_t>& spareCodes, const KeyboardState& state)
{
    QString lines = text;
    lines.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    lines.replace(u'\r', u'\n');
    const auto own = ownStrokes(layouts, state);
    Allocation spare(spareCodes);
    std::vector<TypingBatch> batches(1);
    for (const char32_t character : lines.toUcs4()) {
        if (!isTypeable(character))
            continue;
        if (const auto found = own.find(character); found != own.end()) {
            batches.back().strokes.push_back(found->second);
            continue;
        }
        const xcb_keysym_t symbol = symbolOf(character);
        auto stroke = spare.strokeFor(symbol);
        if (!stroke && !spareCodes.empty()) {
            batches.back().assignments = spare.take();
            batches.emplace_back();
            stroke = spare.strokeFor(symbol);
        }
        if (stroke)
            batches.back().strokes.push_back(*stroke);
    }
    batches.back().assignments = spare.take();
    return batches;
}

} // namespace tavrin
