#include "platform/linux/x11/keyboard/KeyboardLayouts.h"

#include <algorithm>
#include <xkbcommon/xkbcommon-x11.h>

namespace tavrin {
namespace {

struct Release {
    void operator()(xkb_context* context) const { xkb_context_unref(context); }

    void operator()(xkb_state* state) const { xkb_state_unref(state); }
};

using Context = std::unique_ptr<xkb_context, Release>;
using State = std::unique_ptr<xkb_state, Release>;

/// Reads no file: the server has the whole keyboard.
Context newContext()
{
    Context context(xkb_context_new(static_cast<xkb_context_flags>(
        XKB_CONTEXT_NO_DEFAULT_INCLUDES | XKB_CONTEXT_NO_ENVIRONMENT_NAMES)));
    if (context)
        xkb_context_set_log_level(context.get(), XKB_LOG_LEVEL_CRITICAL);
    return context;
}

State newState(xkb_keymap& keymap, int group, quint8 modifiers)
{
    State state(xkb_state_new(&keymap));
    xkb_state_update_mask(
        state.get(), 0, 0, modifiers, 0, 0, static_cast<xkb_layout_index_t>(group));
    return state;
}

quint8 serialized(xkb_state& state, xkb_state_component component)
{
    // Those beyond the first eight are names for sets of them.
    return static_cast<quint8>(xkb_state_serialize_mods(&state, component));
}

} // namespace

KeyboardLayouts::KeyboardLayouts(xkb_keymap* keymap)
    : m_keymap(keymap, xkb_keymap_unref)
{
}

KeyboardLayouts KeyboardLayouts::read(const X11Connection& connection)
{
    if (!connection.isOpen())
        return {};
    const Context context = newContext();
    const int extension = xkb_x11_setup_xkb_extension(connection.get(),
        XKB_X11_MIN_MAJOR_XKB_VERSION, XKB_X11_MIN_MINOR_XKB_VERSION,
        XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr, nullptr, nullptr);
    if (!context || extension == 0)
        return {};
    const qint32 device = xkb_x11_get_core_keyboard_device_id(connection.get());
    if (device < 0)
        return {};
    return KeyboardLayouts(xkb_x11_keymap_new_from_device(
        context.get(), connection.get(), device, XKB_KEYMAP_COMPILE_NO_FLAGS));
}

KeyboardLayouts KeyboardLayouts::parse(const QByteArray& text)
{
    const Context context = newContext();
    if (!context)
        return {};
    return KeyboardLayouts(xkb_keymap_new_from_string(
        context.get(), text.constData(), XKB_KEYMAP_FORMAT_TEXT_V1, XKB_KEYMAP_COMPILE_NO_FLAGS));
}

int KeyboardLayouts::groupCount() const
{
    return m_keymap ? static_cast<int>(xkb_keymap_num_layouts(m_keymap.get())) : 0;
}

std::vector<xcb_keycode_t> KeyboardLayouts::codes() const
{
    if (!m_keymap)
        return {};
    constexpr xkb_keycode_t lastOfTheProtocol = 255;
    const xkb_keycode_t last = std::min(xkb_keymap_max_keycode(m_keymap.get()), lastOfTheProtocol);
    std::vector<xcb_keycode_t> codes;
    for (xkb_keycode_t code = xkb_keymap_min_keycode(m_keymap.get()); code <= last; ++code)
        codes.push_back(static_cast<xcb_keycode_t>(code));
    return codes;
}

xcb_keysym_t KeyboardLayouts::symbol(xcb_keycode_t code, int group, quint8 modifiers) const
{
    if (!m_keymap)
        return keysyms::none;
    return xkb_state_key_get_one_sym(newState(*m_keymap, group, modifiers).get(), code);
}

std::optional<std::vector<xcb_keycode_t>> KeyboardLayouts::keysFor(
    xcb_keysym_t symbol, quint8 modifiers, int group) const
{
    constexpr quint8 shift = XCB_MOD_MASK_SHIFT;
    const quint8 thirdLevel = modifiersOf(keysyms::thirdLevel);
    // Shift is part of a shortcut, or of the symbol: its key is looked up without the former.
    const quint8 others = modifiers & static_cast<quint8>(~shift);
    for (const unsigned level :
        {0U, unsigned{shift}, unsigned{thirdLevel}, unsigned{thirdLevel} | shift}) {
        auto keys = keysHolding(static_cast<quint8>(modifiers | level), group);
        if (!keys)
            continue;
        for (const xcb_keycode_t code : codes()) {
            if (this->symbol(code, group, static_cast<quint8>(others | level)) != symbol)
                continue;
            keys->push_back(code);
            return keys;
        }
    }
    return {};
}

std::optional<std::vector<xcb_keycode_t>> KeyboardLayouts::keysHolding(
    quint8 modifiers, int group, const std::vector<xcb_keycode_t>& down) const
{
    const quint8 held = effectOf(down, group).held;
    if (held == modifiers)
        return down;
    for (const xcb_keycode_t code : codes()) {
        std::vector<xcb_keycode_t> further = down;
        further.push_back(code);
        const Effect effect = effectOf(further, group);
        const bool adds = (effect.held & held) == held && effect.held != held;
        const bool addsOthers = (effect.held & ~modifiers) != 0;
        if (!adds || addsOthers || effect.locked != 0)
            continue; // It does something else in that company, such as changing the layout.
        if (auto all = keysHolding(modifiers, group, further))
            return all;
    }
    return {};
}

bool KeyboardLayouts::isModifier(xcb_keycode_t code, int group) const
{
    const Effect effect = effectOf({code}, group);
    return effect.held != 0 && effect.locked == 0;
}

quint8 KeyboardLayouts::modifiersOf(xcb_keysym_t symbol) const
{
    quint8 modifiers = 0;
    for (int group = 0; group < groupCount(); ++group) {
        for (const xcb_keycode_t code : codes()) {
            if (this->symbol(code, group) == symbol)
                modifiers |= effectOf({code}, group).held;
        }
    }
    return modifiers;
}

KeyboardLayouts::Effect KeyboardLayouts::effectOf(
    const std::vector<xcb_keycode_t>& codes, int group) const
{
    if (!m_keymap)
        return {};
    const State state = newState(*m_keymap, group, 0);
    for (const xcb_keycode_t code : codes)
        xkb_state_update_key(state.get(), code, XKB_KEY_DOWN);
    return {
        serialized(*state, XKB_STATE_MODS_DEPRESSED), serialized(*state, XKB_STATE_MODS_LOCKED)};
}

std::vector<xcb_keycode_t> heldModifiers(
    const X11Connection& connection, const KeyboardLayouts& layouts, int group)
{
    const XcbPointer<xcb_query_keymap_reply_t> keys(
        xcb_query_keymap_reply(connection.get(), xcb_query_keymap(connection.get()), nullptr));
    std::vector<xcb_keycode_t> held;
    for (const xcb_keycode_t code : layouts.codes()) {
        const bool isDown = keys && (keys->keys[code / 8U] >> (code % 8U) & 1U) != 0;
        if (isDown && layouts.isModifier(code, group))
            held.push_back(code);
    }
    return held;
}

} // namespace tavrin
