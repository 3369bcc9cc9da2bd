#include "dictionary/DictionaryStore.h"

#include "platform/Clock.h"
#include "platform/preferences/PreferenceKeys.h"
#include "platform/preferences/PreferenceValues.h"

#include <algorithm>
#include <tuple>
#include <vector>

namespace tavrin {
namespace {

void store(Preferences& preferences, const QList<DictionaryEntry>& entries)
{
    QVariantList stored;
    stored.reserve(entries.size());
    for (const DictionaryEntry& entry : entries)
        stored.append(entry.stored());
    preferences.setValue(keys::personalDictionaryEntries, stored);
}

QList<DictionaryEntry> entriesFromLegacyList(const QVariantList& legacy, Seconds now)
{
    QList<DictionaryEntry> entries;
    for (const QVariant& element : legacy) {
        if (element.typeId() == QMetaType::QString && !element.toString().isEmpty())
            entries.append(DictionaryEntry::manual(element.toString(), now));
    }
    return entries;
}

QList<DictionaryEntry> migrate(Preferences& preferences, Seconds now)
{
    QList<DictionaryEntry> entries =
        entriesFromLegacyList(valueOf(preferences, keys::personalDictionary), now);
    if (!entries.isEmpty()) {
        store(preferences, entries);
        preferences.synchronize();
    }
    return entries;
}

} // namespace

QList<DictionaryEntry> DictionaryEntries(Preferences& preferences, const Clock& clock)
{
    const QVariantList stored = valueOf(preferences, keys::personalDictionaryEntries);
    if (stored.isEmpty())
        return migrate(preferences, clock.sinceEpoch());

    QList<DictionaryEntry> entries;
    entries.reserve(stored.size());
    for (const QVariant& element : stored) {
        if (element.typeId() == QMetaType::QVariantMap)
            entries.append(DictionaryEntry{element.toMap()});
    }
    return entries;
}

void SaveDictionaryEntries(Preferences& preferences, const QList<DictionaryEntry>& entries)
{
    store(preferences, entries);

    QStringList mirror;
    for (const DictionaryEntry& entry : entries) {
        if (entry.isEnabled() && !entry.term().isEmpty())
            mirror.append(entry.term());
    }
    preferences.setValue(keys::personalDictionary, mirror);
    preferences.synchronize();
}

QStringList DictionaryTerms(const QList<DictionaryEntry>& entries)
{
    struct Usage {
        qint64 hitCount;
        Seconds updatedAt;
        QString term;
    };

    std::vector<Usage> usages; // Read once: a comparison must not search the stored maps.
    for (const DictionaryEntry& entry : entries) {
        if (entry.isEnabled() && !entry.term().isEmpty())
            usages.push_back({entry.hitCount(), entry.updatedAt(), entry.term()});
    }
    std::stable_sort(usages.begin(), usages.end(), [](const Usage& left, const Usage& right) {
        return std::tie(left.hitCount, left.updatedAt) > std::tie(right.hitCount, right.updatedAt);
    });

    QStringList terms;
    for (const Usage& usage : usages)
        terms.append(usage.term);
    return terms;
}

std::optional<qsizetype> indexOfTerm(const QList<DictionaryEntry>& entries, const QString& term)
{
    const auto found = std::find_if(entries.begin(), entries.end(),
        [&](const DictionaryEntry& entry) { return entry.hasTerm(term); });
    if (found == entries.end())
        return std::nullopt;
    return found - entries.begin();
}

bool isAutomaticDictionaryLearningOn(const Preferences& preferences)
{
    return valueOf(preferences, keys::automaticDictionaryLearning);
}

} // namespace tavrin
