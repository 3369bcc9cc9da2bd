#pragma once

#include "platform/HttpTransport.h"
#include "platform/qt/HttpExchange.h"

#include <QNetworkAccessManager>
#include <QSslConfiguration>

#include <list>
#include <memory>
#include <optional>

namespace tavrin {

/// HTTP/1.1 over QtNetwork. One access manager keeps the connections; every request is an
/// HttpExchange. Neither cookies nor answers nor credentials are stored. Needs a QCoreApplication.
class QtHttpTransport final : public HttpTransport {
public:
    /// Without @p tls, the system's configuration; it is read at the first request, since it brings
    /// the whole TLS library into memory.
    explicit QtHttpTransport(
        const HttpLimits& limits = {}, std::optional<QSslConfiguration> tls = std::nullopt);
    ~QtHttpTransport() override;

    QtHttpTransport(const QtHttpTransport&) = delete;
    QtHttpTransport& operator=(const QtHttpTransport&) = delete;

    void send(const HttpRequest& request, ResponseCompletion completion) override;

private:
    class Deliveries;

    struct Open {
        std::unique_ptr<HttpExchange> exchange;
        ResponseCompletion completion;
    };

    [[nodiscard]] const QSslConfiguration& tls();
    void finish(std::list<Open>::iterator request, const Result<HttpResponse>& answer);

    HttpLimits m_limits;
    std::optional<QSslConfiguration> m_tls;
    std::optional<QNetworkAccessManager> m_manager; // From the first request on.
    std::list<Open> m_open;
    bool m_closing = false;
    std::unique_ptr<Deliveries> m_deliveries;
};

} // namespace tavrin
