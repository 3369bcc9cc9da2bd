#include "devcloud/polish/Sentence.h"

#include "devcloud/polish/WordList.h"

#include <algorithm>
#include <array>

namespace tavrin::devcloud {
namespace {

bool isAbbreviation(const Token& word)
{
    static constexpr auto abbreviations = std::to_array<std::u32string_view>({U"mr", U"mrs", U"ms",
        U"dr", U"prof", U"st", U"vs", U"etc", U"e.g", U"i.e", U"a.m", U"p.m"});
    return word.kind == TokenKind::Word && contains(abbreviations, folded(word.text));
}

} // namespace

std::vector<Sentence> splitSentences(const Tokens& tokens)
{
    std::vector<Sentence> sentences;
    Sentence current;
    const auto finish = [&sentences, &current] {
        if (!current.tokens.empty()) {
            current.isChinese = isMostlyChinese(current.tokens);
            sentences.push_back(std::move(current));
        }
        current = {};
    };
    for (const Token& token : tokens) {
        if (token.kind == TokenKind::LineBreak) {
            finish();
            current.startsParagraph = !sentences.empty();
        } else if (!endsSentence(token)) {
            current.tokens.push_back(token);
        } else if (token.text == U"." && !current.tokens.empty()
            && isAbbreviation(current.tokens.back())) {
            current.tokens.back().text += U'.';
        } else if (!current.tokens.empty()) {
            current.end = token.text;
            finish();
        }
    }
    finish();
    return sentences;
}

bool isMostlyChinese(const Tokens& tokens)
{
    const auto count = [&tokens](TokenKind kind) {
        return std::ranges::count(tokens, kind, &Token::kind);
    };
    return count(TokenKind::Han) > 0 && count(TokenKind::Han) >= count(TokenKind::Word);
}

} // namespace tavrin::devcloud
