#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>

#include <array>
#include <cstdlib>
#include <memory>
#include <xcb/xcb.h>

namespace tavrin {

/// Owns a reply or an event of the X server.
template <class Type>
struct FreeDeleter {
    void operator()(Type* pointer) const
    {
        std::free(pointer); // NOLINT(cppcoreguidelines-no-malloc): xcb allocates its replies so
    }
};
template <class Type>
using XcbPointer = std::unique_ptr<Type, FreeDeleter<Type>>;

/// A connection to the X server of its own, for one thread, which opens it by its first question.
/// Errors (a window that is gone) stay on the connection and read as "nothing there"; none ends the
/// process. Without an X server every question has an empty answer.
class X11Connection {
public:
    X11Connection() = default;
    ~X11Connection();

    X11Connection(const X11Connection&) = delete;
    X11Connection& operator=(const X11Connection&) = delete;

    /// Whether there is an X server.
    [[nodiscard]] bool isOpen() const;

    /// Never null; one in error when there is no X server.
    [[nodiscard]] xcb_connection_t* get() const;

    [[nodiscard]] xcb_window_t root() const;

    [[nodiscard]] xcb_atom_t atom(const char* name) const;

    /// The bytes of a property in 8-bit units; empty when it is absent or longer than 1 MiB.
    [[nodiscard]] QByteArray bytes(xcb_window_t window, xcb_atom_t property) const;

    /// The values of a property in 32-bit units; empty when it is absent.
    [[nodiscard]] QList<quint32> numbers(xcb_window_t window, xcb_atom_t property) const;

    /// The first value of such a property; 0 when it is absent.
    [[nodiscard]] quint32 number(xcb_window_t window, xcb_atom_t property) const;

    /// Sends @p message about @p window to whoever manages the windows.
    void sendToManager(
        xcb_window_t window, xcb_atom_t message, const std::array<quint32, 5>& data) const;

    /// Drops events and errors that have arrived.
    void discardEvents() const;

private:
    mutable xcb_connection_t* m_connection = nullptr; // Until the first question.
    mutable xcb_window_t m_root = XCB_WINDOW_NONE;
    mutable QHash<QByteArray, xcb_atom_t> m_atoms;
};

} // namespace tavrin
