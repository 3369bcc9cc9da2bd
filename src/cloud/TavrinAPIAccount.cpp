#include "cloud/AuthenticatedRequest.h"
#include "cloud/CloudErrors.h"
#include "cloud/CloudTexts.h"
#include "cloud/ProviderPreferences.h"
#include "cloud/StoredSession.h"
#include "platform/SystemInfo.h"
#include "platform/preferences/PreferenceKeys.h"
#include "platform/preferences/PreferenceValues.h"

#include <QUuid>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

/// What the service is told; the version of the bundle may differ.
const QString clientVersion = u"0.8.0"_s;
constexpr quint64 longestLatencyMs = 300'000;

/// Numbers of a report are never so large; JSON has no room for more.
qint64 count(quint64 characters)
{
    return static_cast<qint64>(
        std::min(characters, static_cast<quint64>(std::numeric_limits<qint64>::max())));
}

} // namespace

void TavrinAPI::loginEmail(
    const QString& email, const QString& password, ResponseCompletion completion)
{
    const QString identifier = installationIdentifier();
    if (valueOf(m_preferences, keys::cloudDeviceId).isEmpty())
        m_preferences.setValue(keys::cloudDeviceId, identifier);
    signIn(u"/v1/auth/login"_s,
        withInstallation({{u"email"_s, email}, {u"password"_s, password}}, identifier), email,
        std::move(completion));
}

void TavrinAPI::startRegistrationEmail(
    const QString& email, const QString& inviteCode, ResponseCompletion completion)
{
    cloudRequestPath(u"/v1/auth/registration/start"_s, "POST",
        QJsonObject{{u"email"_s, email}, {u"inviteCode"_s, inviteCode}}, {}, std::move(completion));
}

void TavrinAPI::verifyRegistrationEmail(
    const QString& email, const QString& code, ResponseCompletion completion)
{
    cloudRequestPath(u"/v1/auth/registration/verify"_s, "POST",
        QJsonObject{{u"email"_s, email}, {u"code"_s, code}}, {}, std::move(completion));
}

void TavrinAPI::completeRegistrationEmail(const QString& email, const QString& password,
    const QString& registrationToken, ResponseCompletion completion)
{
    const QString identifier = installationIdentifier();
    m_preferences.setValue(keys::cloudDeviceId, identifier);
    signIn(u"/v1/auth/registration/complete"_s,
        withInstallation({{u"email"_s, email}, {u"password"_s, password},
                             {u"registrationToken"_s, registrationToken}},
            identifier),
        email, std::move(completion));
}

void TavrinAPI::registerEmail(const QString& email, const QString& password,
    const QString& inviteCode, ResponseCompletion completion)
{
    const QString identifier = installationIdentifier();
    m_preferences.setValue(keys::cloudDeviceId, identifier);
    const QJsonObject payload = withInstallation(
        {{u"email"_s, email}, {u"password"_s, password}, {u"inviteCode"_s, inviteCode}},
        identifier);
    cloudRequestPath(u"/v1/auth/register"_s, "POST", payload, {},
        [&preferences = m_preferences, email, completion = std::move(completion)](
            const CloudResponse& response) {
            const QJsonObject answer = response.object.value_or(QJsonObject{});
            if (!response.error && answer.value("accessToken"_L1).isString())
                SaveCloudSession(preferences, answer, email);
            completion(response);
        });
}

void TavrinAPI::logoutWithCompletion(ErrorCompletion completion)
{
    const QString token = valueOf(m_preferences, keys::cloudAccessToken);
    if (token.isEmpty()) {
        clearCloudSession(m_preferences);
        completion(std::nullopt);
        return;
    }
    cloudRequestPath(u"/v1/auth/logout"_s, "POST", std::nullopt, token,
        [&preferences = m_preferences, completion = std::move(completion)](
            const CloudResponse& response) {
            clearCloudSession(preferences);
            completion(response.error);
        });
}

void TavrinAPI::usageSummaryWithCompletion(ResponseCompletion completion)
{
    const QString token = valueOf(m_preferences, keys::cloudAccessToken);
    if (token.isEmpty())
        completion(cloud::unsent(cloud::notSignedIn(texts::signInFirst)));
    else
        cloudRequestPath(u"/v1/usage/summary"_s, "GET", std::nullopt, token, std::move(completion));
}

void TavrinAPI::reportLocalUsageInputCharacters(quint64 inputCharacters, quint64 outputCharacters,
    quint64 latencyMs, const std::optional<QString>& status, const QString& errorCode, bool retry)
{
    const AuthenticatedRequest request{.path = u"/v1/usage/report"_s,
        .method = "POST",
        .payload =
            [=](const TavrinAPI& client) {
                return client.usageReport(
                    inputCharacters, outputCharacters, latencyMs, status, errorCode);
            },
        .notSignedIn = cloud::notSignedIn(texts::signInFirst)};
    sendAuthenticated(request, retry, [](const CloudResponse&) {});
}

void TavrinAPI::checkForUpdateWithCompletion(ObjectCompletion completion)
{
    cloudRequestPath(u"/v1/client/update"_s, "GET", std::nullopt, {},
        [completion = std::move(completion)](const CloudResponse& response) {
            if (response.error)
                completion(failure(*response.error));
            else
                completion(response.object.value_or(QJsonObject{}));
        });
}

/// The identifier of this installation; a new one while none is stored.
QString TavrinAPI::installationIdentifier() const
{
    const QString identifier = valueOf(m_preferences, keys::cloudDeviceId);
    return identifier.isEmpty() ? QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper()
                                : identifier;
}

QJsonObject TavrinAPI::withInstallation(QJsonObject payload, const QString& identifier) const
{
    const QString hostName = m_systemInfo.localizedHostName();
    payload.insert("deviceId"_L1, identifier);
    payload.insert("deviceName"_L1, hostName.isEmpty() ? u"Mac"_s : hostName);
    payload.insert("clientVersion"_L1, clientVersion);
    return payload;
}

/// A request whose successful answer is the session of @p email.
void TavrinAPI::signIn(const QString& path, const QJsonObject& payload, const QString& email,
    ResponseCompletion completion)
{
    cloudRequestPath(path, "POST", payload, {},
        [&preferences = m_preferences, email, completion = std::move(completion)](
            const CloudResponse& response) {
            if (!response.error)
                SaveCloudSession(preferences, response.object.value_or(QJsonObject{}), email);
            completion(response);
        });
}

QJsonObject TavrinAPI::usageReport(quint64 inputCharacters, quint64 outputCharacters,
    quint64 latencyMs, const std::optional<QString>& status, const QString& errorCode) const
{
    const QString provider = QUrl(providerBaseUrl(m_preferences)).host();
    const bool translates = m_settings.translationTarget() != "none"_L1;
    QJsonObject report{
        {u"requestId"_s, QUuid::createUuid().toString(QUuid::WithoutBraces)},
        {u"operation"_s, translates ? u"translation"_s : u"polish"_s},
        {u"provider"_s, provider.isEmpty() ? u"local-openai-compatible"_s : provider},
        {u"model"_s, providerModel(m_preferences)},
        {u"inputCharacters"_s, count(inputCharacters)},
        {u"outputCharacters"_s, count(outputCharacters)},
        {u"audioSeconds"_s, 0},
        {u"latencyMs"_s, count(std::min(latencyMs, longestLatencyMs))},
        {u"status"_s, status.value_or(u"failed"_s)},
    };
    if (!errorCode.isEmpty())
        report.insert("errorCode"_L1, errorCode);
    return report;
}

} // namespace tavrin
