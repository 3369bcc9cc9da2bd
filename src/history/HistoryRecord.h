#pragma once

#include <QByteArrayView>
#include <QJsonObject>
#include <QList>
#include <QString>

#include <memory>

namespace tavrin {

/// One finished result, as it stands in the history file. Copies share the text; what is in it is
/// read when it is asked for, so that a long history costs little. Immutable, usable on any thread.
class HistoryRecord {
public:
    /// The record that @p object describes. Its `id` and `timestamp` are read by the file's rules.
    [[nodiscard]] static HistoryRecord fromObject(const QJsonObject& object);

    /// A record whose JSON text is @p length bytes of @p buffer from @p offset on.
    HistoryRecord(std::shared_ptr<const QByteArray> buffer, qsizetype offset, qsizetype length,
        QString id, double timestamp);

    /// Upper-case UUID; unique within the history.
    [[nodiscard]] const QString& id() const { return m_id; }

    /// Seconds since 1970 at which it was saved; 0 when the file does not say.
    [[nodiscard]] double timestamp() const { return m_timestamp; }

    /// The JSON object's text.
    [[nodiscard]] QByteArrayView json() const;

    /// All keys of the record. Readers treat every key as optional. A number that no double holds
    /// is the nearest one that does.
    [[nodiscard]] QJsonObject object() const;

private:
    std::shared_ptr<const QByteArray> m_buffer;
    qsizetype m_offset;
    qsizetype m_length;
    QString m_id;
    double m_timestamp;
};

/// The timestamp that stands in quotes in a file; 0 when it is no number.
[[nodiscard]] double timestampFromText(const QString& text);

/// Newest first.
using HistoryRecords = QList<HistoryRecord>;

} // namespace tavrin
