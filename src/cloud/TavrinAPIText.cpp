#include "cloud/AuthenticatedRequest.h"
#include "cloud/CloudErrors.h"
#include "cloud/CloudTexts.h"

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

constexpr int withoutTextCode = 2;

} // namespace

/// A request that is answered with a text.
struct TavrinAPI::TextRequest {
    QString path;
    QJsonObject payload;
    QString needsSignIn;
    QString withoutText;
};

void TavrinAPI::polish(const QString& transcript, const QJsonObject& application,
    const std::optional<QString>& style, const std::optional<QString>& translation,
    TextCompletion completion)
{
    cloudPolish(transcript, application, style, translation, true, std::move(completion));
}

void TavrinAPI::chat(const QString& transcript, const QString& context, TextCompletion completion)
{
    cloudChat(transcript, context, true, std::move(completion));
}

void TavrinAPI::cloudPolish(const QString& transcript, const QJsonObject& application,
    const std::optional<QString>& style, const std::optional<QString>& translation, bool retry,
    TextCompletion completion)
{
    const TextRequest request{.path = u"/v1/text/polish"_s,
        .payload = {{u"transcript"_s, transcript}, {u"application"_s, application},
            {u"style"_s, style.value_or(u"professional"_s)},
            {u"translation"_s, translation.value_or(u"none"_s)}},
        .needsSignIn = texts::polishNeedsSignIn.toString(),
        .withoutText = texts::polishWithoutText.toString()};
    requestText(request, retry, std::move(completion));
}

void TavrinAPI::cloudChat(
    const QString& transcript, const QString& context, bool retry, TextCompletion completion)
{
    const TextRequest request{.path = u"/v1/text/chat"_s,
        .payload = {{u"transcript"_s, transcript}, {u"context"_s, context}},
        .needsSignIn = m_settings.localize(texts::chatNeedsSignIn),
        .withoutText = m_settings.localize(texts::chatWithoutText)};
    requestText(request, retry, std::move(completion));
}

void TavrinAPI::requestText(const TextRequest& request, bool retry, TextCompletion completion)
{
    const AuthenticatedRequest authenticated{.path = request.path,
        .method = "POST",
        .payload = [payload = request.payload](const TavrinAPI&) { return payload; },
        .notSignedIn = cloud::clientError(cloud::notSignedInCode, request.needsSignIn)};
    sendAuthenticated(authenticated, retry,
        [withoutText = request.withoutText, completion = std::move(completion)](
            const CloudResponse& response) {
            if (response.error) {
                completion(failure(*response.error));
                return;
            }
            const QString text =
                response.object.value_or(QJsonObject{}).value("text"_L1).toString().trimmed();
            if (text.isEmpty())
                completion(failure(cloud::clientError(withoutTextCode, withoutText)));
            else
                completion(text);
        });
}

} // namespace tavrin
