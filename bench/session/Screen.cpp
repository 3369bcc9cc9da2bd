#include "Screen.h"

#include "Report.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>
#include <algorithm>
#include <glib-unix.h>
#include <map>
#include <stdexcept>
#include <utility>

namespace bench {

namespace {

constexpr unsigned questionInterval = 5; // Milliseconds.
constexpr unsigned lookInterval = 1; // Milliseconds.
constexpr double patience = 5; // Seconds until a place is not expected to change any more.

int ignoreVanishedWindows(Display* /*display*/, XErrorEvent* /*error*/)
{
    return 0;
}

} // namespace

struct Screen::Connection {
    Display* display = XOpenDisplay(nullptr);
    Window root = None;
    Atom protocols = None;
    Atom ping = None;
    Window window = None; ///< Of the program that is asked.
    int x = 0;
    int y = 0;
    unsigned long colour = 0; ///< Of the place when the key was pressed.
    double pressedAt = 0;
    guint asking = 0; ///< Sources of the main loop; 0 for none.
    guint looking = 0;
    unsigned long lastQuestion = 0;
    std::map<unsigned long, double> unanswered; ///< Question and when it was asked.
    double lastAskedAt = 0;
    Waits longest; ///< Milliseconds.

    [[nodiscard]] unsigned long lookAtPlace() const
    {
        XImage* image = XGetImage(display, root, x, y, 1, 1, AllPlanes, ZPixmap);
        if (image == nullptr)
            return 0;
        const unsigned long pixel = XGetPixel(image, 0, 0);
        XDestroyImage(image);
        return pixel;
    }

    void ask()
    {
        XEvent event{};
        event.xclient.type = ClientMessage;
        event.xclient.window = window;
        event.xclient.message_type = protocols;
        event.xclient.format = 32;
        event.xclient.data.l[0] = static_cast<long>(ping);
        event.xclient.data.l[1] = static_cast<long>(++lastQuestion);
        event.xclient.data.l[2] = static_cast<long>(window);
        const double askedAt = now();
        if (lastAskedAt > 0)
            longest.machine =
                std::max(longest.machine, (askedAt - lastAskedAt) * 1000 - questionInterval);
        lastAskedAt = askedAt;
        unanswered[lastQuestion] = askedAt;
        XSendEvent(display, window, False, NoEventMask, &event);
        XFlush(display);
        handleEvents(); // Replies to other requests may have brought events along.
    }

    void handleEvents()
    {
        while (XPending(display) > 0) {
            XEvent event{};
            XNextEvent(display, &event);
            if (event.type == ClientMessage && event.xclient.message_type == protocols
                && static_cast<Atom>(event.xclient.data.l[0]) == ping)
                answered(static_cast<unsigned long>(event.xclient.data.l[1]));
        }
    }

    void answered(unsigned long question)
    {
        const auto found = unanswered.find(question);
        if (found == unanswered.end())
            return;
        longest.program = std::max(longest.program, (now() - found->second) * 1000);
        unanswered.erase(found);
    }

    /// Whether to go on looking.
    bool look()
    {
        if (lookAtPlace() != colour)
            report("changed");
        else if (now() - pressedAt < patience)
            return true;
        looking = 0;
        return false;
    }
};

Screen::Screen()
    : m_connection(std::make_unique<Connection>())
{
    Connection& c = *m_connection;
    if (c.display == nullptr)
        throw std::runtime_error("no display");
    XSetErrorHandler(ignoreVanishedWindows);
    c.root = DefaultRootWindow(c.display);
    c.protocols = XInternAtom(c.display, "WM_PROTOCOLS", False);
    c.ping = XInternAtom(c.display, "_NET_WM_PING", False);
    // Answers go to the root: by the rules to the first kind of listener, by Qt 6 to the second.
    XSelectInput(c.display, c.root, SubstructureNotifyMask | StructureNotifyMask);
    g_unix_fd_add(
        ConnectionNumber(c.display), G_IO_IN,
        [](gint, GIOCondition, gpointer connection) -> gboolean {
            static_cast<Connection*>(connection)->handleEvents();
            return G_SOURCE_CONTINUE;
        },
        &c);
}

Screen::~Screen()
{
    XCloseDisplay(m_connection->display);
}

void Screen::watch(unsigned long window, int x, int y)
{
    Connection& c = *m_connection;
    c.window = window;
    c.x = x;
    c.y = y;
    if (c.asking != 0)
        return;
    c.asking = g_timeout_add(
        questionInterval,
        [](gpointer connection) -> gboolean {
            static_cast<Connection*>(connection)->ask();
            return G_SOURCE_CONTINUE;
        },
        &c);
}

void Screen::press(const std::vector<unsigned>& codes)
{
    Connection& c = *m_connection;
    c.colour = c.lookAtPlace();
    report("pressed");
    c.pressedAt = now();
    for (const unsigned code : codes)
        XTestFakeKeyEvent(c.display, code, True, CurrentTime);
    std::for_each(codes.rbegin(), codes.rend(),
        [&c](unsigned code) { XTestFakeKeyEvent(c.display, code, False, CurrentTime); });
    XFlush(c.display);
    if (c.looking != 0)
        return;
    c.looking = g_timeout_add(
        lookInterval,
        [](gpointer connection) -> gboolean {
            return static_cast<Connection*>(connection)->look() ? G_SOURCE_CONTINUE
                                                                : G_SOURCE_REMOVE;
        },
        &c);
}

Screen::Waits Screen::longestWaits()
{
    Connection& c = *m_connection;
    // A question that is still open has waited until now at least.
    for (const auto& [question, askedAt] : c.unanswered)
        c.longest.program = std::max(c.longest.program, (now() - askedAt) * 1000);
    return std::exchange(c.longest, {});
}

} // namespace bench
