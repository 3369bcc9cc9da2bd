#include "platform/linux/x11/keyboard/KeyboardMap.h"

namespace tavrin {

KeyboardMap::KeyboardMap(
    xcb_keycode_t firstCode, int symbolsPerCode, std::vector<xcb_keysym_t> symbols)
    : m_firstCode(firstCode)
    , m_symbolsPerCode(symbolsPerCode)
    , m_symbols(std::move(symbols))
{
}

KeyboardMap KeyboardMap::read(const X11Connection& connection)
{
    if (!connection.isOpen())
        return {};
    const xcb_setup_t* setup = xcb_get_setup(connection.get());
    const auto count = static_cast<quint8>(setup->max_keycode - setup->min_keycode + 1);
    const XcbPointer<xcb_get_keyboard_mapping_reply_t> reply(
        xcb_get_keyboard_mapping_reply(connection.get(),
            xcb_get_keyboard_mapping(connection.get(), setup->min_keycode, count), nullptr));
    if (!reply)
        return {};
    const xcb_keysym_t* symbols = xcb_get_keyboard_mapping_keysyms(reply.get());
    return {setup->min_keycode, reply->keysyms_per_keycode,
        std::vector(symbols, symbols + xcb_get_keyboard_mapping_keysyms_length(reply.get()))};
}

int KeyboardMap::codeCount() const
{
    return m_symbolsPerCode == 0 ? 0 : static_cast<int>(m_symbols.size()) / m_symbolsPerCode;
}

xcb_keysym_t KeyboardMap::symbol(xcb_keycode_t code, int level) const
{
    const int row = code - m_firstCode;
    if (row < 0 || row >= codeCount() || level < 0 || level >= m_symbolsPerCode)
        return keysyms::none;
    const qsizetype index = qsizetype{row} * m_symbolsPerCode + level;
    return m_symbols[static_cast<std::size_t>(index)];
}

std::optional<xcb_keycode_t> KeyboardMap::codeOf(xcb_keysym_t symbol) const
{
    for (int level = 0; level < m_symbolsPerCode; ++level) {
        for (int row = 0; row < codeCount(); ++row) {
            const auto code = static_cast<xcb_keycode_t>(m_firstCode + row);
            if (this->symbol(code, level) == symbol)
                return code;
        }
    }
    return {};
}

std::vector<xcb_keycode_t> KeyboardMap::emptyCodes() const
{
    std::vector<xcb_keycode_t> codes;
    for (int row = 0; row < codeCount(); ++row) {
        const auto code = static_cast<xcb_keycode_t>(m_firstCode + row);
        bool empty = true;
        for (int level = 0; level < m_symbolsPerCode; ++level)
            empty = empty && symbol(code, level) == keysyms::none;
        if (empty)
            codes.push_back(code);
    }
    return codes;
}

} // namespace tavrin
