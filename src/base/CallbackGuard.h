#pragma once

#include <memory>
#include <utility>

namespace tavrin {

/// Lets callbacks hold their owner weakly: what bind() returns does nothing once the guard is gone.
/// A class that hands out callbacks has one as its last member. Main thread only: a callback from
/// another thread is posted to the main queue first.
class CallbackGuard {
public:
    template <class Callable>
    [[nodiscard]] auto bind(Callable callable) const
    {
        return [alive = std::weak_ptr<Token>(m_token), callable = std::move(callable)](
                   auto&&... arguments) mutable {
            if (!alive.expired())
                callable(std::forward<decltype(arguments)>(arguments)...);
        };
    }

private:
    struct Token { };

    std::shared_ptr<Token> m_token = std::make_shared<Token>();
};

} // namespace tavrin
