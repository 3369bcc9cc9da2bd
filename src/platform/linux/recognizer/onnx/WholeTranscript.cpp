#include "platform/linux/recognizer/onnx/WholeTranscript.h"

#include "platform/linux/speech/engine/SpeechEngineErrors.h"
#include "platform/linux/speech/engine/TranscriptText.h"

#include <algorithm>

namespace tavrin {
namespace {

/// Quieter is nobody, not even far away.
constexpr float quietestSpeech = -60;

bool isSilent(std::span<const qint16> samples)
{
    SpeechLevels levels;
    levels.append(samples);
    return std::ranges::all_of(levels.frames(), [](float level) { return level < quietestSpeech; });
}

} // namespace

WholeTranscript::WholeTranscript(Decode decode, qsizetype longest, std::stop_token stop)
    : m_decode(std::move(decode))
    , m_longest(longest)
    , m_stop(std::move(stop))
{
}

Result<void> WholeTranscript::add(std::span<const qint16> samples)
{
    m_samples.insert(m_samples.end(), samples.begin(), samples.end());
    m_levels.append(samples);
    while (m_levels.samples() > m_longest) {
        if (Result<void> settled = settleFirst(); !settled)
            return settled;
    }
    return {};
}

Result<QString> WholeTranscript::textSoFar()
{
    Result<QString> last = textOf(m_samples);
    if (!last)
        return last;
    return joinTranscript(m_settled + QStringList{*last});
}

Result<void> WholeTranscript::settleFirst()
{
    const auto length = static_cast<std::size_t>(cutAtPauses(m_levels, m_longest).front().end);
    const Result<QString> text = textOf(std::span(m_samples).first(length));
    if (!text)
        return failure(text.error());
    m_settled.append(*text);
    m_samples.erase(m_samples.begin(), m_samples.begin() + static_cast<std::ptrdiff_t>(length));
    m_levels = {};
    m_levels.append(m_samples);
    return {};
}

Result<QString> WholeTranscript::textOf(std::span<const qint16> samples) const
{
    if (m_stop.stop_requested())
        return failure(speechEngineError(SpeechEngineError::Cancelled));
    return isSilent(samples) ? QString{} : m_decode(samples);
}

} // namespace tavrin
