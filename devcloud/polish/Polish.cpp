#include "devcloud/polish/Polish.h"

#include "devcloud/polish/Characters.h"
#include "devcloud/polish/Cleanup.h"
#include "devcloud/polish/Forms.h"
#include "devcloud/polish/Language.h"
#include "devcloud/text/Utf8.h"

#include <algorithm>

namespace tavrin::devcloud {
namespace {

bool isSpace(char32_t c)
{
    return isBlank(c) || c == U'\n';
}

std::u32string trimmed(std::u32string text)
{
    std::erase_if(text, isControl);
    const auto start = std::ranges::find_if_not(text, isSpace);
    const auto end = std::find_if_not(text.rbegin(), text.rend(), isSpace).base();
    return start < end ? std::u32string(start, end) : std::u32string();
}

std::u32string cleaned(std::u32string_view text, Language language)
{
    if (language == Language::Other)
        return std::u32string(text);
    const bool isWhole = text.find(U'\n') == std::u32string_view::npos;
    std::u32string result;
    for (std::size_t at = 0; at <= text.size();) {
        const std::size_t end = std::min(text.find(U'\n', at), text.size());
        const std::u32string_view line = text.substr(at, end - at);
        if (at > 0)
            result += U'\n';
        result += language == Language::Chinese ? cleanedChinese(line, isWhole)
                                                : cleanedEnglish(line, isWhole);
        at = end + 1;
    }
    return result;
}

} // namespace

std::string polish(std::string_view transcript, Style style)
{
    std::u32string text = trimmed(decodeUtf8(transcript));
    if (text.empty())
        return encodeUtf8(decodeUtf8(transcript));
    const Language language = languageOf(text);
    text = cleaned(text, language);
    return encodeUtf8(setInForm(text, style, language));
}

} // namespace tavrin::devcloud
