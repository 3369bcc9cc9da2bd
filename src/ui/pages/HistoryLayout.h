#pragma once

#include "app/pages/history/HistoryRows.h"

#include <QList>
#include <QSet>

#include <functional>

namespace tavrin::ui {

/// Where the days and records of the history stand in the list, in points from its top. The heights
/// of a long history are known without laying out its texts.
class HistoryLayout {
public:
    /// A day's heading, or a record.
    struct Item {
        bool isDay = false;
        qsizetype index = 0; ///< Among the days, or the rows.
        int top = 0;
        int height = 0;

        friend bool operator==(const Item&, const Item&) = default;
    };

    /// How many lines all of the row's text takes.
    using CountLines = std::function<int(qsizetype row)>;

    HistoryLayout() = default;

    /// @param opened the ids of records that show all of their text; only those are counted.
    HistoryLayout(const HistoryRows& rows, const QSet<QString>& opened, const CountLines& count);

    /// Of everything together.
    [[nodiscard]] int height() const { return m_height; }

    /// What is seen, in part at least, between @p top and @p bottom.
    [[nodiscard]] QList<Item> itemsBetween(int top, int bottom) const;

    [[nodiscard]] Item itemOfRow(qsizetype row) const;

    /// How many lines the row has room for.
    [[nodiscard]] int linesOf(qsizetype row) const { return m_lines.at(row); }

    /// The first row that is not wholly above @p top; the number of rows when there is none.
    [[nodiscard]] qsizetype firstRowBelow(int top) const;

private:
    QList<int> m_tops; // Of the rows.
    QList<quint8> m_lines;
    QList<qsizetype> m_firstRows; // Of the days.
    int m_height = 0;
};

/// How many lines, 1 or 2, a text needs as it stands in the history's file, by an estimate of its
/// width: a wrong one costs an ellipsis, or an empty line.
[[nodiscard]] int estimatedLines(QByteArrayView writtenText);

} // namespace tavrin::ui
