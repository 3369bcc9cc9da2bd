#pragma once

#include "base/Seconds.h"

#include <functional>

namespace tavrin::testing {

/// Runs the event loop until @p condition holds, for tests of what depends on the real one.
/// @return whether it did within @p limit.
[[nodiscard]] bool waitUntil(const std::function<bool()>& condition, Seconds limit = Seconds{10});

} // namespace tavrin::testing
