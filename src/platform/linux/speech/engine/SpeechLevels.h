#pragma once

#include <QtGlobal>

#include <span>
#include <vector>

namespace tavrin {

/// How loud a recording is over time: one level for every 20 ms, in dBFS (0 for a full-scale square
/// wave, silentLevel for digital silence). Four hours of sound take 3 MB.
class SpeechLevels {
public:
    static constexpr qsizetype samplesPerFrame = 320;
    static constexpr float silentLevel = -120;

    void append(std::span<const qint16> samples);

    /// The levels of the whole frames so far.
    [[nodiscard]] std::span<const float> frames() const { return m_frames; }

    [[nodiscard]] qsizetype samples() const { return m_samples; }

    /// Whether anybody speaks: something stands out of the background for as long as a short word
    /// lasts. A hum, a steady noise and single clicks do not count.
    [[nodiscard]] bool hasSpeech() const;

private:
    std::vector<float> m_frames;
    double m_energy = 0; // Of the frame that is still incomplete.
    qsizetype m_samples = 0;
};

/// A stretch of samples of a recording: from `begin` up to, without, `end`.
struct SampleRange {
    qsizetype begin = 0;
    qsizetype end = 0;

    friend bool operator==(const SampleRange&, const SampleRange&) = default;
};

/// Cuts the whole recording into stretches of at most @p longest samples (0.8 s at least), each cut
/// in the quietest place of the later half of what is allowed. Nothing is left out, nothing
/// overlaps.
[[nodiscard]] std::vector<SampleRange> cutAtPauses(const SpeechLevels& levels, qsizetype longest);

} // namespace tavrin
