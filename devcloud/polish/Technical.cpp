#include "devcloud/polish/Technical.h"

#include "devcloud/polish/Characters.h"
#include "devcloud/polish/EnglishWords.h"
#include "devcloud/text/Ascii.h"

#include <algorithm>
#include <string>

namespace tavrin::devcloud {
namespace {

bool isAddress(std::u32string_view run)
{
    return run.find(U"://") != std::u32string_view::npos || run.find(U'@') < run.size() - 1
        || run.starts_with(U"www.");
}

bool isFlag(std::u32string_view run)
{
    return run.size() > 1 && run.front() == U'-' && (run[1] == U'-' || isLatin(run[1]));
}

bool isCall(std::u32string_view run)
{
    const std::size_t at = run.find(U'(');
    return at != std::u32string_view::npos && at > 0 && isLatin(run[at - 1]);
}

bool isVariable(std::u32string_view run)
{
    const std::size_t at = run.find(U'$');
    return at != std::u32string_view::npos && at + 1 < run.size()
        && (isLatin(run[at + 1]) || run[at + 1] == U'{');
}

/// @p run is what stands between white space and Han characters.
bool isCode(std::u32string_view run)
{
    if (isAddress(run))
        return false;
    return isFlag(run) || isCall(run) || isVariable(run) || run == U"&" || run == U"&&"
        || run.find_first_of(U"{}[]<>|`=\\^*") != std::u32string_view::npos;
}

class Runs {
public:
    explicit Runs(std::u32string_view line)
        : m_rest(line)
    {
    }

    /// The next stretch without white space and Han characters; empty at the end.
    std::u32string_view next()
    {
        const auto separates = [](char32_t c) { return isBlank(c) || isHan(c); };
        const auto start = std::ranges::find_if_not(m_rest, separates);
        m_rest = std::u32string_view(start, m_rest.end());
        const auto end = std::ranges::find_if(m_rest, separates);
        const std::u32string_view run(m_rest.begin(), end);
        m_rest = std::u32string_view(end, m_rest.end());
        return run;
    }

private:
    std::u32string_view m_rest;
};

/// "kill -9": behind the first word a number with a sign is a flag.
bool isNumberFlag(std::u32string_view run)
{
    return run.size() > 1 && run[0] == U'-' && std::ranges::all_of(run.substr(1), isAsciiDigit);
}

/// "for i in" belongs to a loop, whatever follows.
bool isLoop(std::u32string_view first, std::u32string_view second, std::u32string_view third)
{
    return first == U"for" && second.size() == 1 && third == U"in";
}

} // namespace

bool isTechnical(std::u32string_view line)
{
    const bool opensWithRun = !line.empty() && !isHan(line.front());
    Runs runs(line);
    std::u32string beforeLast;
    std::u32string last;
    for (std::u32string_view run = runs.next(); !run.empty(); run = runs.next()) {
        std::u32string word = folded(run);
        const bool isFirst = last.empty() && opensWithRun;
        const bool isSecond = opensWithRun && !last.empty() && beforeLast.empty();
        const bool opensCommand = isFirst && isCommand(word);
        const bool isArgument = isSecond && mayBeCommand(last) && !isEnglish(word);
        if (isCode(run) || opensCommand || isArgument || (isSecond && isNumberFlag(run))
            || areCommand(last, word) || isLoop(beforeLast, last, word))
            return true;
        beforeLast = std::move(last);
        last = std::move(word);
    }
    return false;
}

bool isListItem(std::u32string_view line)
{
    const std::size_t end = line.find_first_not_of(U"0123456789一二三四五六七八九十");
    if (end == std::u32string_view::npos)
        return false;
    const bool isNumber = line[end] == U'.' && end + 1 < line.size() && isAsciiDigit(line[end + 1]);
    if (end > 0)
        return isOneOf(U".、)）．", line[end]) && !isNumber;
    return line.size() > 1 && isOneOf(U"-*•·+", line[0]) && isBlank(line[1]);
}

} // namespace tavrin::devcloud
