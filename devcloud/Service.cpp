#include "devcloud/Service.h"

#include "devcloud/api/Messages.h"
#include "devcloud/api/RequestBody.h"
#include "devcloud/http/ClientAddress.h"
#include "devcloud/store/Database.h"
#include "devcloud/text/Ascii.h"

#include <cstdio>
#include <exception>

namespace tavrin::devcloud {
namespace {

/// The token of a "Bearer …" header; empty when the header is another or none.
std::string bearerToken(const std::string& authorization)
{
    constexpr std::string_view scheme = "bearer ";
    if (lowerAscii(std::string_view(authorization).substr(0, scheme.size())) != scheme)
        return {};
    return std::string(trimmedAscii(std::string_view(authorization).substr(scheme.size())));
}

} // namespace

Service::Service(const ServiceParts& parts)
    : m_database(parts.database)
    , m_now(parts.now)
    , m_hasModel(parts.model != nullptr)
    , m_sessions(parts.database, parts.passwords, parts.lives, parts.now)
    , m_registration(parts.database, parts.passwords, parts.sendMail, parts.lives, parts.now)
    , m_text(parts.database, parts.model, parts.now)
    , m_usage(parts.database, parts.update, parts.now)
{
}

Outcome Service::answer(const Call& call)
{
    try {
        return dispatch(call);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "tavrin-devcloud: %s\n", error.what());
        return refusal(500, messages::internal);
    }
}

Effort Service::effortOf(Endpoint endpoint) const
{
    switch (endpoint) {
    case Endpoint::Login:
    case Endpoint::Register:
    case Endpoint::RegistrationComplete:
        return Effort::Password;
    case Endpoint::Polish:
    case Endpoint::Chat:
        return m_hasModel ? Effort::Model : Effort::Quick;
    default:
        return Effort::Quick;
    }
}

Outcome Service::dispatch(const Call& call)
{
    switch (call.endpoint) {
    case Endpoint::ClientUpdate:
        return m_usage.update();
    case Endpoint::Logout:
        return m_sessions.logout(bearerToken(call.authorization));
    case Endpoint::Login:
    case Endpoint::Register:
    case Endpoint::RegistrationStart:
    case Endpoint::RegistrationVerify:
    case Endpoint::RegistrationComplete:
    case Endpoint::Refresh: {
        const Outcome body = parseBody(call.body);
        return body ? answerPublic(call, *body) : body;
    }
    case Endpoint::Me:
    case Endpoint::Polish:
    case Endpoint::Chat:
    case Endpoint::UsageSummary:
    case Endpoint::UsageReport:
        return answerSignedIn(call);
    }
    return refusal(404, messages::pathUnknown);
}

Outcome Service::answerPublic(const Call& call, const Json& body)
{
    const std::string address = addressForCounting(call.address);
    switch (call.endpoint) {
    case Endpoint::Login:
        return m_sessions.login(body, address);
    case Endpoint::Register:
        return m_registration.registerAtOnce(body, address);
    case Endpoint::RegistrationStart:
        return m_registration.start(body, address);
    case Endpoint::RegistrationVerify:
        return m_registration.verify(body);
    case Endpoint::RegistrationComplete:
        return m_registration.complete(body, address);
    default:
        return m_sessions.refresh(body);
    }
}

std::optional<SessionOwner> Service::ownerOf(const Call& call)
{
    std::optional<SessionOwner> owner;
    {
        Transaction transaction(m_database, Transaction::Access::Read);
        owner = ownerOfAccessToken(transaction, bearerToken(call.authorization), m_now());
    }
    if (!owner || owner->unnotedPair.empty())
        return owner;
    try {
        Transaction transaction(m_database);
        noteUse(transaction, owner->unnotedPair);
        transaction.commit();
    } catch (const DatabaseError& error) {
        // The next request notes it; this one can be answered without.
        std::fprintf(stderr, "tavrin-devcloud: %s\n", error.what());
    }
    return owner;
}

Outcome Service::answerSignedIn(const Call& call)
{
    const std::optional<SessionOwner> owner = ownerOf(call);
    // Before the body: a stranger learns nothing about it.
    if (!owner)
        return refusal(401, messages::accessTokenInvalid);
    if (call.endpoint == Endpoint::Me)
        return SessionEndpoints::me(*owner);
    if (call.endpoint == Endpoint::UsageSummary)
        return m_usage.summary(*owner);

    Outcome body = parseBody(call.body);
    if (!body)
        return body;
    if (call.endpoint == Endpoint::Polish)
        return m_text.polish(*owner, *body);
    if (call.endpoint == Endpoint::Chat)
        return m_text.chat(*owner, *body);
    return m_usage.report(*owner, *body);
}

} // namespace tavrin::devcloud
