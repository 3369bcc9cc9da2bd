#include "platform/linux/x11/TestClient.h"

#include "platform/linux/x11/keyboard/KeyboardState.h"

#include <QCoreApplication>
#include <QProcess>
#include <gtest/gtest.h>

#include <chrono>
#include <poll.h>
#include <thread>
#include <xcb/xtest.h>

namespace tavrin::testing {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

/// Copies the whole keyboard, as xkbcomp does it between a display and a file.
void copyKeyboard(const QString& from, const QString& to)
{
    EXPECT_EQ(QProcess::execute(QStringLiteral("xkbcomp"), {QStringLiteral("-w0"), from, to}), 0);
}

} // namespace

TestLayouts::TestLayouts(const QStringList& arguments)
{
    copyKeyboard(qEnvironmentVariable("DISPLAY"), m_folder.filePath(QStringLiteral("usual")));
    EXPECT_EQ(QProcess::execute(QStringLiteral("setxkbmap"), arguments), 0);
}

TestLayouts::~TestLayouts()
{
    copyKeyboard(m_folder.filePath(QStringLiteral("usual")), qEnvironmentVariable("DISPLAY"));
}

void TestClient::click(quint8 button)
{
    fakeInput(XCB_BUTTON_PRESS, button);
    fakeInput(XCB_BUTTON_RELEASE, button);
}

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
    // It is called active a moment before the keys reach it.
    EXPECT_TRUE(eventually([&] { return activeWindow() == window && focus() == window; }));
    return window;
}

void TestClient::destroyWindow(xcb_window_t window)
{
    xcb_destroy_window(m_connection.get(), window);
    xcb_flush(m_connection.get());
    // The window manager may go on calling it the active one when there is no other.
    eventually([&] {
        return !m_connection.numbers(m_connection.root(), m_connection.atom("_NET_CLIENT_LIST"))
                    .contains(window);
    });
}

void TestClient::listenToKeys(xcb_window_t window)
{
    const quint32 mask = XCB_EVENT_MASK_KEY_PRESS;
    xcb_change_window_attributes(m_connection.get(), window, XCB_CW_EVENT_MASK, &mask);
    xcb_flush(m_connection.get());
}

std::optional<xcb_keycode_t> TestClient::nextKey()
{
    const auto event = nextEvent(XCB_KEY_PRESS);
    if (!event)
        return std::nullopt;
    return reinterpret_cast<const xcb_key_press_event_t&>(*event).detail;
}

void TestClient::setProperty(xcb_window_t window, const char* name, quint32 number)
{
    const auto set = xcb_change_property_checked(m_connection.get(), XCB_PROP_MODE_REPLACE, window,
        m_connection.atom(name), XCB_ATOM_CARDINAL, 32, 1, &number);
    const XcbPointer<xcb_generic_error_t> error(xcb_request_check(m_connection.get(), set));
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
    Request place{createHiddenWindow(), m_connection.atom("TEST_PROPERTY"), {}};
    Selection result;
    if (ask(place, selection, target)) {
        const XcbPointer<xcb_get_property_reply_t> reply = takeProperty(place);
        result.type = reply ? reply->type : xcb_atom_t{XCB_ATOM_NONE};
        result.incremental = result.type == m_connection.atom("INCR");
        result.bytes = result.incremental ? takeAll(place) : valueOf(reply);
    }
    xcb_destroy_window(server, place.window);
    xcb_flush(server);
    return result;
}

TestClient::Request TestClient::request(const char* selection, const char* target)
{
    Request place{createHiddenWindow(), m_connection.atom("TEST_PROPERTY"), {}};
    requestAgain(place, selection, target);
    return place;
}

void TestClient::requestAgain(Request& request, const char* selection, const char* target)
{
    request.bytes.clear();
    if (ask(request, selection, target))
        static_cast<void>(takeProperty(request)); // The announcement.
}

bool TestClient::takePiece(Request& request)
{
    while (const auto event = nextEvent(XCB_PROPERTY_NOTIFY)) {
        const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(*event);
        if (change.window != request.window || change.atom != request.property
            || change.state != XCB_PROPERTY_NEW_VALUE)
            continue;
        const XcbPointer<xcb_get_property_reply_t> piece = takeProperty(request);
        if (!piece || piece->type == m_connection.atom("INCR"))
            continue; // The announcement, seen again.
        const QByteArray bytes = valueOf(piece);
        request.bytes += bytes;
        return !bytes.isEmpty();
    }
    return false;
}

QByteArray TestClient::takeAll(Request& request)
{
    while (takePiece(request)) { }
    return request.bytes;
}

xcb_window_t TestClient::createHiddenWindow()
{
    xcb_connection_t* server = m_connection.get();
    const xcb_window_t window = xcb_generate_id(server);
    const quint32 events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(server, XCB_COPY_FROM_PARENT, window, m_connection.root(), 0, 0, 1, 1, 0,
        XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
    xcb_flush(server);
    return window;
}

bool TestClient::ask(const Request& request, const char* selection, const char* target)
{
    xcb_convert_selection(m_connection.get(), request.window, m_connection.atom(selection),
        m_connection.atom(target), request.property, XCB_CURRENT_TIME);
    xcb_flush(m_connection.get());
    const auto notice = nextEvent(XCB_SELECTION_NOTIFY);
    return notice
        && reinterpret_cast<const xcb_selection_notify_event_t&>(*notice).property != XCB_ATOM_NONE;
}

XcbPointer<xcb_get_property_reply_t> TestClient::takeProperty(const Request& request) const
{
    return XcbPointer<xcb_get_property_reply_t>(xcb_get_property_reply(m_connection.get(),
        xcb_get_property(m_connection.get(), 1, request.window, request.property,
            XCB_GET_PROPERTY_TYPE_ANY, 0, 1U << 28),
        nullptr));
}

QByteArray TestClient::valueOf(const XcbPointer<xcb_get_property_reply_t>& reply)
{
    if (!reply)
        return {};
    return {static_cast<const char*>(xcb_get_property_value(reply.get())),
        xcb_get_property_value_length(reply.get())};
}

xcb_window_t TestClient::activeWindow() const
{
    return m_connection.number(m_connection.root(), m_connection.atom("_NET_ACTIVE_WINDOW"));
}

xcb_window_t TestClient::focus() const
{
    xcb_connection_t* server = m_connection.get();
    const XcbPointer<xcb_get_input_focus_reply_t> focus(
        xcb_get_input_focus_reply(server, xcb_get_input_focus(server), nullptr));
    return focus ? focus->focus : xcb_window_t{XCB_WINDOW_NONE};
}

bool TestClient::eventually(
    const std::function<bool()>& condition, std::chrono::milliseconds patience)
{
    const auto end = Clock::now() + patience;
    while (!condition()) {
        if (Clock::now() > end)
            return false;
        QCoreApplication::processEvents();
        std::this_thread::sleep_for(1ms);
    }
    return true;
}

void TestClient::useLayout(int group)
{
    if (KeyboardState::read(m_connection).group == group)
        return;
    lockGroup(m_connection, group);
    xcb_flush(m_connection.get());
    eventually([&] { return KeyboardState::read(m_connection).group == group; });
}

void TestClient::fakeInput(quint8 type, quint8 detail)
{
    xcb_test_fake_input(
        m_connection.get(), type, detail, XCB_CURRENT_TIME, XCB_WINDOW_NONE, 0, 0, 0);
    // The server takes the requests of one client before those of another as it likes.
    const XcbPointer<xcb_get_input_focus_reply_t> done(xcb_get_input_focus_reply(
        m_connection.get(), xcb_get_input_focus(m_connection.get()), nullptr));
}

void TestClient::fakeKey(xcb_keycode_t code, bool down)
{
    fakeInput(down ? XCB_KEY_PRESS : XCB_KEY_RELEASE, code);
}

XcbPointer<xcb_generic_event_t> TestClient::nextEvent(int type)
{
    const auto end = Clock::now() + 10s;
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
