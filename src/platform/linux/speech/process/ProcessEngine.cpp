#include "platform/linux/speech/process/ProcessEngine.h"

#include "base/Log.h"
#include "platform/linux/speech/engine/SpeechEngineErrors.h"

#include <algorithm>
#include <utility>

namespace tavrin {
namespace {

using recognizer::ChannelFailure;
using recognizer::Message;
using recognizer::MessageKind;
using recognizer::RecognizerProcess;
using recognizer::Waiting;

Error errorOf(ChannelFailure failure)
{
    switch (failure) {
    case ChannelFailure::Stopped:
        return speechEngineError(SpeechEngineError::Cancelled);
    case ChannelFailure::TimedOut:
        return speechEngineError(SpeechEngineError::RecognizerHung);
    case ChannelFailure::Ended:
    case ChannelFailure::Malformed:
        return speechEngineError(SpeechEngineError::RecognizerEnded);
    }
    Q_UNREACHABLE();
}

/// What an answer of @p kind holds, by @p read; a failure that the engine answered; or that the
/// answer makes no sense.
template <class Read>
auto contentOf(const tl::expected<Message, ChannelFailure>& answer, MessageKind kind, Read read)
    -> Result<typename decltype(read(QByteArray()))::value_type>
{
    if (!answer)
        return failure(errorOf(answer.error()));
    if (answer->kind == MessageKind::Failed) {
        const std::optional<int> code = recognizer::readFailure(answer->content);
        return failure(speechEngineErrorOf(code.value_or(0)));
    }
    if (answer->kind == kind) {
        if (auto content = read(answer->content))
            return *std::move(content);
    }
    return failure(speechEngineError(SpeechEngineError::RecognizerEnded));
}

class ProcessUtterance final : public Utterance {
public:
    ProcessUtterance(std::shared_ptr<RecognizerProcess> process, quint32 number,
        const ProcessEngine::Patience& patience, std::stop_token stop)
        : m_process(std::move(process))
        , m_number(number)
        , m_patience(patience)
        , m_stop(std::move(stop))
    {
    }

    ~ProcessUtterance() override
    {
        if (!m_isOver)
            m_process->tell({.kind = MessageKind::Abandon, .utterance = m_number});
    }

    ProcessUtterance(const ProcessUtterance&) = delete;
    ProcessUtterance& operator=(const ProcessUtterance&) = delete;

    Result<void> feed(std::span<const qint16> samples) override
    {
        while (!samples.empty()) {
            const auto part = samples.first(std::min(samples.size(), recognizer::mostSamples));
            samples = samples.subspan(part.size());
            Result<QString> text = ask(MessageKind::Sound, recognizer::soundContent(part),
                MessageKind::Heard, m_patience.answer);
            if (!text)
                return failure(text.error());
            m_partialText = *std::move(text);
        }
        return {};
    }

    [[nodiscard]] QString partialText() const override { return m_partialText; }

    [[nodiscard]] Result<QString> finish() override
    {
        m_isOver = true;
        return ask(MessageKind::Finish, {}, MessageKind::Done, m_patience.finish);
    }

private:
    [[nodiscard]] Result<QString> ask(
        MessageKind kind, const QByteArray& content, MessageKind answer, Seconds patience)
    {
        const Message request{.kind = kind, .utterance = m_number, .content = content};
        return contentOf(m_process->ask(request, Waiting::atMost(patience, m_stop)), answer,
            recognizer::readText);
    }

    std::shared_ptr<RecognizerProcess> m_process;
    const quint32 m_number;
    const ProcessEngine::Patience m_patience;
    const std::stop_token m_stop;
    QString m_partialText;
    bool m_isOver = false;
};

} // namespace

ProcessEngine::ProcessEngine(Settings settings)
    : m_settings(std::move(settings))
    , m_availability(m_settings.availability)
{
}

ProcessEngine::~ProcessEngine() = default;

void ProcessEngine::open()
{
    if (m_settings.availability.isAvailable)
        static_cast<void>(ensureProcess({}));
}

SpeechAvailability ProcessEngine::availability() const
{
    const std::lock_guard lock(m_mutex);
    return m_availability;
}

tl::expected<void, ChannelFailure> ProcessEngine::ensureProcess(const std::stop_token& stop)
{
    if (m_process && !m_process->isLost())
        return {};
    m_process.reset();
    auto process = RecognizerProcess::start(
        m_settings.command, Waiting::atMost(m_settings.patience.load, stop));
    if (!process) {
        countFailedStart(process.error());
        return tl::unexpected(process.error());
    }
    m_process = *std::move(process);
    m_failedStarts = 0;
    if (auto availability = recognizer::availabilityOf(m_process->state()))
        setAvailability(*std::move(availability));
    return {};
}

/// Once may be an accident; a model that ends its process each time is of no use.
void ProcessEngine::countFailedStart(ChannelFailure failure)
{
    if (failure == ChannelFailure::Stopped)
        return;
    qCWarning(log::speech, "the recogniser does not start");
    ++m_failedStarts;
    if (failure != ChannelFailure::TimedOut && m_failedStarts > 1)
        setAvailability(m_settings.broken);
}

void ProcessEngine::setAvailability(SpeechAvailability availability)
{
    const std::lock_guard lock(m_mutex);
    m_availability = std::move(availability);
}

Result<std::unique_ptr<Utterance>> ProcessEngine::begin(
    const SpeechRequest& request, std::stop_token stop)
{
    if (!m_settings.availability.isAvailable)
        return failure(speechEngineError(SpeechEngineError::ModelUnusable));
    if (const auto started = ensureProcess(stop); !started)
        return failure(errorOf(started.error()));
    if (!m_process->state().isAvailable)
        return failure(speechEngineError(SpeechEngineError::ModelUnusable));
    const Message message{.kind = MessageKind::Begin,
        .utterance = ++m_utterances,
        .content = recognizer::requestContent(request)};
    const auto begun =
        contentOf(m_process->ask(message, Waiting::atMost(m_settings.patience.answer, stop)),
            MessageKind::Begun, [](const QByteArray& content) { return std::optional(content); });
    if (!begun)
        return failure(begun.error());
    return std::make_unique<ProcessUtterance>(
        m_process, m_utterances, m_settings.patience, std::move(stop));
}

void ProcessEngine::rest()
{
    if (m_process.use_count() == 1)
        m_process.reset();
}

} // namespace tavrin
