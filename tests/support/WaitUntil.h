#pragma once

#include "base/Seconds.h"

#include <functional>

namespace tavrin::testing {

/// Runs the event loop until @p condition holds, for tests of what depends on the real one. The
/// condition is looked at after every event, and some 200 times a second where there are none.
/// @return whether it did within @p limit.
[[nodiscard]] bool waitUntil(const std::function<bool()>& condition, Seconds limit = Seconds{10});

} // namespace tavrin::testing
