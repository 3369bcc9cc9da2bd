#include "platform/linux/desktop/DesktopFiles.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QSet>

#include <algorithm>
#include <functional>

namespace tavrin {
namespace {

constexpr qint64 largestFile = qint64{256} * 1024;
constexpr int mostFiles = 5000;

/// The keys of `Name` that fit the locales, best first.
QStringList nameKeys(const QStringList& locales)
{
    QStringList keys;
    for (const QString& locale : locales) {
        const QString base = locale.section(u'@', 0, 0);
        for (const QString& form : {locale, base, base.section(u'_', 0, 0)})
            keys.append(QStringLiteral("Name[%1]").arg(form));
    }
    keys.append(QStringLiteral("Name"));
    keys.removeDuplicates();
    return keys;
}

/// The members of the group that describes the program, escapes of their texts resolved.
QHash<QString, QString> members(const QString& text)
{
    QHash<QString, QString> found;
    bool inside = false;
    for (const auto& part : QStringView(text).split(u'\n')) {
        const QStringView line = part.trimmed();
        if (line.startsWith(u'[')) {
            inside = line == u"[Desktop Entry]";
            continue;
        }
        const qsizetype equals = line.indexOf(u'=');
        if (!inside || equals <= 0 || line.startsWith(u'#'))
            continue;
        QString value = line.sliced(equals + 1).trimmed().toString();
        value.replace(QStringLiteral("\\s"), QStringLiteral(" "));
        value.replace(QStringLiteral("\\\\"), QStringLiteral("\\"));
        found.insert(line.first(equals).trimmed().toString(), value);
    }
    return found;
}

/// The file name of the program that an `Exec` line starts.
QString program(const QString& command)
{
    QStringList words = command.split(u' ', Qt::SkipEmptyParts);
    if (!words.isEmpty() && words.first() == u"env") {
        words.removeFirst();
        while (!words.isEmpty() && words.first().contains(u'='))
            words.removeFirst();
    }
    if (words.isEmpty())
        return {};
    QString path = words.first();
    path.remove(u'"');
    return path.section(u'/', -1);
}

bool same(const QString& one, const QString& other)
{
    return !one.isEmpty() && one.compare(other, Qt::CaseInsensitive) == 0;
}

/// Appends what the folder holds to @p files.
void readFolder(const QString& folder, const QStringList& locales, QList<DesktopFile>& files)
{
    QSet<QString> taken; // A file of a more important folder hides its namesakes.
    for (const DesktopFile& file : std::as_const(files))
        taken.insert(file.identifier);
    QDirIterator entries(
        folder, {QStringLiteral("*.desktop")}, QDir::Files, QDirIterator::Subdirectories);
    while (entries.hasNext() && files.size() < mostFiles) {
        QFile file(entries.next());
        QString identifier = QDir(folder).relativeFilePath(file.fileName()).chopped(8);
        identifier.replace(u'/', u'-');
        if (taken.contains(identifier) || !file.open(QIODevice::ReadOnly))
            continue;
        const QString text = QString::fromUtf8(file.read(largestFile));
        if (const auto parsed = parseDesktopFile(identifier, text, locales))
            files.append(*parsed);
    }
}

} // namespace

std::optional<DesktopFile> parseDesktopFile(
    const QString& identifier, const QString& text, const QStringList& locales)
{
    const auto entries = members(text);
    const QString type = entries.value(QStringLiteral("Type"), QStringLiteral("Application"));
    if (type != u"Application" || entries.value(QStringLiteral("Hidden")) == u"true")
        return {};
    DesktopFile file;
    file.identifier = identifier;
    file.windowClass = entries.value(QStringLiteral("StartupWMClass"));
    file.program = program(entries.value(QStringLiteral("Exec")));
    file.shown = entries.value(QStringLiteral("NoDisplay")) != u"true";
    for (const QString& key : nameKeys(locales)) {
        file.name = entries.value(key);
        if (!file.name.isEmpty())
            return file;
    }
    return {};
}

DesktopFiles::DesktopFiles(const QStringList& folders, QStringList locales)
    : m_locales(std::move(locales))
{
    for (const QString& folder : folders)
        m_folders.append(folder + QStringLiteral("/applications"));
}

std::optional<DesktopFile> DesktopFiles::find(const Window& window)
{
    refresh();
    const QString key = window.instance + u'\n' + window.className + u'\n' + window.program;
    const auto known = m_answers.constFind(key);
    if (known != m_answers.cend())
        return *known;
    auto answer = match(window);
    m_answers.insert(key, answer);
    return answer;
}

QList<QDateTime> DesktopFiles::modificationsOf(const QStringList& folders)
{
    QList<QDateTime> modified;
    for (const QString& folder : folders)
        modified.append(QFileInfo(folder).lastModified());
    return modified;
}

DesktopFiles::Contents DesktopFiles::read(const QStringList& folders, const QStringList& locales)
{
    Contents contents;
    contents.modified = modificationsOf(folders); // First: what changes meanwhile is read again.
    for (const QString& folder : folders)
        readFolder(folder, locales, contents.files);
    std::stable_partition(contents.files.begin(), contents.files.end(),
        [](const DesktopFile& file) { return file.shown; });
    return contents;
}

void DesktopFiles::readAhead()
{
    m_reading = std::async(std::launch::async, read, m_folders, m_locales);
}

void DesktopFiles::refresh()
{
    if (m_reading.valid()) {
        m_contents = m_reading.get();
        m_answers.clear();
    }
    if (modificationsOf(m_folders) == m_contents.modified)
        return;
    m_contents = read(m_folders, m_locales);
    m_answers.clear();
}

std::optional<DesktopFile> DesktopFiles::match(const Window& window) const
{
    using Rule = std::function<bool(const DesktopFile&)>;
    const auto either = [&window](const QString& text) {
        return same(text, window.className) || same(text, window.instance);
    };
    const std::array<Rule, 4> rules{
        [&](const DesktopFile& file) { return either(file.windowClass); },
        [&](const DesktopFile& file) { return either(file.identifier); },
        [&](const DesktopFile& file) { return either(file.identifier.section(u'.', -1)); },
        [&](const DesktopFile& file) {
            return same(file.program, window.program) || either(file.program);
        },
    };
    for (const Rule& rule : rules) {
        const auto found = std::find_if(m_contents.files.begin(), m_contents.files.end(), rule);
        if (found != m_contents.files.end())
            return *found;
    }
    return {};
}

} // namespace tavrin
