#include "app/pages/HistoryFind.h"

#include "history/JsonText.h"

#include <algorithm>
#include <array>
#include <memory>
#include <utility>

namespace tavrin {
namespace {

using Byte = unsigned char;

constexpr Byte folded(Byte byte)
{
    return byte >= 'A' && byte <= 'Z' ? static_cast<Byte>(byte - 'A' + 'a') : byte;
}

/// Characters that are one sequence of bytes each in a file, and have no case.
bool isPlainIdeograph(char16_t unit)
{
    return (unit >= 0x2E80 && unit < 0xA4D0) || (unit >= 0xAC00 && unit <= 0xD7A3);
}

/// Printable characters that stand in a file as they are.
bool isPlainAscii(char16_t unit)
{
    return unit >= u' ' && unit < 0x7F && unit != u'"' && unit != u'\\' && unit != u'/';
}

} // namespace

/// Looks for a text in the bytes of the file, without making a text of them first.
class HistoryFind::WrittenText {
public:
    /// Null where the bytes do not tell.
    static std::shared_ptr<const WrittenText> of(const QString& query)
    {
        const bool plain = std::ranges::all_of(query, [](QChar unit) {
            return isPlainAscii(unit.unicode()) || isPlainIdeograph(unit.unicode());
        });
        return plain ? std::make_shared<const WrittenText>(query) : nullptr;
    }

    explicit WrittenText(const QString& query)
        : m_needle(query.toUtf8())
        , m_hasOldForms(query.contains(u'k', Qt::CaseInsensitive)
              || query.contains(u's', Qt::CaseInsensitive))
    {
        for (char& byte : m_needle)
            byte = static_cast<char>(folded(static_cast<Byte>(byte)));
        m_steps.fill(m_needle.size());
        for (qsizetype i = 0; i + 1 < m_needle.size(); ++i)
            m_steps.at(static_cast<Byte>(m_needle[i])) = m_needle.size() - 1 - i;
    }

    /// Whether a text in whose bytes the query is not found does not hold it: an escape may stand
    /// for any character, and two letters have an old form outside of ASCII.
    [[nodiscard]] bool canTell(QByteArrayView text) const
    {
        return !hasUnitEscape(text) && !(m_hasOldForms && hasOldForm(text));
    }

    [[nodiscard]] bool isIn(QByteArrayView text) const
    {
        const qsizetype last = m_needle.size() - 1;
        qsizetype end = last; // Where the needle's last byte would stand.
        while (end < text.size()) {
            const Byte byte = folded(static_cast<Byte>(text[end]));
            if (byte == static_cast<Byte>(m_needle[last]) && endsAt(text, end)
                && !isEscaped(text, end - last))
                return true;
            end += m_steps.at(byte);
        }
        return false;
    }

private:
    [[nodiscard]] static bool hasUnitEscape(QByteArrayView text)
    {
        qsizetype at = text.indexOf('\\');
        while (at >= 0 && at + 1 < text.size() && text[at + 1] != 'u')
            at = text.indexOf('\\', at + 2);
        return at >= 0;
    }

    /// The byte at @p place is the letter of an escape: that of "\n" is no n.
    [[nodiscard]] static bool isEscaped(QByteArrayView text, qsizetype place)
    {
        qsizetype begin = place;
        while (begin > 0 && text[begin - 1] == '\\')
            --begin;
        return (place - begin) % 2 != 0;
    }

    /// The long s, or the sign of the unit kelvin. The first byte alone is found sooner.
    [[nodiscard]] static bool hasOldForm(QByteArrayView text)
    {
        return (text.contains('\xC5') && text.contains("\xC5\xBF"))
            || (text.contains('\xE2') && text.contains("\xE2\x84\xAA"));
    }

    [[nodiscard]] bool endsAt(QByteArrayView text, qsizetype end) const
    {
        const QByteArrayView place = text.sliced(end + 1 - m_needle.size(), m_needle.size());
        return std::ranges::equal(place, m_needle, {},
            [](char byte) { return static_cast<char>(folded(static_cast<Byte>(byte))); });
    }

    QByteArray m_needle; // Lower case.
    bool m_hasOldForms;
    std::array<qsizetype, 256> m_steps{}; // By how much to go on after a byte that is not the last.
};

HistoryFind::HistoryFind(HistoryRecords records, const QString& query)
    : m_records(std::move(records))
    , m_query(query)
    , m_written(WrittenText::of(query))
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
    if (m_written && m_written->isIn(written))
        return true;
    if (m_written && m_written->canTell(written))
        return false;
    return textFromJson(written).contains(m_query, Qt::CaseInsensitive);
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
