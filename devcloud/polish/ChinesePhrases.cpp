#include "devcloud/polish/ChinesePhrases.h"

#include "devcloud/polish/Characters.h"
#include "devcloud/polish/WordList.h"

#include <algorithm>
#include <array>

namespace tavrin::devcloud {
namespace {

bool startsWithAny(std::u32string_view text, WordList phrases)
{
    return std::ranges::any_of(
        phrases, [text](std::u32string_view phrase) { return text.starts_with(phrase); });
}

/// Whether a place and nothing else stands before the next pause: 北京, 东城区.
bool isPlace(std::u32string_view rest)
{
    static constexpr auto cities = std::to_array<std::u32string_view>(
        {U"北京", U"上海", U"天津", U"重庆", U"广州", U"深圳", U"成都", U"杭州", U"南京", U"武汉",
            U"西安", U"苏州", U"香港", U"澳门", U"台北", U"台中", U"高雄"});
    constexpr std::ptrdiff_t nameOfDistrict = 3;
    const auto end = std::ranges::find_if_not(rest, isHan);
    const std::u32string_view name(rest.begin(), end);
    const bool isDistrict =
        end - rest.begin() == nameOfDistrict && isOneOf(U"区市省县", name.back());
    return (end == rest.end() || isPause(*end)) && (contains(cities, name) || isDistrict);
}

/// 三百块, 一百; 一起 is none.
bool isAmount(std::u32string_view rest)
{
    static constexpr auto round =
        std::to_array<std::u32string_view>({U"一百", U"一千", U"一万", U"一亿"});
    return (!rest.empty() && isOneOf(U"两二三四五六七八九十0123456789", rest.front()))
        || startsWithAny(rest, round);
}

bool holdsAny(std::u32string_view text, WordList phrases)
{
    return std::ranges::any_of(phrases, [text](std::u32string_view phrase) {
        return text.find(phrase) != std::u32string_view::npos;
    });
}

/// Whether nothing is missing behind a clause: 他买了票, 那家店很贵, 第一个是预算, 他说「好」.
bool isWhole(std::u32string_view clause)
{
    static constexpr auto complete =
        std::to_array<std::u32string_view>({U"了", U"很", U"太", U"非常", U"特别"});
    // What is known or liked may follow them.
    static constexpr auto wantObject = std::to_array<std::u32string_view>(
        {U"忘", U"知道", U"说", U"听", U"看", U"发现", U"觉得", U"想", U"以为", U"告诉", U"问",
            U"记", U"怕", U"希望", U"猜", U"喜欢", U"爱", U"明白", U"懂", U"确定"});
    constexpr std::size_t longestVerb = 2; // 就是他
    if (clause.empty())
        return false;
    const std::size_t verb = clause.rfind(U'是');
    const bool isDefined =
        verb != std::u32string_view::npos && verb > 0 && clause.size() - verb > longestVerb;
    return isOneOf(U"」』”", clause.back())
        || (!holdsAny(clause, wantObject)
            && (clause.back() == U'呢' || isDefined || holdsAny(clause, complete)));
}

/// Whether @p rest begins a clause of its own: 第二个是人员, 然后走了, 味道也普通.
bool opensClause(std::u32string_view rest)
{
    static constexpr auto openings = std::to_array<std::u32string_view>({U"但", U"所以", U"然后",
        U"不过", U"可是", U"而且", U"第一", U"第二", U"第三", U"第四", U"第五"});
    static constexpr auto marks =
        std::to_array<std::u32string_view>({U"也", U"都", U"就", U"没", U"不", U"已经"});
    static constexpr auto ofNoun = std::to_array<std::u32string_view>({U"的"});
    constexpr std::size_t longest = 40; // What says more of a longer one stands far away.
    rest = rest.substr(0, longest);
    const std::u32string_view clause(rest.begin(), std::ranges::find_if(rest, isPause));
    return startsWithAny(clause, openings)
        || (holdsAny(clause, marks) && !holdsAny(clause, ofNoun) && !isAmount(clause));
}

} // namespace

bool areApart(std::u32string_view clause, std::u32string_view rest)
{
    constexpr std::size_t lengthOfCity = 2;
    // 北京，上海
    const bool areListed = clause.size() >= lengthOfCity
        && isPlace(clause.substr(clause.size() - lengthOfCity)) && isPlace(rest);
    return areListed || (isWhole(clause) && opensClause(rest));
}

bool isNamed(std::u32string_view rest)
{
    static constexpr auto names = std::to_array<std::u32string_view>(
        {U"按钮", U"按鈕", U"键", U"字", U"这个字", U"这个词", U"两个字", U"二字", U"一声"});
    return startsWithAny(rest, names);
}

bool leadsOnTo(std::u32string_view clause, std::u32string_view rest)
{
    static constexpr auto openings = std::to_array<std::u32string_view>(
        {U"我", U"我们", U"我想", U"我们想", U"我觉得", U"我们觉得", U"他", U"她", U"他们"});
    static constexpr auto wantPlace = std::to_array<std::u32string_view>({U"我要去", U"我想去",
        U"我们要去", U"我们想去", U"他要去", U"她要去", U"他们要去", U"我住在", U"他住在",
        U"她住在", U"我们住在", U"我家在", U"他家在", U"她家在", U"公司在", U"我们公司在"});
    static constexpr auto wantAmount =
        std::to_array<std::u32string_view>({U"一共", U"总共", U"一共是"});
    return contains(openings, clause) || (contains(wantPlace, clause) && isPlace(rest))
        || (contains(wantAmount, clause) && isAmount(rest));
}

bool goesOn(std::u32string_view rest)
{
    static constexpr auto phrases = std::to_array<std::u32string_view>({U"我想问", U"我想请",
        U"我想说", U"请问", U"请大家", U"关于", U"首先", U"各位", U"大家好"});
    static constexpr std::u32string_view delay = U"那个";
    // 嗯，那个，我想问
    if (rest.starts_with(delay) && rest.size() > delay.size() && isPause(rest[delay.size()]))
        rest.remove_prefix(delay.size() + 1);
    return startsWithAny(rest, phrases);
}

bool mayAnswer(std::u32string_view rest)
{
    static constexpr auto answers =
        std::to_array<std::u32string_view>({U"好", U"是", U"对", U"行", U"可以", U"没", U"不",
            U"我也", U"我知道", U"我明白", U"我同意", U"知道", U"明白", U"收到", U"当然"});
    return startsWithAny(rest, answers);
}

bool areSubjectAndWish(std::u32string_view clause, std::u32string_view rest)
{
    static constexpr auto wishes =
        std::to_array<std::u32string_view>({U"想", U"要", U"觉得", U"认为"});
    return (clause == U"我" || clause == U"我们") && startsWithAny(rest, wishes);
}

} // namespace tavrin::devcloud
