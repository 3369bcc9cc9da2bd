#include "platform/linux/inputmethod/IBusAddress.h"

#include "platform/linux/desktop/XdgFolders.h"

#include <QFile>
#include <QList>

#include <dbus/dbus.h>
#include <memory>

namespace tavrin {
namespace {

constexpr qint64 longestFile = 4096;

struct DBusFree {
    void operator()(char* memory) const { dbus_free(memory); }
};

QString addressFile()
{
    if (qEnvironmentVariableIsSet("IBUS_ADDRESS_FILE"))
        return qEnvironmentVariable("IBUS_ADDRESS_FILE");
    const std::unique_ptr<char, DBusFree> machineId(dbus_get_local_machine_id());
    const QString name = ibusAddressFileName(machineId.get(), qgetenv("DISPLAY"));
    return name.isEmpty() ? QString() : xdg::configHome() + QStringLiteral("/ibus/bus/") + name;
}

} // namespace

QString ibusAddressFileName(const QByteArray& machineId, const QByteArray& display)
{
    const auto colon = display.lastIndexOf(':');
    if (machineId.isEmpty() || colon < 0)
        return {};
    const QByteArray host = colon == 0 ? QByteArray("unix") : display.left(colon);
    const QByteArray number = display.mid(colon + 1).split('.').first();
    if (number.isEmpty() || host.contains('/'))
        return {};
    return QString::fromLocal8Bit(machineId + '-' + host + '-' + number);
}

QByteArray ibusAddressIn(const QByteArray& file)
{
    const QByteArray key = "IBUS_ADDRESS=";
    for (const QByteArray& line : file.split('\n')) {
        if (line.startsWith(key))
            return line.mid(key.size()).trimmed();
    }
    return {};
}

QByteArray ibusAddress()
{
    QByteArray told = qgetenv("IBUS_ADDRESS");
    if (!told.isEmpty())
        return told;
    QFile file(addressFile());
    if (file.fileName().isEmpty() || !file.open(QIODevice::ReadOnly))
        return {};
    return ibusAddressIn(file.read(longestFile));
}

} // namespace tavrin
