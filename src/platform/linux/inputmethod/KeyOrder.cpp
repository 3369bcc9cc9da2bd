#include "platform/linux/inputmethod/KeyOrder.h"

#include "platform/linux/inputmethod/IBusAddress.h"

#include <QFile>
#include <QList>

#include <algorithm>

namespace tavrin {
namespace {

QByteArray processFile(qint64 identifier, const QString& name)
{
    QFile file(QStringLiteral("/proc/%1/%2").arg(identifier).arg(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Whether a file is mapped from a folder of that name, or one in it.
bool isMapped(const QByteArray& maps, const QByteArray& folder, const QByteArray& file)
{
    const auto lines = maps.split('\n');
    return std::any_of(lines.begin(), lines.end(),
        [&](const QByteArray& line) { return line.contains(folder) && line.endsWith(file); });
}

} // namespace

bool mixesTypedKeys(qint64 identifier)
{
    return identifier > 0
        && usesModuleThatMixesKeys(processFile(identifier, QStringLiteral("maps")),
            processFile(identifier, QStringLiteral("environ")), !ibusAddress().isEmpty());
}

bool usesModuleThatMixesKeys(const QByteArray& maps, const QByteArray& environment, bool ibusRuns)
{
    if (isMapped(maps, "/platforminputcontexts/", "/libibusplatforminputcontextplugin.so"))
        return ibusRuns;
    if (!isMapped(maps, "/gtk-4.0/", "/libim-ibus.so"))
        return false;
    const QByteArray variable = "GTK_IM_MODULE=";
    for (const QByteArray& entry : environment.split('\0')) {
        if (entry.startsWith(variable))
            return entry.mid(variable.size()).split(':').contains("ibus");
    }
    return ibusRuns;
}

} // namespace tavrin
