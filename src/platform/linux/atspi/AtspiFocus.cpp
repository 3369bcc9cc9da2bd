#include "platform/linux/atspi/AtspiFocus.h"

#include "platform/linux/atspi/AtspiRoles.h"
#include "platform/linux/atspi/Libatspi.h"

#include <algorithm>
#include <chrono>
#include <utility>

using namespace std::chrono_literals;

namespace tavrin {

using namespace libatspi;

namespace {

using Handle = GObjectHandle<AtspiAccessible>;

// Limits of a search: far above what editors need, far below what a hostile tree can cost.
constexpr int mostNodes = 4000;
constexpr int deepestLevel = 60;
constexpr int mostChildren = 300;
constexpr int mostApplications = 500;
constexpr auto longestSearch = 350ms;
constexpr std::size_t mostRememberedPrograms = 64;

/// A depth-first search for the element that has the focus.
class FocusSearch {
public:
    /// The first focused element with text wins. One without text is remembered and serves when
    /// nothing better turns up: viewports and page tabs report the focus falsely.
    Handle run(AtspiAccessible* application)
    {
        for (const bool active : {true, false}) {
            const int windows = childCount(application);
            for (int i = 0; i < windows; ++i) {
                const Handle window(atspi_accessible_get_child_at_index(application, i, nullptr));
                if (!window || hasState(window.get(), ATSPI_STATE_ACTIVE) != active)
                    continue;
                if (Handle found = find(window.get(), 1))
                    return found;
            }
        }
        return std::move(m_withoutText);
    }

private:
    static int childCount(AtspiAccessible* element)
    {
        return std::min(atspi_accessible_get_child_count(element, nullptr), mostChildren);
    }

    Handle find(AtspiAccessible* element, int level)
    {
        if (level > deepestLevel || ++m_nodes > mostNodes
            || std::chrono::steady_clock::now() > m_end)
            return nullptr;
        const bool focused = hasState(element, ATSPI_STATE_FOCUSED);
        if (focused && hasText(element))
            return retained(element);
        if (!focused && isSkippedInFocusSearch(atspi_accessible_get_role(element, nullptr)))
            return nullptr;
        if (Handle found = findBelow(element, level))
            return found;
        if (focused && !m_withoutText)
            m_withoutText = retained(element);
        return nullptr;
    }

    Handle findBelow(AtspiAccessible* element, int level)
    {
        const int children = childCount(element);
        for (int i = 0; i < children; ++i) {
            const Handle child(atspi_accessible_get_child_at_index(element, i, nullptr));
            if (!child)
                continue;
            if (Handle found = find(child.get(), level + 1))
                return found;
        }
        return nullptr;
    }

    int m_nodes = 0;
    std::chrono::steady_clock::time_point m_end = std::chrono::steady_clock::now() + longestSearch;
    Handle m_withoutText;
};

/// Calls @p visit with the root of each program on the bus and its process, until it returns true.
template <class Visit>
void visitApplications(Visit visit)
{
    const Handle desktop(atspi_get_desktop(0));
    if (!desktop)
        return;
    const int applications =
        std::min(atspi_accessible_get_child_count(desktop.get(), nullptr), mostApplications);
    for (int i = 0; i < applications; ++i) {
        Handle application(atspi_accessible_get_child_at_index(desktop.get(), i, nullptr));
        if (!application)
            continue;
        // The bus itself knows the process; the program is not asked and may hang.
        const unsigned process = atspi_accessible_get_process_id(application.get(), nullptr);
        if (visit(std::move(application), process))
            return;
    }
}

/// The program's root on the bus; null when it is not there.
Handle applicationOf(unsigned processIdentifier)
{
    Handle found;
    visitApplications([&](Handle application, unsigned process) {
        if (process == processIdentifier)
            found = std::move(application);
        return found != nullptr;
    });
    return found;
}

} // namespace

bool hasState(AtspiAccessible* element, AtspiStateType state)
{
    const GObjectHandle<AtspiStateSet> states(atspi_accessible_get_state_set(element));
    return states && atspi_state_set_contains(states.get(), state);
}

bool hasText(AtspiAccessible* element)
{
    return GObjectHandle<AtspiText>(atspi_accessible_get_text_iface(element)) != nullptr;
}

AtspiFocus::AtspiFocus()
    : m_listener(atspi_event_listener_new(onEvent, this, nullptr))
{
    atspi_event_listener_register(m_listener, "object:state-changed:focused", nullptr);
}

AtspiFocus::~AtspiFocus()
{
    atspi_event_listener_deregister(m_listener, "object:state-changed:focused", nullptr);
    g_object_unref(m_listener);
}

GObjectHandle<AtspiAccessible> AtspiFocus::focusedElement(unsigned processIdentifier)
{
    const auto known = m_focused.find(processIdentifier);
    if (known != m_focused.end() && hasState(known->second.get(), ATSPI_STATE_FOCUSED))
        return retained(known->second.get());
    const Handle application = applicationOf(processIdentifier);
    if (!application)
        return nullptr;
    Handle found = FocusSearch().run(application.get());
    if (found)
        remember(found.get());
    return found;
}

GObjectHandle<AtspiAccessible> AtspiFocus::activeWindow(unsigned processIdentifier)
{
    const Handle application = applicationOf(processIdentifier);
    if (!application)
        return nullptr;
    const int windows =
        std::min(atspi_accessible_get_child_count(application.get(), nullptr), mostChildren);
    for (int i = 0; i < windows; ++i) {
        Handle window(atspi_accessible_get_child_at_index(application.get(), i, nullptr));
        if (window && hasState(window.get(), ATSPI_STATE_ACTIVE))
            return window;
    }
    return nullptr;
}

QSet<qint64> AtspiFocus::processesOnBus()
{
    QSet<qint64> processes;
    visitApplications([&](const Handle& /*application*/, unsigned process) {
        processes.insert(process);
        return false;
    });
    return processes;
}

void AtspiFocus::onEvent(AtspiEvent* event, void* self)
{
    const bool gained = event->detail1 != 0;
    if (gained && event->source && hasText(event->source))
        static_cast<AtspiFocus*>(self)->remember(event->source);
    g_boxed_free(ATSPI_TYPE_EVENT, event);
}

void AtspiFocus::remember(AtspiAccessible* element)
{
    const unsigned process = atspi_accessible_get_process_id(element, nullptr);
    if (process == 0)
        return;
    if (m_focused.size() >= mostRememberedPrograms && !m_focused.contains(process))
        m_focused.clear(); // Programs come and go; what is still wanted is found again.
    m_focused[process] = retained(element);
    m_lastProcess = process;
}

} // namespace tavrin
