#include "platform/linux/desktop/XdgFolders.h"

#include <QDir>

namespace tavrin::xdg {
namespace {

/// The folder that @p variable names; empty when it names none. QStandardPaths of Qt 6.4 takes
/// relative ones too.
QString folder(const char* variable)
{
    const QString path = qEnvironmentVariable(variable);
    return QDir::isAbsolutePath(path) ? QDir::cleanPath(path) : QString();
}

QString folderOr(const char* variable, const QString& belowHome)
{
    const QString path = folder(variable);
    return path.isEmpty() ? QDir::homePath() + u'/' + belowHome : path;
}

} // namespace

QString configHome()
{
    return folderOr("XDG_CONFIG_HOME", QStringLiteral(".config"));
}

QString dataHome()
{
    return folderOr("XDG_DATA_HOME", QStringLiteral(".local/share"));
}

QStringList dataFolders()
{
    QStringList folders{dataHome()};
    const QString listed = qEnvironmentVariable("XDG_DATA_DIRS");
    const QString list = listed.isEmpty() ? QStringLiteral("/usr/local/share:/usr/share") : listed;
    for (const QString& entry : list.split(u':', Qt::SkipEmptyParts)) {
        if (QDir::isAbsolutePath(entry))
            folders.append(QDir::cleanPath(entry));
    }
    folders.removeDuplicates();
    return folders;
}

QString runtimeFolder()
{
    return folder("XDG_RUNTIME_DIR");
}

} // namespace tavrin::xdg
