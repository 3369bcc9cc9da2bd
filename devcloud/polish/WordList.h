#pragma once

#include <algorithm>
#include <span>
#include <string_view>

namespace tavrin::devcloud {

using WordList = std::span<const std::u32string_view>;

inline bool contains(WordList words, std::u32string_view word)
{
    return std::ranges::find(words, word) != words.end();
}

} // namespace tavrin::devcloud
