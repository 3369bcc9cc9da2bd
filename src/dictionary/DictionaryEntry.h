#pragma once

#include "base/Seconds.h"

#include <QString>
#include <QVariantMap>

namespace tavrin {

/// One term of the personal dictionary, as it is stored. What other versions wrote beside the known
/// keys is kept; a known key of the wrong type reads as if it were absent.
class DictionaryEntry {
public:
    explicit DictionaryEntry(QVariantMap stored);

    /// A term that the user typed, created @p now (seconds since 1970).
    [[nodiscard]] static DictionaryEntry manual(const QString& term, Seconds now);

    /// A term that was learned from a correction, created and seen for the first time @p now.
    [[nodiscard]] static DictionaryEntry learned(const QString& term, Seconds now);

    [[nodiscard]] const QVariantMap& stored() const { return m_stored; }

    /// An upper-case UUID; empty when there is none.
    [[nodiscard]] QString id() const;

    /// Empty when there is none.
    [[nodiscard]] QString term() const;

    /// "manual" or "auto"; "manual" when absent.
    [[nodiscard]] QString source() const;

    [[nodiscard]] Seconds createdAt() const;

    /// The last edit or the last learned sighting, since 1970.
    [[nodiscard]] Seconds updatedAt() const;

    /// How often correction learning has seen the term.
    [[nodiscard]] qint64 hitCount() const;

    [[nodiscard]] bool isEnabled() const;

    /// Whether @p text is the same term; letter case does not count.
    [[nodiscard]] bool hasTerm(const QString& text) const;

    /// The same entry with another spelling.
    [[nodiscard]] DictionaryEntry renamed(const QString& term, Seconds now) const;

    /// The same entry, seen once more in a correction.
    [[nodiscard]] DictionaryEntry sighted(Seconds now) const;

    friend bool operator==(const DictionaryEntry&, const DictionaryEntry&) = default;

private:
    QVariantMap m_stored;
};

} // namespace tavrin
