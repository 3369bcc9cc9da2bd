#include "platform/linux/recognizer/sphinx/SphinxEngine.h"

#include "base/Log.h"
#include "platform/linux/speech/engine/SpeechEngineErrors.h"
#include "platform/linux/speech/engine/SpeechEngineTexts.h"
#include "platform/linux/speech/engine/WholeUtterance.h"
#include "platform/speech/SpeechAvailability.h"

#include <utility>

namespace tavrin {
namespace {

/// Speech that goes on: decoded as it comes, a new utterance after every pause, so that neither
/// memory nor the work for one block grows.
class StreamedUtterance final : public Utterance {
public:
    explicit StreamedUtterance(SphinxDecoder& decoder)
        : m_decoder(decoder)
        , m_number(decoder.start(SphinxDecoder::Search::Quick))
    {
    }

    ~StreamedUtterance() override { endCurrent(); }

    StreamedUtterance(const StreamedUtterance&) = delete;
    StreamedUtterance& operator=(const StreamedUtterance&) = delete;

    Result<void> feed(std::span<const qint16> samples) override
    {
        if (!m_decoder.isRunning(m_number)) // A recording was decoded in between.
            startNext();
        m_decoder.process(samples);
        m_current = m_decoder.text();
        const bool wasInSpeech = std::exchange(m_inSpeech, m_decoder.inSpeech());
        if (wasInSpeech && !m_inSpeech) {
            endCurrent();
            startNext();
        }
        return {};
    }

    [[nodiscard]] QString partialText() const override { return m_before + u' ' + m_current; }

    [[nodiscard]] Result<QString> finish() override
    {
        endCurrent();
        return partialText();
    }

private:
    void endCurrent()
    {
        if (!m_decoder.isRunning(m_number))
            return;
        m_decoder.end();
        m_current = m_decoder.text();
    }

    void startNext()
    {
        m_before += u' ' + std::exchange(m_current, {});
        m_inSpeech = false;
        m_number = m_decoder.start(SphinxDecoder::Search::Quick);
    }

    SphinxDecoder& m_decoder;
    qint64 m_number;
    QString m_before; // What stands before the last pause.
    QString m_current;
    bool m_inSpeech = false;
};

} // namespace

SphinxEngine::SphinxEngine(std::optional<SphinxModel> model)
    : m_model(std::move(model))
{
}

void SphinxEngine::open()
{
    if (!m_model)
        return;
    m_decoder = SphinxDecoder::open(*m_model);
    m_isBroken = m_decoder == nullptr;
    if (m_isBroken)
        qCWarning(log::speech, "the speech model cannot be loaded");
}

SpeechAvailability SphinxEngine::availability() const
{
    if (!m_model)
        return {false, texts::noSphinxModel, {}};
    if (m_isBroken)
        return {false, texts::brokenSphinxModel, m_model->acousticModel};
    return {true, texts::sphinxReady, m_model->language};
}

Seconds SphinxEngine::longestUtterance() const
{
    return sphinxLongestUtterance;
}

Result<std::unique_ptr<Utterance>> SphinxEngine::begin(
    const SpeechRequest& request, std::stop_token stop)
{
    if (!m_decoder)
        return failure(speechEngineError(SpeechEngineError::ModelUnusable));
    m_decoder->favour(request.contextualStrings);
    if (request.shouldReportPartialResults)
        return std::make_unique<StreamedUtterance>(*m_decoder);
    // As a whole its loudness and its channel are known.
    return std::make_unique<WholeUtterance>(
        [decoder = m_decoder.get()](
            std::span<const qint16> samples) { return decoder->decode(samples); },
        std::move(stop));
}

} // namespace tavrin
