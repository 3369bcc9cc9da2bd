#include "platform/linux/recognizer/onnx/OnlineDecoder.h"

#include "platform/linux/recognizer/onnx/SherpaThreads.h"
#include "platform/linux/speech/engine/SpeechEngine.h"
#include "platform/linux/speech/engine/SpeechEngineErrors.h"

#include <QFile>

namespace tavrin {
namespace {

/// The library resets at this length even amid a word; speech rarely goes on that long without
/// 1.2 s of silence.
constexpr float longestWithoutEndpoint = 300;

tl::unexpected<Error> unusable()
{
    return failure(speechEngineError(SpeechEngineError::ModelUnusable));
}

/// The files' names, as long as the configuration points at them.
struct Names {
    explicit Names(const OnnxFiles& files)
        : single(QFile::encodeName(files.model))
        , encoder(QFile::encodeName(files.encoder))
        , decoder(QFile::encodeName(files.decoder))
        , joiner(QFile::encodeName(files.joiner))
        , tokens(QFile::encodeName(files.tokens))
        , bpeVocabulary(QFile::encodeName(files.bpeVocabulary))
    {
    }

    QByteArray single;
    QByteArray encoder;
    QByteArray decoder;
    QByteArray joiner;
    QByteArray tokens;
    QByteArray bpeVocabulary;
};

void name(sherpa::OnlineModel& to, OnnxModelKind kind, const Names& names)
{
    to.tokens = names.tokens.constData();
    if (kind == OnnxModelKind::StreamingTransducer) {
        to.transducerEncoder = names.encoder.constData();
        to.transducerDecoder = names.decoder.constData();
        to.transducerJoiner = names.joiner.constData();
    } else if (kind == OnnxModelKind::StreamingParaformer) {
        to.paraformerEncoder = names.encoder.constData();
        to.paraformerDecoder = names.decoder.constData();
    } else if (kind == OnnxModelKind::StreamingNemoCtc) {
        to.nemoCtc = names.single.constData();
    } else {
        to.zipformerCtc = names.single.constData();
    }
}

} // namespace

OnlineStream::OnlineStream(const SherpaLibrary& library, const sherpa::OnlineRecognizer& recognizer,
    SherpaHandle<sherpa::OnlineStream> stream)
    : m_library(library)
    , m_recognizer(recognizer)
    , m_stream(std::move(stream))
{
}

Result<void> OnlineStream::hear(std::span<const float> samples, const std::stop_token& stop)
{
    const bool heard = runGuardedFromSherpa([&] {
        m_library.acceptOnline(m_stream.get(), speechSampleRate, samples.data(),
            static_cast<std::int32_t>(samples.size()));
    });
    return heard ? decode(stop) : unusable();
}

Result<void> OnlineStream::end(const std::stop_token& stop)
{
    const bool ended =
        runGuardedFromSherpa([this] { m_library.finishOnlineInput(m_stream.get()); });
    return ended ? decode(stop) : unusable();
}

Result<QString> OnlineStream::text() const
{
    QString text;
    const bool asked = runGuardedFromSherpa([&] {
        const SherpaHandle<sherpa::Result> result(
            m_library.onlineResult(&m_recognizer, m_stream.get()), {m_library.destroyOnlineResult});
        if (result && result->text != nullptr)
            text = QString::fromUtf8(result->text);
    });
    if (!asked)
        return unusable();
    return text;
}

bool OnlineStream::isAtEndpoint() const
{
    bool isAtEnd = false;
    return runGuardedFromSherpa([&] {
        isAtEnd = m_library.isOnlineEndpoint(&m_recognizer, m_stream.get()) != 0;
    }) && isAtEnd;
}

void OnlineStream::reset()
{
    [[maybe_unused]] const bool isReset =
        runGuardedFromSherpa([this] { m_library.resetOnline(&m_recognizer, m_stream.get()); });
}

Result<void> OnlineStream::decode(const std::stop_token& stop)
{
    const bool decoded = runGuardedFromSherpa([&] {
        while (
            !stop.stop_requested() && m_library.isOnlineReady(&m_recognizer, m_stream.get()) != 0)
            m_library.decodeOnline(&m_recognizer, m_stream.get());
    });
    if (!decoded)
        return unusable();
    if (stop.stop_requested())
        return failure(speechEngineError(SpeechEngineError::Cancelled));
    return {};
}

OnlineDecoder::OnlineDecoder(
    const SherpaLibrary& library, SherpaHandle<sherpa::OnlineRecognizer> recognizer)
    : m_library(library)
    , m_recognizer(std::move(recognizer))
{
}

OnnxResult<std::unique_ptr<OnlineDecoder>> OnlineDecoder::load(
    const SherpaLibrary& library, const OnnxModel& model, const QByteArray& provider)
{
    const Names names(model.files);
    sherpa::Padded<sherpa::OnlineConfiguration> padded;
    sherpa::OnlineConfiguration& configuration = padded.configuration;
    name(configuration.model, model.kind, names);
    configuration.model.threads = sherpaThreads();
    configuration.model.provider = provider.constData();
    configuration.findsEndpoints = 1;
    configuration.longestUtterance = longestWithoutEndpoint;
    configuration.decodingMethod = "greedy_search";
    if (model.canFavourTerms()) {
        configuration.decodingMethod = "modified_beam_search";
        configuration.model.modelingUnit = model.modelingUnit.constData();
        if (model.modelingUnit.endsWith("bpe"))
            configuration.model.bpeVocabulary = names.bpeVocabulary.constData();
    }
    SherpaHandle<sherpa::OnlineRecognizer> recognizer(nullptr, {library.destroyOnlineRecognizer});
    const bool created = runGuardedFromSherpa(
        [&] { recognizer.reset(library.createOnlineRecognizer(&configuration)); });
    if (!created || !recognizer)
        return onnxFailure(OnnxFault::ModelRefused, model.folder);
    return std::unique_ptr<OnlineDecoder>(new OnlineDecoder(library, std::move(recognizer)));
}

Result<std::unique_ptr<OnlineStream>> OnlineDecoder::begin(const QByteArray& hotwords) const
{
    SherpaHandle<sherpa::OnlineStream> stream(nullptr, {m_library.destroyOnlineStream});
    const bool created = runGuardedFromSherpa([&] {
        stream.reset(hotwords.isEmpty() ? m_library.createOnlineStream(m_recognizer.get())
                                        : m_library.createOnlineStreamWithHotwords(
                                            m_recognizer.get(), hotwords.constData()));
    });
    if (!created || !stream)
        return unusable();
    return std::make_unique<OnlineStream>(m_library, *m_recognizer, std::move(stream));
}

} // namespace tavrin
