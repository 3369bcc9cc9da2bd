#include "devcloud/text/Utf8.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace tavrin::devcloud {
namespace {

constexpr char32_t replacement = 0xfffd;

struct Decoded {
    char32_t character;
    std::size_t bytes;
};

std::uint32_t byteAt(std::string_view text, std::size_t at)
{
    return static_cast<unsigned char>(text[at]);
}

bool isSurrogate(char32_t c)
{
    return c >= 0xd800 && c <= 0xdfff;
}

/// The number of bytes that a lead byte announces; 0 when it is none.
std::size_t lengthFor(std::uint32_t lead)
{
    if (lead < 0x80)
        return 1;
    if (lead >= 0xc2 && lead < 0xe0)
        return 2;
    if (lead >= 0xe0 && lead < 0xf0)
        return 3;
    if (lead >= 0xf0 && lead < 0xf5)
        return 4;
    return 0;
}

Decoded decodeFirst(std::string_view text)
{
    static constexpr std::array<std::uint32_t, 5> leadMask{0, 0x7f, 0x1f, 0x0f, 0x07};
    static constexpr std::array<char32_t, 5> smallest{0, 0, 0x80, 0x800, 0x10000};
    const std::size_t length = lengthFor(byteAt(text, 0));
    if (length == 0 || length > text.size())
        return {replacement, 1};
    char32_t character = byteAt(text, 0) & leadMask[length];
    for (std::size_t at = 1; at < length; ++at) {
        if ((byteAt(text, at) & 0xc0U) != 0x80)
            return {replacement, 1};
        character = (character << 6U) | (byteAt(text, at) & 0x3fU);
    }
    if (character < smallest[length] || character > 0x10ffff || isSurrogate(character))
        return {replacement, 1};
    return {character, length};
}

void appendUtf8(std::string& bytes, char32_t character)
{
    const auto append = [&bytes](char32_t unit) {
        bytes += static_cast<char>(static_cast<unsigned char>(unit));
    };
    if (character < 0x80) {
        append(character);
    } else if (character < 0x800) {
        append(0xc0U | (character >> 6U));
        append(0x80U | (character & 0x3fU));
    } else if (character < 0x10000) {
        append(0xe0U | (character >> 12U));
        append(0x80U | ((character >> 6U) & 0x3fU));
        append(0x80U | (character & 0x3fU));
    } else {
        append(0xf0U | (character >> 18U));
        append(0x80U | ((character >> 12U) & 0x3fU));
        append(0x80U | ((character >> 6U) & 0x3fU));
        append(0x80U | (character & 0x3fU));
    }
}

} // namespace

std::u32string decodeUtf8(std::string_view bytes)
{
    std::u32string text;
    text.reserve(bytes.size());
    while (!bytes.empty()) {
        const Decoded decoded = decodeFirst(bytes);
        text += decoded.character;
        bytes.remove_prefix(decoded.bytes);
    }
    return text;
}

std::string encodeUtf8(std::u32string_view text)
{
    std::string bytes;
    bytes.reserve(text.size() * 3);
    for (const char32_t character : text) {
        const bool isCharacter = character <= 0x10ffff && !isSurrogate(character);
        appendUtf8(bytes, isCharacter ? character : replacement);
    }
    return bytes;
}

std::size_t countCharacters(std::string_view bytes)
{
    return decodeUtf8(bytes).size();
}

std::size_t countUtf16(std::string_view bytes)
{
    const std::u32string text = decodeUtf8(bytes);
    const auto beyondFirstPlane =
        std::ranges::count_if(text, [](char32_t c) { return c > 0xffff; });
    return text.size() + static_cast<std::size_t>(beyondFirstPlane);
}

} // namespace tavrin::devcloud
