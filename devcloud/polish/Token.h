#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tavrin::devcloud {

enum class TokenKind {
    Han, ///< One character of a script that is written without spaces: Han, kana.
    Word, ///< A word, number, address or name of any other script, with what belongs inside it.
    Mark, ///< A comma, colon, full stop … of either width, or a run of them such as "?!".
    Symbol, ///< Everything else: brackets, quotation marks, dashes, emoji.
    LineBreak,
};

struct Token {
    TokenKind kind;
    std::u32string text;
    bool spaceBefore = false;

    bool operator==(const Token&) const = default;
};

using Tokens = std::vector<Token>;

/// Takes a text apart. Nothing is lost but white space and invisible control characters.
Tokens tokenize(std::u32string_view text);

/// Puts tokens together again with the spacing of good typesetting: one space between words and
/// between Han and Latin letters, none before a mark or after a full-width one.
std::u32string render(const Tokens& tokens);

bool isHan(char32_t c);
/// Whether @p mark ends a sentence.
bool endsSentence(const Token& mark);
/// Whether @p mark is a comma of any kind.
bool isComma(const Token& mark);

/// Whether the Han characters of @p phrase stand in @p tokens from @p at on.
bool hanStandsAt(const Tokens& tokens, std::size_t at, std::u32string_view phrase);

/// The word in small letters, for comparing; letters beyond ASCII stay.
std::u32string folded(std::u32string_view word);
/// Whether @p word is @p small but for capitals.
bool equalsFolded(std::u32string_view word, std::u32string_view small);

} // namespace tavrin::devcloud
