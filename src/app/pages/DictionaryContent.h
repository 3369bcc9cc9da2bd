#pragma once

#include <QList>
#include <QString>

namespace tavrin {

/// The segments of the filter, `dictionaryFilterControl`, in their order.
enum class DictionaryFilter { All, Learned, Manual };

/// One term in the list.
struct DictionaryRow {
    QString identifier; ///< Of the entry; empty for one that cannot be changed.
    QString term; ///< As stored: of any length, with whatever is in it.
    bool isLearned = false; ///< Else it was typed, or taken over.

    friend bool operator==(const DictionaryRow&, const DictionaryRow&) = default;
};

/// What the dictionary page shows.
struct DictionaryContent {
    QString searchText; ///< `dictionarySearchField`
    DictionaryFilter filter = DictionaryFilter::All;
    QString newTerm; ///< `dictionaryNewTermField`
    bool learnsCorrections = true;
    QList<DictionaryRow> rows; ///< `dictionaryDocumentView`, newest first.
    QString emptyText; ///< In place of the rows; empty while there are any.
    QString count;

    friend bool operator==(const DictionaryContent&, const DictionaryContent&) = default;
};

} // namespace tavrin
