#include "platform/linux/speech/servers/VoskSpeechEngine.h"

#include "platform/linux/speech/engine/SpeechEngineErrors.h"
#include "platform/linux/speech/engine/SpeechEngineTexts.h"
#include "platform/linux/speech/engine/TranscriptText.h"
#include "platform/linux/speech/servers/NetworkWait.h"
#include "platform/linux/speech/servers/ServerAddress.h"
#include "platform/speech/SpeechAvailability.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkProxy>
#include <QWebSocket>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tavrin {
namespace {

constexpr quint64 largestMessage = 1 << 20;
constexpr qsizetype longestText = 1 << 20; // Characters; hours of speech are less.
constexpr qint64 mostUnsent = 1 << 16; // Two seconds of sound.
constexpr std::size_t samplesPerMessage = 4'000; // A quarter of a second.

/// The server ends no utterance for us, so none needs to be cut.
constexpr Seconds longestStretch = std::chrono::hours{4};

/// What the server's messages say, taken together.
class VoskTexts {
public:
    /// False when the message is none of the protocol's, or there is too much text.
    [[nodiscard]] bool add(const QString& message)
    {
        const QJsonObject answer = QJsonDocument::fromJson(message.toUtf8()).object();
        const QJsonValue text = answer.value("text"_L1);
        const QJsonValue partial = answer.value("partial"_L1);
        if (text.isString()) {
            m_finished.append(text.toString());
            m_length += text.toString().size();
            m_partial.clear();
        } else if (partial.isString()) {
            m_partial = partial.toString();
        } else {
            return false;
        }
        m_endsWithText = text.isString();
        ++m_messages;
        return m_length <= longestText;
    }

    [[nodiscard]] qint64 messages() const { return m_messages; }

    /// Whether nothing is open: the last message finished a phrase.
    [[nodiscard]] bool endsWithText() const { return m_endsWithText; }

    [[nodiscard]] QString joined() const
    {
        QStringList pieces = m_finished;
        pieces.append(m_partial);
        return joinTranscript(pieces);
    }

private:
    QStringList m_finished;
    QString m_partial;
    qsizetype m_length = 0;
    qint64 m_messages = 0;
    bool m_endsWithText = false;
};

/// Frees what Qt defers to an event loop: the worker thread runs none between its requests.
struct DeferredDeletes {
    DeferredDeletes() = default;

    ~DeferredDeletes() { QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); }

    DeferredDeletes(const DeferredDeletes&) = delete;
    DeferredDeletes& operator=(const DeferredDeletes&) = delete;
};

class SocketUtterance final : public Utterance {
public:
    SocketUtterance(const SpeechServer& server, std::stop_token stop)
        : m_server(server)
        , m_stop(std::move(stop))
        , m_wait(m_stop)
    {
        m_socket.setMaxAllowedIncomingMessageSize(largestMessage);
        m_socket.setMaxAllowedIncomingFrameSize(largestMessage);
        if (isLoopback(*server.address))
            m_socket.setProxy(QNetworkProxy::NoProxy);
        QObject::connect(&m_socket, &QWebSocket::textMessageReceived, &m_socket,
            [this](const QString& message) { receive(message); });
        QObject::connect(&m_socket, &QWebSocket::connected, &m_socket, [this] { m_wait.finish(); });
        QObject::connect(
            &m_socket, &QWebSocket::disconnected, &m_socket, [this] { m_wait.finish(); });
        QObject::connect(
            &m_socket, &QWebSocket::bytesWritten, &m_socket, [this] { m_wait.finish(); });
        QObject::connect(&m_socket, qOverload<QAbstractSocket::SocketError>(&QWebSocket::error),
            &m_socket, [this] { m_wait.finish(); });
    }

    ~SocketUtterance() override { m_socket.abort(); }

    SocketUtterance(const SocketUtterance&) = delete;
    SocketUtterance& operator=(const SocketUtterance&) = delete;

    Result<void> connectToServer()
    {
        m_socket.open(*m_server.address);
        waitUntil([this] { return m_socket.isValid(); });
        if (Result<void> connected = check(); !connected)
            return connected;
        m_socket.sendTextMessage(uR"({"config": {"sample_rate": %1}})"_s.arg(speechSampleRate));
        return {};
    }

    Result<void> feed(std::span<const qint16> samples) override
    {
        while (!samples.empty()) {
            const auto part = samples.first(std::min(samples.size(), samplesPerMessage));
            samples = samples.subspan(part.size());
            m_socket.sendBinaryMessage(QByteArray(reinterpret_cast<const char*>(part.data()),
                static_cast<qsizetype>(part.size_bytes())));
            ++m_sent;
            QCoreApplication::processEvents(QEventLoop::AllEvents);
            waitUntil([this] { return m_socket.bytesToWrite() <= mostUnsent; });
            if (Result<void> goesOn = check(); !goesOn)
                return goesOn;
        }
        return {};
    }

    [[nodiscard]] QString partialText() const override { return m_texts.joined(); }

    [[nodiscard]] Result<QString> finish() override
    {
        m_socket.sendTextMessage(uR"({"eof": 1})"_s);
        ++m_sent;
        waitUntil([this] { return m_texts.messages() >= m_sent && m_texts.endsWithText(); });
        if (m_texts.messages() < m_sent || !m_texts.endsWithText()) {
            const Result<void> problem = check();
            return failure(
                problem ? speechEngineError(SpeechEngineError::NoAnswer) : problem.error());
        }
        return m_texts.joined();
    }

private:
    void receive(const QString& message)
    {
        m_isBadAnswer |= !m_texts.add(message);
        m_wait.finish();
    }

    [[nodiscard]] bool isBroken() const
    {
        return m_stop.stop_requested() || m_isBadAnswer
            || m_socket.state() == QAbstractSocket::UnconnectedState;
    }

    /// Waits while the server keeps answering; it is given up when it is silent for too long.
    template <class Condition>
    void waitUntil(Condition condition)
    {
        while (!m_timedOut && !condition() && !isBroken())
            m_timedOut = !m_wait.wait(m_server.patience);
    }

    [[nodiscard]] Result<void> check() const
    {
        if (m_stop.stop_requested())
            return failure(speechEngineError(SpeechEngineError::Cancelled));
        if (m_isBadAnswer || m_socket.closeCode() == QWebSocketProtocol::CloseCodeTooMuchData)
            return failure(speechEngineError(SpeechEngineError::UnusableAnswer));
        if (m_timedOut)
            return failure(speechEngineError(SpeechEngineError::NoAnswer));
        if (!m_socket.isValid())
            return failure(speechEngineError(SpeechEngineError::NotReachable));
        return {};
    }

    const SpeechServer& m_server;
    std::stop_token m_stop;
    NetworkWait m_wait;
    VoskTexts m_texts;
    qint64 m_sent = 0; // Messages that the server answers.
    bool m_isBadAnswer = false;
    bool m_timedOut = false;
    DeferredDeletes m_deferred; // Before the socket, which defers the end of its connection.
    QWebSocket m_socket; // Last: its signals use the others.
};

} // namespace

VoskSpeechEngine::VoskSpeechEngine(SpeechServer server)
    : m_server(std::move(server))
{
}

SpeechAvailability VoskSpeechEngine::availability() const
{
    if (m_server.address)
        return {true, texts::voskReady, shownAddress(*m_server.address)};
    return serverUnavailable(m_server);
}

Seconds VoskSpeechEngine::longestUtterance() const
{
    return longestStretch;
}

Result<std::unique_ptr<Utterance>> VoskSpeechEngine::begin(
    const SpeechRequest& /*request*/, std::stop_token stop)
{
    if (!m_server.address)
        return failure(speechEngineError(SpeechEngineError::NotReachable));
    auto utterance = std::make_unique<SocketUtterance>(m_server, std::move(stop));
    if (const Result<void> connected = utterance->connectToServer(); !connected)
        return failure(connected.error());
    return utterance;
}

} // namespace tavrin
