#pragma once

#include <nlohmann/json.hpp>

namespace tavrin::devcloud {

using Json = nlohmann::json;

} // namespace tavrin::devcloud
