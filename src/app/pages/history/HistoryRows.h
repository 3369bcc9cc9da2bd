#pragma once

#include "base/Seconds.h"
#include "history/HistoryRecord.h"

#include <QList>
#include <QSet>
#include <QString>
#include <QTimeZone>

#include <functional>
#include <memory>
#include <optional>

namespace tavrin {

/// One record as the history page shows it.
struct HistoryRow {
    QString id;
    QString time; ///< "09:30"
    QString mode; ///< "Translation · Japanese"
    QString header; ///< Both.
    QString caption; ///< Which text is shown.
    QString text; ///< Anything that was ever said or answered, whole.
    bool showsOriginal = false;
};

/// The words that all rows share, in the interface language.
struct HistoryRowWords {
    QString today;
    QString yesterday;
    QString dictation;
    QString translation;
    QString chat;
    QString editedResult;
    QString originalTranscript;
    std::function<QString(const QString& target)> targetName; ///< Of a language to translate into.
};

/// The records that the history page lists, newest first, and the days that they are grouped by.
/// Holds no texts of its own: a row is made when it is asked for. Copies share what they hold.
class HistoryRows {
public:
    struct Day {
        qsizetype firstRow = 0;
        QString label;

        friend bool operator==(const Day&, const Day&) = default;
    };

    struct Source {
        HistoryRecords records;
        /// Of the records that are listed, ascending; all of them when empty.
        std::optional<QList<qsizetype>> listed;
        QSet<QString> expanded; ///< The ids of those that show their transcript.
        Seconds now{0}; ///< Since 1970.
        QTimeZone timeZone;
        HistoryRowWords words;
    };

    /// No rows.
    HistoryRows();
    explicit HistoryRows(Source source);

    [[nodiscard]] qsizetype size() const;

    [[nodiscard]] bool isEmpty() const { return size() == 0; }

    /// The groups; the first one begins with row 0.
    [[nodiscard]] const QList<Day>& days() const;

    [[nodiscard]] HistoryRow row(qsizetype index) const;

    [[nodiscard]] QString idOf(qsizetype index) const;

    /// Where the record with this id stands now.
    [[nodiscard]] std::optional<qsizetype> indexOf(const QString& id) const;

    /// The text that the row shows, as it stands in the file: for estimates of its length.
    [[nodiscard]] QByteArrayView writtenText(qsizetype index) const;

    /// Whether these are the same rows: what was worked out for them still holds.
    [[nodiscard]] bool isSameAs(const HistoryRows& other) const { return m_data == other.m_data; }

private:
    struct Data;

    [[nodiscard]] const HistoryRecord& record(qsizetype index) const;

    std::shared_ptr<const Data> m_data;
};

} // namespace tavrin
