#pragma once

#include <string_view>

/// What a character is, as far as the rules ask.
namespace tavrin::devcloud {

inline bool isOneOf(std::u32string_view set, char32_t c)
{
    return set.find(c) != std::u32string_view::npos;
}

/// A Chinese character, of either script; kana are none.
bool isHan(char32_t c);
/// A letter of the Latin script, with accents or without.
bool isLatin(char32_t c);
/// A letter of another script: kana, Hangul, Cyrillic, Arabic …
bool isOtherLetter(char32_t c);
/// White space but for line breaks.
bool isBlank(char32_t c);
/// Neither seen nor meant: control characters but for tabs and line breaks, byte order marks.
bool isControl(char32_t c);

/// A mark that ends a sentence, of either width.
bool endsSentence(char32_t c);
/// A mark at which a speaker pauses: the above, commas, colons, dots that trail off.
bool isPause(char32_t c);

} // namespace tavrin::devcloud
