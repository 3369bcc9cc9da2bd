#pragma once

#include "platform/HttpTransport.h"
#include "platform/qt/HttpExchange.h"

#include <QNetworkAccessManager>
#include <QObject>
#include <QSslConfiguration>

#include <list>

namespace tavrin {

/// HTTP/1.1 over QtNetwork. One access manager keeps the connections; every request is an
/// HttpExchange. Neither cookies nor answers nor credentials are stored. Needs a QCoreApplication.
class QtHttpTransport final : public HttpTransport {
public:
    explicit QtHttpTransport(const HttpLimits& limits = {},
        const QSslConfiguration& tls = QSslConfiguration::defaultConfiguration());
    ~QtHttpTransport() override;

    QtHttpTransport(const QtHttpTransport&) = delete;
    QtHttpTransport& operator=(const QtHttpTransport&) = delete;

    void send(const HttpRequest& request, ResponseCompletion completion) override;

private:
    struct Open {
        std::unique_ptr<HttpExchange> exchange;
        ResponseCompletion completion;
    };

    void finish(std::list<Open>::iterator request, const Result<HttpResponse>& answer);

    HttpLimits m_limits;
    QSslConfiguration m_tls;
    QNetworkAccessManager m_manager;
    std::list<Open> m_open;
    bool m_closing = false;
    QObject m_deliveries; ///< Takes what waits to be delivered with it.
};

} // namespace tavrin
