#include "platform/linux/x11/LocalKeyFilter.h"

#include <QCoreApplication>

#include <array>
#include <utility>

namespace tavrin {
namespace {

/// The modifiers that were down before the event, by the state that it carries.
KeyModifiers modifiersBefore(quint16 state)
{
    constexpr std::array<std::pair<unsigned, KeyModifier>, 5> masks{{
        {XCB_MOD_MASK_SHIFT, KeyModifier::Shift},
        {XCB_MOD_MASK_CONTROL, KeyModifier::Control},
        {XCB_MOD_MASK_1, KeyModifier::Option},
        {XCB_MOD_MASK_5, KeyModifier::Option}, // The right Alt of layouts with a third level.
        {XCB_MOD_MASK_4, KeyModifier::Command},
    }};
    KeyModifiers modifiers;
    for (const auto& [mask, modifier] : masks) {
        if ((state & mask) != 0)
            modifiers |= modifier;
    }
    return modifiers;
}

} // namespace

LocalKeyFilter::LocalKeyFilter(KeyMonitor::LocalHandler handler)
    : m_handler(std::move(handler))
    , m_map(KeyboardMap::read(m_connection))
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
    case XCB_MAPPING_NOTIFY:
        m_mapChanged = true;
        return false;
    case XCB_FOCUS_OUT: // What is released elsewhere is not reported here.
        m_tracker = KeyTracker();
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
    if (std::exchange(m_mapChanged, false))
        m_map = KeyboardMap::read(m_connection);
    m_connection.discardEvents();
    const KeyRole role = keyRole(m_map, event.detail);
    std::optional<KeyEvent> key;
    if (press)
        key = m_tracker.pressed(role, event.detail);
    else
        key = m_tracker.released(role, event.detail);
    // A key that repeats comes up and goes down again in the same moment.
    const std::pair stroke{event.detail, event.time};
    if (!press)
        m_lastRelease = stroke;
    else if (m_lastRelease == stroke)
        key->isRepeat = true;
    if (!key)
        return false;
    // Keys that went down before the window had the keyboard are known by the state alone.
    KeyModifiers others = modifiersBefore(event.state);
    if (role.modifier)
        others &= ~KeyModifiers(*role.modifier);
    key->modifiers |= others;
    return m_handler(*key);
}

} // namespace tavrin
