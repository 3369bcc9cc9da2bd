#include "devcloud/polish/Cleanup.h"
#include "devcloud/polish/EnglishEndMark.h"
#include "devcloud/polish/EnglishLine.h"
#include "devcloud/polish/EnglishSounds.h"
#include "devcloud/polish/EnglishWords.h"
#include "devcloud/polish/Technical.h"
#include "devcloud/polish/WordList.h"

#include <algorithm>
#include <array>
#include <span>

namespace tavrin::devcloud {
namespace {

/// Whether a noun may begin with it: "the the cure" may be two words by mistake, "the the and the
/// cure" names a band.
bool mayOpenNoun(const Run& run)
{
    static constexpr auto others =
        std::to_array<std::u32string_view>({U"and", U"but", U"or", U"nor", U"is", U"are", U"was",
            U"were", U"has", U"have", U"had", U"do", U"does", U"did", U"will", U"would", U"can",
            U"could", U"should", U"may", U"might", U"must", U"of", U"in", U"on", U"at", U"to",
            U"for", U"from", U"with", U"by", U"as", U"than", U"then", U"that", U"which", U"who",
            U"when", U"if", U"because", U"not", U"i", U"we", U"you", U"he", U"she", U"they", U"it",
            U"isn't", U"wasn't", U"aren't", U"weren't", U"don't", U"doesn't", U"didn't"});
    return !contains(others, run.small);
}

/// Without words that are said twice and cannot be meant twice: "the the", and "I I" that opens a
/// sentence. "You you", "had had", "that that" … can.
Runs withoutRepeats(Runs runs)
{
    static constexpr auto anywhere =
        std::to_array<std::u32string_view>({U"the", U"an", U"our", U"their"});
    Runs kept;
    for (std::size_t at = 0; at < runs.size(); ++at) {
        Run& run = runs[at];
        const bool isSecond = !kept.empty() && kept.back().closing.empty() && run.opening.empty()
            && kept.back().small == run.small && (run.isSmall() || run.small == U"i");
        const bool opens =
            kept.size() == 1 || (kept.size() > 1 && kept[kept.size() - 2].endsSentence());
        // With nothing or a mark behind it, it may be a name or a letter.
        const bool leadsOn = at + 1 < runs.size() && run.closing.empty();
        const bool isStammered = (opens && run.small == U"i")
            || (leadsOn && contains(anywhere, run.small) && mayOpenNoun(runs[at + 1]));
        if (!isSecond || !isStammered || !leadsOn)
            kept.push_back(std::move(run));
    }
    return kept;
}

/// "The variable i", "world war i".
bool isFollowedByLetter(const Run& run)
{
    static constexpr auto names = std::to_array<std::u32string_view>({U"variable", U"index",
        U"letter", U"counter", U"parameter", U"integer", U"loop", U"int", U"let", U"for", U"called",
        U"named", U"character", U"type", U"vitamin", U"world", U"war", U"point", U"set", U"part",
        U"chapter", U"section", U"phase", U"volume", U"act"});
    return contains(names, run.small);
}

/// "You and i", and at the beginning "i and my sister", but not "i and j".
bool isCoupled(const Runs& runs, std::size_t at)
{
    static constexpr auto before = std::to_array<std::u32string_view>({U"you", U"he", U"she"});
    static constexpr auto behind = std::to_array<std::u32string_view>(
        {U"my", U"our", U"his", U"her", U"you", U"he", U"she", U"we", U"they"});
    if (at == 0)
        return runs.size() > 2 && runs[1].small == U"and" && contains(behind, runs[2].small);
    return at > 1 && runs[at - 1].small == U"and" && contains(before, runs[at - 2].small);
}

/// "I" in all its forms. A lone letter is that between two words of English, unless they are such
/// as stand beside a variable, a number of a chapter or a war.
bool isPronoun(const Runs& runs, std::size_t at)
{
    static constexpr auto forms =
        std::to_array<std::u32string_view>({U"i'm", U"i'll", U"i've", U"i'd"});
    static constexpr auto operators = std::to_array<std::u32string_view>({U"in", U"is", U"equals",
        U"plus", U"minus", U"times", U"to", U"of", U"becomes", U"goes", U"runs", U"rows", U"and",
        U"with", U"by", U"from", U"until", U"as", U"or", U"if", U"on", U"at", U"into"});
    static constexpr auto wantSubject = std::to_array<std::u32string_view>({U"am", U"do", U"did",
        U"can", U"could", U"should", U"would", U"will", U"may", U"shall", U"have", U"had", U"was",
        U"when", U"that", U"because", U"what", U"where", U"how", U"why", U"than", U"while", U"so",
        U"but", U"before", U"after", U"until", U"though", U"think", U"know", U"said"});
    if (contains(forms, runs[at].small))
        return true;
    if (runs[at].small != U"i" || (at > 0 && isFollowedByLetter(runs[at - 1])))
        return false;
    const bool follows = at > 0 && contains(wantSubject, runs[at - 1].small);
    if (at + 1 == runs.size())
        return follows || (at > 0 && isCoupled(runs, at));
    const Run& next = runs[at + 1];
    const bool opens = at == 0 || !runs[at - 1].closing.empty();
    const bool isSubject = opens || follows || isCoupled(runs, at) || isEnglish(runs[at - 1].small);
    return isVerbOfSpeaker(next.small) || (at == 0 && isCoupled(runs, at))
        || (isSubject && isEnglish(next.small) && !contains(operators, next.small));
}

/// Days and months, but for "march", "may" and "august", which are words of other meanings too.
bool isDayOrMonth(std::u32string_view word)
{
    static constexpr auto names = std::to_array<std::u32string_view>({U"monday", U"tuesday",
        U"wednesday", U"thursday", U"friday", U"saturday", U"sunday", U"january", U"february",
        U"april", U"june", U"july", U"september", U"october", U"november", U"december"});
    if (word.ends_with(U"'s"))
        word.remove_suffix(2);
    else if (word.ends_with(U's'))
        word.remove_suffix(1);
    return contains(names, word);
}

/// "In may" at the end of a sentence that has told of another month: "those who came in may" has
/// not.
bool isMonthBesideAnother(const Runs& runs, std::size_t at)
{
    static constexpr auto otherWords =
        std::to_array<std::u32string_view>({U"march", U"may", U"august"});
    static constexpr auto relating =
        std::to_array<std::u32string_view>({U"who", U"that", U"which", U"whoever", U"whom",
            U"whose", U"those", U"anyone", U"everyone", U"if", U"whether", U"people", U"ones"});
    const bool isLast = at + 1 == runs.size() || runs[at].endsSentence();
    if (!contains(otherWords, runs[at].small) || !isLast || at == 0 || runs[at - 1].small != U"in")
        return false;
    bool toldAnother = false;
    for (std::size_t before = at; before-- > 0 && !runs[before].endsSentence();) {
        if (contains(relating, runs[before].small))
            return false;
        toldAnother = toldAnother
            || (before > 0 && runs[before - 1].small == U"in" && isDayOrMonth(runs[before].small));
    }
    return toldAnother;
}

/// Whether a sentence has ended beyond doubt before the run at @p at.
bool followsSentence(const Runs& runs, std::size_t at)
{
    const Run& before = runs[at - 1];
    return before.endsSentence() && before.closing.size() == 1 && mayEndSentence(before);
}

/// A word that opens a sentence is left as it is when it may be the name of a program.
bool wantsCapital(const Runs& runs, std::size_t at, bool opensText, bool technical)
{
    const Run& run = runs[at];
    if (!technical
        && (isDayOrMonth(run.small) || isPronoun(runs, at) || isMonthBesideAnother(runs, at)))
        return true;
    // "i is the index": a variable opens no sentence with a capital.
    if (run.small == U"i" && (runs.size() < 2 || !technical || !isVerbOfSpeaker(runs[1].small)))
        return false;
    // "today = x", "hello: world"
    const bool isProse = run.closing.empty() && runs.size() > 1 && runs[1].isPlain()
        && isEnglish(runs[1].small) && opensProse(run.small);
    const bool isKnown = technical ? isProse : isEnglish(run.small) || isSound(run);
    const bool opens = at == 0 ? opensText : !technical && followsSentence(runs, at);
    return opens && isKnown && run.opening.empty();
}

void capitalize(Runs& runs, bool opensText, bool technical)
{
    for (std::size_t at = 0; at < runs.size(); ++at) {
        if (runs[at].isPlain() && runs[at].isSmall()
            && wantsCapital(runs, at, opensText, technical))
            runs[at].capitalize();
    }
}

void collapseBlanks(Runs& runs)
{
    for (std::size_t at = 1; at < runs.size(); ++at) {
        if (runs[at - 1].isPlain() && runs[at].isPlain())
            runs[at].blanks.assign(1, U' ');
    }
}

/// No sentence ends with these, whatever name follows.
bool isTitle(const Run& run)
{
    return run.closing == U"." && (run.small == U"mr" || run.small == U"mrs");
}

/// "We open at 9 a.m. and close at noon": whether the sentence goes on behind that mark.
bool goesOn(std::span<const Run> rest)
{
    static constexpr auto joining = std::to_array<std::u32string_view>({U"and", U"or"});
    return rest.size() > 1 && contains(joining, rest[0].small) && rest[0].isSmall()
        && !mayAskInEnglish(rest);
}

std::u32string_view endMark(const Runs& runs)
{
    const auto lastMark = std::find_if(runs.rbegin(), runs.rend(),
        [](const Run& run) { return run.endsSentence() && !isTitle(run); });
    const std::span<const Run> rest(lastMark.base(), runs.end());
    const std::u32string_view mark = englishEndMark(rest);
    if (lastMark == runs.rend() || mayEndSentence(*lastMark))
        return mark;
    // "What they want in the U.S. is": the sentence may have begun before that mark.
    const auto lastEnd = std::find_if(lastMark, runs.rend(),
        [](const Run& run) { return run.endsSentence() && mayEndSentence(run); });
    const std::u32string_view longer = englishEndMark({lastEnd.base(), runs.end()});
    const bool isOne = longer == U"." && lastMark->closing == U"." && goesOn(rest);
    return mark == longer || isOne ? longer : U"";
}

} // namespace

std::u32string cleanedEnglish(std::u32string_view line, bool isWhole)
{
    Runs runs = runsOf(line);
    const bool isLabel = runs.empty() || runs.front().closing == U":";
    const bool technical = isLabel || isTechnical(line) || isListItem(line);
    if (!technical) {
        runs = withoutRepeats(withoutSounds(std::move(runs)));
        collapseBlanks(runs);
    }
    capitalize(runs, isWhole, technical);
    std::u32string text = textOf(runs);
    if (isWhole && !technical)
        text += endMark(runs);
    return text;
}

} // namespace tavrin::devcloud
