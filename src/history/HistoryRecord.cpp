#include "history/HistoryRecord.h"

#include "history/JsonText.h"
#include "history/PortableJson.h"
#include "history/RecordHead.h"

#include <QJsonDocument>

#include <cmath>
#include <utility>

using namespace Qt::StringLiterals;

namespace tavrin {

double timestampFromText(const QString& text)
{
    const double number = text.toDouble();
    return std::isfinite(number) ? number : 0;
}

HistoryRecord HistoryRecord::fromObject(const QJsonObject& object)
{
    auto text = std::make_shared<const QByteArray>(portableJson(QJsonDocument(object)).trimmed());
    const qsizetype length = text->size();
    const HistoryDigest digest = readRecordHead(*text).digest;
    const QJsonValue timestamp = object.value("timestamp"_L1);
    return {std::move(text), 0, length,
        timestamp.isString() ? timestampFromText(timestamp.toString()) : timestamp.toDouble(),
        digest};
}

HistoryRecord::HistoryRecord(std::shared_ptr<const QByteArray> buffer, qsizetype offset,
    qsizetype length, double timestamp, const HistoryDigest& digest)
    : m_buffer(std::move(buffer))
    , m_offset(offset)
    , m_length(length)
    , m_timestamp(timestamp)
    , m_digest(digest)
{
}

QString HistoryRecord::id() const
{
    return textFromJson(at(m_digest.id));
}

QString HistoryRecord::transcript() const
{
    return textFromJson(writtenTranscript());
}

QString HistoryRecord::finalText() const
{
    return textFromJson(writtenFinalText());
}

QByteArrayView HistoryRecord::at(HistoryDigest::Place place) const
{
    return json().sliced(place.offset, place.length);
}

QByteArrayView HistoryRecord::json() const
{
    return QByteArrayView(*m_buffer).sliced(m_offset, m_length);
}

QJsonObject HistoryRecord::object() const
{
    const QByteArrayView view = json();
    const QByteArray text = QByteArray::fromRawData(view.data(), view.size());
    QJsonDocument document = QJsonDocument::fromJson(text);
    if (document.isNull())
        document = QJsonDocument::fromJson(withNumbersInRange(text));
    return document.object();
}

} // namespace tavrin
