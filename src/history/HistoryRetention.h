#pragma once

#include "base/LocalizedText.h"
#include "base/Seconds.h"
#include "history/HistoryRecord.h"

#include <QString>

#include <array>

class QVariant;

/// How long results are kept.
namespace tavrin {

struct RetentionChoice {
    QStringView value; ///< What is stored under `historyRetention`.
    LocalizedText label;
};

/// In the order of the retention menu.
inline constexpr std::array retentionChoices{
    RetentionChoice{u"none", LocalizedText{u"不保存", u"不儲存", u"Don't save"}},
    RetentionChoice{u"7", LocalizedText{u"7 天", u"7 天", u"7 days"}},
    RetentionChoice{u"30", LocalizedText{u"30 天", u"30 天", u"30 days"}},
    RetentionChoice{u"90", LocalizedText{u"90 天", u"90 天", u"90 days"}},
    RetentionChoice{u"forever", LocalizedText{u"永久保存", u"永久儲存", u"Forever"}},
};

/// Seconds since 1970 before which records are removed at the time @p now; 0 removes none. A
/// setting that is neither "none" nor "forever" counts days, and reads as 0 when it is no number.
[[nodiscard]] double retentionCutoff(const QString& retention, Seconds now);

/// Removes what is older than @p cutoff (as retentionCutoff() gives it). False when nothing was.
bool pruneHistory(HistoryRecords& records, double cutoff);

} // namespace tavrin
