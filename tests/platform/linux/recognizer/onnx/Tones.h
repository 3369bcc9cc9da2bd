#pragma once

#include "support/sound/Sounds.h"

#include <initializer_list>

/// The tones that the models of make_models.py hear as words, in hertz: the middles of the mel bins
/// that it names.
namespace tavrin::testing::tones {

inline constexpr double ni = 244.7;
inline constexpr double hao = 502.7;
inline constexpr double shi = 831.2;
inline constexpr double jie = 1249.4;
inline constexpr double hello = 1781.8;
inline constexpr double world = 2459.5;
inline constexpr double comma = 3322.4;

inline void append(std::vector<qint16>& samples, const std::vector<qint16>& more)
{
    samples.insert(samples.end(), more.begin(), more.end());
}

inline std::vector<qint16> silence(double seconds)
{
    return tone(seconds, 0);
}

/// The words one after the other, 0.28 s for each, after a little silence.
inline std::vector<qint16> said(std::initializer_list<double> words)
{
    std::vector<qint16> samples = silence(0.2);
    for (const double word : words) {
        append(samples, tone(0.2, 0.3, 16'000, 1, word));
        append(samples, silence(0.08));
    }
    return samples;
}

/// 你好，世界 HELLO WORLD
inline std::vector<qint16> greeting()
{
    return said({ni, hao, comma, shi, jie, hello, world});
}

} // namespace tavrin::testing::tones
