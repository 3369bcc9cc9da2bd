#include "platform/linux/x11/KeyTracker.h"

namespace tavrin {
namespace {

// Every Linux keyboard driver gives the right Alt this code.
constexpr xcb_keycode_t rightAltCode = 108;

// Above every virtual key code of macOS.
constexpr int otherKeys = 1000;

} // namespace

KeyRole keyRole(const KeyboardMap& map, xcb_keycode_t code)
{
    if (code == rightAltCode)
        return {key_codes::rightOption, KeyModifier::Option};
    switch (map.symbol(code, 0)) {
    case keysyms::space:
        return {key_codes::space, {}};
    case keysyms::escape:
        return {key_codes::escape, {}};
    case keysyms::leftAlt:
    case keysyms::leftMeta:
        return {key_codes::leftOption, KeyModifier::Option};
    case keysyms::rightAlt:
    case keysyms::rightMeta:
        return {key_codes::rightOption, KeyModifier::Option};
    case keysyms::leftShift:
        return {56, KeyModifier::Shift};
    case keysyms::rightShift:
        return {60, KeyModifier::Shift};
    case keysyms::leftControl:
        return {59, KeyModifier::Control};
    case keysyms::rightControl:
        return {62, KeyModifier::Control};
    case keysyms::leftSuper:
        return {55, KeyModifier::Command};
    case keysyms::rightSuper:
        return {54, KeyModifier::Command};
    default:
        return {otherKeys + code, {}};
    }
}

KeyEvent KeyTracker::pressed(const KeyRole& role, xcb_keycode_t code)
{
    const bool isNew = m_down.insert_or_assign(code, role.modifier).second;
    const auto kind = role.modifier ? KeyEvent::Kind::FlagsChanged : KeyEvent::Kind::KeyDown;
    return {kind, role.keyCode, modifiers(), !isNew};
}

std::optional<KeyEvent> KeyTracker::released(const KeyRole& role, xcb_keycode_t code)
{
    m_down.erase(code);
    if (!role.modifier)
        return {};
    return KeyEvent{KeyEvent::Kind::FlagsChanged, role.keyCode, modifiers(), false};
}

void KeyTracker::synchronize(const std::function<bool(xcb_keycode_t)>& isDown)
{
    std::erase_if(m_down, [&](const auto& key) { return !isDown(key.first); });
}

KeyModifiers KeyTracker::modifiers() const
{
    KeyModifiers all;
    for (const auto& [code, modifier] : m_down) {
        if (modifier)
            all |= *modifier;
    }
    return all;
}

} // namespace tavrin
