#pragma once

#include "devcloud/api/Problem.h"
#include "devcloud/endpoints/Now.h"
#include "devcloud/endpoints/Outbox.h"
#include "devcloud/security/Throttle.h"
#include "devcloud/store/Sessions.h"

#include <string>

namespace tavrin::devcloud {

class Database;
class Passwords;

/// New accounts: an invite is shown and a code mailed, the code is exchanged for a registration
/// token, the token and a password make the account. Or all in one step, with the invite alone.
///
/// Whether an address has an account is told only to who shows a free invite, or the one that made
/// the account: others could try addresses.
class RegistrationEndpoints {
public:
    RegistrationEndpoints(Database& database, Passwords& passwords, SendMail sendMail,
        const TokenLives& lives, Now now);

    /// At most 5 codes an address and 30 a sender are mailed in 10 minutes; one that has made an
    /// account by then counts no longer.
    Outcome start(const Json& body, const std::string& address);
    /// A code is good for 10 minutes and 5 wrong tries; the right one may be shown again, because a
    /// client shows it with every new password it tries.
    Outcome verify(const Json& body);
    Outcome complete(const Json& body, const std::string& address);
    /// Counts as a code does, unless it succeeds.
    Outcome registerAtOnce(const Json& body, const std::string& address);

private:
    struct NewAccount {
        std::string email;
        std::string inviteDigest;
        std::string password;
        Device device;
    };

    tl::expected<void, Problem> takeAttempt(const std::string& email, const std::string& address);
    void giveAttemptBack(const std::string& email, const std::string& address);
    Outcome makeAccount(const NewAccount& account);

    Database& m_database;
    Passwords& m_passwords;
    SendMail m_sendMail;
    TokenLives m_lives;
    Now m_now;
    Throttle m_codesByEmail;
    Throttle m_codesByAddress;
};

} // namespace tavrin::devcloud
