#include "support/servers/StandInSpeechServers.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QWebSocket>

#include <algorithm>
#include <memory>

namespace tavrin::testing {
namespace {

QByteArray json(const QString& key, const QString& value)
{
    return QJsonDocument(QJsonObject{{key, value}}).toJson(QJsonDocument::Compact);
}

void answerWithoutEnd(QTcpSocket& socket)
{
    socket.write("HTTP/1.1 200 OK\r\nContent-Type: application/json\r\n\r\n{\"text\": \"");
    QObject::connect(&socket, &QTcpSocket::bytesWritten, &socket,
        [&socket] { socket.write(QByteArray(1 << 16, 'a')); });
}

} // namespace

StandInTranscriptionServer::StandInTranscriptionServer()
{
    m_server.handler = [this](const ServedRequest&, QTcpSocket& socket) { answer(socket); };
}

void StandInTranscriptionServer::answer(QTcpSocket& socket)
{
    switch (fault) {
    case Fault::None: {
        const qsizetype number = std::min(requests().size(), texts.size()) - 1;
        socket.write(LoopbackServer::answer(200, json("text", texts.value(number))));
        break;
    }
    case Fault::Silent:
        break;
    case Fault::CutOff:
        socket.write("HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\n{\"text\": \"half");
        socket.disconnectFromHost();
        break;
    case Fault::Garbage:
        socket.write(LoopbackServer::answer(200, "\x01\xff<html>"));
        break;
    case Fault::NoText:
        socket.write(LoopbackServer::answer(200, R"({"text": ["a", "b"]})"));
        break;
    case Fault::Failing:
        socket.write(LoopbackServer::answer(500, json("text", "not this")));
        break;
    case Fault::Oversized:
        answerWithoutEnd(socket);
        break;
    case Fault::Redirecting:
        socket.write(LoopbackServer::answer(
            307, {}, "Location: " + m_server.url("/elsewhere").toEncoded() + "\r\n"));
        break;
    }
}

QByteArray StandInTranscriptionServer::field(const ServedRequest& request, const QByteArray& name)
{
    const qsizetype head = request.body.indexOf("name=\"" + name + '"');
    const qsizetype start = head < 0 ? -1 : request.body.indexOf("\r\n\r\n", head);
    if (start < 0)
        return {};
    const QByteArray contentType = request.headers.value("content-type");
    QByteArray boundary = contentType.sliced(contentType.indexOf("boundary=") + 9);
    boundary.replace('"', "");
    const qsizetype end = request.body.indexOf("\r\n--" + boundary, start);
    return request.body.sliced(start + 4, end - start - 4);
}

StandInStreamingServer::StandInStreamingServer()
{
    QObject::connect(&m_server, &QWebSocketServer::newConnection, &m_server,
        [this] { serve(m_server.nextPendingConnection()); });
    m_server.listen(QHostAddress::LocalHost);
}

void StandInStreamingServer::serve(QWebSocket* socket)
{
    ++m_connections;
    socket->setParent(&m_server); // The server hands its sockets over for good.
    const auto client = std::make_shared<Client>();
    QObject::connect(socket, &QWebSocket::disconnected, socket, [this] { ++m_ended; });
    QObject::connect(socket, &QWebSocket::binaryMessageReceived, socket,
        [this, socket, client](const QByteArray& sound) { hear(*socket, *client, sound); });
    QObject::connect(socket, &QWebSocket::textMessageReceived, socket,
        [this, socket, client](const QString& message) {
            m_messages.append(message);
            const bool isSilent = fault == Fault::Silent || fault == Fault::SilentAtTheEnd;
            if (!message.contains("eof") || isSilent)
                return;
            answer(*socket, json("text", client->phrase.join(u' ')));
            socket->close();
        });
}

void StandInStreamingServer::hear(QWebSocket& socket, Client& client, const QByteArray& sound)
{
    constexpr qsizetype bytesPerWord = 16'000;
    constexpr qsizetype phraseLength = 4;
    m_sound += sound;
    client.bytes += sound.size();
    while (client.bytes >= (client.words + 1) * bytesPerWord)
        client.phrase.append(QStringLiteral("word%1").arg(++client.words));
    if (fault == Fault::CutOff && client.words >= 2) {
        socket.abort();
        return;
    }
    if (client.phrase.size() < phraseLength) {
        answer(socket, json("partial", client.phrase.join(u' ')));
        return;
    }
    answer(socket, json("text", client.phrase.join(u' ')));
    client.phrase.clear();
}

void StandInStreamingServer::answer(QWebSocket& socket, const QByteArray& message) const
{
    switch (fault) {
    case Fault::Silent:
        break;
    case Fault::Garbage:
        socket.sendTextMessage("\x01 no json");
        break;
    case Fault::Oversized:
        socket.sendTextMessage(QString(4'000'000, u'a'));
        break;
    case Fault::None:
    case Fault::CutOff:
    case Fault::SilentAtTheEnd:
        socket.sendTextMessage(QString::fromUtf8(message));
        break;
    }
}

} // namespace tavrin::testing
