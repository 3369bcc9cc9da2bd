#pragma once

#include "base/Completion.h"

namespace tavrin {

/// Values of the speech authorisation, and of the microphone's in the same terms.
enum class AuthorizationStatus {
    NotDetermined = 0,
    Denied = 1,
    Restricted = 2,
    Authorized = 3,
};

/// What the user allowed this program. Called on the main thread; a completion may run on any
/// thread. Linux asks nobody: the microphone is authorised while there is one and "denied"
/// otherwise, speech is always authorised.
class Permissions {
public:
    virtual ~Permissions() = default;

    [[nodiscard]] virtual AuthorizationStatus microphoneStatus() const = 0;
    virtual void requestMicrophone(Completion<AuthorizationStatus> completion) = 0;

    [[nodiscard]] virtual AuthorizationStatus speechStatus() const = 0;

    /// Asks the user only while the status is not determined.
    virtual void requestSpeech(Completion<AuthorizationStatus> completion) = 0;
};

} // namespace tavrin
