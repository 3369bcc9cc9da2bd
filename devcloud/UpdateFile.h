#pragma once

#include "devcloud/endpoints/UsageEndpoints.h"

#include <filesystem>
#include <string>
#include <string_view>

namespace tavrin::devcloud {

/// The offer in a JSON object with `build` (whole number), `version`, `downloadUrl` (https) and
/// `notes`, or what is wrong with it, in English.
tl::expected<UpdateOffer, std::string> parseUpdateOffer(std::string_view text);
tl::expected<UpdateOffer, std::string> readUpdateFile(const std::filesystem::path& file);

} // namespace tavrin::devcloud
