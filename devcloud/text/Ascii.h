#pragma once

#include <string>
#include <string_view>

/// Character work on ASCII that no locale can change; bytes of other characters stay as they are.
namespace tavrin::devcloud {

constexpr bool isAsciiDigit(char32_t c)
{
    return c >= U'0' && c <= U'9';
}

constexpr bool isAsciiUpper(char32_t c)
{
    return c >= U'A' && c <= U'Z';
}

constexpr bool isAsciiLower(char32_t c)
{
    return c >= U'a' && c <= U'z';
}

constexpr bool isAsciiSpace(char32_t c)
{
    return c == U' ' || (c >= U'\t' && c <= U'\r');
}

std::string lowerAscii(std::string_view text);
std::string upperAscii(std::string_view text);
std::string_view trimmedAscii(std::string_view text);

} // namespace tavrin::devcloud
