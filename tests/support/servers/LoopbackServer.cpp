#include "support/servers/LoopbackServer.h"

#include <QSslServer>

#include <optional>

namespace tavrin::testing {
namespace {

/// Takes one whole request from the front of @p received, when there is one.
std::optional<ServedRequest> takeRequest(QByteArray& received)
{
    const qsizetype headEnd = received.indexOf("\r\n\r\n");
    if (headEnd < 0)
        return std::nullopt;
    ServedRequest request;
    const QList<QByteArray> lines = received.left(headEnd).split('\n');
    const QList<QByteArray> words = lines.first().trimmed().split(' ');
    request.method = words.value(0);
    request.target = words.value(1);
    for (const QByteArray& line : lines.sliced(1)) {
        const qsizetype colon = line.indexOf(':');
        request.headers.insert(line.left(colon).toLower(), line.sliced(colon + 1).trimmed());
    }
    const qsizetype length = request.headers.value("content-length", "0").toLongLong();
    const qsizetype bodyStart = headEnd + 4;
    if (received.size() < bodyStart + length)
        return std::nullopt;
    request.body = received.mid(bodyStart, length);
    received.remove(0, bodyStart + length);
    return request;
}

std::unique_ptr<QTcpServer> makeServer(const std::optional<QSslConfiguration>& tls)
{
    if (!tls)
        return std::make_unique<QTcpServer>();
    auto server = std::make_unique<QSslServer>();
    server->setSslConfiguration(*tls);
    return server;
}

} // namespace

LoopbackServer::LoopbackServer(const std::optional<QSslConfiguration>& tls)
    : m_server(makeServer(tls))
    , m_secure(tls.has_value())
{
    QObject::connect(m_server.get(), &QTcpServer::pendingConnectionAvailable, m_server.get(),
        [this] { accept(); });
    m_server->listen(QHostAddress::LocalHost);
}

QUrl LoopbackServer::url(const QString& path) const
{
    QUrl url(QStringLiteral("%1://127.0.0.1:%2%3")
                 .arg(m_secure ? QStringLiteral("https") : QStringLiteral("http"),
                     QString::number(m_server->serverPort()), path));
    return url;
}

void LoopbackServer::accept()
{
    QTcpSocket* socket = m_server->nextPendingConnection();
    if (!socket)
        return;
    ++m_connections;
    onConnection(*socket);
    const auto received = std::make_shared<QByteArray>();
    QObject::connect(socket, &QTcpSocket::readyRead, socket,
        [this, socket, received] { read(*socket, *received); });
    if (socket->bytesAvailable() > 0)
        read(*socket, *received);
}

void LoopbackServer::read(QTcpSocket& socket, QByteArray& received)
{
    if (received.isEmpty())
        onFirstBytes(socket);
    if (!socket.isOpen())
        return;
    received += socket.readAll();
    while (const std::optional<ServedRequest> request = takeRequest(received)) {
        m_requests.append(*request);
        handler(*request, socket);
    }
}

QByteArray LoopbackServer::answer(int status, const QByteArray& body, const QByteArray& headers)
{
    return "HTTP/1.1 " + QByteArray::number(status) + " Status\r\nContent-Length: "
        + QByteArray::number(body.size()) + "\r\n" + headers + "\r\n" + body;
}

} // namespace tavrin::testing
