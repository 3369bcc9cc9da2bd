#include "platform/linux/x11/keyboard/KeyboardState.h"

#include "platform/linux/x11/keyboard/XkbProtocol.h"

#include <array>
#include <sys/uio.h>
#include <xcb/xcbext.h>

namespace tavrin {
namespace {

using Change = xcb_xkb_latch_lock_state_request_t;

/// Nothing changed yet, on the keyboard that all programs follow.
Change noChange()
{
    Change change{};
    change.deviceSpec = XCB_XKB_ID_USE_CORE_KBD;
    return change;
}

/// The library's own call has no argument for the modifiers to latch; in the request they stand
/// where it sees padding.
void send(const X11Connection& connection, Change change)
{
    std::array<iovec, 4> parts{}; // The library wants two before the first for itself.
    parts[2] = {&change, sizeof change};
    const xcb_protocol_request_t request{1, &xcb_xkb_id, XCB_XKB_LATCH_LOCK_STATE, 1};
    xcb_send_request(connection.get(), 0, &parts[2], &request);
}

} // namespace

KeyboardState KeyboardState::read(const X11Connection& connection)
{
    if (!xkb::isUsable(connection))
        return {};
    const XcbPointer<xcb_xkb_get_state_reply_t> reply(xcb_xkb_get_state_reply(
        connection.get(), xcb_xkb_get_state(connection.get(), XCB_XKB_ID_USE_CORE_KBD), nullptr));
    if (!reply)
        return {};
    return {reply->group, reply->lockedGroup, reply->latchedMods, reply->lockedMods};
}

ModifiersAside::ModifiersAside(const X11Connection& connection, quint8 staying)
    : m_connection(connection)
{
    const KeyboardState state = KeyboardState::read(connection);
    m_latched = state.latched & static_cast<quint8>(~staying);
    m_locked = state.locked & static_cast<quint8>(~staying);
    if (m_latched == 0 && m_locked == 0)
        return;
    Change change = noChange();
    change.affectModLatches = m_latched;
    change.affectModLocks = m_locked;
    send(connection, change);
}

ModifiersAside::~ModifiersAside()
{
    if (m_latched == 0 && m_locked == 0)
        return;
    Change change = noChange();
    change.affectModLatches = m_latched;
    change.pad0 = m_latched;
    change.affectModLocks = m_locked;
    change.modLocks = m_locked;
    send(m_connection, change);
    xcb_flush(m_connection.get());
}

void lockGroup(const X11Connection& connection, int group)
{
    Change change = noChange();
    change.lockGroup = 1;
    change.groupLock = static_cast<quint8>(group);
    send(connection, change);
}

} // namespace tavrin
