#pragma once

#include <QByteArray>
#include <QtEndian>

#include <cmath>
#include <numbers>
#include <span>
#include <vector>

/// Sound made of numbers.
namespace tavrin::testing {

/// A sine of @p amplitude (full scale: 1); channels carry the same samples, interleaved.
inline std::vector<qint16> tone(
    double seconds, double amplitude = 0.5, int rate = 16'000, int channels = 1, double hertz = 440)
{
    std::vector<qint16> samples;
    const auto length = static_cast<int>(seconds * rate);
    for (int i = 0; i < length; ++i) {
        const double phase = 2 * std::numbers::pi * hertz * i / rate;
        const auto value = static_cast<qint16>(std::lround(32'767 * amplitude * std::sin(phase)));
        samples.insert(samples.end(), static_cast<std::size_t>(channels), value);
    }
    return samples;
}

/// The mean power in dBFS; a full-scale square wave has 0.
inline double decibels(std::span<const qint16> samples)
{
    double sum = 0;
    for (const qint16 sample : samples)
        sum += sample / 32'768.0 * sample / 32'768.0;
    return samples.empty() ? -160 : 10 * std::log10(sum / static_cast<double>(samples.size()));
}

/// A WAV file of 16-bit samples.
inline QByteArray wavFile(std::span<const qint16> samples, int rate = 16'000, int channels = 1)
{
    QByteArray file;
    const auto number = [&file](auto value) {
        value = qToLittleEndian(value);
        file.append(reinterpret_cast<const char*>(&value), sizeof value);
    };
    const auto dataSize = static_cast<quint32>(samples.size_bytes());
    file.append("RIFF");
    number(36 + dataSize);
    file.append("WAVEfmt ");
    number(quint32{16});
    number(quint16{1}); // PCM
    number(static_cast<quint16>(channels));
    number(static_cast<quint32>(rate));
    number(static_cast<quint32>(rate) * static_cast<quint32>(channels) * 2);
    number(static_cast<quint16>(channels * 2));
    number(quint16{16});
    file.append("data");
    number(dataSize);
    for (const qint16 sample : samples)
        number(sample);
    return file;
}

} // namespace tavrin::testing
