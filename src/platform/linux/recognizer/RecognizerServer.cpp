#include "platform/linux/recognizer/RecognizerServer.h"

#include "platform/linux/speech/engine/SpeechEngine.h"
#include "platform/linux/speech/engine/SpeechEngineErrors.h"
#include "platform/linux/speech/protocol/MessageChannel.h"
#include "platform/speech/SpeechAvailability.h"

#include <map>
#include <memory>
#include <utility>

namespace tavrin {
namespace {

using recognizer::ChannelFailure;
using recognizer::Message;
using recognizer::MessageChannel;
using recognizer::MessageKind;

// The program has one for live text, one for a recording, and others only for a moment.
constexpr std::size_t mostUtterances = 8;

class Server {
public:
    Server(SpeechEngine& engine, MessageChannel& channel)
        : m_engine(engine)
        , m_channel(channel)
    {
    }

    [[nodiscard]] bool greet()
    {
        return send({.kind = MessageKind::Hello,
                   .content = recognizer::versionContent(recognizer::protocolVersion)})
            && send({.kind = MessageKind::State,
                .content = recognizer::stateContent(recognizer::stateOf(m_engine.availability()))});
    }

    /// False when the message makes no sense or nobody takes the answer.
    [[nodiscard]] bool answer(const Message& message)
    {
        switch (message.kind) {
        case MessageKind::Begin:
            return begin(message);
        case MessageKind::Sound:
            return hear(message);
        case MessageKind::Finish:
            return finish(message);
        case MessageKind::Abandon:
            m_utterances.erase(message.utterance);
            return true;
        case MessageKind::Hello:
        case MessageKind::State:
        case MessageKind::Begun:
        case MessageKind::Heard:
        case MessageKind::Done:
        case MessageKind::Failed:
            break;
        }
        return false;
    }

private:
    struct Listening {
        std::unique_ptr<Utterance> utterance;
        bool reportsText = false;
    };

    [[nodiscard]] bool send(const Message& message)
    {
        return m_channel.send(message, {}).has_value();
    }

    [[nodiscard]] bool reply(const Message& request, MessageKind kind, QByteArray content)
    {
        return send({kind, request.request, request.utterance, std::move(content)});
    }

    /// The utterance is over.
    [[nodiscard]] bool fail(const Message& request, const Error& error)
    {
        m_utterances.erase(request.utterance);
        return reply(request, MessageKind::Failed, recognizer::failureContent(error.code));
    }

    [[nodiscard]] bool begin(const Message& message)
    {
        const auto request = recognizer::readRequest(message.content);
        if (!request || m_utterances.contains(message.utterance)
            || m_utterances.size() == mostUtterances)
            return false;
        auto utterance = m_engine.begin(*request, {});
        if (!utterance)
            return fail(message, utterance.error());
        m_utterances[message.utterance] = {
            *std::move(utterance), request->shouldReportPartialResults};
        return reply(message, MessageKind::Begun, {});
    }

    /// Of an utterance that has failed there may be more to come: it fails again.
    [[nodiscard]] bool hear(const Message& message)
    {
        const auto samples = recognizer::readSound(message.content);
        if (!samples)
            return false;
        const auto found = m_utterances.find(message.utterance);
        if (found == m_utterances.end())
            return fail(message, speechEngineError(SpeechEngineError::RecognizerEnded));
        if (const Result<void> heard = found->second.utterance->feed(*samples); !heard)
            return fail(message, heard.error());
        const QString text =
            found->second.reportsText ? found->second.utterance->partialText() : QString();
        return reply(message, MessageKind::Heard, recognizer::textContent(text));
    }

    [[nodiscard]] bool finish(const Message& message)
    {
        const auto found = m_utterances.find(message.utterance);
        if (found == m_utterances.end())
            return fail(message, speechEngineError(SpeechEngineError::RecognizerEnded));
        const Result<QString> text = found->second.utterance->finish();
        if (!text)
            return fail(message, text.error());
        m_utterances.erase(found);
        return reply(message, MessageKind::Done, recognizer::textContent(*text));
    }

    SpeechEngine& m_engine;
    MessageChannel& m_channel;
    std::map<quint32, Listening> m_utterances;
};

} // namespace

bool serveRecognizer(SpeechEngine& engine, int input, int output)
{
    MessageChannel channel(input, output);
    engine.open();
    Server server(engine, channel);
    if (!server.greet())
        return false;
    while (true) {
        const auto message = channel.receive({});
        if (!message)
            return message.error() == ChannelFailure::Ended;
        if (!server.answer(*message))
            return false;
    }
}

} // namespace tavrin
