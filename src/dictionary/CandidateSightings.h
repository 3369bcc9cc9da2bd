#pragma once

#include <QStringList>

namespace tavrin {

class Clock;
class Preferences;

/// Counts one sighting of each of @p candidates, words of a correction, and flushes to disk. A term
/// that is known, in whatever letter case, is noted as sighted; one that is not becomes an entry
/// with the first sighting where its look says that it is a name, else with the second. Nothing is
/// stored for no candidates. Main thread only.
/// @return whether the entries have changed.
bool learnDictionaryCandidates(
    Preferences& preferences, const Clock& clock, const QStringList& candidates);

} // namespace tavrin
