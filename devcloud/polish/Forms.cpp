#include "devcloud/polish/Forms.h"

#include "devcloud/polish/Token.h"

#include <algorithm>
#include <array>
#include <span>

namespace tavrin::devcloud {
namespace {

using Clauses = std::span<const Clause>;

bool startsWithAny(std::u32string_view text, std::span<const std::u32string_view> openings)
{
    return std::ranges::any_of(
        openings, [text](std::u32string_view opening) { return text.starts_with(opening); });
}

bool isPlainStop(const std::u32string& mark)
{
    return mark == U"." || mark == U"。";
}

std::u32string whole(const Clause& clause)
{
    return clause.body + clause.end;
}

/// For lines that stand alone, where a full stop would be stiff.
std::u32string withoutStop(const Clause& clause)
{
    return isPlainStop(clause.end) ? clause.body : whole(clause);
}

std::u32string joined(Clauses clauses)
{
    std::u32string text;
    const Clause* previous = nullptr;
    for (const Clause& clause : clauses) {
        // A full-width mark brings its own space along.
        if (previous && !previous->isChinese)
            text += U' ';
        text += whole(clause);
        previous = &clause;
    }
    return text;
}

/// Whether a clause turns to a new point.
bool turns(const Clause& clause)
{
    static constexpr auto turnings = std::to_array<std::u32string_view>(
        {U"首先", U"其次", U"再次", U"另外", U"此外", U"最后", U"总之", U"First", U"Second",
            U"Third", U"Also", U"Finally", U"However", U"In addition", U"Next", U"Lastly"});
    return startsWithAny(clause.body, turnings);
}

std::vector<Clauses> paragraphs(Clauses clauses)
{
    constexpr std::size_t longest = 4;
    constexpr std::size_t shortestBeforeTurn = 2;
    std::vector<Clauses> result;
    std::size_t start = 0;
    for (std::size_t at = 1; at <= clauses.size(); ++at) {
        const bool ends = at == clauses.size() || clauses[at].startsParagraph
            || at - start >= longest || (at - start >= shortestBeforeTurn && turns(clauses[at]));
        if (ends) {
            result.push_back(clauses.subspan(start, at - start));
            start = at;
        }
    }
    return result;
}

std::u32string prose(Clauses clauses)
{
    std::u32string text;
    for (const Clauses& paragraph : paragraphs(clauses)) {
        if (!text.empty())
            text += U"\n\n";
        text += joined(paragraph);
    }
    return text;
}

std::u32string bullets(Clauses clauses)
{
    std::u32string text;
    for (const Clause& clause : clauses) {
        if (!text.empty())
            text += U'\n';
        text += U"- " + withoutStop(clause);
    }
    return text;
}

std::u32string_view emojiFor(const std::u32string& body, std::size_t line)
{
    struct Topic {
        std::u32string_view word;
        std::u32string_view emoji;
    };

    static constexpr std::array<Topic, 24> topics{
        {{U"好吃", U"😋"}, {U"咖啡", U"☕"}, {U"旅行", U"✈️"}, {U"旅游", U"✈️"},
            {U"喜欢", U"❤️"}, {U"推荐", U"👍"}, {U"开心", U"😊"}, {U"钱", U"💰"}, {U"价格", U"💰"},
            {U"音乐", U"🎵"}, {U"电影", U"🎬"}, {U"照片", U"📷"}, {U"delicious", U"😋"},
            {U"coffee", U"☕"}, {U"travel", U"✈️"}, {U"trip", U"✈️"}, {U"love", U"❤️"},
            {U"recommend", U"👍"}, {U"happy", U"😊"}, {U"price", U"💰"}, {U"music", U"🎵"},
            {U"movie", U"🎬"}, {U"photo", U"📷"}, {U"birthday", U"🎂"}}};
    static constexpr std::array<std::u32string_view, 4> others{U"✨", U"📌", U"💡", U"🌟"};
    const std::u32string small = folded(body);
    for (const Topic& topic : topics) {
        if (small.find(topic.word) != std::u32string::npos)
            return topic.emoji;
    }
    return others[line % others.size()];
}

std::u32string socialPost(Clauses clauses)
{
    std::u32string text;
    for (std::size_t line = 0; line < clauses.size(); ++line) {
        if (line > 0)
            text += line == 1 ? U"\n\n" : U"\n";
        text += emojiFor(clauses[line].body, line);
        text += U' ' + withoutStop(clauses[line]);
    }
    return text;
}

bool greets(const Clause& clause)
{
    static constexpr auto greetings = std::to_array<std::u32string_view>({U"您好", U"你好",
        U"大家好", U"尊敬的", U"Hi", U"Hello", U"Dear ", U"Good morning", U"Good afternoon"});
    constexpr std::size_t longest = 24;
    return clause.body.size() <= longest && startsWithAny(clause.body, greetings);
}

bool closes(const Clause& clause)
{
    static constexpr auto closings = std::to_array<std::u32string_view>(
        {U"此致", U"祝好", U"Best regards", U"Kind regards", U"Sincerely", U"Yours"});
    return startsWithAny(clause.body, closings);
}

/// An e-mail keeps the greeting and the close that were dictated and adds what is missing.
std::u32string email(Clauses clauses, bool chinese)
{
    std::u32string greeting = chinese ? U"您好：" : U"Hello,";
    std::u32string closing = chinese ? U"此致\n敬礼" : U"Best regards,";
    if (clauses.size() > 1 && greets(clauses.front())) {
        greeting = clauses.front().body + (clauses.front().isChinese ? U"：" : U",");
        clauses = clauses.subspan(1);
    }
    if (clauses.size() > 1 && closes(clauses.back())) {
        closing = whole(clauses.back());
        clauses = clauses.first(clauses.size() - 1);
    }
    return greeting + U"\n\n" + prose(clauses) + U"\n\n" + closing;
}

std::u32string chatMessage(Clauses clauses)
{
    std::u32string text;
    for (std::size_t at = 0; at < clauses.size();) {
        std::size_t end = at + 1;
        while (end < clauses.size() && !clauses[end].startsParagraph)
            ++end;
        std::vector<Clause> line(clauses.begin() + static_cast<std::ptrdiff_t>(at),
            clauses.begin() + static_cast<std::ptrdiff_t>(end));
        if (isPlainStop(line.back().end))
            line.back().end.clear();
        text += (at == 0 ? U"" : U"\n") + joined(line);
        at = end;
    }
    return text;
}

std::u32string instructions(Clauses clauses, bool chinese)
{
    std::u32string text = (chinese ? U"任务：\n" : U"Task:\n") + whole(clauses.front());
    if (clauses.size() > 1)
        text += (chinese ? U"\n\n要求：\n" : U"\n\nDetails:\n") + bullets(clauses.subspan(1));
    return text;
}

} // namespace

std::u32string setInForm(const std::vector<Clause>& clauses, Style style, bool chinese)
{
    if (clauses.empty())
        return {};
    switch (style) {
    case Style::Professional:
        return prose(clauses);
    case Style::Xiaohongshu:
        return socialPost(clauses);
    case Style::BusinessEmail:
        return email(clauses, chinese);
    case Style::Casual:
        return chatMessage(clauses);
    case Style::Meeting:
        return (chinese ? U"会议行动项：\n" : U"Action items:\n") + bullets(clauses);
    case Style::AiPrompt:
        return instructions(clauses, chinese);
    }
    return prose(clauses);
}

} // namespace tavrin::devcloud
