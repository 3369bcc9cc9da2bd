#pragma once

#include "dictionary/DictionaryEntry.h"

#include <QList>
#include <QStringList>

#include <optional>

namespace tavrin {

class Clock;
class Preferences;

/// The personal dictionary, newest first; nothing is cached. While it is empty, the flat list that
/// older versions kept is taken over, and stored. Elements that are no entries are left out.
/// Main thread only, as the preferences are.
[[nodiscard]] QList<DictionaryEntry> DictionaryEntries(
    Preferences& preferences, const Clock& clock);

/// Stores @p entries and, for older readers, the flat list of the enabled terms; flushes to disk.
void SaveDictionaryEntries(Preferences& preferences, const QList<DictionaryEntry>& entries);

/// The enabled terms, most useful first: by hits, on equal hits the one touched last.
[[nodiscard]] QStringList DictionaryTerms(const QList<DictionaryEntry>& entries);

/// Where the first entry with this term stands; letter case does not count.
[[nodiscard]] std::optional<qsizetype> indexOfTerm(
    const QList<DictionaryEntry>& entries, const QString& term);

/// Whether corrections are learned; on unless switched off.
[[nodiscard]] bool isAutomaticDictionaryLearningOn(const Preferences& preferences);

} // namespace tavrin
