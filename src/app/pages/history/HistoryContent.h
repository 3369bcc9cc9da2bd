#pragma once

#include "app/pages/history/HistoryRows.h"

#include <QSet>
#include <QString>

namespace tavrin {

/// What changes on the history page.
struct HistoryContent {
    QString historyStorageLabel;
    int historyRetentionPopup = 0; ///< The chosen row of `retentionChoices`.
    HistoryRows rows;
    QString
        emptyText; ///< Stands in place of the rows; empty where there are some or none is known.
    QSet<QString> openedRecordIDs; ///< Records that show all of their text, however long.
    QString copiedRecordID; ///< Says for a moment that it was copied; empty for none.

    bool isFinding = false; ///< The find field is there.
    QString query; ///< What is looked for; empty: everything is listed.
    QString matchCount; ///< Stands in the find field.
};

} // namespace tavrin
