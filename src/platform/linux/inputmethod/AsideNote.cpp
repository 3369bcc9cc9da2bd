#include "platform/linux/inputmethod/AsideNote.h"

#include <QFile>
#include <QList>
#include <QSaveFile>

#include <unistd.h>

namespace tavrin {
namespace {

constexpr qint64 longestNote = 4096;

QByteArray line(const QString& text)
{
    return text.toUtf8().replace('\n', ' ') + '\n';
}

} // namespace

QByteArray processBirth(qint64 identifier)
{
    QFile file(QStringLiteral("/proc/%1/stat").arg(identifier));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray stat = file.readAll();
    // The name in brackets may hold spaces and brackets; the state is the first after it.
    const auto fields = stat.mid(stat.lastIndexOf(')') + 2).split(' ');
    constexpr int state = 0;
    constexpr int birth = 19;
    const bool isCorpse = fields.value(state) == "Z";
    return isCorpse ? QByteArray() : fields.value(birth);
}

AsideNote::AsideNote(QString file)
    : m_file(std::move(file))
{
}

void AsideNote::write(const AsideEngine& engine) const
{
    QSaveFile file(m_file); // Never half a note.
    if (m_file.isEmpty() || !file.open(QIODevice::WriteOnly))
        return;
    const qint64 owner = ::getpid();
    file.write(QByteArray::number(owner) + '\n' + processBirth(owner) + '\n');
    file.write(line(engine.inputMethod) + line(engine.engine));
    file.commit();
}

void AsideNote::remove() const
{
    if (!m_file.isEmpty())
        QFile::remove(m_file);
}

std::optional<AsideEngine> AsideNote::leftBehind() const
{
    QFile file(m_file);
    if (m_file.isEmpty() || !file.open(QIODevice::ReadOnly))
        return {};
    const auto lines = file.read(longestNote).split('\n');
    bool isNumber = false;
    const qint64 owner = lines.first().toLongLong(&isNumber);
    constexpr int count = 5; // The last one is what stands behind the final line feed.
    if (!isNumber || lines.size() != count || lines[1].isEmpty() || processBirth(owner) == lines[1])
        return {};
    return AsideEngine{QString::fromUtf8(lines[2]), QString::fromUtf8(lines[3])};
}

} // namespace tavrin
