#include "platform/linux/process/ProcessIdentity.h"

#include <QByteArray>
#include <QFile>
#include <QList>

#include <unistd.h>

namespace tavrin {

std::optional<ProcessIdentity> processWithNumber(qint64 number)
{
    QFile file(QStringLiteral("/proc/%1/stat").arg(number));
    if (number <= 0 || !file.open(QIODevice::ReadOnly))
        return std::nullopt;
    const QByteArray line = file.readAll();
    // The program's name stands in parentheses and may hold anything, spaces and more parentheses.
    const QList<QByteArray> fields = line.mid(line.lastIndexOf(')') + 2).split(' ');
    constexpr qsizetype state = 0;
    constexpr qsizetype birth = 19;
    if (fields.size() <= birth || fields[state] == "Z")
        return std::nullopt;
    return ProcessIdentity{number, fields[birth].toULongLong()};
}

ProcessIdentity thisProcess()
{
    return processWithNumber(::getpid()).value_or(ProcessIdentity{::getpid(), 0});
}

} // namespace tavrin
