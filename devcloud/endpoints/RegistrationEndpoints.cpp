#include "devcloud/endpoints/RegistrationEndpoints.h"

#include "devcloud/api/Messages.h"
#include "devcloud/api/RequestBody.h"
#include "devcloud/endpoints/SessionEndpoints.h"
#include "devcloud/security/Passwords.h"
#include "devcloud/security/Secrets.h"
#include "devcloud/store/Accounts.h"
#include "devcloud/store/Database.h"
#include "devcloud/store/Registrations.h"
#include "devcloud/text/Ascii.h"
#include "devcloud/text/Utf8.h"

using namespace std::chrono_literals;

namespace tavrin::devcloud {
namespace {

constexpr std::chrono::seconds codeLife = 10min;
constexpr std::chrono::seconds registrationTokenLife = 10min;
constexpr std::int64_t maxWrongTries = 5;
constexpr std::size_t codesPerEmail = 5;
constexpr std::size_t codesPerAddress = 30;
constexpr std::size_t maxFieldBytes = 1024;

/// A code belongs to its address: the same digits for another one have another digest.
std::string codeDigest(const std::string& email, const std::string& code)
{
    return digest(email + "\n" + code);
}

Mail codeMail(const std::string& email, const std::string& code)
{
    return {email, "Tavrin 验证码", "您的验证码：" + code + "\n10 分钟内有效。"};
}

/// Why nobody may register @p email with the invite. Without a good one nobody learns of accounts.
std::optional<Problem> refusalFor(
    Transaction& transaction, const std::string& email, const std::string& inviteDigest)
{
    const auto account = findAccount(transaction, email);
    const bool isFree = inviteIsFree(transaction, inviteDigest);
    if (account && (isFree || inviteMade(transaction, inviteDigest, account->id)))
        return Problem{409, messages::emailRegistered, {}};
    if (!isFree)
        return Problem{403, messages::inviteInvalid, {}};
    return std::nullopt;
}

} // namespace

RegistrationEndpoints::RegistrationEndpoints(
    Database& database, Passwords& passwords, SendMail sendMail, const TokenLives& lives, Now now)
    : m_database(database)
    , m_passwords(passwords)
    , m_sendMail(std::move(sendMail))
    , m_lives(lives)
    , m_now(std::move(now))
    , m_codesByEmail(codesPerEmail, codeLife)
    , m_codesByAddress(codesPerAddress, codeLife)
{
}

tl::expected<void, Problem> RegistrationEndpoints::takeAttempt(
    const std::string& email, const std::string& address)
{
    auto wait = m_codesByAddress.take(address, m_now());
    if (!wait) {
        wait = m_codesByEmail.take(email, m_now());
        if (wait)
            m_codesByAddress.giveBack(address);
    }
    if (wait)
        return tl::unexpected(Problem{429, messages::tooManyAttempts, *wait});
    return {};
}

void RegistrationEndpoints::giveAttemptBack(const std::string& email, const std::string& address)
{
    m_codesByEmail.giveBack(email);
    m_codesByAddress.giveBack(address);
}

Outcome RegistrationEndpoints::start(const Json& body, const std::string& address)
{
    FieldReader fields(body);
    const std::string typedEmail = fields.text("email", maxFieldBytes);
    const std::string invite = fields.text("inviteCode", maxFieldBytes);
    if (fields.problem())
        return tl::unexpected(*fields.problem());
    const auto email = normalizedEmail(typedEmail);
    if (!email)
        return refusal(422, messages::emailInvalid);
    if (const auto attempt = takeAttempt(*email, address); !attempt)
        return tl::unexpected(attempt.error());

    const std::string code = newVerificationCode();
    Transaction transaction(m_database);
    const std::string inviteDigest = digest(normalizedInviteCode(invite));
    if (const auto refused = refusalFor(transaction, *email, inviteDigest))
        return tl::unexpected(*refused);
    beginRegistration(
        transaction, *email, inviteDigest, codeDigest(*email, code), m_now() + codeLife.count());
    if (!m_sendMail(codeMail(*email, code)))
        return refusal(500, messages::mailFailed);
    transaction.commit();
    return Json{{"email", *email}, {"expiresIn", codeLife.count()}};
}

Outcome RegistrationEndpoints::verify(const Json& body)
{
    FieldReader fields(body);
    const std::string typedEmail = fields.text("email", maxFieldBytes);
    const std::string typedCode = fields.text("code", maxFieldBytes);
    if (fields.problem())
        return tl::unexpected(*fields.problem());
    const std::string email = normalizedEmail(typedEmail).value_or(std::string());

    Transaction transaction(m_database);
    const auto registration = findRegistration(transaction, email);
    if (!registration || registration->expires <= m_now())
        return refusal(422, messages::codeExpired);
    if (registration->wrongTries >= maxWrongTries)
        return refusal(429, messages::codeTriesExhausted);
    if (codeDigest(email, std::string(trimmedAscii(typedCode))) != registration->codeDigest) {
        countWrongTry(transaction, email);
        transaction.commit();
        return refusal(422, messages::codeWrong);
    }
    const std::string token = newToken();
    setRegistrationToken(
        transaction, email, digest(token), m_now() + registrationTokenLife.count());
    transaction.commit();
    return Json{{"registrationToken", token}, {"expiresIn", registrationTokenLife.count()}};
}

Outcome RegistrationEndpoints::complete(const Json& body, const std::string& address)
{
    FieldReader fields(body);
    const std::string typedEmail = fields.text("email", maxFieldBytes);
    const std::string password = fields.text("password", longestPassword);
    const std::string token = fields.text("registrationToken", maxFieldBytes);
    const Device device = readDevice(fields);
    if (fields.problem())
        return tl::unexpected(*fields.problem());
    const std::string email = normalizedEmail(typedEmail).value_or(std::string());

    std::optional<Registration> registration;
    {
        Transaction transaction(m_database);
        registration = findRegistration(transaction, email);
    }
    if (!registration || registration->tokenDigest != digest(token)
        || registration->tokenExpires <= m_now())
        return refusal(403, messages::registrationInvalid);
    Outcome made = makeAccount({email, registration->inviteDigest, password, device});
    // After that time the attempt that began it counts no longer, and what would be given back is
    // somebody else's.
    if (made && registration->expires > m_now())
        giveAttemptBack(email, address);
    return made;
}

Outcome RegistrationEndpoints::registerAtOnce(const Json& body, const std::string& address)
{
    FieldReader fields(body);
    const std::string typedEmail = fields.text("email", maxFieldBytes);
    const std::string password = fields.text("password", longestPassword);
    const std::string invite = fields.text("inviteCode", maxFieldBytes);
    const Device device = readDevice(fields);
    if (fields.problem())
        return tl::unexpected(*fields.problem());
    const auto email = normalizedEmail(typedEmail);
    if (!email)
        return refusal(422, messages::emailInvalid);
    if (const auto attempt = takeAttempt(*email, address); !attempt)
        return tl::unexpected(attempt.error());
    Outcome made = makeAccount({*email, digest(normalizedInviteCode(invite)), password, device});
    if (made)
        giveAttemptBack(*email, address);
    return made;
}

Outcome RegistrationEndpoints::makeAccount(const NewAccount& account)
{
    if (countCharacters(account.password) < shortestPassword)
        return refusal(422, messages::passwordTooShort);
    const auto hash = m_passwords.hash(account.password);
    if (!hash)
        return refusal(500, messages::internal);

    Transaction transaction(m_database);
    if (const auto refused = refusalFor(transaction, account.email, account.inviteDigest))
        return tl::unexpected(*refused);
    if (!useInvite(transaction, account.inviteDigest, m_now()))
        return refusal(403, messages::inviteInvalid);
    const std::int64_t id = addAccount(transaction, account.email, *hash, m_now());
    noteMadeAccount(transaction, account.inviteDigest, id);
    const TokenPair tokens = startSession(transaction, id, account.device, m_lives, m_now());
    transaction.commit();
    return sessionAnswer(tokens, account.email, m_lives);
}

} // namespace tavrin::devcloud
