#pragma once

#include "devcloud/api/Problem.h"
#include "devcloud/endpoints/Now.h"
#include "devcloud/endpoints/Outbox.h"
#include "devcloud/endpoints/RegistrationEndpoints.h"
#include "devcloud/endpoints/SessionEndpoints.h"
#include "devcloud/endpoints/TextEndpoints.h"
#include "devcloud/endpoints/UsageEndpoints.h"
#include "devcloud/http/RequestHandler.h"
#include "devcloud/security/Passwords.h"
#include "devcloud/store/Sessions.h"

#include <optional>
#include <string>

namespace tavrin::devcloud {

class Database;
class LanguageModel;

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
class Service : public RequestHandler {
public:
    explicit Service(const ServiceParts& parts);

    /// Never throws: what fails inside is answered as a 500 that tells nothing.
    Outcome answer(const Call& call) override;

    [[nodiscard]] Effort effortOf(Endpoint endpoint) const override;

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
