#include "platform/linux/process/SingleInstance.h"

#include "base/Log.h"

#include <QDBusMessage>
#include <QDBusReply>

namespace tavrin {
namespace {

const QString busName = QStringLiteral("app.tavrin.Tavrin");
const QString objectPath = QStringLiteral("/app/tavrin/Tavrin");
const QString interfaceName = QStringLiteral("org.freedesktop.Application");

constexpr int patience = 2000; // Milliseconds.

} // namespace

SingleInstance::SingleInstance(QDBusConnection bus)
    : m_bus(std::move(bus))
    , m_first(claimName())
{
}

SingleInstance::~SingleInstance()
{
    if (m_bus.isConnected())
        m_bus.unregisterObject(objectPath);
}

bool SingleInstance::activateFirst() const
{
    QDBusMessage call = QDBusMessage::createMethodCall(
        busName, objectPath, interfaceName, QStringLiteral("Activate"));
    call.setAutoStartService(false);
    call << QVariantMap{};
    return m_bus.call(call, QDBus::Block, patience).type() == QDBusMessage::ReplyMessage;
}

void SingleInstance::setActivated(std::function<void()> activated)
{
    m_activated = std::move(activated);
    if (std::exchange(m_asked, false))
        m_activated();
}

void SingleInstance::Activate(const QVariantMap& /*platformData*/)
{
    if (m_activated)
        m_activated();
    else
        m_asked = true;
}

bool SingleInstance::claimName()
{
    if (!m_bus.isConnected()) {
        qCInfo(log::platform) << "There is no session bus; a second start will not be noticed.";
        return true;
    }
    // The object first: whoever finds the name taken asks it at once.
    m_bus.registerObject(objectPath, this, QDBusConnection::ExportAllSlots);
    QDBusMessage call = QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.DBus"),
        QStringLiteral("/org/freedesktop/DBus"), QStringLiteral("org.freedesktop.DBus"),
        QStringLiteral("RequestName"));
    constexpr quint32 doNotQueue = 4;
    constexpr quint32 takenByAnother = 3;
    call << busName << doNotQueue;
    const QDBusReply<quint32> answer = m_bus.call(call, QDBus::Block, patience);
    return !answer.isValid() || answer.value() != takenByAnother;
}

} // namespace tavrin
