#include "cloud/AuthenticatedRequest.h"
#include "cloud/CloudErrors.h"
#include "cloud/CloudTexts.h"
#include "cloud/StoredSession.h"
#include "platform/preferences/PreferenceKeys.h"
#include "platform/preferences/PreferenceValues.h"

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

bool endsTheSession(int status)
{
    return status == 401 || status == 403;
}

} // namespace

void TavrinAPI::refreshCloudSession(TextCompletion completion)
{
    const QString refreshToken = valueOf(m_preferences, keys::cloudRefreshToken);
    if (refreshToken.isEmpty()) {
        completion(failure(cloud::notSignedIn(texts::signInExpiredSignInAgain)));
        return;
    }
    cloudRequestPath(u"/v1/auth/refresh"_s, "POST", QJsonObject{{u"refreshToken"_s, refreshToken}},
        {},
        [&preferences = m_preferences, completion = std::move(completion)](
            const CloudResponse& response) {
            if (response.error) {
                if (endsTheSession(response.status))
                    clearCloudSession(preferences);
                completion(failure(*response.error));
                return;
            }
            const QString email = valueOf(preferences, keys::cloudAccountEmail);
            SaveCloudSession(preferences, response.object.value_or(QJsonObject{}), email);
            completion(valueOf(preferences, keys::cloudAccessToken));
        });
}

void TavrinAPI::validateCloudSessionRetry(bool retry, ErrorCompletion completion)
{
    const AuthenticatedRequest request{.path = u"/v1/auth/me"_s,
        .method = "GET",
        .payload = [](const TavrinAPI&) { return std::nullopt; },
        .notSignedIn = cloud::notSignedIn(texts::signInExpired),
        .refreshesWithoutToken = false};
    sendAuthenticated(
        request, retry, [completion = std::move(completion)](const CloudResponse& response) {
            completion(response.error);
        });
}

void TavrinAPI::validateCloudSessionWithCompletion(ErrorCompletion completion)
{
    validateCloudSessionRetry(true, std::move(completion));
}

void TavrinAPI::sendAuthenticated(
    const AuthenticatedRequest& request, bool retry, const ResponseCompletion& completion)
{
    const QString token = valueOf(m_preferences, keys::cloudAccessToken);
    if (token.isEmpty()) {
        if (retry && !valueOf(m_preferences, keys::cloudRefreshToken).isEmpty())
            refreshAndRepeat(request, completion);
        else
            completion(cloud::unsent(request.notSignedIn));
        return;
    }
    cloudRequestPath(request.path, request.method, request.payload(*this), token,
        [self = WeakSelf(m_self), request, retry, completion](const CloudResponse& response) {
            const auto client = self.lock();
            const bool refresh = client && retry && response.status == cloud::unauthorizedStatus
                && (request.refreshesWithoutToken
                    || !valueOf((*client)->m_preferences, keys::cloudRefreshToken).isEmpty());
            if (refresh)
                (*client)->refreshAndRepeat(request, completion);
            else
                completion(response);
        });
}

void TavrinAPI::refreshAndRepeat(
    const AuthenticatedRequest& request, const ResponseCompletion& completion)
{
    refreshCloudSession(
        [self = WeakSelf(m_self), request, completion](const Result<QString>& accessToken) {
            const auto client = self.lock();
            if (!accessToken)
                completion(cloud::unsent(accessToken.error()));
            else if (!client)
                completion(cloud::unsent(cloud::cancelled()));
            else
                (*client)->sendAuthenticated(request, false, completion);
        });
}

} // namespace tavrin
