#include "platform/linux/desktop/ReducedMotion.h"

#include "base/Log.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

namespace tavrin {
namespace {

const QString service = QStringLiteral("org.freedesktop.portal.Desktop");
const QString path = QStringLiteral("/org/freedesktop/portal/desktop");
const QString interface = QStringLiteral("org.freedesktop.portal.Settings");
const QString animationGroup = QStringLiteral("org.gnome.desktop.interface");
const QString animationKey = QStringLiteral("enable-animations");

/// The portal packs a value once or twice, depending on its age.
QVariant unpacked(QVariant value)
{
    while (value.canConvert<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value;
}

} // namespace

void ReducedMotion::follow()
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return;
    // A slot's parameters are looked up by name, and this one is known after the first message
    // only.
    qRegisterMetaType<QDBusVariant>("QDBusVariant");
    if (!bus.connect(service, path, interface, QStringLiteral("SettingChanged"), this,
            SLOT(settingChanged(QString, QString, QDBusVariant))))
        qCWarning(log::platform) << "Changes of the desktop's settings are not heard of";
    ask();
}

void ReducedMotion::settingChanged(
    const QString& group, const QString& key, const QDBusVariant& value)
{
    if (group != animationGroup || key != animationKey)
        return;
    m_preferred = !unpacked(value.variant()).toBool();
    m_isTold = true;
}

void ReducedMotion::ask()
{
    QDBusMessage call =
        QDBusMessage::createMethodCall(service, path, interface, QStringLiteral("Read"));
    call.setAutoStartService(false);
    call << animationGroup << animationKey;
    auto* watcher =
        new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        const QDBusPendingReply<QDBusVariant> reply = *watcher;
        if (reply.isValid() && !m_isTold)
            m_preferred = !unpacked(reply.value().variant()).toBool();
        watcher->deleteLater();
    });
}

} // namespace tavrin
