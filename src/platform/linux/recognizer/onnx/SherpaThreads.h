#pragma once

#include <algorithm>
#include <cstdint>
#include <thread>

namespace tavrin {

/// How many threads a model computes with: more than two bring little and cost the processor what
/// others need.
inline std::int32_t sherpaThreads()
{
    constexpr unsigned most = 2;
    return static_cast<std::int32_t>(std::clamp(std::thread::hardware_concurrency(), 1U, most));
}

} // namespace tavrin
