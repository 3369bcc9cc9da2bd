#include "platform/linux/speech/SpeechLevels.h"

#include <algorithm>
#include <cmath>

namespace tavrin {
namespace {

constexpr float quietestSpeech = -60; // A distant voice at a low input gain.
constexpr float loudestBackground = -30; // What is louder is never called background.
constexpr float standsOutBy = 9; // dB over the background.
constexpr double backgroundShare = 0.1; // Even dense speech pauses this often.
constexpr int shortestSyllable = 4; // Frames in a row; a click is over sooner.
constexpr int shortestWord = 7; // Frames altogether.
constexpr qsizetype pauseFrames = 10; // A breath between phrases.
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

/// The middle of the quietest breath between two frames.
qsizetype quietestFrame(std::span<const float> frames, qsizetype first, qsizetype last)
{
    const auto level = [&](qsizetype frame) { return frames[static_cast<std::size_t>(frame)]; };
    const qsizetype width = std::min(pauseFrames, last - first);
    float sum = 0;
    for (qsizetype frame = first; frame < first + width; ++frame)
        sum += level(frame);

    float lowest = sum;
    qsizetype best = first;
    for (qsizetype begin = first + 1; begin + width <= last; ++begin) {
        sum += level(begin + width - 1) - level(begin - 1);
        if (sum <= lowest) { // The later the better: longer stretches keep more context.
            lowest = sum;
            best = begin;
        }
    }
    return best + width / 2;
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
        const qsizetype end = quietestFrame(levels.frames(), first, last) * frame;
        ranges.push_back({begin, end});
        begin = end;
    }
    if (levels.samples() > begin)
        ranges.push_back({begin, levels.samples()});
    return ranges;
}

} // namespace tavrin
