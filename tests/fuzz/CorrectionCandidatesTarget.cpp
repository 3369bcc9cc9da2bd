#include "dictionary/CorrectionCandidates.h"
#include "fuzz/Input.h"
#include "fuzz/Require.h"
#include "platform/WordBreaker.h"

#include <algorithm>

// What is learned from any correction of any text, however the Chinese in it falls into words.

namespace tavrin::fuzz {
namespace {

constexpr qsizetype longestChange = 64;
constexpr qsizetype longestLatin = 40;
constexpr qsizetype longestChinese = 12;

bool isIdeograph(QChar unit)
{
    return unit >= QChar(0x3400) && unit <= QChar(0x9FFF);
}

bool isLetter(QChar unit)
{
    return (unit >= u'A' && unit <= u'Z') || (unit >= u'a' && unit <= u'z');
}

bool isWithinLatin(QChar unit)
{
    return isLetter(unit) || (unit >= u'0' && unit <= u'9') || QStringView(u"._+'-").contains(unit);
}

/// Ideographs in words of one length after the other, everything else in runs.
class EvenWords final : public WordBreaker {
public:
    explicit EvenWords(qsizetype length)
        : m_length(length)
    {
    }

    [[nodiscard]] QList<TextRange> words(QStringView text) override
    {
        QList<TextRange> found;
        for (qsizetype i = 0; i < text.size(); ++i) {
            if (!text[i].isLetterOrNumber())
                continue;
            const bool goesOn = i > 0 && text[i - 1].isLetterOrNumber() && !found.isEmpty()
                && isIdeograph(text[i]) == isIdeograph(text[i - 1])
                && (!isIdeograph(text[i]) || found.last().length < m_length);
            if (!goesOn)
                found.append({i, 0});
            ++found.last().length;
        }
        return found;
    }

private:
    qsizetype m_length;
};

/// Some of the units are ideographs, and most of the others what Latin words have.
QString someText(Input& input)
{
    QString text = input.text();
    for (QChar& unit : text) {
        if (unit.unicode() >= 0x80 && unit.unicode() < 0xA0)
            unit = QChar(0x4E00 + unit.unicode());
        else if (unit.unicode() >= 0xA0 && unit.unicode() < 0xB0)
            unit = QStringView(u"._+'-，。“”· \nAz9ü")[unit.unicode() - 0xA0];
    }
    return text;
}

/// What took the place of something else: the least that can have.
TextRange putIn(const QString& original, const QString& corrected)
{
    qsizetype start = 0;
    while (
        start < corrected.size() && start < original.size() && original[start] == corrected[start])
        ++start;
    QString rest = original.mid(start);
    qsizetype end = corrected.size();
    while (end > start && !rest.isEmpty() && rest.back() == corrected[end - 1]) {
        rest.chop(1);
        --end;
    }
    return {start, end - start};
}

bool isLatinTerm(const QString& term)
{
    return term.size() >= 2 && term.size() <= longestLatin && isLetter(term.front())
        && std::ranges::all_of(term, isWithinLatin);
}

bool isChineseTerm(const QString& term)
{
    return term.size() >= 2 && term.size() <= longestChinese
        && std::ranges::all_of(term, isIdeograph);
}

/// Whether @p term stands where the change is, or right beside it.
bool standsAt(const TextRange& change, const QString& corrected, const QString& term)
{
    for (qsizetype at = corrected.indexOf(term); at >= 0; at = corrected.indexOf(term, at + 1)) {
        if (at <= change.location + change.length && at + term.size() >= change.location)
            return true;
    }
    return false;
}

/// Every word of the most letters that a name may have which the change is in or beside.
QStringList latinTerms(const QString& corrected, const TextRange& change)
{
    QStringList terms;
    qsizetype at = 0;
    while (at < corrected.size()) {
        qsizetype end = at;
        if (isLetter(corrected[at])) {
            while (
                end < corrected.size() && end < at + longestLatin && isWithinLatin(corrected[end]))
                ++end;
        }
        if (end - at < 2) {
            ++at;
            continue;
        }
        const QString term = corrected.mid(at, end - at);
        if (at <= change.location + change.length && end >= change.location
            && !terms.contains(term))
            terms.append(term);
        at = end;
    }
    return terms;
}

void checkCandidates(const QString& original, const QString& corrected, WordBreaker& words)
{
    const QStringList found = dictionaryCandidatesFromOriginal(original, corrected, words);
    require(found == dictionaryCandidatesFromOriginal(original, corrected, words),
        "the same correction teaches the same");
    const TextRange change = putIn(original, corrected);
    if (original.isEmpty() || change.length == 0 || change.length > longestChange) {
        require(found.isEmpty(), "no correction of a name teaches nothing");
        return;
    }
    // Words of two units at least, and each has one that was changed or is a neighbour; one more is
    // the change itself.
    require(found.size() <= (change.length + 2) / 2 + 2, "few words are at one place");
    QStringList latin;
    for (const QString& term : found) {
        require(isLatinTerm(term) || isChineseTerm(term), "a candidate looks like a term");
        require(standsAt(change, corrected, term), "a candidate stands where the change is");
        require(found.count(term) == 1, "a candidate is named once");
        if (isLatinTerm(term))
            latin.append(term);
    }
    require(latin == latinTerms(corrected, change), "every Latin word at the change is one");
}

} // namespace
} // namespace tavrin::fuzz

// NOLINTNEXTLINE(readability-identifier-naming): the name that libFuzzer calls.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace tavrin::fuzz;
    Input input(data, size);
    EvenWords words(1 + input.byte() % 16);
    const QString before = someText(input);
    const QString behind = someText(input);
    const QString original = before + someText(input) + behind;
    const QString corrected = before + someText(input) + behind;
    checkCandidates(original, corrected, words);
    checkCandidates(corrected, original, words);
    checkCandidates(original, before, words);
    checkCandidates(behind, input.restAsText(), words);
    return 0;
}
