#include "devcloud/polish/Style.h"

#include <array>
#include <utility>

namespace tavrin::devcloud {

Style styleFor(std::string_view identifier)
{
    static constexpr std::array<std::pair<std::string_view, Style>, 6> identifiers{{
        {"professional", Style::Professional},
        {"xiaohongshu", Style::Xiaohongshu},
        {"businessEmail", Style::BusinessEmail},
        {"casual", Style::Casual},
        {"meeting", Style::Meeting},
        {"aiPrompt", Style::AiPrompt},
    }};
    for (const auto& [known, style] : identifiers) {
        if (known == identifier)
            return style;
    }
    return Style::Professional;
}

} // namespace tavrin::devcloud
