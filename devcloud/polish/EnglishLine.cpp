#include "devcloud/polish/EnglishLine.h"

#include "devcloud/polish/Characters.h"
#include "devcloud/polish/EnglishWords.h"
#include "devcloud/text/Ascii.h"

#include <algorithm>

namespace tavrin::devcloud {
namespace {

constexpr std::u32string_view openingMarks = U"\"'(“‘";
constexpr std::u32string_view closingMarks = U"\"')”’.,!?;:…";

Run takenApart(std::u32string_view blanks, std::u32string_view text)
{
    const std::size_t start = std::min(text.find_first_not_of(openingMarks), text.size());
    const std::size_t last = text.find_last_not_of(closingMarks);
    const std::size_t end = last == std::u32string_view::npos ? start : std::max(last + 1, start);
    const std::u32string_view word = text.substr(start, end - start);
    return {std::u32string(blanks), std::u32string(text.substr(0, start)), std::u32string(word),
        std::u32string(text.substr(end)), folded(word)};
}

} // namespace

bool Run::isPlain() const
{
    if (word.empty() || !isLatin(word.front()) || !isLatin(word.back()))
        return false;
    return std::ranges::all_of(word, [](char32_t c) { return isLatin(c) || isOneOf(U"'’-", c); });
}

bool Run::isSmall() const
{
    return std::ranges::all_of(
        word, [](char32_t c) { return isAsciiLower(c) || isOneOf(U"'’-", c); });
}

bool Run::endsSentence() const
{
    return std::ranges::any_of(closing, devcloud::endsSentence)
        && closing.find(U"..") == std::u32string::npos;
}

void Run::capitalize()
{
    if (!word.empty() && isAsciiLower(word.front()))
        word.front() -= U'a' - U'A';
}

Runs runsOf(std::u32string_view line)
{
    Runs runs;
    while (!line.empty()) {
        const auto start = std::ranges::find_if_not(line, isBlank);
        const auto end = std::find_if(start, line.end(), isBlank);
        runs.push_back(takenApart({line.begin(), start}, {start, end}));
        line = {end, line.end()};
    }
    return runs;
}

std::u32string textOf(const Runs& runs)
{
    std::u32string text;
    for (const Run& run : runs)
        text.append(run.blanks).append(run.opening).append(run.word).append(run.closing);
    return text;
}

bool mayEndSentence(const Run& run)
{
    // Words that are also short for something.
    constexpr std::u32string_view abbreviations =
        U" no in am is sat sun mar jan art fig min max long sing add rep dim rev sec ";
    constexpr std::size_t shortest = 2;
    const bool isShort = abbreviations.find(U' ' + run.small + U' ') != std::u32string_view::npos;
    return run.isPlain() && run.small.size() >= shortest && isEnglish(run.small) && !isShort;
}

} // namespace tavrin::devcloud
