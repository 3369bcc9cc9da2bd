#include "platform/linux/speech/engine/LiveRun.h"

#include "platform/linux/speech/engine/SpeechEngineErrors.h"
#include "platform/linux/speech/engine/TranscriptText.h"

namespace tavrin {
namespace {

constexpr std::size_t longestWaiting = 30UL * speechSampleRate; // A model may still be loading.
constexpr qsizetype longestSilenceMeasured = 20LL * speechSampleRate;
constexpr int mostLost = 3; // One that ends time and again is of no use.

} // namespace

LiveRun::LiveRun(SpeechEngineThread& thread, SpeechRequest request, SpeechResultHandler handler)
    : m_thread(thread)
    , m_request(std::move(request))
    , m_handler(std::move(handler))
{
}

void LiveRun::hear(std::span<const qint16> samples)
{
    const std::lock_guard lock(m_mutex);
    if (m_waiting.size() + samples.size() > longestWaiting)
        m_overflowed = true;
    else
        m_waiting.insert(m_waiting.end(), samples.begin(), samples.end());
    if (m_processingPosted)
        return;
    m_processingPosted = true;
    m_thread.post([self = shared_from_this()] { self->process(); });
}

void LiveRun::end()
{
    m_stop.request_stop();
    m_thread.post([self = shared_from_this()] { self->m_utterance.reset(); });
}

void LiveRun::process()
{
    const Result<std::vector<qint16>> samples = takeWaiting();
    if (m_stop.stop_requested())
        return;
    if (!samples) {
        fail(samples.error());
        return;
    }
    if (const Result<void> heard = listen(*samples); !heard)
        fail(heard.error());
    else
        reportText();
}

Result<std::vector<qint16>> LiveRun::takeWaiting()
{
    const std::lock_guard lock(m_mutex);
    m_processingPosted = false;
    if (m_overflowed)
        return failure(speechEngineError(SpeechEngineError::TooMuchSound));
    return std::exchange(m_waiting, {});
}

Result<void> LiveRun::listen(std::span<const qint16> samples)
{
    if (!m_somebodySpoke) {
        if (m_levels.samples() > longestSilenceMeasured)
            m_levels = {};
        m_levels.append(samples);
        m_somebodySpoke = m_levels.hasSpeech();
    }
    Result<void> heard = hearWithEngine(samples);
    while (!heard && isRecognizerLost(heard.error()) && m_lost < mostLost) {
        ++m_lost;
        keepTextOfLost();
        heard = hearWithEngine(samples);
    }
    return heard;
}

Result<void> LiveRun::hearWithEngine(std::span<const qint16> samples)
{
    if (!m_utterance) {
        auto utterance = m_thread.engine().begin(m_request, m_stop.get_token());
        if (!utterance)
            return failure(utterance.error());
        m_utterance = std::move(*utterance);
    }
    return m_utterance->feed(samples);
}

void LiveRun::keepTextOfLost()
{
    if (m_utterance)
        m_before = joinTranscript({m_before, m_utterance->partialText()});
    m_utterance.reset();
}

void LiveRun::reportText()
{
    if (!m_somebodySpoke)
        return;
    QString text = joinTranscript({m_before, m_utterance->partialText()});
    if (text.isEmpty() || text == m_reported)
        return;
    m_reported = text;
    m_handler(SpeechResult{.formattedString = std::move(text), .isFinal = false});
}

/// The run is over: an engine that failed once is not asked again until the next start.
void LiveRun::fail(const Error& error)
{
    m_stop.request_stop();
    m_utterance.reset();
    m_handler(failure(error));
}

} // namespace tavrin
