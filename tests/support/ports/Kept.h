#pragma once

#include <memory>
#include <utility>

namespace tavrin::testing {

/// A new in-memory port for whoever will own it, with @p raw left pointing at it.
template <typename Port, typename... Arguments>
[[nodiscard]] std::unique_ptr<Port> kept(Port*& raw, Arguments&&... arguments)
{
    auto made = std::make_unique<Port>(std::forward<Arguments>(arguments)...);
    raw = made.get();
    return made;
}

} // namespace tavrin::testing
