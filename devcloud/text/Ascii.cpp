#include "devcloud/text/Ascii.h"

#include <algorithm>

namespace tavrin::devcloud {
namespace {

char32_t codeUnit(char c)
{
    return static_cast<unsigned char>(c);
}

} // namespace

std::string lowerAscii(std::string_view text)
{
    std::string result(text);
    std::ranges::transform(result, result.begin(),
        [](char c) { return isAsciiUpper(codeUnit(c)) ? static_cast<char>(c + ('a' - 'A')) : c; });
    return result;
}

std::string upperAscii(std::string_view text)
{
    std::string result(text);
    std::ranges::transform(result, result.begin(),
        [](char c) { return isAsciiLower(codeUnit(c)) ? static_cast<char>(c - ('a' - 'A')) : c; });
    return result;
}

std::string_view trimmedAscii(std::string_view text)
{
    while (!text.empty() && isAsciiSpace(codeUnit(text.front())))
        text.remove_prefix(1);
    while (!text.empty() && isAsciiSpace(codeUnit(text.back())))
        text.remove_suffix(1);
    return text;
}

} // namespace tavrin::devcloud
