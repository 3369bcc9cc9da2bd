#include "devcloud/model/TargetLanguages.h"

#include <array>
#include <utility>

namespace tavrin::devcloud {

std::optional<std::string_view> targetLanguage(std::string_view identifier)
{
    static constexpr std::array<std::pair<std::string_view, std::string_view>, 42> languages{{
        {"english", "English"},
        {"chinese_simplified", "Chinese (Simplified)"},
        {"chinese_traditional", "Chinese (Traditional)"},
        {"cantonese", "Cantonese (Hong Kong)"},
        {"japanese", "Japanese"},
        {"korean", "Korean"},
        {"french", "French"},
        {"german", "German"},
        {"spanish", "Spanish"},
        {"portuguese_brazil", "Portuguese (Brazil)"},
        {"italian", "Italian"},
        {"dutch", "Dutch"},
        {"russian", "Russian"},
        {"ukrainian", "Ukrainian"},
        {"polish", "Polish"},
        {"czech", "Czech"},
        {"danish", "Danish"},
        {"swedish", "Swedish"},
        {"norwegian", "Norwegian"},
        {"finnish", "Finnish"},
        {"greek", "Greek"},
        {"romanian", "Romanian"},
        {"hungarian", "Hungarian"},
        {"turkish", "Turkish"},
        {"arabic", "Arabic"},
        {"hebrew", "Hebrew"},
        {"persian", "Persian"},
        {"hindi", "Hindi"},
        {"bengali", "Bengali"},
        {"tamil", "Tamil"},
        {"telugu", "Telugu"},
        {"urdu", "Urdu"},
        {"thai", "Thai"},
        {"vietnamese", "Vietnamese"},
        {"indonesian", "Indonesian"},
        {"malay", "Malay"},
        {"filipino", "Filipino"},
        {"khmer", "Khmer"},
        {"burmese", "Burmese"},
        {"nepali", "Nepali"},
        {"lao", "Lao"},
        {"swahili", "Swahili"},
    }};
    for (const auto& [known, name] : languages) {
        if (known == identifier)
            return name;
    }
    return std::nullopt;
}

} // namespace tavrin::devcloud
