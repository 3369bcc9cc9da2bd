#pragma once

#include <QByteArray>

#include <span>

namespace tavrin {

/// The samples as a WAV file: mono, 16 bits, 16 kHz.
[[nodiscard]] QByteArray wavFile(std::span<const qint16> samples);

} // namespace tavrin
