#include "devcloud/polish/Letter.h"

#include "devcloud/polish/Characters.h"
#include "devcloud/polish/EnglishLine.h"
#include "devcloud/polish/Language.h"
#include "devcloud/polish/WordList.h"

#include <algorithm>
#include <array>

namespace tavrin::devcloud {
namespace {

constexpr auto hanGreetings = std::to_array<std::u32string_view>(
    {U"您好", U"你好", U"大家好", U"早上好", U"上午好", U"下午好", U"晚上好", U"早安", U"午安"});
constexpr auto hanAddresses =
    std::to_array<std::u32string_view>({U"尊敬的", U"敬爱的", U"敬愛的", U"亲爱的", U"親愛的"});
constexpr auto hanClosings = std::to_array<std::u32string_view>({U"此致敬礼", U"此致敬禮",
    U"此致 敬礼", U"此致 敬禮", U"此致", U"祝好", U"顺祝商祺", U"順頌商祺", U"顺颂商祺", U"敬上"});
constexpr auto closings = std::to_array<std::u32string_view>({U"best regards", U"kind regards",
    U"warm regards", U"yours sincerely", U"yours truly", U"yours faithfully", U"sincerely",
    U"best wishes", U"with best regards", U"with kind regards"});
/// A name with a title has no more words.
constexpr std::size_t longestName = 3;

/// The words in small letters with one space between them, without marks.
std::u32string plainWords(const Runs& runs)
{
    std::u32string text;
    for (const Run& run : runs) {
        if (run.small.empty())
            continue;
        if (!text.empty())
            text += U' ';
        text += run.small;
    }
    return text;
}

/// The length in words of the greeting that the runs begin with; 0 when it is none.
std::size_t greetingLength(const Runs& runs)
{
    static constexpr auto single =
        std::to_array<std::u32string_view>({U"hi", U"hello", U"hey", U"dear", U"greetings"});
    static constexpr auto times =
        std::to_array<std::u32string_view>({U"morning", U"afternoon", U"evening", U"day"});
    if (runs.empty())
        return 0;
    if (contains(single, runs[0].small))
        return 1;
    const bool isTime =
        runs.size() > 1 && runs[0].small == U"good" && contains(times, runs[1].small);
    return isTime ? 2 : 0;
}

std::u32string_view withoutMarks(std::u32string_view sentence)
{
    while (!sentence.empty() && isPause(sentence.back()))
        sentence.remove_suffix(1);
    return sentence;
}

/// "王总您好": a name at most stands before it.
bool isHanGreeting(std::u32string_view sentence)
{
    constexpr std::size_t longestAddress = 5;
    // 祝您好, 他说你好
    static constexpr std::u32string_view verbs = U"祝说說问問愿願比对對是像不";
    const std::u32string_view words = withoutMarks(sentence);
    return std::ranges::any_of(hanGreetings, [words](std::u32string_view greeting) {
        if (!words.ends_with(greeting) || words.size() > greeting.size() + longestAddress)
            return false;
        return words.find_first_of(verbs) == std::u32string_view::npos
            && std::ranges::all_of(words, [](char32_t c) { return isHan(c) || c == U'，'; });
    });
}

bool greets(const Sentence& sentence)
{
    const Runs runs = runsOf(sentence.text);
    const std::size_t length = greetingLength(runs);
    const bool isName = std::ranges::all_of(
        runs, [](const Run& run) { return run.isPlain() && !run.endsWithComma(); });
    return isHanGreeting(sentence.text)
        || (length > 0 && runs.size() <= length + longestName && isName);
}

bool closes(const Sentence& sentence)
{
    if (contains(hanClosings, withoutMarks(sentence.text)))
        return true;
    const Runs runs = runsOf(sentence.text);
    const std::u32string words = plainWords(runs);
    return std::ranges::any_of(closings, [&runs, &words](std::u32string_view closing) {
        if (words == closing)
            return true;
        const auto length = static_cast<std::size_t>(std::ranges::count(closing, U' ')) + 1;
        return words.starts_with(std::u32string(closing) + U' ')
            && runs.size() <= length + longestName && !runs.back().endsSentence();
    });
}

/// "王明" behind a sentence of its own, without a mark.
bool isSignature(std::u32string_view sentence)
{
    constexpr std::size_t longest = 4;
    return sentence.size() <= longest && std::ranges::all_of(sentence, isHan);
}

/// 您好这个词 speaks of the greeting itself; @p rest stands behind it.
bool isMention(std::u32string_view rest)
{
    static constexpr auto mentions =
        std::to_array<std::u32string_view>({U"这个词", U"这两个字", U"两个字", U"二字"});
    constexpr std::size_t longest = 4;
    std::u32string simple(rest.substr(0, longest));
    std::ranges::transform(simple, simple.begin(), simplified);
    return std::ranges::any_of(
        mentions, [&simple](auto mention) { return simple.starts_with(mention); });
}

} // namespace

LetterParts partsOfLetter(std::span<const Sentence> sentences)
{
    constexpr std::size_t longestClosing = 3; // The close, a name, a place.
    LetterParts parts;
    if (sentences.size() > 1 && greets(sentences.front()))
        parts.greeting = 1;
    for (std::size_t size = 1; size <= longestClosing && size + parts.greeting < sentences.size();
         ++size) {
        if (closes(sentences[sentences.size() - size]))
            parts.closing = size;
    }
    return parts;
}

bool mayGreet(std::u32string_view text)
{
    // 你好像, 你好几
    static constexpr std::u32string_view otherWords = U"像几幾多久奇好歹心意学學在不";
    const auto opens = [text](std::u32string_view phrase) {
        return text.starts_with(phrase) && !isMention(text.substr(phrase.size()))
            && !(text.size() > phrase.size() && isOneOf(otherWords, text[phrase.size()]));
    };
    const std::u32string_view line = text.substr(0, text.find(U'\n'));
    return std::ranges::any_of(hanGreetings, opens) || std::ranges::any_of(hanAddresses, opens)
        || greetingLength(runsOf(line)) > 0
        || isHanGreeting(line.substr(0, line.find_first_of(U"。！")))
        || isHanGreeting(line.substr(0, line.find(U'，')));
}

bool mayClose(std::span<const Sentence> sentences)
{
    const Sentence& last = sentences.back();
    if (sentences.size() > 1 && isSignature(last.text))
        return true;
    static constexpr auto openings = std::to_array<std::u32string_view>(
        {U"best", U"yours", U"cheers", U"regards", U"sincerely", U"thanks", U"many"});
    const Runs runs = runsOf(last.text);
    const auto comma = std::ranges::find_if(runs, &Run::endsWithComma);
    const bool isEnglishClose =
        comma != runs.end() && comma - runs.begin() < 2 && contains(openings, runs[0].small);
    const std::u32string_view words = withoutMarks(last.text);
    return isEnglishClose || std::ranges::any_of(hanClosings, [words](std::u32string_view closing) {
        return words.ends_with(closing)
            || (words.starts_with(closing) && !isHan(words[closing.size()]));
    });
}

} // namespace tavrin::devcloud
