#include "platform/linux/x11/keyboard/RawKeyWatch.h"

#include <xcb/xinput.h>

namespace tavrin {
namespace {

/// The keys that are down as the server sees them.
KeyTracker::IsDown keysDown(const X11Connection& connection)
{
    const XcbPointer<xcb_query_keymap_reply_t> reply(
        xcb_query_keymap_reply(connection.get(), xcb_query_keymap(connection.get()), nullptr));
    if (!reply)
        return [](xcb_keycode_t) { return true; };
    std::array<quint8, 32> bits{};
    std::copy(std::begin(reply->keys), std::end(reply->keys), bits.begin());
    return [bits](xcb_keycode_t code) { return (bits.at(code / 8U) >> (code % 8U) & 1U) != 0; };
}

} // namespace

RawKeyWatch::RawKeyWatch(
    Handler handler, std::shared_ptr<const std::atomic<bool>> isOwnWindowActive)
    : m_handler(std::move(handler))
    , m_isOwnWindowActive(std::move(isOwnWindowActive))
{
}

RawKeyWatch::~RawKeyWatch()
{
    stop();
}

bool RawKeyWatch::begin()
{
    if (!connection().isOpen())
        return false;
    xcb_connection_t* server = connection().get();
    const auto* extension = xcb_get_extension_data(server, &xcb_input_id);
    if (!extension || extension->present == 0)
        return false;
    m_inputExtension = extension->major_opcode;
    const XcbPointer<xcb_input_xi_query_version_reply_t> version(xcb_input_xi_query_version_reply(
        server, xcb_input_xi_query_version(server, 2, 2), nullptr));
    if (!version || version->major_version < 2)
        return false;

    struct {
        xcb_input_event_mask_t head{XCB_INPUT_DEVICE_ALL_MASTER, 1};
        quint32 mask = XCB_INPUT_XI_EVENT_MASK_RAW_KEY_PRESS
            | XCB_INPUT_XI_EVENT_MASK_RAW_KEY_RELEASE | XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS;
    } const selection;

    const auto request =
        xcb_input_xi_select_events_checked(server, connection().root(), 1, &selection.head);
    const XcbPointer<xcb_generic_error_t> error(xcb_request_check(server, request));
    if (error)
        return false;
    m_map = KeyboardMap::read(connection());
    start();
    return true;
}

void RawKeyWatch::handleEvent(const xcb_generic_event_t& event)
{
    const int type = event.response_type & 0x7f;
    if (type == XCB_MAPPING_NOTIFY)
        m_mapChanged = true;
    if (type != XCB_GE_GENERIC)
        return;
    // The connection delivers events of the wire, which carry their kind at their head.
    const auto& key = reinterpret_cast<const xcb_input_raw_key_press_event_t&>(event);
    if (key.extension != m_inputExtension)
        return;
    if (key.event_type == XCB_INPUT_RAW_BUTTON_PRESS)
        m_tracker.buttonPressed();
    if (key.event_type == XCB_INPUT_RAW_KEY_PRESS || key.event_type == XCB_INPUT_RAW_KEY_RELEASE)
        handleKey(
            static_cast<xcb_keycode_t>(key.detail), key.event_type == XCB_INPUT_RAW_KEY_PRESS);
}

void RawKeyWatch::handleKey(xcb_keycode_t code, bool press)
{
    if (std::exchange(m_mapChanged, false))
        m_map = KeyboardMap::read(connection());
    const KeyRole role = press ? roleOfPressedKey(connection(), m_map, code) : keyRole(m_map, code);
    report(m_tracker.changed(
        {role, code, press, Clock::now()}, [this] { return keysDown(connection()); }));
}

void RawKeyWatch::report(const KeyTracker::Events& events) const
{
    for (const KeyEvent& event : events) {
        if (!*m_isOwnWindowActive)
            m_handler(event);
    }
}

} // namespace tavrin
