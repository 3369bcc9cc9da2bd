#include "platform/linux/atspi/AtspiConnection.h"

#include "base/Log.h"

#include <gio/gio.h>
#include <unistd.h>
#include <utility>

using namespace std::chrono_literals;

namespace tavrin {
namespace {

constexpr int callTimeoutMilliseconds = 300; // Below AtspiWorker::patience.
constexpr auto slowCall = 280ms; // A call that took this long has run into the time-out.
constexpr auto hungProgramPause = 2s;

/// An element and its process, on their way from the worker.
struct Found {
    GObjectHandle<AtspiAccessible> element;
    unsigned process = 0;
};

/// A call to the accessibility service of the session; null when it does not answer.
GVariant* callBus(const char* interface, const char* method, GVariant* arguments)
{
    GObjectHandle<GDBusConnection> session(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
    if (!session) {
        g_variant_unref(g_variant_ref_sink(arguments));
        return nullptr;
    }
    // A bus that goes away ends this connection, not the program.
    g_dbus_connection_set_exit_on_close(session.get(), FALSE);
    return g_dbus_connection_call_sync(session.get(), "org.a11y.Bus", "/org/a11y/bus", interface,
        method, arguments, nullptr, G_DBUS_CALL_FLAGS_NONE, callTimeoutMilliseconds, nullptr,
        nullptr);
}

bool isBusThere()
{
    GVariant* const address = callBus("org.a11y.Bus", "GetAddress", g_variant_new("()"));
    if (!address)
        return false;
    g_variant_unref(address);
    return true;
}

bool isAccessibilityEnabled()
{
    GVariant* const answer = callBus("org.freedesktop.DBus.Properties", "Get",
        g_variant_new("(ss)", "org.a11y.Status", "IsEnabled"));
    if (!answer)
        return false;
    GVariant* value = nullptr;
    g_variant_get(answer, "(v)", &value);
    const bool enabled =
        g_variant_is_of_type(value, G_VARIANT_TYPE_BOOLEAN) && g_variant_get_boolean(value);
    g_variant_unref(value);
    g_variant_unref(answer);
    return enabled;
}

void enableAccessibility()
{
    GVariant* const answer = callBus("org.freedesktop.DBus.Properties", "Set",
        g_variant_new("(ssv)", "org.a11y.Status", "IsEnabled", g_variant_new_boolean(TRUE)));
    if (answer)
        g_variant_unref(answer);
}

} // namespace

AtspiElement::AtspiElement(
    AtspiWorker& worker, std::shared_ptr<AtspiAccessible> accessible, unsigned process)
    : m_worker(worker)
    , m_accessible(std::move(accessible))
    , m_process(process)
{
}

AtspiElement::~AtspiElement()
{
    m_worker.post([accessible = std::move(m_accessible)] {});
}

void AtspiConnection::Bus::connect()
{
    if (focus || !isBusThere())
        return;
    if (atspi_init() > 1) {
        qCWarning(log::platform) << "The accessibility bus refuses the connection";
        return;
    }
    atspi_set_timeout(callTimeoutMilliseconds, callTimeoutMilliseconds);
    focus = std::make_unique<AtspiFocus>();
}

bool AtspiConnection::Bus::mayBeAsked(unsigned process) const
{
    if (process == static_cast<unsigned>(::getpid()))
        return false;
    const auto entry = hungUntil.find(process);
    return entry == hungUntil.end() || entry->second <= std::chrono::steady_clock::now();
}

void AtspiConnection::Bus::noteAnswer(unsigned process, std::chrono::steady_clock::time_point start)
{
    const auto now = std::chrono::steady_clock::now();
    if (now - start > slowCall)
        hungUntil[process] = now + hungProgramPause;
    else
        hungUntil.erase(process);
}

AtspiConnection::AtspiConnection()
    : m_bus(std::make_shared<Bus>())
    , m_worker([bus = m_bus] { bus->connect(); },
          [bus = m_bus] {
              bus->text.clear();
              bus->focus.reset();
          })
{
}

bool AtspiConnection::isEnabled()
{
    return m_worker
        .ask<bool>([bus = m_bus] {
            bus->connect();
            return bus->focus && isAccessibilityEnabled();
        })
        .value_or(false);
}

void AtspiConnection::enable()
{
    m_worker.post([] { enableAccessibility(); });
}

ElementHandle AtspiConnection::find(std::optional<unsigned> process, Find find)
{
    std::optional<Found> found =
        m_worker.ask<Found>([bus = m_bus, process, find = std::move(find)] {
            Found result;
            const unsigned asked = process.value_or(bus->focus ? bus->focus->lastProcess() : 0);
            if (!bus->focus || asked == 0 || !bus->mayBeAsked(asked))
                return result;
            const auto start = std::chrono::steady_clock::now();
            result.element = find(*bus->focus, asked);
            if (result.element)
                result.process = atspi_accessible_get_process_id(result.element.get(), nullptr);
            bus->noteAnswer(asked, start);
            return result;
        });
    if (!found || !found->element)
        return nullptr;
    return std::make_unique<AtspiElement>(m_worker, std::move(found->element), found->process);
}

ElementHandle AtspiConnection::retain(const AtspiElement& element)
{
    return std::make_unique<AtspiElement>(m_worker, element.accessible(), element.process());
}

} // namespace tavrin
