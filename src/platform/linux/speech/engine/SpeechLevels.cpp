#include "platform/linux/speech/engine/SpeechLevels.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace tavrin {
namespace {

constexpr float quietestSpeech = -60; // A distant voice at a low input gain.
constexpr float loudestBackground = -30; // What is louder is never called background.
constexpr float standsOutBy = 9; // dB over the background.
constexpr double backgroundShare = 0.1; // Even dense speech pauses this often.
constexpr int shortestSyllable = 4; // Frames in a row; a click is over sooner.
constexpr int shortestWord = 7; // Frames altogether.
constexpr qsizetype pauseFrames = 10; // A breath between phrases.
constexpr float asQuietAs = 3; // dB within which a pause is one pause.
constexpr qsizetype shortestStretch = 4 * pauseFrames * SpeechLevels::samplesPerFrame;

float levelOf(double energy, qsizetype samples)
{
    constexpr double fullScale = 32768;
    const double power = energy / static_cast<double>(samples) / (fullScale * fullScale);
    if (power <= 0)
        return SpeechLevels::silentLevel;
    return std::max(SpeechLevels::silentLevel, static_cast<float>(10 * std::log10(power)));
}

/// The level that a tenth of the frames stay below.
float backgroundLevel(std::span<const float> frames)
{
    std::vector<float> sorted(frames.begin(), frames.end());
    const auto middle = sorted.begin()
        + static_cast<std::ptrdiff_t>(static_cast<double>(sorted.size()) * backgroundShare);
    std::nth_element(sorted.begin(), middle, sorted.end());
    return *middle;
}

/// Frames from `begin` up to, without, `end`.
struct FrameRange {
    qsizetype begin = 0;
    qsizetype end = 0;
};

/// Where in @p frames it is quietest for as long as a breath takes.
FrameRange quietestBreath(std::span<const float> frames)
{
    const auto level = [&](qsizetype frame) { return frames[static_cast<std::size_t>(frame)]; };
    const auto count = static_cast<qsizetype>(frames.size());
    const qsizetype width = std::min(pauseFrames, count);
    float sum = std::accumulate(frames.begin(), frames.begin() + width, 0.0F);
    float lowest = sum;
    qsizetype best = 0;
    for (qsizetype begin = 1; begin + width <= count; ++begin) {
        sum += level(begin + width - 1) - level(begin - 1);
        if (sum <= lowest) { // The later the better: longer stretches keep more context.
            lowest = sum;
            best = begin;
        }
    }
    return {best, best + width};
}

/// The middle of the quietest pause in @p frames: words on either side are equally far, and an
/// engine needs some silence before the first.
qsizetype middleOfQuietestPause(std::span<const float> frames)
{
    FrameRange pause = quietestBreath(frames);
    const auto loudest = std::max_element(frames.begin() + pause.begin, frames.begin() + pause.end);
    const float limit = *loudest + asQuietAs;
    const auto isQuiet = [&](qsizetype frame) {
        return frames[static_cast<std::size_t>(frame)] <= limit;
    };
    while (pause.begin > 0 && isQuiet(pause.begin - 1))
        --pause.begin;
    while (pause.end < static_cast<qsizetype>(frames.size()) && isQuiet(pause.end))
        ++pause.end;
    return std::midpoint(pause.begin, pause.end);
}

} // namespace

void SpeechLevels::append(std::span<const qint16> samples)
{
    for (const qint16 sample : samples) {
        m_energy += static_cast<double>(sample) * sample;
        if (++m_samples % samplesPerFrame == 0) {
            m_frames.push_back(levelOf(m_energy, samplesPerFrame));
            m_energy = 0;
        }
    }
}

bool SpeechLevels::hasSpeech() const
{
    if (m_frames.empty())
        return false;
    const float threshold =
        std::clamp(backgroundLevel(m_frames) + standsOutBy, quietestSpeech, loudestBackground);
    int inARow = 0;
    int inSyllables = 0;
    for (const float frame : m_frames) {
        inARow = frame > threshold ? inARow + 1 : 0;
        if (inARow == shortestSyllable)
            inSyllables += shortestSyllable;
        else if (inARow > shortestSyllable)
            ++inSyllables;
        if (inSyllables >= shortestWord)
            return true;
    }
    return false;
}

std::vector<SampleRange> cutAtPauses(const SpeechLevels& levels, qsizetype longest)
{
    constexpr qsizetype frame = SpeechLevels::samplesPerFrame;
    longest = std::max(longest, shortestStretch);
    const qsizetype longestInFrames = longest / frame;
    std::vector<SampleRange> ranges;
    qsizetype begin = 0;
    while (levels.samples() - begin > longest) {
        const qsizetype first = begin / frame + longestInFrames / 2;
        const qsizetype last = begin / frame + longestInFrames;
        const auto allowed = levels.frames().subspan(
            static_cast<std::size_t>(first), static_cast<std::size_t>(last - first));
        const qsizetype end = (first + middleOfQuietestPause(allowed)) * frame;
        ranges.push_back({begin, end});
        begin = end;
    }
    if (levels.samples() > begin)
        ranges.push_back({begin, levels.samples()});
    return ranges;
}

} // namespace tavrin
