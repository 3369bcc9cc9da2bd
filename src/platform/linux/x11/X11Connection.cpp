#include "platform/linux/x11/X11Connection.h"

#include <cstring>

namespace tavrin {
namespace {

constexpr quint32 longestProperty = 1024 * 1024;

XcbPointer<xcb_get_property_reply_t> property(
    xcb_connection_t* connection, xcb_window_t window, xcb_atom_t name)
{
    const auto cookie = xcb_get_property(
        connection, 0, window, name, XCB_GET_PROPERTY_TYPE_ANY, 0, longestProperty / 4);
    return XcbPointer<xcb_get_property_reply_t>(
        xcb_get_property_reply(connection, cookie, nullptr));
}

} // namespace

X11Connection::~X11Connection()
{
    if (m_connection)
        xcb_disconnect(m_connection);
}

bool X11Connection::isOpen() const
{
    return xcb_connection_has_error(get()) == 0;
}

xcb_connection_t* X11Connection::get() const
{
    if (m_connection)
        return m_connection;
    int screen = 0;
    m_connection = xcb_connect(nullptr, &screen);
    if (xcb_connection_has_error(m_connection) != 0)
        return m_connection;
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(m_connection));
    for (int i = 0; i < screen && screens.rem > 1; ++i)
        xcb_screen_next(&screens);
    m_root = screens.data->root;
    return m_connection;
}

xcb_window_t X11Connection::root() const
{
    static_cast<void>(get());
    return m_root;
}

xcb_atom_t X11Connection::atom(const char* name) const
{
    if (const auto known = m_atoms.constFind(name); known != m_atoms.cend())
        return *known;
    const auto cookie = xcb_intern_atom(get(), 0, static_cast<quint16>(std::strlen(name)), name);
    const XcbPointer<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(get(), cookie, nullptr));
    const xcb_atom_t atom = reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
    m_atoms.insert(name, atom);
    return atom;
}

QByteArray X11Connection::bytes(xcb_window_t window, xcb_atom_t name) const
{
    const auto reply = property(get(), window, name);
    if (!reply || reply->format != 8 || reply->bytes_after > 0)
        return {};
    return {static_cast<const char*>(xcb_get_property_value(reply.get())),
        xcb_get_property_value_length(reply.get())};
}

QList<quint32> X11Connection::numbers(xcb_window_t window, xcb_atom_t name) const
{
    const auto reply = property(get(), window, name);
    if (!reply || reply->format != 32)
        return {};
    const auto* values = static_cast<const quint32*>(xcb_get_property_value(reply.get()));
    return {values, values + reply->value_len};
}

quint32 X11Connection::number(xcb_window_t window, xcb_atom_t name) const
{
    return numbers(window, name).value(0);
}

void X11Connection::sendToManager(
    xcb_window_t window, xcb_atom_t message, const std::array<quint32, 5>& data) const
{
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = window;
    event.type = message;
    std::copy(data.begin(), data.end(), std::begin(event.data.data32));
    std::array<char, sizeof event> bytes{};
    std::memcpy(bytes.data(), &event, sizeof event);
    xcb_send_event(get(), 0, root(),
        XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT, bytes.data());
    xcb_flush(get());
}

void X11Connection::discardEvents() const
{
    while (const XcbPointer<xcb_generic_event_t> event{xcb_poll_for_event(get())}) { }
}

} // namespace tavrin
