#include "platform/linux/x11/X11Windows.h"

#include "platform/linux/x11/X11Programs.h"

#include <QSysInfo>

#include <algorithm>
#include <iterator>
#include <poll.h>

namespace tavrin {

xcb_window_t X11Windows::active() const
{
    if (!m_connection.isOpen())
        return XCB_WINDOW_NONE;
    if (isManaged())
        return m_connection.number(m_connection.root(), m_connection.atom("_NET_ACTIVE_WINDOW"));
    const XcbPointer<xcb_get_input_focus_reply_t> focus(xcb_get_input_focus_reply(
        m_connection.get(), xcb_get_input_focus(m_connection.get()), nullptr));
    return focus && focus->focus > XCB_INPUT_FOCUS_POINTER_ROOT ? focus->focus
                                                                : xcb_window_t{XCB_WINDOW_NONE};
}

X11Windows::Owner X11Windows::owner(xcb_window_t window) const
{
    Owner owner;
    if (!m_connection.isOpen())
        return owner;
    owner.processIdentifier = processOf(window);
    const QList<QByteArray> parts = m_connection.bytes(window, XCB_ATOM_WM_CLASS).split('\0');
    owner.instance = QString::fromUtf8(parts.value(0));
    owner.className = QString::fromUtf8(parts.value(1));
    return owner;
}

qint64 X11Windows::processOf(xcb_window_t window) const
{
    if (!m_connection.isOpen() || window <= XCB_INPUT_FOCUS_POINTER_ROOT)
        return 0;
    if (const qint64 process = tavrin::processOf(m_connection, window); process > 0)
        return process;
    const QByteArray machine =
        m_connection.bytes(window, XCB_ATOM_WM_CLIENT_MACHINE).split('\0').value(0);
    if (machine != QSysInfo::machineHostName().toUtf8())
        return 0;
    return m_connection.number(window, m_connection.atom("_NET_WM_PID"));
}

bool X11Windows::isWithin(xcb_window_t inner, xcb_window_t outer) const
{
    while (m_connection.isOpen() && inner != outer && inner > XCB_INPUT_FOCUS_POINTER_ROOT) {
        const XcbPointer<xcb_query_tree_reply_t> tree(xcb_query_tree_reply(
            m_connection.get(), xcb_query_tree(m_connection.get(), inner), nullptr));
        inner = tree ? tree->parent : xcb_window_t{XCB_WINDOW_NONE};
    }
    return inner == outer && outer != XCB_WINDOW_NONE;
}

QString X11Windows::title(xcb_window_t window) const
{
    if (!m_connection.isOpen())
        return {};
    return QString::fromUtf8(m_connection.bytes(window, m_connection.atom("_NET_WM_NAME")));
}

bool X11Windows::exists(xcb_window_t window) const
{
    if (!m_connection.isOpen() || window == XCB_WINDOW_NONE)
        return false;
    const XcbPointer<xcb_get_window_attributes_reply_t> attributes(xcb_get_window_attributes_reply(
        m_connection.get(), xcb_get_window_attributes(m_connection.get(), window), nullptr));
    return attributes != nullptr;
}

xcb_window_t X11Windows::topmostOf(qint64 processIdentifier) const
{
    if (!m_connection.isOpen() || processIdentifier <= 0)
        return XCB_WINDOW_NONE;
    const auto windows =
        m_connection.numbers(m_connection.root(), m_connection.atom("_NET_CLIENT_LIST_STACKING"));
    const auto found = std::find_if(windows.rbegin(), windows.rend(),
        [&](xcb_window_t window) { return processOf(window) == processIdentifier; });
    return found == windows.rend() ? xcb_window_t{XCB_WINDOW_NONE} : *found;
}

QList<xcb_window_t> X11Windows::ofPrograms() const
{
    QList<xcb_window_t> windows;
    if (!m_connection.isOpen())
        return windows;
    const auto stacking =
        m_connection.numbers(m_connection.root(), m_connection.atom("_NET_CLIENT_LIST_STACKING"));
    std::copy_if(stacking.rbegin(), stacking.rend(), std::back_inserter(windows),
        [this](xcb_window_t window) { return !isPartOfDesktop(window); });
    return windows;
}

bool X11Windows::isPartOfDesktop(xcb_window_t window) const
{
    const auto types = m_connection.numbers(window, m_connection.atom("_NET_WM_WINDOW_TYPE"));
    return types.contains(m_connection.atom("_NET_WM_WINDOW_TYPE_DOCK"))
        || types.contains(m_connection.atom("_NET_WM_WINDOW_TYPE_DESKTOP"));
}

void X11Windows::requestActivation(xcb_window_t window) const
{
    if (!m_connection.isOpen())
        return;
    if (isManaged()) {
        constexpr quint32 sourceIsSwitcher = 2;
        m_connection.sendToManager(window, m_connection.atom("_NET_ACTIVE_WINDOW"),
            {sourceIsSwitcher, XCB_CURRENT_TIME, active(), 0, 0});
        return;
    }
    const quint32 above = XCB_STACK_MODE_ABOVE;
    xcb_map_window(m_connection.get(), window);
    xcb_configure_window(m_connection.get(), window, XCB_CONFIG_WINDOW_STACK_MODE, &above);
    xcb_set_input_focus(m_connection.get(), XCB_INPUT_FOCUS_POINTER_ROOT, window, XCB_CURRENT_TIME);
    xcb_flush(m_connection.get());
}

std::optional<QPoint> X11Windows::middleOf(xcb_window_t window) const
{
    if (!m_connection.isOpen() || window == XCB_WINDOW_NONE)
        return std::nullopt;
    const XcbPointer<xcb_get_geometry_reply_t> geometry(xcb_get_geometry_reply(
        m_connection.get(), xcb_get_geometry(m_connection.get(), window), nullptr));
    if (!geometry)
        return std::nullopt;
    // Its place is told relative to the frame that the window manager put around it.
    const XcbPointer<xcb_translate_coordinates_reply_t> middle(xcb_translate_coordinates_reply(
        m_connection.get(),
        xcb_translate_coordinates(m_connection.get(), window, m_connection.root(),
            static_cast<qint16>(geometry->width / 2), static_cast<qint16>(geometry->height / 2)),
        nullptr));
    return middle ? std::optional(QPoint(middle->dst_x, middle->dst_y)) : std::nullopt;
}

bool X11Windows::isCompositing() const
{
    if (!m_connection.isOpen())
        return false;
    const XcbPointer<xcb_get_selection_owner_reply_t> compositor(xcb_get_selection_owner_reply(
        m_connection.get(),
        xcb_get_selection_owner(m_connection.get(), m_connection.atom("_NET_WM_CM_S0")), nullptr));
    return compositor && compositor->owner != XCB_WINDOW_NONE;
}

bool X11Windows::waitUntilActive(xcb_window_t window, std::chrono::milliseconds patience) const
{
    using Clock = std::chrono::steady_clock;
    if (!m_connection.isOpen())
        return false;
    const quint32 interest = XCB_EVENT_MASK_PROPERTY_CHANGE;
    const quint32 none = XCB_EVENT_MASK_NO_EVENT;
    const auto listen = [this](const quint32& mask) {
        xcb_change_window_attributes(
            m_connection.get(), m_connection.root(), XCB_CW_EVENT_MASK, &mask);
        xcb_flush(m_connection.get());
    };
    const auto end = Clock::now() + patience;
    listen(interest);
    bool inFront = active() == window;
    while (!inFront && m_connection.isOpen()) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now());
        if (left.count() <= 0)
            break;
        // An answer may have brought the notice along unseen: look again soon in any case.
        const auto pause = std::min(left, std::chrono::milliseconds(20));
        pollfd changes{xcb_get_file_descriptor(m_connection.get()), POLLIN, 0};
        ::poll(&changes, 1, static_cast<int>(pause.count()));
        m_connection.discardEvents();
        inFront = active() == window;
    }
    listen(none);
    m_connection.discardEvents();
    return inFront;
}

bool X11Windows::isManaged() const
{
    return m_connection.number(m_connection.root(), m_connection.atom("_NET_SUPPORTING_WM_CHECK"))
        != XCB_WINDOW_NONE;
}

} // namespace tavrin
