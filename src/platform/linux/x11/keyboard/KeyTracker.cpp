#include "platform/linux/x11/keyboard/KeyTracker.h"

#include "platform/linux/x11/keyboard/KeyboardLayouts.h"

namespace tavrin {
namespace {

using namespace std::chrono_literals;

// Above every virtual key code of macOS.
constexpr int otherKeys = 1000;

// After such a pause a key may have been released where nobody saw it: on another virtual terminal.
constexpr auto longPause = 1s;

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

KeyRole roleOfPressedKey(
    const X11Connection& connection, const KeyboardMap& map, xcb_keycode_t code)
{
    if (code == rightAltCode) {
        const int group = KeyboardState::read(connection).group;
        if (KeyboardLayouts::read(connection).symbol(code, group) == keysyms::thirdLevel)
            return {key_codes::rightOption, {}, true};
    }
    return keyRole(map, code);
}

KeyTracker::Events KeyTracker::changed(
    const KeyChange& change, const std::function<IsDown()>& keysDown)
{
    Events events;
    if (change.time - m_lastChange > longPause && anyDown()) {
        // The key of this change is told below, and the server knows of it already.
        events = synchronize([&change, isDown = keysDown()](xcb_keycode_t code) {
            return code == change.code || isDown(code);
        });
    }
    m_lastChange = change.time;
    const Events own =
        change.press ? pressedAnew(change.role, change.code) : released(change.role, change.code);
    events.insert(events.end(), own.begin(), own.end());
    return events;
}

KeyTracker::Events KeyTracker::pressed(const KeyRole& role, xcb_keycode_t code)
{
    const bool isNew = m_down.insert_or_assign(code, role).second;
    if (role.countsWhenTapped) {
        if (isNew)
            m_tap = code;
        return {};
    }
    m_tap.reset();
    const auto kind = role.modifier ? KeyEvent::Kind::FlagsChanged : KeyEvent::Kind::KeyDown;
    return {{kind, role.keyCode, modifiers(), !isNew}};
}

KeyTracker::Events KeyTracker::pressedAnew(const KeyRole& role, xcb_keycode_t code)
{
    Events events = synchronize([code](xcb_keycode_t other) { return other != code; });
    for (const KeyEvent& event : pressed(role, code))
        events.push_back(event);
    return events;
}

KeyTracker::Events KeyTracker::released(const KeyRole& role, xcb_keycode_t code)
{
    const auto known = m_down.extract(code);
    const KeyRole& was = known ? known.mapped() : role;
    const bool isTap = std::exchange(m_tap, {}) == code;
    if (!was.countsWhenTapped)
        return was.modifier ? Events{flagsChanged(was)} : Events{};
    if (!isTap)
        return {};
    const KeyModifiers others = modifiers();
    constexpr auto kind = KeyEvent::Kind::FlagsChanged;
    return {{kind, was.keyCode, others | KeyModifier::Option, false},
        {kind, was.keyCode, others, false}};
}

KeyTracker::Events KeyTracker::synchronize(const IsDown& isDown)
{
    Events events;
    for (auto key = m_down.begin(); key != m_down.end();) {
        if (isDown(key->first)) {
            ++key;
            continue;
        }
        const KeyRole role = key->second;
        key = m_down.erase(key);
        m_tap.reset();
        if (role.modifier)
            events.push_back(flagsChanged(role));
    }
    return events;
}

KeyEvent KeyTracker::flagsChanged(const KeyRole& role) const
{
    return {KeyEvent::Kind::FlagsChanged, role.keyCode, modifiers(), false};
}

KeyModifiers KeyTracker::modifiers() const
{
    KeyModifiers all;
    for (const auto& [code, role] : m_down) {
        if (role.modifier)
            all |= *role.modifier;
    }
    return all;
}

} // namespace tavrin
