#include "platform/linux/recognizer/onnx/PartialPace.h"

namespace tavrin {
namespace {

constexpr qsizetype longestUnseen = 20LL * 16'000; // Of silence: older levels tell nothing new.

} // namespace

void PartialPace::hear(std::span<const qint16> samples)
{
    if (m_unseen.samples() > longestUnseen && !m_unseen.hasSpeech())
        m_unseen = {};
    m_unseen.append(samples);
}

bool PartialPace::isDue(Time now) const
{
    return now >= m_next && m_unseen.hasSpeech();
}

void PartialPace::looked(Time begin, Time end)
{
    m_next = end + (end - begin);
    m_unseen = {};
}

} // namespace tavrin
