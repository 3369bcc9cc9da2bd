#pragma once

#include <QString>
#include <QStringList>

namespace tavrin {

class WordBreaker;

/// The words that a correction may have been about, without duplicates, in the order they are
/// found: Latin words that the change touches, Chinese words that it overlaps, and what was put in
/// where that is Chinese as a whole. None for a change that only deletes or is longer than a name
/// can be.
/// @param wordBreaker finds the Chinese words.
[[nodiscard]] QStringList dictionaryCandidatesFromOriginal(
    const QString& original, const QString& corrected, WordBreaker& wordBreaker);

/// Whether the look of @p term alone says that it is a name: digits, capitals within, or symbols.
[[nodiscard]] bool isHighConfidenceDictionaryTerm(const QString& term);

} // namespace tavrin
