#pragma once

#include <functional>
#include <memory>
#include <type_traits>
#include <utility>

namespace tavrin {
namespace completion_detail {

/// Counts the calls of one completion; reports a second call, and destruction without any.
class Promise {
public:
    Promise() = default;
    ~Promise();

    Promise(const Promise&) = delete;
    Promise& operator=(const Promise&) = delete;

    void keep();

private:
    bool m_kept = false;
};

} // namespace completion_detail

/// From now on a completion may be dropped without a call: the process is about to end, and what
/// still waits goes with it. Called once, by the application's termination; by tests of it too.
void allowDroppedCompletions(bool allowed);

/// A callback that is called exactly once. Debug builds abort on a second call, and when the last
/// copy goes away without any. Copies share the one call. Move it into whatever will call it.
///
/// Not synchronised: it may be handed to another thread, but only one thread calls it.
template <class... Arguments>
class Completion {
public:
    using Function = std::function<void(Arguments...)>;

    /// Lambdas are passed as they are, hence not explicit.
    template <class Callable,
        class = std::enable_if_t<!std::is_same_v<std::remove_cvref_t<Callable>,
                                     Completion> && std::is_invocable_v<Callable&, Arguments...>>>
    // NOLINTNEXTLINE(google-explicit-constructor,bugprone-forwarding-reference-overload)
    Completion(Callable&& callable)
        : m_function(std::forward<Callable>(callable))
        , m_promise(std::make_shared<completion_detail::Promise>())
    {
    }

    void operator()(Arguments... arguments) const
    {
        m_promise->keep();
        m_function(std::forward<Arguments>(arguments)...);
    }

private:
    Function m_function;
    std::shared_ptr<completion_detail::Promise> m_promise;
};

} // namespace tavrin
