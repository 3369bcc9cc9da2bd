#pragma once

#include "base/CallbackGuard.h"
#include "base/Seconds.h"
#include "history/HistoryFile.h"

#include <QSet>
#include <QString>
#include <QVariantMap>

#include <functional>
#include <optional>
#include <vector>

namespace tavrin {

class BackgroundQueue;
class Clock;
class Preferences;
class SystemInfo;

/// What is to be kept of a finished result. Null strings count as absent.
struct NewHistoryRecord {
    QString transcript{};
    QString finalText{};
    QString delivery{}; ///< "保存在剪贴板" when absent.
    QString mode{}; ///< "dictation" when absent.
    QString targetLanguage{}; ///< Kept only when not empty.
    Seconds audio{0};
    Seconds processing{0};
    QVariantMap application{};
};

/// The history of finished results, in the file `TranscriptionHistory.json` of the user's program
/// data. Every read has the state of the file, with what the retention setting removes removed.
///
/// What was read is kept and used again while the file is the same and no record has grown too old,
/// and the file is written in the background; until that has ended, reads show what is being
/// written. A write that fails leaves the file as it was. When the file was edited by hand since it
/// was read, what was added and removed here is done to the edited file. A file that cannot be read
/// is kept beside the one that replaces it, `TranscriptionHistory.unreadable.json`, for as long as
/// its records would have been. Main thread only.
class HistoryStore {
public:
    struct Ports {
        Preferences& preferences;
        const Clock& clock;
        const SystemInfo& systemInfo;
        BackgroundQueue& backgroundQueue;
    };

    /// @param ports must outlive the store.
    explicit HistoryStore(const Ports& ports);
    ~HistoryStore();

    HistoryStore(const HistoryStore&) = delete;
    HistoryStore& operator=(const HistoryStore&) = delete;

    /// Called after each saved record: for the pages that show it.
    void setSavedHandler(std::function<void()> handler) { m_saved = std::move(handler); }

    /// Path of the history file. Creates its folder, and the file with what earlier versions left.
    [[nodiscard]] QString historyFileURL();

    /// The history file's size in bytes: as it will be when what is being written is written.
    [[nodiscard]] qint64 historyFileSize();

    /// Every record that is still to be kept, newest first; none when the file cannot be read.
    [[nodiscard]] HistoryRecords historyRecords();

    /// Makes @p records the history, whatever the file holds. False when the folder cannot be
    /// written.
    bool writeHistoryRecords(const HistoryRecords& records);

    /// Puts a result in front, unless the user keeps no history.
    void saveHistoryTranscript(const NewHistoryRecord& result);

    /// Removes every record with exactly this id.
    void removeHistoryRecord(const QString& id);

    /// Removes everything that was ever kept, files that could not be read included.
    void clear();

    /// The first record with exactly this id.
    [[nodiscard]] std::optional<HistoryRecord> historyRecordWithID(const QString& id);

    /// Reads the file in the background, so that the next use finds it read.
    void warmUp();

    /// Calls @p done once the file is read and historyRecords() does not wait for the disk: at once
    /// where that is so, else after reading in the background.
    void whenRead(std::function<void()> done);

    /// Waits until everything is written. For the end of the program.
    void flush();

private:
    /// What was done to the records since the file was in the state of m_stamp.
    struct Changes {
        HistoryRecords added; // Newest first.
        QSet<QString> removed; // Their ids.
    };

    [[nodiscard]] QString retention() const;
    [[nodiscard]] bool isCurrent(const QString& path) const;
    void adopt(LoadedHistory loaded);
    void finishReading(const QString& path, LoadedHistory& loaded);
    void forget();
    bool write(const HistoryRecords& records);
    void startWriting();
    void finishWriting(WrittenHistory& written, const Changes& begun);
    void merge(LoadedHistory found);
    void migrate(const QString& path);

    Ports m_ports;
    std::function<void()> m_saved;

    HistoryRecords m_records;
    double m_oldest = 0; // The least timestamp among the records.
    // Of the file that m_records and m_pending come from. Empty before the first read and after a
    // failed write.
    std::optional<FileStamp> m_stamp;
    bool m_unreadable = false; // That file is no history.
    Changes m_pending; // Not in that file, nor in the running write.
    bool m_mended = false; // The records differ from the file, which is to be written.
    // When the oldest unreadable file was edited, in seconds since 1970; empty when that is
    // unknown.
    std::optional<double> m_oldestUnreadable;
    std::vector<std::function<void()>> m_readers; // Wait for a read in the background.
    bool m_writing = false;
    bool m_writeAgain = false; // The records have changed since the running write began.
    bool m_replacesAll = false; // The next write replaces whatever the file holds.
    CallbackGuard m_guard;
};

} // namespace tavrin
