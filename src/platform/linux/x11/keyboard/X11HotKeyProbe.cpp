#include "platform/linux/x11/keyboard/X11HotKeyProbe.h"

#include "platform/linux/x11/keyboard/KeyTracker.h"

#include <array>

namespace tavrin {
namespace {

quint16 modifierMask(KeyModifiers modifiers)
{
    unsigned mask = 0;
    if (modifiers.testFlag(KeyModifier::Shift))
        mask |= XCB_MOD_MASK_SHIFT;
    if (modifiers.testFlag(KeyModifier::Control))
        mask |= XCB_MOD_MASK_CONTROL;
    if (modifiers.testFlag(KeyModifier::Option))
        mask |= XCB_MOD_MASK_1;
    if (modifiers.testFlag(KeyModifier::Command))
        mask |= XCB_MOD_MASK_4;
    return static_cast<quint16>(mask);
}

/// The X code of the key with the virtual code @p keyCode; 0 when the keyboard has none.
xcb_keycode_t codeOf(const KeyboardMap& map, int keyCode)
{
    for (int row = 0; row < map.codeCount(); ++row) {
        const auto code = static_cast<xcb_keycode_t>(map.firstCode() + row);
        if (keyRole(map, code).keyCode == keyCode)
            return code;
    }
    return 0;
}

} // namespace

bool X11HotKeyProbe::isAvailable(int keyCode, KeyModifiers modifiers)
{
    if (!m_connection.isOpen())
        return true; // Without a server nobody holds anything.
    const xcb_keycode_t code = codeOf(KeyboardMap::read(m_connection), keyCode);
    return code != 0 && canGrabWithAnyLock(code, modifierMask(modifiers));
}

QString X11HotKeyProbe::holder(int keyCode, KeyModifiers modifiers)
{
    const bool isWindowMenu = keyCode == key_codes::space && modifiers == KeyModifier::Option;
    if (!isWindowMenu || isAvailable(keyCode, modifiers))
        return {};
    const xcb_window_t manager =
        m_connection.number(m_connection.root(), m_connection.atom("_NET_SUPPORTING_WM_CHECK"));
    if (manager == XCB_WINDOW_NONE)
        return {};
    return QString::fromUtf8(m_connection.bytes(manager, m_connection.atom("_NET_WM_NAME")));
}

std::optional<bool> X11HotKeyProbe::isKeptByDesktop(int keyCode, KeyModifiers modifiers)
{
    const xcb_keycode_t code = codeOf(KeyboardMap::read(m_connection), keyCode);
    if (code == 0 || canGrabWithAnyLock(code, modifierMask(modifiers)))
        return std::nullopt;
    return true;
}

bool X11HotKeyProbe::canGrabWithAnyLock(xcb_keycode_t code, quint16 mask)
{
    // A program that takes the combination takes it with Caps Lock and Num Lock too.
    constexpr std::array<unsigned, 4> locks{0, XCB_MOD_MASK_LOCK, XCB_MOD_MASK_2,
        unsigned{XCB_MOD_MASK_LOCK} | unsigned{XCB_MOD_MASK_2}};
    xcb_connection_t* server = m_connection.get();
    const xcb_window_t root = m_connection.root();
    std::array<xcb_void_cookie_t, locks.size()> requests{};
    // All of them are sent before the first answer is waited for: one round trip.
    for (std::size_t i = 0; i < locks.size(); ++i) {
        const auto withLock = static_cast<quint16>(mask | locks[i]);
        requests[i] = xcb_grab_key_checked(
            server, 0, root, withLock, code, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
        xcb_ungrab_key(server, code, root, withLock); // Leaves the grabs of others alone.
    }
    bool isFree = true;
    for (const xcb_void_cookie_t request : requests) {
        const XcbPointer<xcb_generic_error_t> error(xcb_request_check(server, request));
        isFree = isFree && !error;
    }
    m_connection.discardEvents();
    return isFree;
}

} // namespace tavrin
