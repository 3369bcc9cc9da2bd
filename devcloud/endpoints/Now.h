#pragma once

#include <cstdint>
#include <functional>

namespace tavrin::devcloud {

/// Seconds since 1970. Asked at every use, from any thread, so that tests can move it.
using Now = std::function<std::int64_t()>;

} // namespace tavrin::devcloud
