#include "platform/linux/x11/keyboard/LocalKeyFilter.h"

#include <QCoreApplication>

#include <array>
#include <utility>
#include <xcb/xinput.h>

namespace tavrin {
namespace {

/// The modifiers that were down before the event, by the state that it carries.
KeyModifiers modifiersBefore(quint16 state)
{
    constexpr std::array<std::pair<unsigned, KeyModifier>, 4> masks{{
        {XCB_MOD_MASK_SHIFT, KeyModifier::Shift},
        {XCB_MOD_MASK_CONTROL, KeyModifier::Control},
        {XCB_MOD_MASK_1, KeyModifier::Option},
        {XCB_MOD_MASK_4, KeyModifier::Command},
    }};
    KeyModifiers modifiers;
    for (const auto& [mask, modifier] : masks) {
        if ((state & mask) != 0)
            modifiers |= modifier;
    }
    return modifiers;
}

bool isButtonPress(const X11Connection& connection, const xcb_generic_event_t& event)
{
    const auto& generic = reinterpret_cast<const xcb_ge_generic_event_t&>(event);
    if (generic.event_type != XCB_INPUT_BUTTON_PRESS)
        return false;
    const auto* input = xcb_get_extension_data(connection.get(), &xcb_input_id);
    return input && generic.extension == input->major_opcode;
}

} // namespace

LocalKeyFilter::LocalKeyFilter(KeyMonitor::LocalHandler handler)
    : m_handler(std::move(handler))
{
    QCoreApplication::instance()->installNativeEventFilter(this);
}

LocalKeyFilter::~LocalKeyFilter()
{
    if (QCoreApplication::instance())
        QCoreApplication::instance()->removeNativeEventFilter(this);
}

bool LocalKeyFilter::nativeEventFilter(
    const QByteArray& eventType, void* message, qintptr* /*result*/)
{
    if (eventType != "xcb_generic_event_t")
        return false;
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    switch (event->response_type & 0x7f) {
    case XCB_FOCUS_OUT: // What is released elsewhere is not reported here.
        m_tracker = KeyTracker();
        return false;
    case XCB_BUTTON_PRESS:
        m_tracker.buttonPressed();
        return false;
    case XCB_GE_GENERIC: // Where Qt takes the mouse by the input extension.
        if (isButtonPress(m_connection, *event))
            m_tracker.buttonPressed();
        return false;
    case XCB_KEY_PRESS:
        return handleKey(*reinterpret_cast<const xcb_key_press_event_t*>(event), true);
    case XCB_KEY_RELEASE:
        return handleKey(*reinterpret_cast<const xcb_key_press_event_t*>(event), false);
    default:
        return false;
    }
}

bool LocalKeyFilter::handleKey(const xcb_key_press_event_t& event, bool press)
{
    const KeyboardMap& map = currentMap();
    const KeyRole role =
        press ? roleOfPressedKey(m_connection, map, event.detail) : keyRole(map, event.detail);
    auto keys =
        press ? m_tracker.pressed(role, event.detail) : m_tracker.released(role, event.detail);
    // A key that repeats comes up and goes down again in the same moment.
    const std::pair stroke{event.detail, event.time};
    const bool isRepeat = press && m_lastRelease == stroke;
    if (!press)
        m_lastRelease = stroke;
    bool swallowed = false;
    for (KeyEvent& key : keys) {
        key.isRepeat |= isRepeat;
        // Keys that went down before the window had the keyboard are known by the state alone.
        KeyModifiers others = modifiersBefore(event.state);
        if (role.modifier)
            others &= ~KeyModifiers(*role.modifier);
        key.modifiers |= others;
        swallowed |= m_handler(key);
    }
    // Of a tap Qt has had the press: it gets the release too.
    return swallowed && keys.size() == 1;
}

const KeyboardMap& LocalKeyFilter::currentMap()
{
    bool hasChanged = !m_map;
    while (const XcbPointer<xcb_generic_event_t> event{xcb_poll_for_event(m_connection.get())})
        hasChanged |= (event->response_type & 0x7f) == XCB_MAPPING_NOTIFY;
    if (hasChanged)
        m_map = KeyboardMap::read(m_connection);
    return *m_map;
}

} // namespace tavrin
