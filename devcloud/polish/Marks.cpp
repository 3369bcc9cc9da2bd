#include "devcloud/polish/Cleanup.h"
#include "devcloud/polish/WordList.h"

#include <algorithm>
#include <array>
#include <utility>

namespace tavrin::devcloud {
namespace {

constexpr std::array<std::pair<char32_t, char32_t>, 6> widths{
    {{U',', U'，'}, {U'.', U'。'}, {U'!', U'！'}, {U'?', U'？'}, {U';', U'；'}, {U':', U'：'}}};

char32_t ofWidth(char32_t mark, bool chinese)
{
    if (!chinese && mark == U'、')
        return U',';
    for (const auto& [narrow, wide] : widths) {
        if (mark == narrow || mark == wide)
            return chinese ? wide : narrow;
    }
    return mark;
}

std::u32string ofWidth(const std::u32string& marks, bool chinese)
{
    if (marks.size() > 1 && marks.find_first_not_of(U'.') == std::u32string::npos)
        return chinese ? U"……" : U"...";
    std::u32string result;
    for (const char32_t mark : marks)
        result += ofWidth(mark, chinese);
    return result;
}

/// Whether a Chinese conjunction opens a new clause at @p at, so long a way into the clause that it
/// reads better with a comma.
bool opensChineseClause(const Tokens& tokens, std::size_t at, std::size_t clauseStart)
{
    static constexpr auto conjunctions =
        std::to_array<std::u32string_view>({U"但是", U"所以", U"而且", U"然后", U"因此", U"否则"});
    constexpr std::size_t shortestClause = 4;
    if (at < clauseStart + shortestClause || tokens[at - 1].text == U"之")
        return false;
    return std::ranges::any_of(conjunctions, [&tokens, at](std::u32string_view conjunction) {
        return hanStandsAt(tokens, at, conjunction) && at + conjunction.size() + 1 < tokens.size();
    });
}

/// "…, but we …"; not "nothing but …".
bool opensEnglishClause(const Tokens& tokens, std::size_t at, std::size_t clauseStart)
{
    static constexpr auto subjects = std::to_array<std::u32string_view>({U"i", U"we", U"you", U"he",
        U"she", U"it", U"they", U"i'm", U"it's", U"we're", U"they're", U"you're"});
    constexpr std::size_t shortestClause = 3;
    return at >= clauseStart + shortestClause && at + 2 < tokens.size()
        && equalsFolded(tokens[at].text, U"but") && contains(subjects, folded(tokens[at + 1].text));
}

/// Marks that follow each other because something between them went: the last one stands.
void push(Tokens& tokens, Token token)
{
    if (isComma(token) && tokens.empty())
        return;
    if (isComma(token) && tokens.back().kind == TokenKind::Mark)
        return;
    tokens.push_back(std::move(token));
}

} // namespace

Tokens withMarksOf(const Tokens& tokens, bool chinese)
{
    Tokens result;
    std::size_t clauseStart = 0;
    for (std::size_t at = 0; at < tokens.size(); ++at) {
        const bool opensClause = chinese ? opensChineseClause(tokens, at, clauseStart)
                                         : opensEnglishClause(tokens, at, clauseStart);
        if (opensClause) {
            push(result, {TokenKind::Mark, chinese ? U"，" : U","});
            clauseStart = at;
        }
        Token token = tokens[at];
        if (token.kind == TokenKind::Mark) {
            token.text = ofWidth(token.text, chinese);
            clauseStart = at + 1;
        }
        push(result, std::move(token));
    }
    while (!result.empty() && result.back().kind == TokenKind::Mark
        && result.back().text.find_first_of(U",，、;；") == 0)
        result.pop_back();
    return result;
}

namespace {

bool endsWithHan(const Tokens& tokens, std::u32string_view phrase)
{
    return tokens.size() >= phrase.size()
        && hanStandsAt(tokens, tokens.size() - phrase.size(), phrase);
}

bool isChineseQuestion(const Tokens& tokens)
{
    static constexpr auto endings = std::to_array<std::u32string_view>(
        {U"吗", U"对不对", U"好不好", U"是不是", U"行不行", U"可不可以", U"什么时候", U"怎么办"});
    static constexpr auto openings =
        std::to_array<std::u32string_view>({U"为什么", U"怎么", U"什么时候", U"谁", U"哪"});
    // These ask only where nobody tells or knows: "我知道他在哪里" is a statement.
    static constexpr auto openEndings = std::to_array<std::u32string_view>(
        {U"在哪里", U"在哪儿", U"在哪", U"是多少", U"是什么", U"是谁", U"干什么", U"怎么样"});
    static constexpr auto embedding = std::to_array<std::u32string_view>({U"知道", U"告诉", U"问",
        U"明白", U"清楚", U"了解", U"记得", U"确认", U"不管", U"无论", U"看"});
    static constexpr auto askingWords = std::to_array<std::u32string_view>(
        {U"什么", U"怎么", U"谁", U"哪", U"多少", U"几", U"为何"});
    if (std::ranges::any_of(endings, [&](auto phrase) { return endsWithHan(tokens, phrase); })
        || std::ranges::any_of(
            openings, [&](auto phrase) { return hanStandsAt(tokens, 0, phrase); }))
        return true;
    const auto holds = [&tokens](WordList words) {
        for (std::size_t at = 0; at < tokens.size(); ++at) {
            if (std::ranges::any_of(
                    words, [&](auto word) { return hanStandsAt(tokens, at, word); }))
                return true;
        }
        return false;
    };
    if (std::ranges::any_of(openEndings, [&](auto phrase) { return endsWithHan(tokens, phrase); }))
        return !holds(embedding);
    return endsWithHan(tokens, U"呢") && holds(askingWords);
}

bool isEnglishQuestion(const Tokens& tokens)
{
    static constexpr auto asking = std::to_array<std::u32string_view>(
        {U"who", U"what", U"when", U"where", U"why", U"how", U"which", U"whose"});
    static constexpr auto contractions = std::to_array<std::u32string_view>(
        {U"who's", U"what's", U"when's", U"where's", U"why's", U"how's", U"isn't", U"aren't",
            U"doesn't", U"didn't", U"can't", U"couldn't", U"won't", U"wouldn't", U"shouldn't"});
    static constexpr auto verbs =
        std::to_array<std::u32string_view>({U"is", U"are", U"am", U"was", U"were", U"do", U"does",
            U"did", U"can", U"could", U"will", U"would", U"should", U"have", U"has"});
    static constexpr auto subjects = std::to_array<std::u32string_view>(
        {U"i", U"we", U"you", U"he", U"she", U"it", U"they", U"anyone", U"anybody", U"there"});
    static constexpr auto objects = std::to_array<std::u32string_view>({U"it", U"there"});
    if (tokens.size() < 2 || tokens[0].kind != TokenKind::Word)
        return false;
    const std::u32string first = folded(tokens[0].text);
    const std::u32string second = folded(tokens[1].text);
    if (contains(contractions, first) && first.ends_with(U"'s"))
        return true;
    if (contains(asking, first))
        return contains(verbs, second)
            || (first == U"how" && (second == U"many" || second == U"much"));
    // "Do it" and "have it" tell, "do you" and "have you" ask.
    const bool mayCommand = first == U"do" || first == U"have";
    return (contains(verbs, first) || contains(contractions, first)) && contains(subjects, second)
        && !(mayCommand && contains(objects, second));
}

} // namespace

std::u32string endMark(const Sentence& sentence)
{
    if (!sentence.end.empty())
        return ofWidth(sentence.end, sentence.isChinese);
    if (!sentence.tokens.empty() && sentence.tokens.back().text.ends_with(U'.'))
        return {};
    if (!sentence.tokens.empty() && sentence.tokens.back().kind == TokenKind::Mark)
        return {};
    if (sentence.isChinese)
        return isChineseQuestion(sentence.tokens) ? U"？" : U"。";
    return isEnglishQuestion(sentence.tokens) ? U"?" : U".";
}

} // namespace tavrin::devcloud
