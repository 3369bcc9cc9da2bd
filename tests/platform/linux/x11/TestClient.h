#pragma once

#include "platform/linux/x11/KeyboardMap.h"

#include <QByteArray>
#include <QString>

#include <functional>

namespace tavrin::testing {

/// Another program of the X session: presses keys, owns windows, asks for the clipboard.
class TestClient {
public:
    [[nodiscard]] const X11Connection& connection() const { return m_connection; }

    void pressKey(xcb_keycode_t code) { fakeKey(code, true); }

    void releaseKey(xcb_keycode_t code) { fakeKey(code, false); }

    /// Presses and releases the key with @p symbol.
    void tap(xcb_keysym_t symbol);

    /// A top-level window of the program @p processIdentifier; mapped, and waited for.
    [[nodiscard]] xcb_window_t createWindow(
        const QByteArray& instance, const QByteArray& className, quint32 processIdentifier);

    void destroyWindow(xcb_window_t window);
    void minimize(xcb_window_t window);

    /// What the owner of @p selection gives for @p target; empty type when it refuses.
    struct Selection {
        xcb_atom_t type = XCB_ATOM_NONE;
        QByteArray bytes;
        bool incremental = false;
    };

    [[nodiscard]] Selection convert(const char* selection, const char* target);

    [[nodiscard]] xcb_window_t activeWindow() const;

    /// Waits until @p condition holds; false after two seconds.
    static bool eventually(const std::function<bool()>& condition);

private:
    void fakeKey(xcb_keycode_t code, bool down);
    [[nodiscard]] XcbPointer<xcb_generic_event_t> nextEvent(int type);
    [[nodiscard]] QByteArray receivePieces(xcb_window_t window, xcb_atom_t property);

    X11Connection m_connection;
};

} // namespace tavrin::testing
