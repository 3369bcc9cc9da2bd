#pragma once

#include <QtGlobal>

#include <span>
#include <vector>

namespace tavrin {

/// The samples as the library takes them: from -1 to 1.
inline std::vector<float> samplesOfFullScaleOne(std::span<const qint16> samples)
{
    constexpr float fullScale = 32768;
    std::vector<float> floats;
    floats.reserve(samples.size());
    for (const qint16 sample : samples)
        floats.push_back(static_cast<float>(sample) / fullScale);
    return floats;
}

} // namespace tavrin
