#include "devcloud/endpoints/SessionEndpoints.h"

#include "devcloud/api/Messages.h"
#include "devcloud/api/RequestBody.h"
#include "devcloud/security/Passwords.h"
#include "devcloud/store/Accounts.h"
#include "devcloud/store/Database.h"

using namespace std::chrono_literals;

namespace tavrin::devcloud {
namespace {

constexpr std::size_t attemptsPerPair = 10;
constexpr std::size_t attemptsPerAddress = 50;
constexpr std::chrono::seconds attemptWindow = 15min;
constexpr std::size_t maxEmailBytes = 1024;
constexpr std::size_t maxTokenBytes = 256;
constexpr std::size_t maxDeviceFieldBytes = 512;

std::string pairKey(const std::string& email, const std::string& address)
{
    return email + "\n" + address;
}

} // namespace

Device readDevice(FieldReader& fields)
{
    return {fields.textOr("deviceId", "", maxDeviceFieldBytes),
        fields.textOr("deviceName", "", maxDeviceFieldBytes),
        fields.textOr("clientVersion", "", maxDeviceFieldBytes)};
}

Json sessionAnswer(const TokenPair& tokens, const std::string& email, const TokenLives& lives)
{
    return {{"accessToken", tokens.access}, {"refreshToken", tokens.refresh},
        {"expiresIn", lives.access.count()}, {"user", {{"email", email}}}};
}

SessionEndpoints::SessionEndpoints(
    Database& database, Passwords& passwords, const TokenLives& lives, Now now)
    : m_database(database)
    , m_passwords(passwords)
    , m_lives(lives)
    , m_now(std::move(now))
    , m_attemptsByPair(attemptsPerPair, attemptWindow)
    , m_attemptsByAddress(attemptsPerAddress, attemptWindow)
{
}

tl::expected<void, Problem> SessionEndpoints::takeAttempt(
    const std::string& email, const std::string& address)
{
    auto wait = m_attemptsByAddress.take(address, m_now());
    if (!wait) {
        wait = m_attemptsByPair.take(pairKey(email, address), m_now());
        if (wait)
            m_attemptsByAddress.giveBack(address);
    }
    if (wait)
        return tl::unexpected(Problem{429, messages::tooManyAttempts, *wait});
    return {};
}

Outcome SessionEndpoints::login(const Json& body, const std::string& address)
{
    FieldReader fields(body);
    const std::string typedEmail = fields.text("email", maxEmailBytes);
    const std::string password = fields.text("password", longestPassword);
    const Device device = readDevice(fields);
    if (fields.problem())
        return tl::unexpected(*fields.problem());

    // Counted before the password is looked at, so that guesses made at once count as well.
    const std::string email = normalizedEmail(typedEmail).value_or(std::string());
    if (const auto attempt = takeAttempt(email, address); !attempt)
        return tl::unexpected(attempt.error());

    std::optional<Account> account;
    {
        Transaction transaction(m_database);
        account = findAccount(transaction, email);
    }
    const auto hash = account ? std::optional(account->passwordHash) : std::nullopt;
    if (!m_passwords.matches(hash, password))
        return refusal(401, messages::credentialsWrong);

    m_attemptsByPair.forget(pairKey(email, address));
    m_attemptsByAddress.giveBack(address);
    Transaction transaction(m_database);
    // The password may have been replaced meanwhile, which ended the sessions there were.
    const auto current = findAccount(transaction, email);
    if (!current || current->id != account->id || current->passwordHash != account->passwordHash)
        return refusal(401, messages::credentialsWrong);
    const TokenPair tokens = startSession(transaction, account->id, device, m_lives, m_now());
    transaction.commit();
    return sessionAnswer(tokens, account->email, m_lives);
}

Outcome SessionEndpoints::refresh(const Json& body)
{
    FieldReader fields(body);
    const std::string token = fields.text("refreshToken", maxTokenBytes);
    if (fields.problem())
        return tl::unexpected(*fields.problem());

    Transaction transaction(m_database);
    const auto session = refreshSession(transaction, token, m_lives, m_now());
    transaction.commit();
    if (!session)
        return refusal(401, messages::refreshTokenInvalid);
    return sessionAnswer(session->tokens, session->owner.email, m_lives);
}

Outcome SessionEndpoints::me(const SessionOwner& owner)
{
    return Json{{"user", {{"email", owner.email}}}};
}

Outcome SessionEndpoints::logout(const std::string& accessToken)
{
    Transaction transaction(m_database);
    const bool ended = endSession(transaction, accessToken);
    transaction.commit();
    if (!ended)
        return refusal(401, messages::accessTokenInvalid);
    return Json::object();
}

} // namespace tavrin::devcloud
