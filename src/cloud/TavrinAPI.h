#pragma once

#include "base/Completion.h"
#include "base/Localize.h"
#include "base/Result.h"
#include "cloud/CloudResponse.h"
#include "cloud/Deployment.h"
#include "platform/HttpTransport.h"

#include <QJsonObject>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace tavrin {

class Preferences;
class SystemInfo;

/// Domain of the errors that the cloud service answered with; their code is the HTTP status.
inline const QString cloudServiceErrorDomain = QStringLiteral("TavrinAPI");
/// Domain of the errors that the client makes itself.
inline const QString cloudClientErrorDomain = QStringLiteral("TavrinCloud");

/// What the cloud client is told about the settings above it, and where its service is.
struct CloudSettings {
    Localize localize;
    std::function<QString()> translationTarget; ///< The target in effect, for usage reports.
    QString baseUrl = deployment::cloudBaseUrl;
};

/// The only client of the cloud service: polishes, translates and answers transcripts, and holds
/// the user's account.
///
/// The session (access token, refresh token, e-mail address) lives in the preferences alone and is
/// read afresh by every call. Operations that need it refresh it once when the service answers 401
/// or when only the refresh token is left, and then repeat themselves once; `retry` says whether
/// they still may. Only a refresh answered with 401 or 403, and signing out, clear it.
///
/// Main thread only. Completions run there exactly once: before the method returns when nothing
/// could be sent, else when the answer is there. Transport errors are passed on unchanged. When the
/// client is destroyed, the requests that run are finished, but nothing is repeated any more.
class TavrinAPI {
public:
    using ResponseCompletion = Completion<CloudResponse>;
    using ObjectCompletion = Completion<Result<QJsonObject>>;
    using TextCompletion = Completion<Result<QString>>;
    using ErrorCompletion = Completion<std::optional<Error>>; ///< Empty when all went well.

    /// @param transport,preferences,systemInfo must outlive the client and its requests.
    TavrinAPI(HttpTransport& transport, Preferences& preferences, const SystemInfo& systemInfo,
        CloudSettings settings);
    ~TavrinAPI();

    TavrinAPI(const TavrinAPI&) = delete;
    TavrinAPI& operator=(const TavrinAPI&) = delete;

    // The request layer.

    /// Sends one request. @p path begins with "/"; without @p payload there is no body, with an
    /// empty @p token no authorization. Refused at once (code 1) unless the base URL is HTTPS or
    /// points to this machine.
    void cloudRequestPath(const QString& path, const QByteArray& method,
        const std::optional<QJsonObject>& payload, const QString& token,
        ResponseCompletion completion);

    /// Empty for a status from 200 to 299; else the service's `error`.`message`, or the whole body
    /// as text, or "HTTP 500" when even that is not readable. A message that is not a string is
    /// shown as its JSON text.
    [[nodiscard]] static std::optional<Error> errorFromResponse(const HttpResponse& response);

    // The session.

    /// Exchanges the refresh token for new tokens and gives the access token now stored (empty when
    /// the service sent none and none was there).
    void refreshCloudSession(TextCompletion completion);

    void validateCloudSessionRetry(bool retry, ErrorCompletion completion);

    /// Asks the service whether the stored session still holds.
    void validateCloudSessionWithCompletion(ErrorCompletion completion);

    // Texts. The answer is never empty and has no white space at its ends.

    /// Cleans up @p transcript. Without @p style it is "professional"; without @p translation it is
    /// "none", which keeps the language. @p application describes the target application.
    void polish(const QString& transcript, const QJsonObject& application,
        const std::optional<QString>& style, const std::optional<QString>& translation,
        TextCompletion completion);

    /// Answers the question in @p transcript; @p context names the target application.
    void chat(const QString& transcript, const QString& context, TextCompletion completion);

    void cloudPolish(const QString& transcript, const QJsonObject& application,
        const std::optional<QString>& style, const std::optional<QString>& translation, bool retry,
        TextCompletion completion);
    void cloudChat(
        const QString& transcript, const QString& context, bool retry, TextCompletion completion);

    // The account. A null string is sent as an empty one.

    void loginEmail(const QString& email, const QString& password, ResponseCompletion completion);

    /// Registration, step 1: the service checks the invite and mails a code.
    void startRegistrationEmail(
        const QString& email, const QString& inviteCode, ResponseCompletion completion);

    /// Step 2: the answer's `registrationToken` is needed for step 3.
    void verifyRegistrationEmail(
        const QString& email, const QString& code, ResponseCompletion completion);

    /// Step 3: signs the new account in.
    void completeRegistrationEmail(const QString& email, const QString& password,
        const QString& registrationToken, ResponseCompletion completion);

    /// Registration in one step, for services that need no code; signs in when the answer carries
    /// an access token.
    void registerEmail(const QString& email, const QString& password, const QString& inviteCode,
        ResponseCompletion completion);

    /// Ends the session on this machine whatever the service answers, or if it cannot be reached;
    /// the completion says how that went.
    void logoutWithCompletion(ErrorCompletion completion);

    // Usage and updates.

    void usageSummaryWithCompletion(ResponseCompletion completion);

    /// Tells the service about one use; a report that fails is lost. Without @p status it is
    /// "failed"; an empty @p errorCode is left out. The latency counts for at most five minutes.
    void reportLocalUsageInputCharacters(quint64 inputCharacters, quint64 outputCharacters,
        quint64 latencyMs, const std::optional<QString>& status, const QString& errorCode,
        bool retry);

    /// The newest release that the service offers, as it describes it.
    void checkForUpdateWithCompletion(ObjectCompletion completion);

private:
    struct AuthenticatedRequest;
    struct TextRequest;
    using WeakSelf = std::weak_ptr<TavrinAPI*>;

    void sendAuthenticated(
        const AuthenticatedRequest& request, bool retry, const ResponseCompletion& completion);
    void refreshAndRepeat(
        const AuthenticatedRequest& request, const ResponseCompletion& completion);
    void requestText(const TextRequest& request, bool retry, TextCompletion completion);

    [[nodiscard]] QString installationIdentifier() const;
    [[nodiscard]] QJsonObject withInstallation(
        QJsonObject payload, const QString& identifier) const;
    [[nodiscard]] QJsonObject usageReport(quint64 inputCharacters, quint64 outputCharacters,
        quint64 latencyMs, const std::optional<QString>& status, const QString& errorCode) const;
    void signIn(const QString& path, const QJsonObject& payload, const QString& email,
        ResponseCompletion completion);

    HttpTransport& m_transport;
    Preferences& m_preferences;
    const SystemInfo& m_systemInfo;
    CloudSettings m_settings;
    std::shared_ptr<TavrinAPI*> m_self; ///< Held weakly by whatever waits for an answer.
};

} // namespace tavrin
