#include "devcloud/polish/ChineseSentence.h"

#include "devcloud/polish/Characters.h"
#include "devcloud/polish/Language.h"
#include "devcloud/polish/Technical.h"

#include <algorithm>
#include <array>
#include <span>
#include <string>

namespace tavrin::devcloud {
namespace {

using Phrases = std::span<const std::u32string_view>;

bool holds(std::u32string_view text, std::u32string_view phrase)
{
    return text.find(phrase) != std::u32string_view::npos;
}

bool holdsAny(std::u32string_view text, Phrases phrases)
{
    return std::ranges::any_of(phrases, [text](auto phrase) { return holds(text, phrase); });
}

bool startsWithAny(std::u32string_view text, Phrases phrases)
{
    return std::ranges::any_of(phrases, [text](auto phrase) { return text.starts_with(phrase); });
}

bool endsWithAny(std::u32string_view text, Phrases phrases)
{
    return std::ranges::any_of(phrases, [text](auto phrase) { return text.ends_with(phrase); });
}

/// @p text from behind the last of its marks for which @p isMark is true.
std::u32string_view behindLast(std::u32string_view text, bool (*isMark)(char32_t))
{
    const auto last = std::find_if(text.rbegin(), text.rend(), isMark);
    return text.substr(static_cast<std::size_t>(text.rend() - last));
}

/// Whether the text ends in what may be part of an address: "/文档", "/api打不开".
bool endsInAddress(std::u32string_view text)
{
    constexpr std::ptrdiff_t longestName = 4;
    const std::u32string_view run = behindLast(text, isBlank);
    // 例子.中国
    const std::size_t dot = run.rfind(U'.');
    if (dot != std::u32string_view::npos && dot > 0 && isHan(run[dot - 1])
        && run.size() - dot <= static_cast<std::size_t>(longestName))
        return true;
    const std::size_t separator = run.find_last_of(U"/\\@");
    if (separator == std::u32string_view::npos)
        return false;
    const auto lastOther = std::find_if_not(run.rbegin(), run.rend(), isHan);
    const bool isInName = isOneOf(U"/\\", *lastOther);
    return isInName || lastOther - run.rbegin() < longestName;
}

/// 去不去, 有没有, 同意不同意
bool holdsChoice(std::u32string_view text)
{
    for (std::size_t at = 1; at + 1 < text.size(); ++at) {
        if (!isOneOf(U"不没", text[at]))
            continue;
        if (isHan(text[at - 1]) && text[at - 1] == text[at + 1])
            return true;
        if (at >= 2 && text.substr(at - 2, 2) == text.substr(at + 1, 2))
            return true;
    }
    return false;
}

/// 几 and 哪 are parts of other words too.
bool holdsUnless(std::u32string_view text, char32_t character, char32_t before, char32_t after)
{
    for (std::size_t at = text.find(character); at != std::u32string_view::npos;
         at = text.find(character, at + 1)) {
        const bool isOther =
            (at > 0 && text[at - 1] == before) || (at + 1 < text.size() && text[at + 1] == after);
        if (!isOther)
            return true;
    }
    return false;
}

/// A narrow full stop stands in "main.cpp" and "3.5" too.
bool endsChineseSentence(char32_t c)
{
    return c != U'.' && endsSentence(c);
}

/// 你确定, 您要咖啡: the voice alone tells whether it asks.
bool isAskedByVoice(std::u32string_view clause)
{
    static constexpr auto listeners =
        std::to_array<std::u32string_view>({U"你们", U"您们", U"你", U"您"});
    static constexpr auto verbs = std::to_array<std::u32string_view>(
        {U"确定", U"肯定", U"真的", U"要", U"想", U"有", U"能", U"会", U"喝", U"认识", U"知道",
            U"懂", U"明白", U"同意", U"愿意", U"喜欢", U"记得", U"饿", U"累", U"困", U"没事",
            U"在家", U"到家了", U"到了", U"下班了", U"吃了", U"吃饭了", U"睡了"});
    const auto listener = std::ranges::find_if(
        listeners, [clause](std::u32string_view word) { return clause.starts_with(word); });
    return listener != listeners.end() && startsWithAny(clause.substr(listener->size()), verbs);
}

bool mayAsk(std::u32string_view sentence)
{
    static constexpr auto asking = std::to_array<std::u32string_view>({U"吗", U"呢", U"什么", U"怎",
        U"谁", U"多少", U"多久", U"多大", U"多远", U"多长", U"啥", U"咋", U"如何", U"为何", U"是否",
        U"能否", U"可否", U"难道", U"还是", U"到底", U"究竟", U"何时", U"何处", U"何地", U"多高",
        U"多重", U"多深", U"多快", U"多宽", U"多厚", U"干嘛", U"唔", U"咗", U"贵姓", U"请问", U"岂",
        U"何必", U"何苦", U"何不", U"何妨", U"莫非", U"难不成"});
    static constexpr auto endings =
        std::to_array<std::u32string_view>({U"吧", U"嘛", U"么", U"没", U"没有", U"不", U"未"});
    // 这么多人啊: somebody asks whether it is so, or cries out.
    return holdsAny(sentence, asking) || endsWithAny(sentence, endings) || holdsChoice(sentence)
        || sentence.ends_with(U'啊') || holdsUnless(sentence, U'几', U'茶', U'乎')
        || holdsUnless(sentence, U'哪', U'\0', U'怕')
        || isAskedByVoice(behindLast(sentence, isPause));
}

/// 你几点来我几点走 makes the one depend on the other.
bool asksTwice(std::u32string_view clause)
{
    static constexpr auto asking = std::to_array<std::u32string_view>(
        {U"几点", U"何时", U"哪", U"谁", U"什么", U"多少", U"怎么"});
    return std::ranges::any_of(
        asking, [clause](auto word) { return clause.find(word) != clause.rfind(word); });
}

/// 你几点到, 这个多少钱: short, addressed to somebody, and with nobody in it who knows or wonders.
bool isShortQuestion(std::u32string_view clause)
{
    constexpr std::size_t longest = 8;
    static constexpr auto subjects =
        std::to_array<std::u32string_view>({U"你", U"您", U"这", U"那", U"现在", U"今天", U"明天",
            U"洗手间", U"卫生间", U"停车场", U"地铁站", U"出口", U"入口", U"电梯"});
    static constexpr auto endings = std::to_array<std::u32string_view>({U"贵姓", U"多少钱",
        U"在哪里", U"在哪儿", U"在哪", U"是谁", U"是什么", U"怎么样", U"怎么办", U"几点", U"几点了",
        U"几点到", U"几点来", U"几点去", U"几点走", U"几点起床", U"几点睡", U"几点下班",
        U"几点上班", U"几点开会", U"几点回来", U"几点有空", U"何时回来", U"何时来", U"何时到",
        U"何时走", U"何时出发", U"何时有空", U"在干嘛", U"在乾嘛", U"在幹嘛"});
    static constexpr auto others = std::to_array<std::u32string_view>(
        {U"知道", U"告诉", U"问", U"明白", U"清楚", U"忘", U"看", U"想", U"管", U"猜", U"听", U"说",
            U"懂", U"无论", U"不论", U"随便", U"都", U"也", U"就", U"不", U"没", U"那几", U"这几",
            U"查", U"算", U"确认", U"打听", U"取决", U"关系", U"定", U"选", U"挑", U"安排", U"记"});
    return clause.size() <= longest && startsWithAny(clause, subjects)
        && endsWithAny(clause, endings) && !holdsAny(clause, others) && !asksTwice(clause);
}

/// 你吃饭了么. 饿了么 is a name, and in 这就对了么 it stands for 嘛.
bool isInformalQuestion(std::u32string_view clause)
{
    static constexpr auto listeners = std::to_array<std::u32string_view>({U"你", U"您"});
    static constexpr auto names = std::to_array<std::u32string_view>({U"饿了么", U"餓了么"});
    return startsWithAny(clause, listeners) && clause.ends_with(U"了么")
        && !endsWithAny(clause, names)
        && clause.find_first_of(U"就都早不也") == std::u32string_view::npos;
}

/// 请问我可以坐这里: what stands behind 请问 is asked of the listener, and not of somebody else.
bool isPoliteQuestion(std::u32string_view asked)
{
    constexpr std::size_t shortest = 4;
    constexpr std::size_t longest = 10;
    static constexpr auto openings =
        std::to_array<std::u32string_view>({U"我可以", U"我能", U"您是", U"你是", U"您叫", U"你叫",
            U"您有", U"你有", U"这是", U"那是", U"这里是", U"那里是"});
    static constexpr auto others =
        std::to_array<std::u32string_view>({U"就", U"再", U"吧", U"呢", U"的话"});
    return asked.size() >= shortest && asked.size() <= longest && startsWithAny(asked, openings)
        && !holdsAny(asked, others);
}

/// 难道我错了, 何必这么着急. A longer one may go on behind it, and a shorter one may be a saying.
bool isDoubt(std::u32string_view clause)
{
    constexpr std::size_t longestDoubt = 9;
    constexpr std::size_t shortest = 5;
    static constexpr auto openings =
        std::to_array<std::u32string_view>({U"难道", U"莫非", U"岂不是", U"何必"});
    return clause.size() >= shortest && clause.size() <= longestDoubt
        && startsWithAny(clause, openings);
}

bool surelyAsks(std::u32string_view clause)
{
    constexpr std::size_t longestReason = 7;
    static constexpr auto telling = std::to_array<std::u32string_view>({U"问", U"不知道", U"想知道",
        U"好奇", U"说", U"告诉", U"管", U"干吗", U"幹吗", U"确认", U"查", U"看看", U"打听"});
    static constexpr auto knowing = std::to_array<std::u32string_view>(
        {U"知道", U"懂", U"清楚", U"明白", U"说", U"都", U"因为"});
    static constexpr auto polite = std::to_array<std::u32string_view>({U"请问"});
    const bool isPolite = startsWithAny(clause, polite);
    const std::u32string_view asked = isPolite ? clause.substr(polite.front().size()) : clause;
    if (asked.ends_with(U'吗') || isInformalQuestion(asked))
        return !holdsAny(asked, telling);
    if (isDoubt(asked))
        return true;
    if (asked.starts_with(U"为什么"))
        return asked.size() <= longestReason && !holdsAny(asked, knowing);
    return isShortQuestion(asked)
        || (isPolite && isPoliteQuestion(asked) && !holdsAny(asked, telling));
}

/// Whether somebody is spoken of; the owner of something makes no sentence yet, nor does a list.
bool holdsSpeaker(std::u32string_view simple)
{
    constexpr std::u32string_view pronouns = U"我你您他她它们咱";
    for (std::size_t at = 0; at + 1 < simple.size(); ++at) {
        const char32_t next = simple[at + 1];
        const bool leadsOn = next != U'的' && !isBlank(next) && !isOneOf(pronouns, next);
        if (isOneOf(pronouns, simple[at]) && leadsOn)
            return true;
    }
    return false;
}

/// 我要买苹果 香蕉 葡萄 西瓜
bool isInPieces(std::u32string_view sentence)
{
    constexpr std::ptrdiff_t many = 3;
    return std::ranges::count_if(sentence, isBlank) >= many;
}

} // namespace

bool isChineseSentence(std::u32string_view simple)
{
    static constexpr auto phrases = std::to_array<std::u32string_view>({U"可以", U"然后", U"大家",
        U"天天", U"常常", U"因为", U"但是", U"好的", U"是的", U"谢谢", U"收到", U"没关系",
        U"没关係", U"没有", U"不能", U"不会", U"不要", U"不用", U"已经", U"很", U"并非", U"哪怕"});
    static constexpr auto weaker =
        std::to_array<std::u32string_view>({U"这", U"那", U"今天", U"明天", U"昨天"});
    if (holdsAny(simple, phrases) || holdsUnless(simple, U'了', U'为', U'解')
        || holdsUnless(simple, U'是', U'\0', U'非') || simple.ends_with(U'啊')
        || holdsSpeaker(simple))
        return true;
    // One of the usual characters may belong to a name or a title.
    constexpr std::u32string_view usual =
        U"过得有没不别在把被让给就也都再才又太最更想说看走来去到喝做找请帮跟叫等刚真";
    constexpr std::ptrdiff_t fewest = 2;
    constexpr std::ptrdiff_t longEnough = 6;
    const auto found =
        std::ranges::count_if(simple, [usual](char32_t c) { return isOneOf(usual, c); });
    // 今天下午的会议纪要 is long and says nothing, and neither does 这个这个，那个那个.
    const std::u32string_view tail = behindLast(simple, [](char32_t c) { return c == U'的'; });
    const bool saysMore =
        std::ranges::any_of(tail, [](char32_t c) { return isHan(c) && !isOneOf(U"这那个些", c); });
    const bool isLong =
        saysMore && std::ranges::count_if(tail, isHan) >= longEnough && holdsAny(tail, weaker);
    return found >= fewest || isLong || (found > 0 && holdsAny(simple, weaker));
}

std::u32string_view chineseEndMark(std::u32string_view text)
{
    if (text.empty() || !isHan(text.back()) || isTechnical(text) || isListItem(text)
        || endsInAddress(text))
        return {};
    std::u32string simple(text);
    std::ranges::transform(simple, simple.begin(), simplified);
    const std::u32string_view sentence = behindLast(simple, endsChineseSentence);
    if (surelyAsks(behindLast(sentence, isPause)))
        return U"？";
    const bool isUnsure = mayAsk(sentence) || isInPieces(sentence);
    return isUnsure || !isChineseSentence(sentence) ? U"" : U"。";
}

} // namespace tavrin::devcloud
