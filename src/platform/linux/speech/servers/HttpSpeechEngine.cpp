#include "platform/linux/speech/servers/HttpSpeechEngine.h"

#include "platform/linux/speech/engine/SpeechEngineErrors.h"
#include "platform/linux/speech/engine/SpeechEngineTexts.h"
#include "platform/linux/speech/engine/WholeUtterance.h"
#include "platform/linux/speech/servers/NetworkWait.h"
#include "platform/linux/speech/servers/ServerAddress.h"
#include "platform/linux/speech/servers/WavFile.h"
#include "platform/speech/SpeechAvailability.h"

#include <QHttpMultiPart>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QNetworkProxy>
#include <QNetworkReply>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tavrin {
namespace {

/// Short enough for the size limits of servers (25 MB is common: 13 minutes), long enough to keep
/// the context that makes such engines strong.
constexpr Seconds longestStretch = 120s;

constexpr qint64 largestAnswer = 1 << 20;

QUrl completed(QUrl address)
{
    const QString path = address.path();
    if (path.isEmpty() || path == u"/"_s)
        address.setPath(u"/v1/audio/transcriptions"_s);
    else if (path.endsWith(u"/v1"_s))
        address.setPath(path + u"/audio/transcriptions"_s);
    return address;
}

/// The terms as text. Servers keep the end of a long prompt: the most important term stands last.
QString promptFor(const QStringList& terms)
{
    QStringList prompt;
    for (const QString& term : terms) {
        QString clean = term;
        std::replace_if(
            clean.begin(), clean.end(), [](QChar character) { return !character.isPrint(); }, u' ');
        clean = clean.simplified();
        if (!clean.isEmpty() && !prompt.contains(clean))
            prompt.prepend(clean);
    }
    return prompt.join(u", "_s);
}

/// "zh" of "zh-CN": what the form's `language` field takes.
QString primaryLanguage(const QString& tag)
{
    return tag.section(u'-', 0, 0).toLower();
}

void addField(QHttpMultiPart& form, const QByteArray& name, const QString& value)
{
    if (value.isEmpty())
        return;
    QHttpPart part;
    part.setHeader(QNetworkRequest::ContentDispositionHeader,
        QVariant(QByteArray("form-data; name=\"" + name + '"')));
    part.setBody(value.toUtf8());
    form.append(part);
}

void addSound(QHttpMultiPart& form, std::span<const qint16> samples)
{
    QHttpPart part;
    part.setHeader(QNetworkRequest::ContentTypeHeader, QVariant(QByteArray("audio/wav")));
    part.setHeader(QNetworkRequest::ContentDispositionHeader,
        QVariant(QByteArray(R"(form-data; name="file"; filename="recording.wav")")));
    part.setBody(wavFile(samples));
    form.append(part);
}

QNetworkRequest requestFor(const SpeechServer& server)
{
    QNetworkRequest request(*server.address);
    // Sound goes to the address that was set, and to no other.
    request.setAttribute(
        QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    request.setRawHeader("Accept", "application/json");
    if (!server.key.isEmpty())
        request.setRawHeader("Authorization", "Bearer " + server.key.toUtf8());
    return request;
}

Result<QString> textIn(const QByteArray& answer)
{
    const QJsonValue text = QJsonDocument::fromJson(answer).object().value("text"_L1);
    if (!text.isString())
        return failure(speechEngineError(SpeechEngineError::UnusableAnswer));
    return text.toString();
}

/// One request, waited for on the worker thread.
class Transcription {
public:
    Transcription(const SpeechServer& server, std::stop_token stop)
        : m_server(server)
        , m_stop(std::move(stop))
        , m_wait(m_stop)
    {
        if (isLoopback(*server.address))
            m_network.setProxy(QNetworkProxy::NoProxy);
    }

    Result<QString> run(std::span<const qint16> samples, const QStringList& terms)
    {
        QHttpMultiPart form(QHttpMultiPart::FormDataType);
        addField(form, "model", m_server.model);
        addField(form, "language", primaryLanguage(m_server.language));
        addField(form, "prompt", promptFor(terms));
        addField(form, "response_format", u"json"_s);
        addSound(form, samples);

        const std::unique_ptr<QNetworkReply> reply(m_network.post(requestFor(m_server), &form));
        QObject::connect(reply.get(), &QNetworkReply::readyRead, [&] { collect(*reply); });
        QObject::connect(reply.get(), &QNetworkReply::finished, [&] { m_wait.finish(); });
        const Seconds sound{static_cast<double>(samples.size()) / speechSampleRate};
        m_wait.wait(sound + m_server.patience);
        Result<QString> text = outcome(*reply);
        reply->disconnect();
        reply->abort();
        return text;
    }

private:
    void collect(QNetworkReply& reply)
    {
        m_answer += reply.read(largestAnswer + 1 - m_answer.size());
        if (m_answer.size() > largestAnswer)
            m_wait.finish();
    }

    [[nodiscard]] Result<QString> outcome(const QNetworkReply& reply) const
    {
        if (m_stop.stop_requested())
            return failure(speechEngineError(SpeechEngineError::Cancelled));
        if (m_answer.size() > largestAnswer)
            return failure(speechEngineError(SpeechEngineError::UnusableAnswer));
        if (!reply.isFinished())
            return failure(speechEngineError(SpeechEngineError::NoAnswer));
        const int status = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
        if (status >= 300)
            return failure(speechEngineError(SpeechEngineError::Refused));
        if (reply.error() != QNetworkReply::NoError)
            return failure(speechEngineError(SpeechEngineError::NotReachable));
        return textIn(m_answer);
    }

    const SpeechServer& m_server;
    std::stop_token m_stop;
    NetworkWait m_wait;
    QNetworkAccessManager m_network;
    QByteArray m_answer;
};

} // namespace

HttpSpeechEngine::HttpSpeechEngine(SpeechServer server)
    : m_server(std::move(server))
{
    if (m_server.address)
        m_server.address = completed(*m_server.address);
}

SpeechAvailability HttpSpeechEngine::availability() const
{
    if (m_server.address)
        return {true, texts::httpReady, shownAddress(*m_server.address)};
    return serverUnavailable(m_server);
}

Seconds HttpSpeechEngine::longestUtterance() const
{
    return longestStretch;
}

Result<std::unique_ptr<Utterance>> HttpSpeechEngine::begin(
    const SpeechRequest& request, std::stop_token stop)
{
    if (!m_server.address)
        return failure(speechEngineError(SpeechEngineError::NotReachable));
    return std::make_unique<WholeUtterance>(
        [this, terms = request.contextualStrings, stop](std::span<const qint16> samples) {
            return Transcription(m_server, stop).run(samples, terms);
        },
        std::move(stop));
}

} // namespace tavrin
