#include "dictionary/CandidateSightings.h"

#include "dictionary/CorrectionCandidates.h"
#include "dictionary/DictionaryStore.h"
#include "platform/Clock.h"
#include "platform/preferences/PreferenceKeys.h"
#include "platform/preferences/PreferenceValues.h"

#include <algorithm>
#include <limits>

namespace tavrin {
namespace {

/// A stored count, which may be anything: never below 0, and one more than it is still exact.
qlonglong readCount(const QVariant& stored)
{
    constexpr double most = std::numeric_limits<int>::max();
    return static_cast<qlonglong>(std::clamp(storedNumber(stored).value_or(0), 0.0, most));
}

} // namespace

bool learnDictionaryCandidates(
    Preferences& preferences, const Clock& clock, const QStringList& candidates)
{
    if (candidates.isEmpty())
        return false;
    QList<DictionaryEntry> entries = DictionaryEntries(preferences, clock);
    QVariantMap counts = valueOf(preferences, keys::dictionaryLearningCandidateCounts);
    const Seconds now = clock.sinceEpoch();
    bool changed = false;
    for (const QString& candidate : candidates) {
        const QString key = candidate.toLower();
        const qlonglong count = readCount(counts.value(key)) + 1;
        counts.insert(key, count);
        if (const auto known = indexOfTerm(entries, candidate)) {
            entries[*known] = entries[*known].sighted(now);
            changed = true;
        } else if (count >= (isHighConfidenceDictionaryTerm(candidate) ? 1 : 2)) {
            entries.prepend(DictionaryEntry::learned(candidate, now));
            changed = true;
        }
    }
    preferences.setValue(keys::dictionaryLearningCandidateCounts, counts);
    if (changed)
        SaveDictionaryEntries(preferences, entries);
    else
        preferences.synchronize();
    return changed;
}

} // namespace tavrin
