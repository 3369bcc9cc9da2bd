#pragma once

#include "base/Result.h"
#include "platform/linux/recognizer/onnx/OfflineDecoder.h"
#include "platform/linux/speech/engine/SpeechLevels.h"

#include <QStringList>

#include <stop_token>

namespace tavrin {

/// The text of speech of any length by a model that hears no more than some seconds at a time:
/// what is longer is cut at pauses, and each stretch decoded as soon as it is whole. A stretch of
/// silence has no text: models invent some.
class WholeTranscript {
public:
    /// Errors are those of a speech engine.
    using Decode = std::function<Result<QString>(std::span<const qint16>)>;

    /// @param longest samples of a stretch.
    WholeTranscript(Decode decode, qsizetype longest, std::stop_token stop);

    [[nodiscard]] Result<void> add(std::span<const qint16> samples);

    /// The text up to here, with that of the last stretch as far as it has come.
    [[nodiscard]] Result<QString> textSoFar();

private:
    [[nodiscard]] Result<void> settleFirst();
    [[nodiscard]] Result<QString> textOf(std::span<const qint16> samples) const;

    Decode m_decode;
    const qsizetype m_longest;
    std::stop_token m_stop;
    QStringList m_settled; ///< Of the stretches that are whole.
    std::vector<qint16> m_samples; ///< After them.
    SpeechLevels m_levels;
};

} // namespace tavrin
