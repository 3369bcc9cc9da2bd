#include "base/Log.h"
#include "cloud/CloudErrors.h"
#include "cloud/CloudTexts.h"
#include "cloud/TavrinAPI.h"
#include "platform/preferences/PreferenceValues.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QUtf8StringView>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

constexpr int invalidUrlCode = 1;

/// @p base without "/" at its ends, then @p path; empty unless it is HTTPS or this machine.
std::optional<QUrl> requestUrl(QStringView base, const QString& path)
{
    while (base.startsWith(u'/'))
        base = base.sliced(1);
    while (base.endsWith(u'/'))
        base.chop(1);
    const QUrl url{base.toString() + path, QUrl::StrictMode};
    if (!url.isValid())
        return std::nullopt;
    const bool secure = url.scheme() == "https"_L1;
    const bool local = url.host() == "127.0.0.1"_L1 || url.host() == "localhost"_L1;
    return secure || local ? std::optional(url) : std::nullopt;
}

/// The object in @p body; empty when it is anything else, or nested too deeply to be read.
QJsonObject objectIn(const QByteArray& body)
{
    return QJsonDocument::fromJson(body).object();
}

QString textOf(const QJsonValue& value)
{
    if (value.isString())
        return value.toString();
    const QByteArray array = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    return QString::fromUtf8(array.sliced(1, array.size() - 2)); // Without its brackets.
}

CloudResponse responseFrom(const Result<HttpResponse>& answer)
{
    if (!answer)
        return CloudResponse{QJsonObject{}, 0, answer.error()};
    return CloudResponse{
        objectIn(answer->body), answer->status, TavrinAPI::errorFromResponse(*answer)};
}

} // namespace

TavrinAPI::TavrinAPI(HttpTransport& transport, Preferences& preferences,
    const SystemInfo& systemInfo, CloudSettings settings)
    : m_transport(transport)
    , m_preferences(preferences)
    , m_systemInfo(systemInfo)
    , m_settings(std::move(settings))
    , m_self(std::make_shared<TavrinAPI*>(this))
{
}

TavrinAPI::~TavrinAPI() = default;

void TavrinAPI::cloudRequestPath(const QString& path, const QByteArray& method,
    const std::optional<QJsonObject>& payload, const QString& token, ResponseCompletion completion)
{
    const std::optional<QUrl> url = requestUrl(m_settings.baseUrl, path);
    if (!url) {
        completion(
            cloud::unsent(cloud::clientError(invalidUrlCode, texts::invalidCloudUrl.toString())));
        return;
    }

    HttpRequest request{*url, method, {{"Content-Type", "application/json"}}, std::nullopt};
    if (!token.isEmpty())
        request.headers.append({"Authorization", "Bearer " + token.toUtf8()});
    if (payload)
        request.body = QJsonDocument(*payload).toJson(QJsonDocument::Compact);

    m_transport.send(
        request, [path, completion = std::move(completion)](const Result<HttpResponse>& answer) {
            const CloudResponse response = responseFrom(answer);
            if (response.error)
                qCWarning(log::cloud) << "a request failed:" << path << response.status
                                      << response.error->domain << response.error->code;
            completion(response);
        });
}

std::optional<Error> TavrinAPI::errorFromResponse(const HttpResponse& response)
{
    if (response.status >= 200 && response.status <= 299)
        return std::nullopt;

    const auto error = [&](const QString& message) {
        return Error{cloudServiceErrorDomain, response.status, message};
    };
    const QJsonValue message =
        objectIn(response.body).value("error"_L1).toObject().value("message"_L1);
    if (!message.isUndefined())
        return error(textOf(message));
    if (QUtf8StringView(response.body).isValidUtf8())
        return error(QString::fromUtf8(response.body));
    return error(u"HTTP %1"_s.arg(response.status));
}

} // namespace tavrin
