#pragma once

#include <QString>

namespace tavrin {

/// The steps of the account page, each in the place of the one before.
enum class AccountStep {
    Start, ///< The e-mail address, and whether to sign in or to register.
    Login, ///< The password.
    Invite, ///< The invite code.
    Verification, ///< The e-mailed code and a new password.
    LoggedIn,
};

/// What the start step asks for; the values are the segments of `authModeControl`.
enum class AccountMode { SignIn = 0, Register = 1 };

/// What the account page shows, beside captions that never change. Addresses and messages come
/// from outside: plain text of one line, at times too long for its place.
struct AccountContent {
    bool isSignedIn = false;
    QString status; ///< `accountStatusLabel`: brand purple when signed in, else quiet.

    AccountStep step = AccountStep::Start;
    /// Counts the steps that were begun. With another number than before the step is built afresh,
    /// its fields empty, be it the same one.
    int build = 0;
    QString title; ///< Of the step.
    QString subtitle;
    QString email; ///< What `authEmailField` of the start step begins with.

    QString message; ///< `accountAuthMessage`; empty for none.
    bool messageIsError = false; ///< Red, else quiet.

    /// Where to get a service, for those who have none; empty where there is nothing to say.
    QString serviceHint;

    friend bool operator==(const AccountContent&, const AccountContent&) = default;
};

} // namespace tavrin
