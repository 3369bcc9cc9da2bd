#include "platform/linux/recognizer/onnx/OfflineDecoder.h"

#include "platform/linux/recognizer/onnx/Samples.h"
#include "platform/linux/recognizer/onnx/SherpaThreads.h"
#include "platform/linux/speech/engine/SpeechEngine.h"
#include "platform/linux/speech/engine/SpeechEngineErrors.h"

#include <QFile>

using namespace std::chrono_literals;

namespace tavrin {
namespace {

} // namespace

OfflineDecoder::OfflineDecoder(
    const SherpaLibrary& library, SherpaHandle<sherpa::OfflineRecognizer> recognizer)
    : m_library(library)
    , m_recognizer(std::move(recognizer))
{
}

OnnxResult<std::unique_ptr<OfflineDecoder>> OfflineDecoder::load(
    const SherpaLibrary& library, const OnnxModel& model, const QByteArray& provider)
{
    const QByteArray file = QFile::encodeName(model.files.model);
    const QByteArray encoder = QFile::encodeName(model.files.encoder);
    const QByteArray decoder = QFile::encodeName(model.files.decoder);
    const QByteArray tokens = QFile::encodeName(model.files.tokens);
    sherpa::Padded<sherpa::OfflineConfiguration> padded;
    sherpa::OfflineModel& to = padded.configuration.model;
    padded.configuration.decodingMethod = "greedy_search";
    to.tokens = tokens.constData();
    to.threads = sherpaThreads();
    to.provider = provider.constData();
    if (model.kind == OnnxModelKind::SenseVoice) {
        to.senseVoice = file.constData();
        to.senseVoiceLanguage = "auto";
        to.senseVoiceUsesItn = 1;
    } else if (model.kind == OnnxModelKind::Paraformer) {
        to.paraformer = file.constData();
    } else if (model.kind == OnnxModelKind::Whisper) {
        to.whisperEncoder = encoder.constData();
        to.whisperDecoder = decoder.constData();
        to.whisperTask = "transcribe";
    } else {
        to.zipformerCtc = file.constData();
    }
    SherpaHandle<sherpa::OfflineRecognizer> recognizer(nullptr, {library.destroyOfflineRecognizer});
    const bool created = runGuardedFromSherpa(
        [&] { recognizer.reset(library.createOfflineRecognizer(&padded.configuration)); });
    if (!created || !recognizer)
        return onnxFailure(OnnxFault::ModelRefused, model.folder);
    return std::unique_ptr<OfflineDecoder>(new OfflineDecoder(library, std::move(recognizer)));
}

Seconds OfflineDecoder::longestUtterance()
{
    return onnxLongestUtterance;
}

Result<QString> OfflineDecoder::decode(std::span<const qint16> samples) const
{
    const std::vector<float> floats = samplesOfFullScaleOne(samples);
    QString text;
    bool isRead = false;
    const bool decoded = runGuardedFromSherpa([&] {
        const SherpaHandle<sherpa::OfflineStream> stream(
            m_library.createOfflineStream(m_recognizer.get()), {m_library.destroyOfflineStream});
        if (!stream)
            return;
        m_library.acceptOffline(stream.get(), speechSampleRate, floats.data(),
            static_cast<std::int32_t>(floats.size()));
        m_library.decodeOffline(m_recognizer.get(), stream.get());
        const SherpaHandle<sherpa::Result> result(
            m_library.offlineResult(stream.get()), {m_library.destroyOfflineResult});
        isRead = result && result->text != nullptr;
        if (isRead)
            text = QString::fromUtf8(result->text);
    });
    if (!decoded || !isRead)
        return failure(speechEngineError(SpeechEngineError::ModelUnusable));
    return text;
}

} // namespace tavrin
