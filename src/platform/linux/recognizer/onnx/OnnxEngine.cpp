#include "platform/linux/recognizer/onnx/OnnxEngine.h"

#include "platform/linux/recognizer/onnx/OnnxHotwords.h"
#include "platform/linux/recognizer/onnx/OnnxUtterances.h"
#include "platform/linux/recognizer/onnx/SessionOptions.h"
#include "platform/linux/speech/engine/SpeechEngineErrors.h"
#include "platform/linux/speech/onnx/OnnxModel.h"
#include "platform/linux/speech/onnx/OnnxTexts.h"
#include "platform/speech/SpeechAvailability.h"

#include <QDir>

using namespace std::chrono_literals;

namespace tavrin {
namespace {

/// A streaming model hears without end; this bounds what is lost when one stretch fails.
constexpr Seconds longestStreamed = 60s;

} // namespace

/// The models: one of the two decoders at least.
struct OnnxEngine::Loaded {
    std::unique_ptr<OnlineDecoder> streaming;
    std::unique_ptr<OfflineDecoder> whole;
    int chunkFrames = 0;
    std::optional<OnnxHotwords> hotwords;

    [[nodiscard]] OnnxResult<void> add(
        const SherpaLibrary& library, const OnnxModel& model, const QByteArray& provider);
    [[nodiscard]] Result<std::unique_ptr<Utterance>> beginStreamed(
        const SpeechRequest& request, const std::stop_token& stop) const;
    [[nodiscard]] std::unique_ptr<Utterance> beginWhole(
        bool isLive, const std::stop_token& stop) const;
};

OnnxResult<void> OnnxEngine::Loaded::add(
    const SherpaLibrary& library, const OnnxModel& model, const QByteArray& provider)
{
    if (!model.isStreaming()) {
        auto decoder = OfflineDecoder::load(library, model, provider);
        if (!decoder)
            return tl::unexpected(decoder.error());
        whole = *std::move(decoder);
        return {};
    }
    if (model.canFavourTerms()) {
        auto found = OnnxHotwords::of(model);
        if (!found)
            return tl::unexpected(found.error());
        hotwords = *std::move(found);
    }
    auto decoder = OnlineDecoder::load(library, model, provider);
    if (!decoder)
        return tl::unexpected(decoder.error());
    streaming = *std::move(decoder);
    chunkFrames = model.chunkFrames;
    return {};
}

Result<std::unique_ptr<Utterance>> OnnxEngine::Loaded::beginStreamed(
    const SpeechRequest& request, const std::stop_token& stop) const
{
    return OnlineUtterance::begin(*streaming,
        {.hotwords = hotwords ? hotwords->from(request.contextualStrings) : QByteArray{},
            .chunkFrames = chunkFrames,
            .isLive = request.shouldReportPartialResults},
        stop);
}

std::unique_ptr<Utterance> OnnxEngine::Loaded::beginWhole(
    bool isLive, const std::stop_token& stop) const
{
    return std::make_unique<GrowingUtterance>(
        [&decoder = *whole](std::span<const qint16> samples) { return decoder.decode(samples); },
        OfflineDecoder::longestUtterance(), isLive, stop);
}

OnnxEngine::OnnxEngine(OnnxEngineSettings settings)
    : m_settings(std::move(settings))
{
}

OnnxEngine::~OnnxEngine() = default;

void OnnxEngine::open()
{
    OnnxResult<std::unique_ptr<Loaded>> loaded = load();
    const std::lock_guard lock(m_mutex);
    m_isOpen = true;
    if (loaded)
        m_loaded = *std::move(loaded);
    else
        m_problem = loaded.error();
}

SpeechAvailability OnnxEngine::availability() const
{
    const std::lock_guard lock(m_mutex);
    const QString name = QDir(m_settings.modelFolder).dirName();
    if (m_problem)
        return {false, textOf(m_problem->fault), m_problem->detail};
    if (!m_isOpen)
        return {false, texts::onnxNotLoaded, name};
    return {true, texts::onnxReady, name};
}

std::optional<OnnxProblem> OnnxEngine::problem() const
{
    const std::lock_guard lock(m_mutex);
    return m_problem;
}

Seconds OnnxEngine::longestUtterance() const
{
    return m_loaded && !m_loaded->whole ? longestStreamed : OfflineDecoder::longestUtterance();
}

Result<std::unique_ptr<Utterance>> OnnxEngine::begin(
    const SpeechRequest& request, std::stop_token stop)
{
    if (!m_loaded)
        return failure(speechEngineError(SpeechEngineError::ModelUnusable));
    const bool isLive = request.shouldReportPartialResults;
    if (!m_loaded->streaming || (m_loaded->whole && !isLive))
        return m_loaded->beginWhole(isLive, stop);
    auto streamed = m_loaded->beginStreamed(request, stop);
    if (!streamed || !m_loaded->whole)
        return streamed;
    return std::make_unique<TwofoldUtterance>(
        *std::move(streamed), m_loaded->beginWhole(false, stop));
}

OnnxResult<std::unique_ptr<OnnxEngine::Loaded>> OnnxEngine::load() const
{
    const OnnxResult<OnnxModel> model = findOnnxModel(m_settings.modelFolder);
    if (!model)
        return tl::unexpected(model.error());
    std::optional<OnnxModel> finalModel;
    if (!m_settings.finalModelFolder.isEmpty()) {
        const OnnxResult<OnnxModel> found = findOnnxModel(m_settings.finalModelFolder);
        if (!found)
            return tl::unexpected(found.error());
        if (found->isStreaming())
            return onnxFailure(OnnxFault::NotWholeUtterance, m_settings.finalModelFolder);
        finalModel = *found;
    }
    const OnnxResult<const SherpaLibrary*> library = SherpaLibrary::open(m_settings.libraryFolder);
    if (!library)
        return tl::unexpected(library.error());
    const SessionOptions options;
    auto loaded = std::make_unique<Loaded>();
    if (model->isStreaming() || !finalModel) {
        if (const auto added = loaded->add(**library, *model, options.provider()); !added)
            return tl::unexpected(added.error());
    }
    if (finalModel) {
        if (const auto added = loaded->add(**library, *finalModel, options.provider()); !added)
            return tl::unexpected(added.error());
    }
    return loaded;
}

} // namespace tavrin
