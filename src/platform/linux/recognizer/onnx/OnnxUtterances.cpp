#include "platform/linux/recognizer/onnx/OnnxUtterances.h"

#include "platform/linux/recognizer/onnx/Samples.h"
#include "platform/linux/speech/engine/TranscriptText.h"

#include <algorithm>

using namespace std::chrono_literals;

namespace tavrin {
namespace {

constexpr Seconds longestLiveStretch = 15s;

/// A stream keeps what it has heard: at a pause after this long another takes its place.
constexpr std::size_t longestStream = 60UL * speechSampleRate;

/// Models tell a word up to this long after it was said.
constexpr int framesOfDelay = 30;
constexpr std::size_t samplesPerFrame = speechSampleRate / 100;

qsizetype samplesIn(Seconds duration)
{
    return static_cast<qsizetype>(duration.count() * speechSampleRate);
}

} // namespace

GrowingUtterance::GrowingUtterance(
    WholeTranscript::Decode decode, Seconds longest, bool isLive, std::stop_token stop)
    : m_isLive(isLive)
    , m_transcript(std::move(decode),
          samplesIn(isLive ? std::min(longest, longestLiveStretch) : longest), std::move(stop))
{
}

Result<void> GrowingUtterance::feed(std::span<const qint16> samples)
{
    if (Result<void> added = m_transcript.add(samples); !added || !m_isLive)
        return added;
    m_pace.hear(samples);
    const auto begin = std::chrono::steady_clock::now();
    if (!m_pace.isDue(begin))
        return {};
    const Result<QString> text = m_transcript.textSoFar();
    if (!text)
        return failure(text.error());
    m_partialText = *text;
    m_pace.looked(begin, std::chrono::steady_clock::now());
    return {};
}

Result<std::unique_ptr<Utterance>> OnlineUtterance::begin(
    const OnlineDecoder& decoder, const Request& request, std::stop_token stop)
{
    auto stream = decoder.begin(request.hotwords);
    if (!stream)
        return failure(stream.error());
    return std::unique_ptr<Utterance>(
        new OnlineUtterance(decoder, request, std::move(stop), *std::move(stream)));
}

OnlineUtterance::OnlineUtterance(const OnlineDecoder& decoder, Request request,
    std::stop_token stop, std::unique_ptr<OnlineStream> stream)
    : m_decoder(decoder)
    , m_request(std::move(request))
    , m_stop(std::move(stop))
    , m_stream(std::move(stream))
{
}

Result<void> OnlineUtterance::feed(std::span<const qint16> samples)
{
    if (Result<void> heard = m_stream->hear(samplesOfFullScaleOne(samples), m_stop); !heard)
        return heard;
    m_heard += samples.size();
    const Result<QString> text = m_stream->text();
    if (!text)
        return failure(text.error());
    m_current = *text;
    if (!m_stream->isAtEndpoint())
        return {};
    m_before = this->text();
    m_current.clear();
    if (m_heard > longestStream)
        return beginAnew();
    m_stream->reset();
    return {};
}

QString OnlineUtterance::partialText() const
{
    return m_request.isLive ? text() : QString{};
}

Result<QString> OnlineUtterance::finish()
{
    const std::vector<float> silence(
        samplesPerFrame * static_cast<std::size_t>(m_request.chunkFrames + framesOfDelay));
    if (const Result<void> heard = m_stream->hear(silence, m_stop); !heard)
        return failure(heard.error());
    if (const Result<void> ended = m_stream->end(m_stop); !ended)
        return failure(ended.error());
    Result<QString> last = m_stream->text();
    if (!last)
        return last;
    m_current = *last;
    return text();
}

Result<void> OnlineUtterance::beginAnew()
{
    auto stream = m_decoder.begin(m_request.hotwords);
    if (!stream)
        return failure(stream.error());
    m_stream = *std::move(stream);
    m_heard = 0;
    return {};
}

QString OnlineUtterance::text() const
{
    return joinTranscript({m_before, m_current});
}

TwofoldUtterance::TwofoldUtterance(
    std::unique_ptr<Utterance> live, std::unique_ptr<Utterance> final)
    : m_live(std::move(live))
    , m_final(std::move(final))
{
}

Result<void> TwofoldUtterance::feed(std::span<const qint16> samples)
{
    if (Result<void> fed = m_live->feed(samples); !fed)
        return fed;
    return m_final->feed(samples);
}

} // namespace tavrin
