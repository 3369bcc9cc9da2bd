#include "platform/qt/HttpExchange.h"

#include "base/Log.h"
#include "platform/qt/HttpErrors.h"
#include "platform/qt/HttpRequestCheck.h"
#include "platform/qt/SingleUseBody.h"

#include <QNetworkAccessManager>
#include <QNetworkRequest>

#include <utility>

namespace tavrin {
namespace {

constexpr int mostRedirects = 10;

std::chrono::milliseconds milliseconds(Seconds duration)
{
    return std::chrono::duration_cast<std::chrono::milliseconds>(duration);
}

int portOf(const QUrl& url)
{
    return url.port(url.scheme() == QLatin1StringView("https") ? 443 : 80);
}

bool sameOrigin(const QUrl& left, const QUrl& right)
{
    return left.scheme() == right.scheme() && left.host() == right.host()
        && portOf(left) == portOf(right);
}

bool redirects(int status)
{
    return status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
}

} // namespace

HttpExchange::HttpExchange(QNetworkAccessManager& manager, const QSslConfiguration& tls,
    const HttpLimits& limits, HttpRequest request, Done done)
    : m_manager(manager)
    , m_tls(tls)
    , m_limits(limits)
    , m_request(std::move(request))
    , m_done(std::move(done))
{
    for (QTimer* timer : {&m_silence, &m_total}) {
        timer->setSingleShot(true);
        connect(timer, &QTimer::timeout, this, [this] { fail(HttpFailure::TimedOut); });
    }
    m_silence.setInterval(milliseconds(m_limits.withoutData));
    m_total.setInterval(milliseconds(m_limits.total));
}

HttpExchange::~HttpExchange()
{
    drop();
}

void HttpExchange::start()
{
    if (!isSendable(m_request)) {
        fail(HttpFailure::Refused);
        return;
    }
    m_total.start();
    sendTo(m_request.url);
}

void HttpExchange::sendTo(const QUrl& url)
{
    m_silence.start();
    m_body.clear();
    m_reply = startReply(networkRequest(url));

    connect(m_reply, &QNetworkReply::uploadProgress, this, [this] { m_silence.start(); });
    connect(m_reply, &QNetworkReply::metaDataChanged, this, &HttpExchange::readHead);
    connect(m_reply, &QNetworkReply::readyRead, this, &HttpExchange::readMore);
    connect(m_reply, &QNetworkReply::finished, this, &HttpExchange::finish);
}

QNetworkReply* HttpExchange::startReply(QNetworkRequest request)
{
    if (m_request.method == "GET" && !m_request.body)
        return m_manager.get(request);

    const QByteArray content = m_request.body.value_or(QByteArray());
    if (content.isEmpty()) // Says that its length is zero.
        return m_manager.sendCustomRequest(request, m_request.method, content);

    request.setHeader(QNetworkRequest::ContentLengthHeader, content.size());
    request.setAttribute(QNetworkRequest::DoNotBufferUploadDataAttribute, true);
    auto body = std::make_unique<SingleUseBody>(content);
    QNetworkReply* reply = m_manager.sendCustomRequest(request, m_request.method, body.get());
    body.release()->setParent(reply);
    return reply;
}

QNetworkRequest HttpExchange::networkRequest(const QUrl& url) const
{
    QNetworkRequest request(url);
    request.setSslConfiguration(m_tls);
    request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    request.setAttribute(
        QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    request.setAttribute(
        QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
    request.setAttribute(QNetworkRequest::CacheSaveControlAttribute, false);
    for (const auto storage :
        {QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::CookieSaveControlAttribute,
            QNetworkRequest::AuthenticationReuseAttribute})
        request.setAttribute(storage, QNetworkRequest::Manual);
    request.setRawHeader("User-Agent", "Tavrin");
    // Uncompressed, so that what is counted against the limit is what arrives.
    request.setRawHeader("Accept-Encoding", "identity");
    for (const auto& [name, value] : m_request.headers)
        request.setRawHeader(name, value);
    return request;
}

void HttpExchange::readHead()
{
    m_silence.start();
    const qint64 length = m_reply->header(QNetworkRequest::ContentLengthHeader).toLongLong();
    if (length > m_limits.largestBody)
        fail(HttpFailure::TooLarge);
}

void HttpExchange::readMore()
{
    m_silence.start();
    m_body += m_reply->readAll();
    if (m_body.size() > m_limits.largestBody)
        fail(HttpFailure::TooLarge);
}

void HttpExchange::finish()
{
    const QVariant status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute);
    const QNetworkReply::NetworkError error = m_reply->error();
    if (error != QNetworkReply::NoError && !(status.isValid() && isStatusError(error))) {
        fail(failureOf(error));
        return;
    }
    readMore();
    if (!m_reply)
        return; // Too large after all.
    const QByteArray location = m_reply->rawHeader("Location");
    if (redirects(status.toInt()) && !location.isEmpty())
        follow(m_reply->url().resolved(QUrl::fromEncoded(location)), status.toInt());
    else
        conclude(HttpResponse{status.toInt(), m_body});
}

void HttpExchange::follow(const QUrl& target, int status)
{
    if (!target.isValid() || !sameOrigin(target, m_reply->url()) || !target.userInfo().isEmpty()
        || ++m_redirects > mostRedirects) {
        fail(HttpFailure::Redirected);
        return;
    }
    drop();
    const bool becomesGet = status == 303 || ((status == 301 || status == 302) && m_request.body);
    if (becomesGet) {
        m_request.method = "GET";
        m_request.body.reset();
    }
    sendTo(target);
}

void HttpExchange::fail(HttpFailure reason)
{
    qCInfo(log::platform, "a request failed: %d (network error %d)", static_cast<int>(reason),
        m_reply ? static_cast<int>(m_reply->error()) : 0);
    conclude(failure(httpError(reason)));
}

void HttpExchange::conclude(const Result<HttpResponse>& answer)
{
    m_silence.stop();
    m_total.stop();
    drop();
    if (const Done done = std::exchange(m_done, nullptr))
        done(answer);
}

/// Ends the request on the wire; nothing of it arrives any more.
void HttpExchange::drop()
{
    if (!m_reply)
        return;
    QNetworkReply* reply = std::exchange(m_reply, nullptr);
    reply->disconnect(this);
    reply->abort();
    reply->deleteLater();
}

} // namespace tavrin
