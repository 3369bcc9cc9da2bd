#pragma once

#include "devcloud/security/Passwords.h"
#include "devcloud/support/Gate.h"

namespace tavrin::devcloud::testing {

/// Compares a password when the test says so.
class HeldPasswords : public Passwords, public Gate {
public:
    HeldPasswords()
        : Passwords(PasswordCost::least())
    {
    }

    bool matches(const std::optional<std::string>& hash, std::string_view password) override
    {
        pass();
        return Passwords::matches(hash, password);
    }
};

} // namespace tavrin::devcloud::testing
