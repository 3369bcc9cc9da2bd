#pragma once

#include "devcloud/api/Problem.h"
#include "devcloud/endpoints/Now.h"
#include "devcloud/security/Throttle.h"
#include "devcloud/store/Sessions.h"

#include <string>

namespace tavrin::devcloud {

class Database;
class FieldReader;
class Passwords;

/// The device fields of a sign-in or registration body.
Device readDevice(FieldReader& fields);

/// The answer that starts or continues a session.
Json sessionAnswer(const TokenPair& tokens, const std::string& email, const TokenLives& lives);

/// Sign-in, refresh, the account behind a token, sign-out.
class SessionEndpoints {
public:
    SessionEndpoints(Database& database, Passwords& passwords, const TokenLives& lives, Now now);

    /// Ten wrong passwords for one account from one address close the account to that address for
    /// 15 minutes, and fifty for any accounts close all of them to it. Nothing closes an account to
    /// everybody: who guesses must not be able to lock its owner out. What many addresses can guess
    /// together is bounded by what a guess costs.
    Outcome login(const Json& body, const std::string& address);
    Outcome refresh(const Json& body);
    static Outcome me(const SessionOwner& owner);
    /// @p accessToken may have expired: it still ends its own session.
    Outcome logout(const std::string& accessToken);

private:
    tl::expected<void, Problem> takeAttempt(const std::string& email, const std::string& address);

    Database& m_database;
    Passwords& m_passwords;
    TokenLives m_lives;
    Now m_now;
    Throttle m_attemptsByPair; ///< Of account and address.
    Throttle m_attemptsByAddress;
};

} // namespace tavrin::devcloud
