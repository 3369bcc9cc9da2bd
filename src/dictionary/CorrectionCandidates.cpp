#include "dictionary/CorrectionCandidates.h"

#include "dictionary/EditTracking.h"
#include "platform/WordBreaker.h"

#include <QList>

#include <algorithm>

namespace tavrin {
namespace {

constexpr qsizetype longestChange = 64;
constexpr qsizetype shortestTerm = 2;
constexpr qsizetype longestChineseTerm = 12;
constexpr qsizetype longestLatinWord = 40;
constexpr qsizetype longestCapitals = 12;
constexpr QStringView symbols = u"._+-";
constexpr QStringView signsInWords = u"._+'-";
constexpr char16_t firstIdeograph = 0x3400;
constexpr char16_t lastIdeograph = 0x9FFF;

bool overlap(const TextRange& a, const TextRange& b)
{
    return a.location < b.location + b.length && b.location < a.location + a.length;
}

bool touch(const TextRange& a, const TextRange& b)
{
    return overlap(a, b) || a.location == b.location + b.length
        || a.location + a.length == b.location;
}

bool isLatinLetter(QChar unit)
{
    return (unit >= u'A' && unit <= u'Z') || (unit >= u'a' && unit <= u'z');
}

bool isOfLatinWord(QChar unit)
{
    return isLatinLetter(unit) || (unit >= u'0' && unit <= u'9') || signsInWords.contains(unit);
}

/// A longer one is several. Whatever else @p text holds, halves of surrogate pairs too, is passed
/// over.
QList<TextRange> latinWords(QStringView text)
{
    QList<TextRange> words;
    qsizetype start = 0;
    while (start < text.size()) {
        if (!isLatinLetter(text[start])) {
            ++start;
            continue;
        }
        const QStringView most = text.sliced(start).left(longestLatinWord);
        const auto* const end = std::ranges::find_if_not(most, isOfLatinWord);
        const qsizetype length = end - most.begin();
        if (length >= shortestTerm)
            words.append({start, length});
        start += length;
    }
    return words;
}

bool isChineseTerm(QStringView text)
{
    return text.size() >= shortestTerm && text.size() <= longestChineseTerm
        && std::ranges::all_of(
            text, [](QChar unit) { return unit >= firstIdeograph && unit <= lastIdeograph; });
}

QStringView withoutPunctuationAround(QStringView text)
{
    while (!text.isEmpty() && text.front().isPunct())
        text = text.sliced(1);
    while (!text.isEmpty() && text.back().isPunct())
        text.chop(1);
    return text;
}

/// The stretch of @p corrected that took the place of something in @p original.
TextRange changeBetween(QStringView original, QStringView corrected)
{
    const qsizetype prefix = commonPrefixLengthBetween(original, corrected);
    const qsizetype suffix = commonSuffixLengthBetween(original, corrected, prefix);
    return {prefix, corrected.size() - prefix - suffix};
}

} // namespace

QStringList dictionaryCandidatesFromOriginal(
    const QString& original, const QString& corrected, WordBreaker& wordBreaker)
{
    if (original.isEmpty() || corrected.isEmpty() || original == corrected)
        return {};
    const TextRange change = changeBetween(original, corrected);
    if (change.length < 1 || change.length > longestChange)
        return {};

    QStringList found;
    for (const TextRange& word : latinWords(corrected)) {
        if (touch(word, change))
            found.append(corrected.sliced(word.location, word.length));
    }
    for (const TextRange& word : wordBreaker.words(corrected)) {
        const QStringView text = QStringView(corrected).sliced(word.location, word.length);
        if (overlap(word, change) && isChineseTerm(text))
            found.append(text.toString());
    }
    const QStringView changed = QStringView(corrected).sliced(change.location, change.length);
    const QStringView term = withoutPunctuationAround(changed).trimmed();
    if (isChineseTerm(term))
        found.append(term.toString());
    found.removeDuplicates();
    return found;
}

bool isHighConfidenceDictionaryTerm(const QString& term)
{
    const auto isCapital = [](QChar unit) { return unit.isLetter() && unit.isUpper(); };
    const auto isTelling = [](QChar unit) { return unit.isDigit() || symbols.contains(unit); };
    if (std::ranges::any_of(term, isTelling)
        || std::any_of(term.begin() + std::min<qsizetype>(1, term.size()), term.end(), isCapital))
        return true;
    const auto isNoSmallLetter = [&](QChar unit) { return !unit.isLetter() || isCapital(unit); };
    return term.size() <= longestCapitals && std::ranges::any_of(term, isCapital)
        && std::ranges::all_of(term, isNoSmallLetter);
}

} // namespace tavrin
