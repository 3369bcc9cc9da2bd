#pragma once

#include "base/Result.h"
#include "base/Seconds.h"
#include "platform/HttpTransport.h"

#include <QNetworkReply>
#include <QObject>
#include <QSslConfiguration>
#include <QTimer>

#include <functional>
#include <memory>

class QNetworkAccessManager;
class QNetworkRequest;

namespace tavrin {

struct HttpLimits {
    Seconds withoutData{90};
    Seconds total{120};
    qint64 largestBody = 8LL * 1024 * 1024; ///< In bytes.
};

/// One request on its way: from its start, over redirects within its origin, to its answer.
/// Destroying it aborts it.
class HttpExchange final : public QObject {
public:
    using Done = std::function<void(const Result<HttpResponse>&)>;

    /// @param done is called at most once, after start(); it must not destroy the exchange.
    HttpExchange(QNetworkAccessManager& manager, const QSslConfiguration& tls,
        const HttpLimits& limits, HttpRequest request, Done done);
    ~HttpExchange() override;

    HttpExchange(const HttpExchange&) = delete;
    HttpExchange& operator=(const HttpExchange&) = delete;

    void start();

private:
    void sendTo(const QUrl& url);
    void readHead();
    void readMore();
    void finish();
    void follow(const QUrl& target, int status);
    void fail(HttpFailure reason);
    void conclude(const Result<HttpResponse>& answer);
    void drop();

    [[nodiscard]] QNetworkReply* startReply(QNetworkRequest request);
    [[nodiscard]] QNetworkRequest networkRequest(const QUrl& url) const;

    QNetworkAccessManager& m_manager;
    QSslConfiguration m_tls;
    HttpLimits m_limits;
    HttpRequest m_request;
    Done m_done;
    QNetworkReply* m_reply = nullptr;
    QByteArray m_body;
    int m_redirects = 0;
    QTimer m_silence;
    QTimer m_total;
};

} // namespace tavrin
