#pragma once

#include "platform/linux/speech/engine/EngineLiveRecognizer.h"

#include <memory>

namespace tavrin {

class Preferences;

/// The speech recognition that the user chose: one engine, opened once on a thread of its own,
/// behind both recognisers, which may be destroyed in any order.
///
/// Preferences, read when the program starts; PreferenceKeys.h has their defaults:
/// - `linuxSpeechEngine`: "sphinx" (built in), "onnx" (neural), "http" or "vosk".
/// - `linuxSpeechOnnxModel`, `linuxSpeechOnnxFinalModel`: the folders of a neural model, and of
///   another one for the final texts; empty for the same one.
/// - `linuxSpeechOnnxLibrary`: the folder of sherpa-onnx; empty for `sherpa-onnx` in the program's
///   folder of the user's data.
/// - `linuxSpeechSphinxModel`: the folder of a Sphinx model; empty for the best one installed.
/// - `linuxSpeechIdleMinutes`: after so many minutes without use the process of a built-in engine
///   ends, and with it what the model takes of memory; the next use starts it again. 0 keeps it.
/// - `linuxSpeechHttpUrl`, `linuxSpeechHttpModel`, `linuxSpeechHttpKey`: the server of "http", the
///   model's name there, and the bearer token that it wants.
/// - `linuxSpeechVoskUrl`: the server of "vosk", a ws or wss address.
/// - `linuxSpeechLanguage`: the language that the server hears.
struct LinuxSpeech {
    std::unique_ptr<FileSpeechRecognizer> fileRecognizer;
    std::unique_ptr<LiveSpeechRecognizer> liveRecognizer;
};

/// Where the program stands that recognises for this one: beside it.
[[nodiscard]] QString recognizerProgram();

/// The engine is loaded with the first task, or when the recognisers are warmed up.
[[nodiscard]] LinuxSpeech createLinuxSpeech(const Preferences& preferences,
    OpenSpeechCapture openCapture, const QString& recognizer = recognizerProgram());

/// The language that the chosen engine really hears, as a BCP 47 tag; empty without an engine.
[[nodiscard]] QString linuxSpeechLanguage(const Preferences& preferences);

} // namespace tavrin
