#pragma once

#include "devcloud/Now.h"
#include "devcloud/Outbox.h"
#include "devcloud/Problem.h"
#include "devcloud/endpoints/RegistrationEndpoints.h"
#include "devcloud/endpoints/SessionEndpoints.h"
#include "devcloud/endpoints/TextEndpoints.h"
#include "devcloud/endpoints/UsageEndpoints.h"
#include "devcloud/http/Routes.h"
#include "devcloud/security/Passwords.h"
#include "devcloud/store/Sessions.h"

#include <optional>
#include <string>

namespace tavrin::devcloud {

class Database;
class LanguageModel;

/// One request, its body not yet looked at.
struct Call {
    Endpoint endpoint;
    std::string authorization; ///< The header's value; empty without one.
    std::string body;
    std::string address; ///< Of the other side.
};

/// What a call costs, which decides whom it may keep waiting.
enum class Effort {
    Quick, ///< Milliseconds.
    Password, ///< Tens of milliseconds of a processor and much memory.
    Model, ///< As long as a language model takes.
};

/// What the service is made of. References outlive it.
struct ServiceParts {
    Database& database;
    Passwords& passwords;
    SendMail sendMail;
    LanguageModel* model = nullptr; ///< Null: rules only.
    TokenLives lives;
    UpdateOffer update;
    Now now;
};

/// Answers the calls of clients. Knows nothing of sockets. Any number of threads.
class Service {
public:
    explicit Service(const ServiceParts& parts);

    /// Never throws: what fails inside is answered as a 500 that tells nothing.
    Outcome answer(const Call& call);

    [[nodiscard]] Effort effortOf(Endpoint endpoint) const;

private:
    Outcome dispatch(const Call& call);
    Outcome answerPublic(const Call& call, const Json& body);
    Outcome answerSignedIn(const Call& call);
    std::optional<SessionOwner> ownerOf(const Call& call);

    Database& m_database;
    Now m_now;
    const bool m_hasModel;
    SessionEndpoints m_sessions;
    RegistrationEndpoints m_registration;
    TextEndpoints m_text;
    UsageEndpoints m_usage;
};

} // namespace tavrin::devcloud
