#pragma once

#include <memory>

namespace tavrin {

/// An object of the library, and the function that destroys it.
template <class Object>
struct SherpaDestroy {
    void (*destroy)(const Object*) = nullptr;

    void operator()(const Object* object) const noexcept
    {
        try {
            destroy(object);
        } catch (...) { // NOLINT(bugprone-empty-catch): there is nothing left to be done.
        }
    }
};

template <class Object>
using SherpaHandle = std::unique_ptr<const Object, SherpaDestroy<Object>>;

/// Tells the log what the library threw.
void logSherpaException(const char* what);

/// Runs @p work, which calls into the library; false when it threw.
template <class Work>
[[nodiscard]] bool runGuardedFromSherpa(const Work& work)
{
    try {
        work();
        return true;
    } catch (const std::exception& exception) {
        logSherpaException(exception.what());
    } catch (...) {
        logSherpaException("something unknown");
    }
    return false;
}

} // namespace tavrin
