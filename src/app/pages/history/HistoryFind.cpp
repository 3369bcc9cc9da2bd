#include "app/pages/history/HistoryFind.h"

#include "app/pages/history/WrittenQuery.h"
#include "history/JsonText.h"

#include <optional>
#include <utility>

namespace tavrin {

HistoryFind::HistoryFind(HistoryRecords records, const QString& query)
    : m_records(std::move(records))
    , m_query(query)
    , m_written(WrittenQuery::of(query))
{
}

HistoryFind::~HistoryFind() = default;

bool HistoryFind::lookOn(qsizetype bytes)
{
    qsizetype left = bytes;
    while (m_looked < m_records.size()) {
        const HistoryRecord& record = m_records.at(m_looked);
        const QByteArrayView transcript = record.writtenTranscript();
        const QByteArrayView finalText = record.writtenFinalText();
        if (isIn(finalText) || isIn(transcript))
            m_matches.append(m_looked);
        ++m_looked;
        constexpr qsizetype ofEachRecord = 64; // Texts may be short, and records many.
        left -= ofEachRecord + transcript.size() + finalText.size();
        if (left <= 0)
            break;
    }
    return m_looked == m_records.size();
}

bool HistoryFind::isIn(QByteArrayView written) const
{
    const std::optional<bool> told = m_written ? m_written->isIn(written) : std::nullopt;
    return told ? *told : textFromJson(written).contains(m_query, Qt::CaseInsensitive);
}

QList<TextRange> rangesOf(const QString& query, const QString& text)
{
    QList<TextRange> ranges;
    if (query.isEmpty())
        return ranges;
    qsizetype at = text.indexOf(query, 0, Qt::CaseInsensitive);
    while (at >= 0) {
        ranges.append({at, query.size()});
        at = text.indexOf(query, at + query.size(), Qt::CaseInsensitive);
    }
    return ranges;
}

} // namespace tavrin
