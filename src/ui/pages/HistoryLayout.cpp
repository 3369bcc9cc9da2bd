#include "ui/pages/HistoryLayout.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace tavrin::ui {
namespace {

constexpr int dayHeight = 34;
constexpr int gap = 10; // Between two records.
constexpr int heightWithoutText = 74;
constexpr int lineHeight = 20;
constexpr int bottomMargin = 22;

// In half points. An ideograph or a symbol is wide.
constexpr int lineWidth = 2 * 494;
constexpr std::uint8_t wide = 25;
constexpr std::uint8_t narrow = 13;
// No text of more bytes fits into a line, whatever it is made of but white space.
constexpr qsizetype mostBytes = 250;

/// What each byte of a text adds to its width: the first one of a character all of it. A backslash
/// adds nothing: the letter after it stands for the character.
constexpr std::array<std::uint8_t, 256> makeWidths()
{
    constexpr std::size_t firstContinuation = 0x80;
    constexpr std::size_t firstLead = 0xC0;
    constexpr std::size_t firstIdeograph = 0xE3; // Of three bytes; before it there are letters.
    std::array<std::uint8_t, 256> widths{};
    for (std::size_t byte = 0; byte < widths.size(); ++byte) {
        const bool isContinuation = byte >= firstContinuation && byte < firstLead;
        widths.at(byte) = isContinuation ? 0 : byte >= firstIdeograph ? wide : narrow;
    }
    widths.at('\\') = 0;
    return widths;
}

constexpr std::array<std::uint8_t, 256> widths = makeWidths();

/// There is more than white space on either side of a line break.
bool hasSecondLine(QByteArrayView text)
{
    bool hasFirst = false;
    bool isBroken = false;
    for (qsizetype place = 0; place < text.size(); ++place) {
        bool isSpace = text[place] == ' ';
        if (text[place] == '\\' && place + 1 < text.size()) {
            const char letter = text[++place];
            isBroken = isBroken || (hasFirst && letter == 'n');
            isSpace = letter == 'n' || letter == 'r' || letter == 't';
        }
        if (!isSpace && isBroken)
            return true;
        hasFirst = hasFirst || !isSpace;
    }
    return false;
}

} // namespace

int estimatedLines(QByteArrayView writtenText)
{
    if (writtenText.size() > mostBytes)
        return 2;
    int width = 0;
    bool hasEscapes = false;
    for (const char character : writtenText) {
        width += widths.at(static_cast<unsigned char>(character));
        hasEscapes = hasEscapes || character == '\\';
    }
    return width > lineWidth || (hasEscapes && hasSecondLine(writtenText)) ? 2 : 1;
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
