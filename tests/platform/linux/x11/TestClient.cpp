#include "platform/linux/x11/TestClient.h"

#include <QCoreApplication>

#include <chrono>
#include <poll.h>
#include <thread>
#include <xcb/xtest.h>

namespace tavrin::testing {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

} // namespace

void TestClient::tap(xcb_keysym_t symbol)
{
    const auto code = KeyboardMap::read(m_connection).codeOf(symbol);
    if (!code)
        return;
    pressKey(*code);
    releaseKey(*code);
}

xcb_window_t TestClient::createWindow(
    const QByteArray& instance, const QByteArray& className, quint32 processIdentifier)
{
    xcb_connection_t* server = m_connection.get();
    const xcb_window_t window = xcb_generate_id(server);
    xcb_create_window(server, XCB_COPY_FROM_PARENT, window, m_connection.root(), 50, 50, 200, 100,
        0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    const QByteArray wmClass = instance + '\0' + className + '\0';
    xcb_change_property(server, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING,
        8, static_cast<quint32>(wmClass.size()), wmClass.constData());
    xcb_change_property(server, XCB_PROP_MODE_REPLACE, window, m_connection.atom("_NET_WM_PID"),
        XCB_ATOM_CARDINAL, 32, 1, &processIdentifier);
    xcb_map_window(server, window);
    xcb_flush(server);
    eventually([&] { return activeWindow() == window; });
    return window;
}

void TestClient::destroyWindow(xcb_window_t window)
{
    xcb_destroy_window(m_connection.get(), window);
    xcb_flush(m_connection.get());
    eventually([&] { return activeWindow() != window; });
}

void TestClient::minimize(xcb_window_t window)
{
    constexpr quint32 iconic = 3;
    m_connection.sendToManager(window, m_connection.atom("WM_CHANGE_STATE"), {iconic, 0, 0, 0, 0});
    eventually([&] { return activeWindow() != window; });
}

TestClient::Selection TestClient::convert(const char* selection, const char* target)
{
    xcb_connection_t* server = m_connection.get();
    const xcb_window_t window = xcb_generate_id(server);
    const quint32 events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(server, XCB_COPY_FROM_PARENT, window, m_connection.root(), 0, 0, 1, 1, 0,
        XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
    const xcb_atom_t property = m_connection.atom("TEST_PROPERTY");
    xcb_convert_selection(server, window, m_connection.atom(selection), m_connection.atom(target),
        property, XCB_CURRENT_TIME);
    xcb_flush(server);
    const auto notice = nextEvent(XCB_SELECTION_NOTIFY);
    Selection result;
    if (!notice
        || reinterpret_cast<const xcb_selection_notify_event_t&>(*notice).property == XCB_ATOM_NONE)
        return result;
    const XcbPointer<xcb_get_property_reply_t> reply(xcb_get_property_reply(server,
        xcb_get_property(server, 1, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0, 1U << 28),
        nullptr));
    if (!reply)
        return result;
    result.type = reply->type;
    if (reply->type == m_connection.atom("INCR")) {
        result.incremental = true;
        result.bytes = receivePieces(window, property);
    } else {
        result.bytes = {static_cast<const char*>(xcb_get_property_value(reply.get())),
            xcb_get_property_value_length(reply.get())};
    }
    xcb_destroy_window(server, window);
    xcb_flush(server);
    return result;
}

QByteArray TestClient::receivePieces(xcb_window_t window, xcb_atom_t property)
{
    QByteArray all;
    while (const auto event = nextEvent(XCB_PROPERTY_NOTIFY)) {
        const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(*event);
        if (change.window != window || change.atom != property
            || change.state != XCB_PROPERTY_NEW_VALUE)
            continue;
        const XcbPointer<xcb_get_property_reply_t> piece(xcb_get_property_reply(m_connection.get(),
            xcb_get_property(
                m_connection.get(), 1, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0, 1U << 28),
            nullptr));
        if (!piece || piece->type == m_connection.atom("INCR"))
            continue; // The announcement, seen again.
        const int size = xcb_get_property_value_length(piece.get());
        if (size == 0)
            return all;
        all.append(static_cast<const char*>(xcb_get_property_value(piece.get())), size);
    }
    return all;
}

xcb_window_t TestClient::activeWindow() const
{
    return m_connection.number(m_connection.root(), m_connection.atom("_NET_ACTIVE_WINDOW"));
}

bool TestClient::eventually(const std::function<bool()>& condition)
{
    const auto end = Clock::now() + 2s;
    while (!condition()) {
        if (Clock::now() > end)
            return false;
        QCoreApplication::processEvents();
        std::this_thread::sleep_for(1ms);
    }
    return true;
}

void TestClient::fakeKey(xcb_keycode_t code, bool down)
{
    xcb_test_fake_input(m_connection.get(), down ? XCB_KEY_PRESS : XCB_KEY_RELEASE, code,
        XCB_CURRENT_TIME, XCB_WINDOW_NONE, 0, 0, 0);
    xcb_flush(m_connection.get());
}

XcbPointer<xcb_generic_event_t> TestClient::nextEvent(int type)
{
    const auto end = Clock::now() + 2s;
    while (Clock::now() < end) {
        XcbPointer<xcb_generic_event_t> event(xcb_poll_for_event(m_connection.get()));
        if (event && (event->response_type & 0x7f) == type)
            return event;
        if (event)
            continue;
        pollfd server{xcb_get_file_descriptor(m_connection.get()), POLLIN, 0};
        ::poll(&server, 1, 50);
    }
    return nullptr;
}

} // namespace tavrin::testing
