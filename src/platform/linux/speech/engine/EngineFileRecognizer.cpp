#include "platform/linux/speech/engine/EngineFileRecognizer.h"

#include "platform/linux/audio/AudioDecoder.h"
#include "platform/linux/speech/engine/SpeechEngineErrors.h"
#include "platform/linux/speech/engine/SpeechLevels.h"
#include "platform/linux/speech/engine/TranscriptText.h"
#include "platform/speech/SpeechAvailability.h"

#include <algorithm>

namespace tavrin {
namespace {

static_assert(AudioDecoder::sampleRate == speechSampleRate);

class CancellingTask final : public SpeechTask {
public:
    explicit CancellingTask(std::stop_source source)
        : m_source(std::move(source))
    {
    }

    ~CancellingTask() override { m_source.request_stop(); }

    CancellingTask(const CancellingTask&) = delete;
    CancellingTask& operator=(const CancellingTask&) = delete;

private:
    std::stop_source m_source;
};

/// Calls @p use with every piece of the recording until it fails.
template <class Use>
Result<void> readThrough(const QString& path, const std::stop_token& stop, Use use)
{
    auto decoder = AudioDecoder::open(path);
    if (!decoder)
        return failure(decoder.error());
    while (true) {
        if (stop.stop_requested())
            return failure(speechEngineError(SpeechEngineError::Cancelled));
        const auto samples = decoder->read();
        if (!samples)
            return failure(samples.error());
        if (samples->empty())
            return {};
        if (Result<void> used = use(*samples); !used)
            return used;
    }
}

Result<SpeechLevels> measure(const QString& path, const std::stop_token& stop)
{
    SpeechLevels levels;
    const Result<void> read =
        readThrough(path, stop, [&](std::span<const qint16> samples) -> Result<void> {
            levels.append(samples);
            return {};
        });
    if (!read)
        return failure(read.error());
    return levels;
}

/// Gives an engine a recording in stretches, and collects what it understood.
class StretchFeeder {
public:
    StretchFeeder(SpeechEngine& engine, const SpeechRequest& request, std::stop_token stop,
        std::vector<SampleRange> stretches)
        : m_engine(engine)
        , m_request(request)
        , m_stop(std::move(stop))
        , m_stretches(std::move(stretches))
    {
    }

    Result<void> feed(std::span<const qint16> samples)
    {
        // The file may have changed since it was measured: what is beyond the last stretch is left.
        while (!samples.empty() && m_current < m_stretches.size()) {
            if (Result<void> begun = beginIfNeeded(); !begun)
                return begun;
            const qsizetype room = m_stretches[m_current].end - m_position;
            const auto part =
                samples.first(std::min(samples.size(), static_cast<std::size_t>(room)));
            if (Result<void> fed = m_utterance->feed(part); !fed)
                return fed;
            samples = samples.subspan(part.size());
            m_position += static_cast<qsizetype>(part.size());
            if (m_position == m_stretches[m_current].end) {
                if (Result<void> ended = endStretch(); !ended)
                    return ended;
            }
        }
        return {};
    }

    Result<QString> finish()
    {
        if (m_utterance) {
            if (const Result<void> ended = endStretch(); !ended)
                return failure(ended.error());
        }
        return joinTranscript(m_texts);
    }

private:
    Result<void> beginIfNeeded()
    {
        if (m_utterance)
            return {};
        auto utterance = m_engine.begin(m_request, m_stop);
        if (!utterance)
            return failure(utterance.error());
        m_utterance = std::move(*utterance);
        return {};
    }

    Result<void> endStretch()
    {
        const Result<QString> text = m_utterance->finish();
        m_utterance.reset();
        ++m_current;
        if (!text)
            return failure(text.error());
        m_texts.append(*text);
        return {};
    }

    SpeechEngine& m_engine;
    const SpeechRequest& m_request;
    std::stop_token m_stop;
    std::vector<SampleRange> m_stretches;
    std::size_t m_current = 0;
    qsizetype m_position = 0;
    std::unique_ptr<Utterance> m_utterance;
    QStringList m_texts;
};

Result<QString> transcribeOnce(SpeechEngine& engine, const QString& path,
    const SpeechRequest& request, const std::stop_token& stop)
{
    const Result<SpeechLevels> levels = measure(path, stop);
    if (!levels)
        return failure(levels.error());
    if (!levels->hasSpeech())
        return QString{};
    const auto longest =
        static_cast<qsizetype>(engine.longestUtterance().count() * speechSampleRate);
    StretchFeeder feeder(engine, request, stop, cutAtPauses(*levels, longest));
    const Result<void> read = readThrough(
        path, stop, [&](std::span<const qint16> samples) { return feeder.feed(samples); });
    if (!read)
        return failure(read.error());
    return feeder.finish();
}

Result<QString> transcribe(SpeechEngine& engine, const QString& path, const SpeechRequest& request,
    const std::stop_token& stop)
{
    Result<QString> text = transcribeOnce(engine, path, request, stop);
    if (!text && isRecognizerLost(text.error()))
        text = transcribeOnce(engine, path, request, stop);
    return text;
}

} // namespace

EngineFileRecognizer::EngineFileRecognizer(std::shared_ptr<SpeechEngineThread> thread)
    : m_thread(std::move(thread))
{
}

bool EngineFileRecognizer::isAvailable() const
{
    return availability().isAvailable;
}

SpeechAvailability EngineFileRecognizer::availability() const
{
    SpeechAvailability availability = m_thread->engine().availability();
    if (const int code = *m_lastFailure)
        availability.lastFailure = speechEngineError(static_cast<SpeechEngineError>(code)).message;
    return availability;
}

void EngineFileRecognizer::warmUp()
{
    // Whatever comes first opens the engine.
    m_thread->post([] { AudioDecoder::warmUp(); });
}

std::unique_ptr<SpeechTask> EngineFileRecognizer::recognize(
    const QString& path, const SpeechRequest& request, SpeechResultHandler handler)
{
    std::stop_source source;
    m_thread->post([&engine = m_thread->engine(), path, request, handler = std::move(handler),
                       stop = source.get_token(), lastFailure = m_lastFailure] {
        const Result<QString> text = transcribe(engine, path, request, stop);
        if (text)
            *lastFailure = 0;
        else if (blamesEngine(text.error()))
            *lastFailure = text.error().code;
        if (text)
            handler(SpeechResult{.formattedString = *text, .isFinal = true});
        else
            handler(failure(text.error()));
    });
    return std::make_unique<CancellingTask>(std::move(source));
}

} // namespace tavrin
