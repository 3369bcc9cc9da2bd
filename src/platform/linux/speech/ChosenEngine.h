#pragma once

#include <QString>

namespace tavrin {

class Preferences;

/// The names of the engines, as the setting `linuxSpeechEngine` has them.
namespace engine_names {

inline const QString builtIn = QStringLiteral("sphinx");
inline const QString neural = QStringLiteral("onnx");
inline const QString http = QStringLiteral("http");
inline const QString vosk = QStringLiteral("vosk");

} // namespace engine_names

/// One of these names: the one that is set, else that of neural models where one is chosen, else
/// the setting's default.
[[nodiscard]] QString chosenEngineName(const Preferences& preferences);

} // namespace tavrin
