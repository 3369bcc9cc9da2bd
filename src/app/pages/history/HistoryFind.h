#pragma once

#include "base/TextRange.h"
#include "history/HistoryRecord.h"

#include <QList>
#include <QString>

#include <memory>

namespace tavrin {

class WrittenQuery;

/// Looks for a text in the transcripts and results of records, whatever its case, piece by piece:
/// a long history takes longer than the program may stand still.
class HistoryFind {
public:
    /// @param query not empty; any other text is looked for as it is.
    HistoryFind(HistoryRecords records, const QString& query);
    ~HistoryFind();

    HistoryFind(const HistoryFind&) = delete;
    HistoryFind& operator=(const HistoryFind&) = delete;

    /// Looks at about @p bytes of text more, at one record at least. True when all were looked at.
    bool lookOn(qsizetype bytes);

    /// Places in the list of those records that hold the text, ascending, as far as was looked.
    [[nodiscard]] const QList<qsizetype>& matches() const { return m_matches; }

    /// How many records were looked at.
    [[nodiscard]] qsizetype looked() const { return m_looked; }

private:
    [[nodiscard]] bool isIn(QByteArrayView written) const;

    HistoryRecords m_records;
    QString m_query;
    std::shared_ptr<const WrittenQuery> m_written; // Null: every text has to be read.
    QList<qsizetype> m_matches;
    qsizetype m_looked = 0;
};

/// Where @p query stands in @p text, whatever its case, from left to right without overlaps. None
/// for an empty query.
[[nodiscard]] QList<TextRange> rangesOf(const QString& query, const QString& text);

} // namespace tavrin
