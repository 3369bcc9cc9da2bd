#pragma once

#include <QString>

#include <chrono>
#include <optional>
#include <thread>

namespace tavrin {

/// Whether the engine in use is @p wanted in the end: a daemon may answer before it has changed.
/// Waits until then; @p ask says which engine is in use, and nothing once its deadline is over.
template <class Ask, class Condition>
[[nodiscard]] bool engineBecomes(const Ask& ask, const Condition& wanted)
{
    constexpr std::chrono::milliseconds lookAgain{5};
    for (std::optional<QString> now = ask(); now; now = ask()) {
        if (wanted(*now))
            return true;
        std::this_thread::sleep_for(lookAgain);
    }
    return false;
}

} // namespace tavrin
