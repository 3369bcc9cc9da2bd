#pragma once

#include <QString>

namespace tavrin::testing {

/// Speaks @p text into a WAV file (16 kHz, mono, 16 bits) at @p path. Voices: "rms", "slt", "awb"
/// (flite, American English), "espeak" (espeak-ng). False when the synthesiser cannot.
[[nodiscard]] bool speak(const QString& text, const QString& voice, const QString& path);

} // namespace tavrin::testing
