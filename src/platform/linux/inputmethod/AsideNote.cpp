#include "platform/linux/inputmethod/AsideNote.h"

#include "platform/linux/process/ProcessIdentity.h"

#include <QFile>
#include <QList>
#include <QSaveFile>

namespace tavrin {
namespace {

constexpr qint64 longestNote = 4096;

QByteArray line(const QString& text)
{
    return text.toUtf8().replace('\n', ' ') + '\n';
}

} // namespace

AsideNote::AsideNote(QString file)
    : m_file(std::move(file))
{
}

void AsideNote::write(const AsideEngine& engine) const
{
    QSaveFile file(m_file); // Never half a note.
    if (m_file.isEmpty() || !file.open(QIODevice::WriteOnly))
        return;
    const ProcessIdentity owner = thisProcess();
    file.write(QByteArray::number(owner.number) + '\n' + QByteArray::number(owner.birth) + '\n');
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
    constexpr int count = 5; // The last one is what stands behind the final line feed.
    if (lines.size() != count)
        return {};
    bool hasNumber = false;
    bool hasBirth = false;
    const ProcessIdentity owner{lines[0].toLongLong(&hasNumber), lines[1].toULongLong(&hasBirth)};
    if (!hasNumber || !hasBirth || processWithNumber(owner.number) == owner)
        return {};
    return AsideEngine{QString::fromUtf8(lines[2]), QString::fromUtf8(lines[3])};
}

} // namespace tavrin
