#pragma once

#include "base/Error.h"

namespace tavrin {

/// What goes wrong in an engine; the codes of the domain "TavrinSpeechEngine".
enum class SpeechEngineError {
    ModelUnusable = 1, ///< The model cannot be loaded.
    Cancelled = 2, ///< Nobody waits for the answer any more.
    NotReachable = 3, ///< No connection, or it broke off.
    NoAnswer = 4, ///< The server did not answer in time.
    Refused = 5, ///< The server answered with a failure.
    UnusableAnswer = 6, ///< The server's answer is malformed or too large.
    TooMuchSound = 7, ///< Live sound arrives faster than the engine can follow.
    RecognizerEnded = 8, ///< The recogniser's process ended, or talks nonsense.
    RecognizerHung = 9, ///< It does not answer.
};

/// The error with its message; speech errors are in Simplified Chinese in every interface language.
[[nodiscard]] Error speechEngineError(SpeechEngineError code);

/// The error with this code; RecognizerEnded where there is none.
[[nodiscard]] Error speechEngineErrorOf(int code);

/// Whether a fresh recogniser may succeed where @p error came from.
[[nodiscard]] bool isRecognizerLost(const Error& error);

/// Whether @p error says something of the engine: that it cannot work, or does not answer.
[[nodiscard]] bool blamesEngine(const Error& error);

} // namespace tavrin
