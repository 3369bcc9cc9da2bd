#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QObject>
#include <QSslConfiguration>
#include <QTcpServer>
#include <QTcpSocket>
#include <QUrl>

#include <functional>
#include <memory>
#include <optional>

namespace tavrin::testing {

struct ServedRequest {
    QByteArray method;
    QByteArray target;
    QHash<QByteArray, QByteArray> headers; ///< Names in lower case.
    QByteArray body;
};

/// An HTTP/1.1 server on 127.0.0.1 whose every byte the test decides. Runs in the event loop of the
/// test's own thread.
class LoopbackServer {
public:
    using Handler = std::function<void(const ServedRequest&, QTcpSocket&)>;

    /// Serves HTTPS when @p tls names its certificate and key.
    explicit LoopbackServer(const std::optional<QSslConfiguration>& tls = {});

    [[nodiscard]] QUrl url(const QString& path = QStringLiteral("/")) const;

    /// Answers a whole request; writes to the socket, keeps it for later, or ends it.
    Handler handler = [](const ServedRequest&, QTcpSocket& socket) { socket.write(answer(200)); };

    /// Called with every connection, before anything is read.
    std::function<void(QTcpSocket&)> onConnection = [](QTcpSocket&) {};

    /// Called when the first bytes of a request have come.
    std::function<void(QTcpSocket&)> onFirstBytes = [](QTcpSocket&) {};

    [[nodiscard]] const QList<ServedRequest>& requests() const { return m_requests; }

    /// Connections accepted so far.
    [[nodiscard]] int connections() const { return m_connections; }

    /// No further connections are accepted.
    void close() { m_server->close(); }

    /// A whole answer with its length.
    [[nodiscard]] static QByteArray answer(
        int status, const QByteArray& body = {}, const QByteArray& headers = {});

private:
    void accept();
    void read(QTcpSocket& socket, QByteArray& received);

    std::unique_ptr<QTcpServer> m_server;
    bool m_secure;
    QList<ServedRequest> m_requests;
    int m_connections = 0;
};

} // namespace tavrin::testing
