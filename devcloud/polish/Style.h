#pragma once

#include <string_view>

namespace tavrin::devcloud {

/// The form a polished text takes.
enum class Style {
    Professional,
    Xiaohongshu,
    BusinessEmail,
    Casual,
    Meeting,
    AiPrompt,
};

/// The style of a wire identifier such as "businessEmail". Clients pass on identifiers they do not
/// know themselves, so an unknown one is Professional, their own default.
Style styleFor(std::string_view identifier);

} // namespace tavrin::devcloud
