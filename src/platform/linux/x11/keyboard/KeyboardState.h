#pragma once

#include "platform/linux/x11/X11Connection.h"

namespace tavrin {

/// What the keyboard is doing apart from its map. Modifiers are sets of XCB_MOD_MASK_….
struct KeyboardState {
    int group = 0; ///< The layout in use, from 0.
    int lockedGroup = 0; ///< The same without keys that change it while they are held.
    quint8 latched = 0; ///< Modifiers for the next key alone, as sticky keys make them.
    quint8 locked = 0; ///< Modifiers until they are unlocked, such as Caps Lock.

    /// As it is now; all zero when the server does not have the keyboard extension.
    [[nodiscard]] static KeyboardState read(const X11Connection& connection);

    friend bool operator==(const KeyboardState&, const KeyboardState&) = default;
};

/// Takes latched and locked modifiers off the keyboard, so that the next keys mean what they say,
/// and puts them back at its end. Used by one thread.
class ModifiersAside {
public:
    /// @param staying those that are left alone.
    ModifiersAside(const X11Connection& connection, quint8 staying);
    ~ModifiersAside();

    ModifiersAside(const ModifiersAside&) = delete;
    ModifiersAside& operator=(const ModifiersAside&) = delete;

private:
    const X11Connection& m_connection;
    quint8 m_latched;
    quint8 m_locked;
};

/// Puts a layout into use: sent with the requests around it, and done between them. Only on a
/// connection on which the state has been read.
void lockGroup(const X11Connection& connection, int group);

} // namespace tavrin
