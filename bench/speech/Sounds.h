#pragma once

#include <QString>
#include <QStringList>

#include <vector>

namespace tavrin::bench {

/// The three voices of the figures: flite's.
[[nodiscard]] QStringList voices();

/// The thirty sentences of the figures.
[[nodiscard]] QStringList sentences();

/// A sentence as a recording of the program's own format (AAC, 16 kHz, mono), and what the
/// program's decoder makes of it as a WAV file: both recognisers hear the same samples.
struct Spoken {
    QString text;
    QString recording;
    QString decoded;
};

/// Ends the program when a tool is missing.
[[nodiscard]] Spoken speak(const QString& text, const QString& voice, const QString& folder);

/// The sound of a file as the program decodes it; ends the program when there is none.
[[nodiscard]] std::vector<qint16> samplesOf(const QString& path);

/// Runs a tool to its end and returns what it wrote; ends the program when it fails.
QString outputOf(const QString& program, const QStringList& arguments);

} // namespace tavrin::bench
