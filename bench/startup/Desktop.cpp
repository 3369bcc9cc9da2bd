#include "Desktop.h"

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <optional>
#include <poll.h>
#include <stdexcept>
#include <vector>

namespace bench {

namespace {

constexpr auto patience = std::chrono::seconds(10);
constexpr unsigned iconSize = 22;
constexpr long requestDock = 0; ///< SYSTEM_TRAY_REQUEST_DOCK
constexpr long embeddedNotify = 0; ///< XEMBED_EMBEDDED_NOTIFY

int ignoreVanishedWindows(Display* /*display*/, XErrorEvent* /*error*/)
{
    return 0;
}

} // namespace

struct Desktop::Connection {
    Display* display = XOpenDisplay(nullptr);
    Window root = None;
    Window panel = None;
    Window icon = None;
    Atom clientList = None;
    Atom processId = None;
    Atom trayMessage = None;
    Atom embedMessage = None;

    [[nodiscard]] Atom atom(const char* name) const { return XInternAtom(display, name, False); }

    [[nodiscard]] std::vector<unsigned long> numbers(Window window, Atom property, Atom type) const
    {
        constexpr long mostItems = 1024;
        Atom actualType = None;
        int format = 0;
        unsigned long count = 0;
        unsigned long remaining = 0;
        unsigned char* data = nullptr;
        if (XGetWindowProperty(display, window, property, 0, mostItems, False, type, &actualType,
                &format, &count, &remaining, &data)
            != Success)
            return {};
        std::vector<unsigned long> values;
        if (actualType == type && format == 32) {
            const auto* items = reinterpret_cast<const unsigned long*>(data);
            values.assign(items, items + count);
        }
        if (data != nullptr)
            XFree(data);
        return values;
    }

    [[nodiscard]] bool lists(pid_t pid) const
    {
        for (const Window window : numbers(root, clientList, XA_WINDOW)) {
            const auto owner = numbers(window, processId, XA_CARDINAL);
            XWindowAttributes attributes{};
            if (!owner.empty() && owner.front() == static_cast<unsigned long>(pid)
                && XGetWindowAttributes(display, window, &attributes) != 0
                && attributes.map_state == IsViewable)
                return true;
        }
        return false;
    }

    /// Takes a status item in, as a panel does.
    void dock(Window item)
    {
        icon = item;
        XSelectInput(display, icon, StructureNotifyMask);
        XReparentWindow(display, icon, panel, 0, 0);
        XResizeWindow(display, icon, iconSize, iconSize);
        XEvent message{};
        message.xclient.type = ClientMessage;
        message.xclient.window = icon;
        message.xclient.message_type = embedMessage;
        message.xclient.format = 32;
        message.xclient.data.l[1] = embeddedNotify;
        message.xclient.data.l[3] = static_cast<long>(panel);
        XSendEvent(display, icon, False, NoEventMask, &message);
        XMapWindow(display, icon);
    }

    /// Waits for an event, at most until @p deadline.
    void next(XEvent& event, Moment deadline) const
    {
        while (XPending(display) == 0) {
            const auto left = std::chrono::ceil<std::chrono::milliseconds>(
                deadline - std::chrono::steady_clock::now());
            pollfd readable{ConnectionNumber(display), POLLIN, 0};
            if (left.count() <= 0 || poll(&readable, 1, static_cast<int>(left.count())) == 0)
                throw std::runtime_error("the program showed no status item and window in time");
        }
        XNextEvent(display, &event);
    }
};

Desktop::Desktop()
    : m_connection(std::make_unique<Connection>())
{
    auto& c = *m_connection;
    if (c.display == nullptr)
        throw std::runtime_error("no X display; use bench/startup/run");
    XSetErrorHandler(ignoreVanishedWindows);
    c.root = XDefaultRootWindow(c.display);
    c.clientList = c.atom("_NET_CLIENT_LIST");
    c.processId = c.atom("_NET_WM_PID");
    c.trayMessage = c.atom("_NET_SYSTEM_TRAY_OPCODE");
    c.embedMessage = c.atom("_XEMBED");

    const Atom place = c.atom("_NET_SYSTEM_TRAY_S0");
    if (XGetSelectionOwner(c.display, place) != None)
        throw std::runtime_error("another panel takes the status items");
    XSetWindowAttributes attributes{};
    attributes.override_redirect = True;
    c.panel = XCreateWindow(c.display, c.root, 0, 0, iconSize, iconSize, 0, CopyFromParent,
        InputOutput, nullptr, CWOverrideRedirect, &attributes);
    XSetSelectionOwner(c.display, place, c.panel, CurrentTime);
    XMapWindow(c.display, c.panel);
    XSelectInput(c.display, c.root, PropertyChangeMask);
    XSync(c.display, False);
}

Desktop::~Desktop()
{
    XCloseDisplay(m_connection->display);
}

Appearance Desktop::awaitAppearance(pid_t pid)
{
    auto& c = *m_connection;
    const Moment deadline = std::chrono::steady_clock::now() + patience;
    std::optional<Moment> statusItem;
    std::optional<Moment> window;
    c.icon = None;
    while (!statusItem || !window) {
        XEvent event{};
        c.next(event, deadline);
        const Moment now = std::chrono::steady_clock::now();
        if (event.type == ClientMessage && event.xclient.message_type == c.trayMessage
            && event.xclient.data.l[1] == requestDock)
            c.dock(static_cast<Window>(event.xclient.data.l[2]));
        else if (event.type == MapNotify && event.xmap.window == c.icon && !statusItem)
            statusItem = now;
        else if (event.type == PropertyNotify && event.xproperty.atom == c.clientList && !window
            && c.lists(pid))
            window = now;
    }
    return {*statusItem, *window};
}

} // namespace bench
