#include "platform/linux/x11/TypingPlan.h"

#include <optional>
#include <unordered_map>

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

bool isLetter(xcb_keysym_t symbol)
{
    return QChar::isLetter(symbol);
}

/// The strokes for what the keyboard has on keys of its own.
std::unordered_map<xcb_keysym_t, KeyStroke> ownStrokes(
    const KeyboardMap& map, const KeyboardState& state)
{
    std::unordered_map<xcb_keysym_t, KeyStroke> strokes;
    for (int row = 0; row < map.codeCount(); ++row) {
        const auto code = static_cast<xcb_keycode_t>(map.firstCode() + row);
        // A key without symbols in this layout uses those of the first one.
        int first = 2 * state.group;
        if (map.symbol(code, first) == keysyms::none
            && map.symbol(code, first + 1) == keysyms::none)
            first = 0;
        for (int level = 0; level < 2; ++level) {
            const xcb_keysym_t symbol = map.symbol(code, first + level);
            const bool printable = symbol >= 0x20 && symbol < 0x100;
            if (!printable && symbol != keysyms::enter && symbol != keysyms::tab)
                continue;
            const bool inverted = state.capsLock && printable && isLetter(symbol);
            strokes.try_emplace(symbol, KeyStroke{code, (level == 1) != inverted});
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

std::vector<TypingBatch> planTyping(const QString& text, const KeyboardMap& map,
    const std::vector<xcb_keycode_t>& spareCodes, const KeyboardState& state)
{
    QString lines = text;
    lines.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    lines.replace(u'\r', u'\n');
    const auto own = ownStrokes(map, state);
    Allocation spare(spareCodes);
    std::vector<TypingBatch> batches(1);
    for (const char32_t character : lines.toUcs4()) {
        if (!isTypeable(character))
            continue;
        const xcb_keysym_t symbol = symbolOf(character);
        if (const auto found = own.find(symbol); found != own.end()) {
            batches.back().strokes.push_back(found->second);
            continue;
        }
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
