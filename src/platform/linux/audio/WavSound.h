#pragma once

#include <QByteArray>

#include <optional>
#include <vector>

namespace tavrin {

/// A sound as it is played: interleaved samples.
struct PcmSound {
    int sampleRate = 0; ///< In Hz.
    int channels = 0;
    std::vector<qint16> samples;
};

/// Reads a WAV file of 16-bit samples; empty for anything else, and for a damaged one.
[[nodiscard]] std::optional<PcmSound> parseWav(const QByteArray& file);

} // namespace tavrin
