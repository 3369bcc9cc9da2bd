#include "platform/linux/desktop/LinuxSystemInfo.h"

#include "platform/linux/desktop/XdgFolders.h"

#include <QDir>
#include <QFile>
#include <QSysInfo>

namespace tavrin {
namespace {

/// PRETTY_HOSTNAME of the file, without its quotes; empty when the machine has none.
QString prettyHostName(const QString& machineInfo)
{
    QFile file(machineInfo);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    constexpr qint64 longestFile = qint64{16} * 1024;
    const QString text = QString::fromUtf8(file.read(longestFile));
    for (const QString& line : text.split(u'\n')) {
        const QString key = QStringLiteral("PRETTY_HOSTNAME=");
        if (!line.startsWith(key))
            continue;
        QString name = line.mid(key.size()).trimmed();
        if (name.size() >= 2 && name.front() == name.back()
            && (name.front() == u'"' || name.front() == u'\''))
            name = name.mid(1, name.size() - 2);
        return name;
    }
    return {};
}

} // namespace

LinuxSystemInfo::LinuxSystemInfo(QString speechLanguage, QString machineInfo)
    : m_speechLanguage(std::move(speechLanguage))
    , m_machineInfo(std::move(machineInfo))
{
}

QString LinuxSystemInfo::localizedHostName() const
{
    const QString pretty = prettyHostName(m_machineInfo);
    return pretty.isEmpty() ? QSysInfo::machineHostName() : pretty;
}

QString LinuxSystemInfo::bundleShortVersion() const
{
    return QStringLiteral(TAVRIN_VERSION);
}

QString LinuxSystemInfo::bundleVersion() const
{
    return QStringLiteral(TAVRIN_BUILD);
}

QString LinuxSystemInfo::temporaryDirectory() const
{
    const QString path = qEnvironmentVariable("TMPDIR");
    return QDir::isAbsolutePath(path) ? QDir::cleanPath(path) : QStringLiteral("/tmp");
}

QString LinuxSystemInfo::applicationSupportDirectory() const
{
    return xdg::dataHome();
}

QString LinuxSystemInfo::environmentVariable(const QString& name) const
{
    return qEnvironmentVariable(name.toUtf8().constData());
}

QString LinuxSystemInfo::speechLanguage() const
{
    return m_speechLanguage;
}

} // namespace tavrin
