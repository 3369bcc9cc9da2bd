#include "ui/pages/HistoryLayout.h"

#include <algorithm>

namespace tavrin::ui {
namespace {

constexpr int dayHeight = 34;
constexpr int gap = 10; // Between two records.
constexpr int heightWithoutText = 74;
constexpr int lineHeight = 20;
constexpr int bottomMargin = 22;

constexpr double lineWidth = 494;
constexpr double wide = 12.5; // An ideograph, a symbol.
constexpr double narrow = 6.5;

/// What stands at the beginning of a text in the file.
struct Piece {
    qsizetype length;
    double width;
    bool isSpace = false;
    bool isLineBreak = false;
};

Piece escapeAt(QByteArrayView text)
{
    constexpr qsizetype unitLength = 6; // "\\uXXXX"
    const char letter = text.size() > 1 ? text[1] : ' ';
    if (letter == 'u')
        return {unitLength, wide};
    const bool isSpace = letter == 'n' || letter == 'r' || letter == 't';
    return {2, narrow, isSpace, letter == 'n'};
}

bool isWide(char32_t character)
{
    constexpr char32_t firstHangul = 0x1100;
    constexpr char32_t lastHangulLetter = 0x115F;
    constexpr char32_t firstIdeograph = 0x2E80;
    constexpr char32_t lastHangul = 0xD7A3;
    constexpr char32_t firstCompatible = 0xF900;
    return (character >= firstHangul && character <= lastHangulLetter)
        || (character >= firstIdeograph && character <= lastHangul) || character >= firstCompatible;
}

/// The text is well-formed UTF-8, or any guess will do.
Piece pieceAt(QByteArrayView text)
{
    const auto byte = static_cast<unsigned char>(text[0]);
    if (byte == '\\')
        return escapeAt(text);
    if (byte < 0x80)
        return {1, narrow, byte == ' '};
    if (byte < 0xE0)
        return {2, narrow};
    if (byte >= 0xF0)
        return {4, wide};
    const auto continuation = [&](qsizetype place) {
        return place < text.size() ? static_cast<unsigned char>(text[place]) & 0x3FU : 0U;
    };
    const char32_t character = ((byte & 0x0FU) << 12U) | (continuation(1) << 6U) | continuation(2);
    return {3, isWide(character) ? wide : narrow};
}

} // namespace

int estimatedLines(QByteArrayView writtenText)
{
    double width = 0;
    bool isBroken = false;
    while (!writtenText.isEmpty()) {
        const Piece piece = pieceAt(writtenText);
        isBroken = isBroken || (piece.isLineBreak && width > 0);
        if (!piece.isSpace && (isBroken || width + piece.width > lineWidth))
            return 2;
        if (!piece.isSpace || width > 0)
            width += piece.width;
        writtenText = writtenText.sliced(std::min(piece.length, writtenText.size()));
    }
    return 1;
}

HistoryLayout::HistoryLayout(
    const HistoryRows& rows, const QSet<QString>& opened, const CountLines& count)
{
    m_tops.reserve(rows.size());
    m_lines.reserve(rows.size());
    for (const HistoryRows::Day& day : rows.days())
        m_firstRows.append(day.firstRow);
    auto nextDay = m_firstRows.cbegin();
    for (qsizetype row = 0; row < rows.size(); ++row) {
        if (nextDay != m_firstRows.cend() && *nextDay == row) {
            m_height += dayHeight;
            ++nextDay;
        }
        const bool isOpened = !opened.isEmpty() && opened.contains(rows.idOf(row));
        m_tops.append(m_height);
        m_lines.append(static_cast<quint8>(
            isOpened ? std::max(count(row), 1) : estimatedLines(rows.writtenText(row))));
        m_height += heightWithoutText + m_lines.last() * lineHeight + gap;
    }
    if (m_height > 0)
        m_height += bottomMargin - gap;
}

QList<HistoryLayout::Item> HistoryLayout::itemsBetween(int top, int bottom) const
{
    QList<Item> items;
    for (qsizetype row = firstRowBelow(top); row < m_tops.size(); ++row) {
        const Item record = itemOfRow(row);
        const auto day = std::ranges::lower_bound(m_firstRows, row);
        const int dayTop = record.top - dayHeight;
        if (day != m_firstRows.cend() && *day == row && dayTop < bottom && record.top > top)
            items.append({true, day - m_firstRows.cbegin(), dayTop, dayHeight});
        if (record.top >= bottom)
            break;
        items.append(record);
    }
    return items;
}

HistoryLayout::Item HistoryLayout::itemOfRow(qsizetype row) const
{
    return {false, row, m_tops.at(row), heightWithoutText + linesOf(row) * lineHeight};
}

qsizetype HistoryLayout::firstRowBelow(int top) const
{
    auto row = std::ranges::upper_bound(m_tops, top) - m_tops.cbegin();
    if (row > 0 && itemOfRow(row - 1).top + itemOfRow(row - 1).height > top)
        --row;
    return row;
}

} // namespace tavrin::ui
