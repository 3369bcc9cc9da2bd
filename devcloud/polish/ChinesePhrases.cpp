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

} // namespace

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
