#pragma once

#include <QByteArrayView>
#include <QJsonObject>
#include <QList>
#include <QString>

#include <memory>

namespace tavrin {

/// What is asked of every record of a long history, read once with the file.
struct HistoryDigest {
    /// Where a text stands in the record's JSON: what is between its quotation marks.
    struct Place {
        quint32 offset = 0;
        quint32 length = 0; ///< In bytes; 0 where the record has no such text.

        friend bool operator==(const Place&, const Place&) = default;
    };

    Place id;
    Place transcript;
    Place finalText;
    /// UTF-16 units that were spoken: what the record says, else as many as its transcript has.
    qint64 characters = 0;
    double audioSeconds = 0; ///< 0 where the record does not say.
    double processingSeconds = 0; ///< The same.

    friend bool operator==(const HistoryDigest&, const HistoryDigest&) = default;
};

/// The most characters that a record is believed to have: a file may say anything.
inline constexpr qint64 mostCharacters = 1'000'000'000'000'000;

/// One finished result, as it stands in the history file. Copies share the text; what is in it is
/// read when it is asked for, so that a long history costs little. Immutable, usable on any thread.
class HistoryRecord {
public:
    /// The record that @p object describes. Its `id` and `timestamp` are read by the file's rules.
    [[nodiscard]] static HistoryRecord fromObject(const QJsonObject& object);

    /// A record whose JSON text is @p length bytes of @p buffer from @p offset on.
    /// @param digest of that text.
    HistoryRecord(std::shared_ptr<const QByteArray> buffer, qsizetype offset, qsizetype length,
        double timestamp, const HistoryDigest& digest);

    /// Upper-case UUID; unique within the history.
    [[nodiscard]] QString id() const;

    /// Seconds since 1970 at which it was saved; 0 when the file does not say.
    [[nodiscard]] double timestamp() const { return m_timestamp; }

    [[nodiscard]] const HistoryDigest& digest() const { return m_digest; }

    /// What was said; empty where the record has none.
    [[nodiscard]] QString transcript() const;

    /// What was delivered; empty where the record has none.
    [[nodiscard]] QString finalText() const;

    /// The two as they stand in the JSON text, between the quotation marks.
    [[nodiscard]] QByteArrayView writtenTranscript() const { return at(m_digest.transcript); }

    [[nodiscard]] QByteArrayView writtenFinalText() const { return at(m_digest.finalText); }

    /// The JSON object's text.
    [[nodiscard]] QByteArrayView json() const;

    /// All keys of the record. Readers treat every key as optional. A number that no double holds
    /// is the nearest one that does.
    [[nodiscard]] QJsonObject object() const;

private:
    [[nodiscard]] QByteArrayView at(HistoryDigest::Place place) const;

    std::shared_ptr<const QByteArray> m_buffer;
    qsizetype m_offset;
    qsizetype m_length;
    double m_timestamp;
    HistoryDigest m_digest;
};

/// The timestamp that stands in quotes in a file; 0 when it is no number.
[[nodiscard]] double timestampFromText(const QString& text);

/// Newest first.
using HistoryRecords = QList<HistoryRecord>;

} // namespace tavrin
