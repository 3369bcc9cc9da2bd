#pragma once

#include "history/HistoryJson.h"

#include <QByteArray>
#include <QString>

#include <functional>
#include <optional>

class QSaveFile;

/// The history on the disk. Everything here is callable from any thread.
namespace tavrin {

/// Tells one state of a file from another; the default is that of no file.
struct FileStamp {
    qint64 size = -1;
    qint64 modified = 0; ///< Milliseconds since 1970.

    friend bool operator==(const FileStamp&, const FileStamp&) = default;
};

[[nodiscard]] FileStamp stampOf(const QString& path);

/// What a read of the file gave.
struct LoadedHistory {
    FileStamp stamp;
    ParsedHistory history;
    double oldest = 0; ///< The least timestamp among the records.
    bool readable = false;
};

[[nodiscard]] LoadedHistory loadHistory(const QString& path);

/// The least timestamp among @p records; infinity when there are none.
[[nodiscard]] double oldestOf(const HistoryRecords& records);

struct HistoryWrite {
    HistoryRecords records;
    /// The state of the file that may be replaced; empty for any.
    std::optional<FileStamp> expected;
    /// The file that is replaced could not be read: it is kept beside the new one.
    bool keepsOld = false;
};

/// How a write ended.
struct WrittenHistory {
    enum class Outcome {
        Written,
        Failed, ///< The file is as it was.
        Edited, ///< The file is no longer the expected one, and left alone.
    };

    Outcome outcome = Outcome::Failed;
    FileStamp stamp; ///< Of the file that was written.
    LoadedHistory found; ///< The edited file.
};

[[nodiscard]] WrittenHistory storeHistory(const QString& path, const HistoryWrite& write);

/// Replaces the file by what @p content writes into it, readable by the user alone; or leaves it
/// as it was. @p ready decides, when everything is written, whether the file is to be replaced.
bool replaceFile(const QString& path, const std::function<bool(QSaveFile&)>& content,
    const std::function<bool(QSaveFile&)>& ready = {});

/// Removes the unreadable files kept beside @p path that were last edited before @p cutoff.
/// Answers when the oldest of those that stay was edited, infinity when none stays. Both are in
/// seconds since 1970.
double removeUnreadableFiles(const QString& path, double cutoff);

} // namespace tavrin
