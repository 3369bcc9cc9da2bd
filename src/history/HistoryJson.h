#pragma once

#include "history/HistoryRecord.h"

#include <QByteArray>

#include <optional>

/// The history file's text: one JSON array of objects, newest first. Callable from any thread.
namespace tavrin {

struct ParsedHistory {
    HistoryRecords records;
    /// Something had to be mended: an element that was no object left out, a missing id or mode
    /// supplied.
    bool changed = false;
};

/// The records in @p text; empty when it is not one well-formed JSON array.
[[nodiscard]] std::optional<ParsedHistory> parseHistory(QByteArray text);

/// The text of a file that holds @p records, in pieces of about a megabyte, each handed to
/// @p write until that answers false. False when it did.
template <class Write>
[[nodiscard]] bool writeHistory(const HistoryRecords& records, Write write)
{
    constexpr qsizetype pieceSize = qsizetype(1) << 20;
    QByteArray piece;
    piece.reserve(pieceSize + (pieceSize / 4));
    piece.append('[');
    const char* separator = "\n";
    for (const HistoryRecord& record : records) {
        piece.append(separator).append(record.json());
        separator = ",\n";
        if (piece.size() >= pieceSize) {
            if (!write(piece))
                return false;
            piece.resize(0); // Keeps its memory.
        }
    }
    piece.append(records.isEmpty() ? "]" : "\n]\n");
    return write(piece);
}

/// The length of that text in bytes.
[[nodiscard]] qint64 writtenSize(const HistoryRecords& records);

} // namespace tavrin
