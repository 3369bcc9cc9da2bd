#include "history/HistoryFile.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <algorithm>
#include <limits>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

constexpr auto privateFile = QFileDevice::ReadOwner | QFileDevice::WriteOwner;

/// `TranscriptionHistory.unreadable.json`, or with a number behind the word.
QString unreadableName(const QString& path, const QString& number)
{
    const QFileInfo file(path);
    return file.completeBaseName() + u".unreadable"_s + number + u'.' + file.suffix();
}

/// Moves the file at @p path beside itself. Answers the new path, empty when it cannot be moved.
QString setAside(const QString& path)
{
    const QDir folder = QFileInfo(path).dir();
    QString aside = folder.filePath(unreadableName(path, {}));
    for (int number = 2; QFileInfo::exists(aside); ++number)
        aside = folder.filePath(unreadableName(path, u'-' + QString::number(number)));
    return QFile::rename(path, aside) ? aside : QString();
}

} // namespace

FileStamp stampOf(const QString& path)
{
    const QFileInfo file(path);
    if (!file.exists())
        return {};
    return {file.size(), file.lastModified().toMSecsSinceEpoch()};
}

double oldestOf(const HistoryRecords& records)
{
    double oldest = std::numeric_limits<double>::infinity();
    for (const HistoryRecord& record : records)
        oldest = std::min(oldest, record.timestamp());
    return oldest;
}

LoadedHistory loadHistory(const QString& path)
{
    LoadedHistory loaded;
    loaded.stamp = stampOf(path);
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return loaded;
    std::optional<ParsedHistory> history = parseHistory(file.readAll());
    if (!history)
        return loaded;
    loaded.readable = true;
    loaded.oldest = oldestOf(history->records);
    loaded.history = *std::move(history);
    return loaded;
}

WrittenHistory storeHistory(const QString& path, const HistoryWrite& write)
{
    WrittenHistory written;
    QString aside;
    const auto content = [&](QSaveFile& file) {
        return writeHistory(write.records,
            [&](const QByteArray& piece) { return file.write(piece) == piece.size(); });
    };
    // The stamp is taken before anybody can edit the new file, and compared with what is there at
    // the last moment: writing takes long enough for a person to save the file in an editor.
    const auto ready = [&](QSaveFile& file) {
        written.stamp = {
            file.size(), file.fileTime(QFileDevice::FileModificationTime).toMSecsSinceEpoch()};
        const FileStamp present = stampOf(path);
        if (write.expected && *write.expected != present) {
            written.outcome = WrittenHistory::Outcome::Edited;
            return false;
        }
        if (write.keepsOld && present.size > 0)
            aside = setAside(path);
        return true;
    };
    if (replaceFile(path, content, ready))
        written.outcome = WrittenHistory::Outcome::Written;
    else if (!aside.isEmpty())
        QFile::rename(aside, path);
    if (written.outcome == WrittenHistory::Outcome::Edited)
        written.found = loadHistory(path);
    return written;
}

bool replaceFile(const QString& path, const std::function<bool(QSaveFile&)>& content,
    const std::function<bool(QSaveFile&)>& ready)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    file.setPermissions(privateFile);
    return content(file) && file.flush() && (!ready || ready(file)) && file.commit();
}

double removeUnreadableFiles(const QString& path, double cutoff)
{
    double oldest = std::numeric_limits<double>::infinity();
    const QDir folder = QFileInfo(path).dir();
    const QStringList names{unreadableName(path, {}), unreadableName(path, u"-*"_s)};
    for (const QFileInfo& file : folder.entryInfoList(names, QDir::Files | QDir::Hidden)) {
        const double edited = static_cast<double>(file.lastModified().toMSecsSinceEpoch()) / 1000;
        if (edited >= cutoff || !QFile::remove(file.filePath()))
            oldest = std::min(oldest, edited);
    }
    return oldest;
}

} // namespace tavrin
