#pragma once

#include <optional>
#include <string_view>

namespace tavrin::devcloud {

/// The English name of the language a wire identifier such as "portuguese_brazil" stands for; empty
/// for any other text.
std::optional<std::string_view> targetLanguage(std::string_view identifier);

} // namespace tavrin::devcloud
