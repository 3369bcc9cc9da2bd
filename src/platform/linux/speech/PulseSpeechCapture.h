#pragma once

#include "platform/linux/speech/engine/EngineLiveRecognizer.h"

namespace tavrin {

class PulseConnection;

/// Captures the default input device of the sound server.
[[nodiscard]] OpenSpeechCapture pulseSpeechCapture(std::shared_ptr<PulseConnection> connection);

} // namespace tavrin
