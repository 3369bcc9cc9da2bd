#pragma once

#include "base/CallbackGuard.h"

#include <optional>

namespace tavrin {

class AccountPanel;
class MainQueue;
class Preferences;
class TavrinAPI;
struct Error;

/// Asks the cloud service, once a launch, whether the stored session still holds; signs out on this
/// machine when the service says that it does not. Main thread only.
class CloudSessionCheck {
public:
    struct Neighbours {
        AccountPanel& accountPanel;
        TavrinAPI& api;
        MainQueue& mainQueue;
        Preferences& preferences;
    };

    /// @param neighbours must outlive the check.
    explicit CloudSessionCheck(const Neighbours& neighbours);

    /// Asks nothing when nobody is signed in.
    void validateStoredSession();

private:
    void handle(const std::optional<Error>& error);

    Neighbours m_neighbours;
    CallbackGuard m_guard;
};

} // namespace tavrin
