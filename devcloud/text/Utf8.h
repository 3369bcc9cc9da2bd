#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Between UTF-8, in which texts travel, and code points, on which they are worked.
namespace tavrin::devcloud {

/// Malformed bytes become U+FFFD each.
std::u32string decodeUtf8(std::string_view bytes);
std::string encodeUtf8(std::u32string_view text);

/// The number of code points.
std::size_t countCharacters(std::string_view bytes);

/// The number of UTF-16 code units: how clients count characters.
std::size_t countUtf16(std::string_view bytes);

} // namespace tavrin::devcloud
