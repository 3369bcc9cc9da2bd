#pragma once

#include "platform/linux/x11/X11Connection.h"

namespace tavrin::testing {

/// A keyboard with a focus of its own, beside the one that everybody uses. Whoever watches all
/// keyboards sees its keys, but to the question which keys are down the server answers for the
/// other one: a key that is held here is one whose release went by unseen.
class SecondKeyboard {
public:
    SecondKeyboard();
    ~SecondKeyboard();

    SecondKeyboard(const SecondKeyboard&) = delete;
    SecondKeyboard& operator=(const SecondKeyboard&) = delete;

    /// False when the server could not make one.
    [[nodiscard]] bool isThere() const { return m_keys != 0; }

    void pressKey(xcb_keycode_t code);

private:
    /// The number of the device @p name; 0 when there is none.
    [[nodiscard]] quint16 device(const QByteArray& name) const;
    void change(const QByteArray& hierarchy) const;

    X11Connection m_connection;
    quint16 m_master = 0; // Of the pointer, which the keyboard goes with.
    quint8 m_keys = 0; // What presses keys on it.
};

} // namespace tavrin::testing
