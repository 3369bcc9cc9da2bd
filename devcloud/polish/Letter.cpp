#include "devcloud/polish/Letter.h"

#include "devcloud/polish/Characters.h"
#include "devcloud/polish/ChineseSentence.h"
#include "devcloud/polish/EnglishLine.h"
#include "devcloud/polish/EnglishWords.h"
#include "devcloud/polish/Language.h"
#include "devcloud/polish/WordList.h"
#include "devcloud/text/Ascii.h"

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

/// "王明" or 技术部李小明 behind a sentence of its own, without a mark.
bool isHanSignature(std::u32string_view sentence)
{
    constexpr std::size_t longestAlone = 4;
    constexpr std::size_t longestWithOffice = 12;
    if (!std::ranges::all_of(sentence, [](char32_t c) { return isHan(c) || isBlank(c); }))
        return false;
    std::u32string simple(sentence);
    std::ranges::transform(simple, simple.begin(), simplified);
    return sentence.size() <= longestAlone
        || (sentence.size() <= longestWithOffice && !isChineseSentence(simple));
}

/// Whether a word may be a name: "Tom", "Miller", "tom".
bool mayBeName(const Run& run)
{
    return run.isPlain() && run.opening.empty()
        && (isAsciiUpper(run.word.front()) || !isEnglish(run.small));
}

/// "Tom Miller", without a mark.
bool isSignature(std::u32string_view sentence)
{
    const Runs runs = runsOf(sentence);
    const auto stands = [](const Run& run) { return mayBeName(run) && run.closing.empty(); };
    return isHanSignature(sentence)
        || (!runs.empty() && runs.size() <= longestName && std::ranges::all_of(runs, stands));
}

/// "Mr. Lee, …", "Ann, …", "To whom it may concern": whether the runs begin by addressing somebody.
bool mayAddress(const Runs& runs)
{
    static constexpr auto titles = std::to_array<std::u32string_view>(
        {U"mr", U"mrs", U"ms", U"miss", U"dr", U"prof", U"professor", U"sir", U"madam"});
    static constexpr auto everybody = std::to_array<std::u32string_view>({U"all", U"everyone",
        U"team", U"colleagues", U"friends", U"guys", U"ladies and gentlemen", U"dear all"});
    const auto comma = std::ranges::find_if(
        runs, [](const Run& run) { return run.closing == U"," || run.closing == U":"; });
    if (plainWords(runs).starts_with(U"to whom it may concern"))
        return true;
    if (comma == runs.end())
        return false;
    const Runs addressed(runs.begin(), comma + 1);
    const auto isNameOrTitle = [](const Run& run) {
        return contains(titles, run.small) || run.small == U"and" || mayBeName(run);
    };
    const bool opensWithName =
        contains(titles, addressed[0].small) || !isEnglish(addressed[0].small);
    return contains(everybody, plainWords(addressed))
        || (opensWithName && addressed.size() <= 2 * longestName
            && std::ranges::all_of(addressed, isNameOrTitle));
}

/// 李总，报告已发给您: a name with a title, or 各位, and a mark behind it.
bool mayAddressInHan(std::u32string_view line)
{
    constexpr std::size_t longestAddress = 6;
    static constexpr auto titles = std::to_array<std::u32string_view>({U"总", U"经理", U"老师",
        U"先生", U"女士", U"小姐", U"太太", U"主任", U"教授", U"医生", U"大夫", U"律师", U"老板",
        U"处长", U"局长", U"院长", U"校长", U"部长", U"科长", U"组长", U"董事长", U"主席", U"总监",
        U"主管", U"师傅", U"同学", U"博士", U"哥", U"姐", U"各位", U"大家", U"同事", U"同事们",
        U"领导", U"客户", U"用户", U"朋友", U"朋友们", U"老师们", U"同学们"});
    // 我问李老师，
    static constexpr std::u32string_view others =
        U"我你您他她它这那的问说找给跟和对向叫请见是有让被把";
    std::u32string address(line.substr(0, line.find_first_of(U"，,：:、")));
    if (address.size() == line.size() || address.size() > longestAddress)
        return false;
    std::ranges::transform(address, address.begin(), simplified);
    return std::ranges::all_of(address, isHan)
        && address.find_first_of(others) == std::u32string::npos
        && std::ranges::any_of(
            titles, [&address](std::u32string_view title) { return address.ends_with(title); });
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
        || greetingLength(runsOf(line)) > 0 || mayAddress(runsOf(line)) || mayAddressInHan(line)
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
