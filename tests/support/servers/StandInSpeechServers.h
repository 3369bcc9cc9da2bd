#pragma once

#include "support/servers/LoopbackServer.h"

#include <QStringList>
#include <QWebSocketServer>

namespace tavrin::testing {

/// A server with the form `POST /v1/audio/transcriptions`, and the faults that such servers show.
/// Runs in the event loop of the test's own thread.
class StandInTranscriptionServer {
public:
    enum class Fault {
        None,
        Silent, ///< Takes the request and never answers.
        CutOff, ///< Ends the connection in the middle of the answer.
        Garbage, ///< Answers something else than JSON.
        NoText, ///< Answers JSON without a text.
        Failing, ///< Answers 500.
        Oversized, ///< Answers without end.
        Redirecting, ///< Sends the client elsewhere.
    };

    StandInTranscriptionServer();

    Fault fault = Fault::None;
    QStringList texts; ///< One for every request; the last one for all that follow.

    [[nodiscard]] QUrl url() const { return m_server.url("/"); }

    [[nodiscard]] const QList<ServedRequest>& requests() const { return m_server.requests(); }

    /// The value of a field of the form in a request; empty when it is not there.
    [[nodiscard]] static QByteArray field(const ServedRequest& request, const QByteArray& name);

    /// No connection is accepted any more.
    void close() { m_server.close(); }

private:
    void answer(QTcpSocket& socket);

    LoopbackServer m_server;
};

/// A streaming recogniser: understands one word, "word1", "word2" …, in every half second of sound,
/// and ends a phrase after four. Runs in the event loop of the test's own thread.
class StandInStreamingServer {
public:
    enum class Fault {
        None,
        Silent, ///< Never answers.
        CutOff, ///< Ends the connection when it has heard two words.
        Garbage, ///< Answers something else than JSON.
        Oversized, ///< Answers with one message of many megabytes.
        SilentAtTheEnd, ///< Does not answer the end of the sound.
    };

    StandInStreamingServer();

    Fault fault = Fault::None;

    [[nodiscard]] QUrl url() const { return m_server.serverUrl(); }

    /// The text messages of all clients.
    [[nodiscard]] const QStringList& messages() const { return m_messages; }

    /// All the sound of all clients.
    [[nodiscard]] const QByteArray& sound() const { return m_sound; }

    [[nodiscard]] int connections() const { return m_connections; }

    /// Clients that have gone.
    [[nodiscard]] int ended() const { return m_ended; }

    void close() { m_server.close(); }

private:
    struct Client {
        qsizetype bytes = 0;
        int words = 0;
        QStringList phrase;
    };

    void serve(QWebSocket* socket);
    void hear(QWebSocket& socket, Client& client, const QByteArray& sound);
    void answer(QWebSocket& socket, const QByteArray& message) const;

    QWebSocketServer m_server{QStringLiteral("stand-in"), QWebSocketServer::NonSecureMode};
    QStringList m_messages;
    QByteArray m_sound;
    int m_connections = 0;
    int m_ended = 0;
};

} // namespace tavrin::testing
