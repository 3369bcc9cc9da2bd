#pragma once

#include "base/Seconds.h"
#include "history/HistoryRecord.h"

class QTimeZone;

namespace tavrin {

/// How much was spoken, by what the history still holds. Nothing in it is negative or without a
/// bound, whatever the history's file says.
struct UsageFigures {
    qint64 today = 0; ///< UTF-16 units spoken since midnight, those of records from the future too.
    qint64 week = 0; ///< Since Monday's midnight.
    qint64 month = 0; ///< Since the first day's.
    qint64 total = 0;
    Seconds audio{0}; ///< Length of the recordings.
    Seconds saved{0}; ///< What typing the same would have taken, less recording and processing.
    qint64 speed = 0; ///< Units a minute; 0 when no recording has a length.

    friend bool operator==(const UsageFigures&, const UsageFigures&) = default;
};

/// The figures of @p records at the time @p now (since 1970), by the days of @p zone. Callable from
/// any thread.
[[nodiscard]] UsageFigures usageFigures(
    const HistoryRecords& records, Seconds now, const QTimeZone& zone);

} // namespace tavrin
