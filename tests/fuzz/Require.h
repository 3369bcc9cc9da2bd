#pragma once

#include <cstdio>
#include <cstdlib>

namespace tavrin::fuzz {

/// Ends the program when a rule is broken: that is what the fuzzer looks for.
inline void require(bool condition, const char* rule)
{
    if (condition)
        return;
    std::fprintf(stderr, "broken: %s\n", rule);
    std::abort();
}

} // namespace tavrin::fuzz
