#include "platform/linux/atspi/AtspiConnection.h"

#include "base/Log.h"
#include "platform/linux/atspi/Libatspi.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>

#include <unistd.h>
#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tavrin {

using namespace libatspi;

namespace {

const QString properties = u"org.freedesktop.DBus.Properties"_s;
constexpr int callTimeoutMilliseconds = 300; // Below AtspiWorker::patience.
constexpr auto slowCall = 280ms; // A call that took this long has run into the time-out.
constexpr auto hungProgramPause = 2s;

/// An element and its process, on their way from the worker.
struct Found {
    GObjectHandle<AtspiAccessible> element;
    unsigned process = 0;
};

/// A call to the accessibility service of the session.
QDBusMessage callBus(
    const QString& interface, const QString& method, const QVariantList& arguments = {})
{
    QDBusMessage call =
        QDBusMessage::createMethodCall(u"org.a11y.Bus"_s, u"/org/a11y/bus"_s, interface, method);
    call.setArguments(arguments);
    return QDBusConnection::sessionBus().call(call, QDBus::Block, callTimeoutMilliseconds);
}

bool isBusThere()
{
    return callBus(u"org.a11y.Bus"_s, u"GetAddress"_s).type() == QDBusMessage::ReplyMessage;
}

bool isAccessibilityEnabled()
{
    const QVariant answer =
        callBus(properties, u"Get"_s, {u"org.a11y.Status"_s, u"IsEnabled"_s}).arguments().value(0);
    return answer.value<QDBusVariant>().variant().toBool();
}

void enableAccessibility()
{
    callBus(properties, u"Set"_s,
        {u"org.a11y.Status"_s, u"IsEnabled"_s, QVariant::fromValue(QDBusVariant(true))});
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
    wasTried = true;
    if (focus || !isBusThere())
        return;
    if (atspi_init() > 1) {
        qCWarning(log::platform) << "The accessibility bus refuses the connection";
        return;
    }
    atspi_set_timeout(callTimeoutMilliseconds, callTimeoutMilliseconds);
    focus = std::make_unique<AtspiFocus>();
}

void AtspiConnection::Bus::connectFirst()
{
    if (!wasTried)
        connect();
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

AtspiConnection::AtspiConnection(Seconds startPause)
    : m_bus(std::make_shared<Bus>())
    , m_worker([bus = m_bus] {
        bus->text.clear();
        bus->focus.reset();
    })
{
    m_worker.postAfter(startPause, [bus = m_bus] { bus->connectFirst(); });
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
            bus->connectFirst();
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

std::optional<QSet<qint64>> AtspiConnection::processesOnBus()
{
    using Answer = std::optional<QSet<qint64>>;
    return m_worker
        .ask<Answer>([bus = m_bus]() -> Answer {
            bus->connectFirst();
            return bus->focus ? Answer(AtspiFocus::processesOnBus()) : std::nullopt;
        })
        .value_or(std::nullopt);
}

ElementHandle AtspiConnection::retain(const AtspiElement& element)
{
    return std::make_unique<AtspiElement>(m_worker, element.accessible(), element.process());
}

} // namespace tavrin
