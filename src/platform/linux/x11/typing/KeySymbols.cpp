#include "platform/linux/x11/typing/KeySymbols.h"

#include "platform/linux/x11/keyboard/XkbProtocol.h"

#include <cstring>
#include <span>

namespace tavrin {
namespace {

constexpr quint8 twoLevels = 1; // Number of the type whose second level is that of Shift.

XcbPointer<xcb_xkb_get_map_reply_t> symbolsOf(
    const X11Connection& connection, xcb_keycode_t first, quint8 count)
{
    const auto cookie = xcb_xkb_get_map(connection.get(), XCB_XKB_ID_USE_CORE_KBD, 0,
        XCB_XKB_MAP_PART_KEY_SYMS, 0, 0, first, count, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0);
    return XcbPointer<xcb_xkb_get_map_reply_t>(
        xcb_xkb_get_map_reply(connection.get(), cookie, nullptr));
}

/// What follows the fixed part of the reply.
std::span<const std::byte> listOf(const xcb_xkb_get_map_reply_t& reply)
{
    constexpr std::size_t shortest = 32; // Of all replies; `length` counts words beyond.
    const std::size_t bytes = shortest + std::size_t{reply.length} * 4;
    if (bytes < sizeof reply)
        return {};
    return {reinterpret_cast<const std::byte*>(&reply + 1), bytes - sizeof reply};
}

void append(std::vector<std::byte>& list, const void* data, std::size_t bytes)
{
    const auto* begin = static_cast<const std::byte*>(data);
    list.insert(list.end(), begin, begin + bytes);
}

} // namespace

std::optional<KeySymbols> KeySymbols::read(
    const X11Connection& connection, xcb_keycode_t first, xcb_keycode_t last)
{
    if (first > last || !xkb::isUsable(connection))
        return {};
    const auto reply = symbolsOf(connection, first, static_cast<quint8>(last - first + 1));
    if (!reply)
        return {};
    KeySymbols result;
    result.m_first = first;
    std::span<const std::byte> list = listOf(*reply);
    for (int code = first; code <= last; ++code) {
        xcb_xkb_key_sym_map_t header{};
        if (list.size() < sizeof header)
            return {};
        std::memcpy(&header, list.data(), sizeof header);
        list = list.subspan(sizeof header);
        Key key{{}, header.groupInfo, header.width, std::vector<xcb_keysym_t>(header.nSyms)};
        std::memcpy(key.types.data(), header.kt_index, key.types.size());
        const std::span symbols = std::as_writable_bytes(std::span(key.symbols));
        if (list.size() < symbols.size())
            return {};
        if (!symbols.empty())
            std::memcpy(symbols.data(), list.data(), symbols.size());
        list = list.subspan(symbols.size());
        result.m_keys.push_back(std::move(key));
    }
    return result;
}

void KeySymbols::assign(const CodeAssignment& assignment)
{
    const int index = assignment.code - m_first;
    if (index < 0 || index >= static_cast<int>(m_keys.size()))
        return;
    Key& key = m_keys[static_cast<std::size_t>(index)];
    if (assignment.plain == keysyms::none && assignment.shifted == keysyms::none)
        key = {};
    else
        key = {{twoLevels}, 1, 2, {assignment.plain, assignment.shifted}};
}

bool KeySymbols::carries(const CodeAssignment& assignment) const
{
    const int index = assignment.code - m_first;
    if (index < 0 || index >= static_cast<int>(m_keys.size()))
        return false;
    const Key& key = m_keys[static_cast<std::size_t>(index)];
    return key.layouts == 1
        && key.symbols == std::vector<xcb_keysym_t>{assignment.plain, assignment.shifted};
}

void KeySymbols::write(const X11Connection& connection) const
{
    std::vector<std::byte> list;
    std::size_t symbols = 0;
    for (const Key& key : m_keys) {
        xcb_xkb_key_sym_map_t header{};
        std::memcpy(header.kt_index, key.types.data(), key.types.size());
        header.groupInfo = key.layouts;
        header.width = key.levels;
        header.nSyms = static_cast<quint16>(key.symbols.size());
        append(list, &header, sizeof header);
        append(list, key.symbols.data(), key.symbols.size() * sizeof(xcb_keysym_t));
        symbols += key.symbols.size();
    }
    const xcb_setup_t* setup = xcb_get_setup(connection.get());
    xcb_xkb_set_map(connection.get(), XCB_XKB_ID_USE_CORE_KBD, XCB_XKB_MAP_PART_KEY_SYMS, 0,
        setup->min_keycode, setup->max_keycode, 0, 0, m_first, static_cast<quint8>(m_keys.size()),
        static_cast<quint16>(symbols), 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, list.data());
    xcb_flush(connection.get());
}

} // namespace tavrin
