#pragma once

#include <string_view>

namespace tavrin::devcloud {

/// The languages that have rules, and all that must be left alone.
enum class Language {
    Chinese,
    English,
    Other,
};

/// The language of a whole text, where its words leave no doubt; Other wherever they do. A text of
/// two languages is of the one with more words; a Han character counts as one.
Language languageOf(std::u32string_view text);

/// Whether a Chinese text is written in traditional characters.
bool isTraditional(std::u32string_view text);

/// The simplified form of a traditional character, for those that the rules look for; any other
/// character is its own.
char32_t simplified(char32_t c);

} // namespace tavrin::devcloud
