#include "devcloud/polish/Cleanup.h"
#include "devcloud/polish/WordList.h"
#include "devcloud/text/Ascii.h"

#include <algorithm>
#include <array>

namespace tavrin::devcloud {
namespace {

/// Days and months; "march" and "may" are words of other meanings too.
constexpr auto names = std::to_array<std::u32string_view>({U"monday", U"tuesday", U"wednesday",
    U"thursday", U"friday", U"saturday", U"sunday", U"january", U"february", U"april", U"june",
    U"july", U"september", U"october", U"november", U"december"});
constexpr auto pronouns =
    std::to_array<std::u32string_view>({U"i", U"i'm", U"i'll", U"i've", U"i'd"});

/// Whether a word is plain small letters: "iPhone", "x86" and addresses keep their own form.
bool isPlain(std::u32string_view word)
{
    return std::ranges::all_of(word, [](char32_t c) {
        const bool joins = c == U'\'' || c == U'-';
        return isAsciiLower(c) || joins || c > 0x7f;
    });
}

void capitalize(std::u32string& word)
{
    if (isAsciiLower(word.front()))
        word.front() -= U'a' - U'A';
}

} // namespace

Tokens withEnglishCapitals(const Tokens& tokens)
{
    Tokens result = tokens;
    bool isFirst = true;
    for (Token& token : result) {
        if (token.kind == TokenKind::Han)
            isFirst = false;
        if (token.kind != TokenKind::Word)
            continue;
        const std::u32string small = folded(token.text);
        if (isPlain(token.text) && (isFirst || contains(names, small) || contains(pronouns, small)))
            capitalize(token.text);
        isFirst = false;
    }
    return result;
}

} // namespace tavrin::devcloud
