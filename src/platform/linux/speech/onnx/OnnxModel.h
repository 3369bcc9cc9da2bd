#pragma once

#include "base/Seconds.h"
#include "platform/linux/speech/onnx/OnnxFiles.h"
#include "platform/linux/speech/onnx/OnnxProblem.h"

#include <QByteArray>
#include <QStringList>

namespace tavrin {

/// Of a stretch of speech that every kind of model hears whole. Whisper hears 30 s, of which the
/// library keeps half a second for silence; the others were trained with no more.
inline constexpr Seconds onnxLongestUtterance{29};

enum class OnnxModelKind {
    StreamingTransducer, ///< Zipformer, of the first or second generation.
    StreamingZipformerCtc,
    StreamingNemoCtc,
    StreamingParaformer,
    SenseVoice,
    Paraformer,
    ZipformerCtc,
    Whisper,
};

/// A speech model in a folder, as far as its files tell without being loaded.
struct OnnxModel {
    OnnxModelKind kind = OnnxModelKind::ZipformerCtc;
    QString folder;
    OnnxFiles files;
    QStringList languages{}; ///< BCP 47 tags; empty when nothing tells.
    bool hasPunctuation = false;
    /// How the library cuts terms into tokens: "cjkchar", "bpe" or "cjkchar+bpe"; empty when terms
    /// cannot be favoured.
    QByteArray modelingUnit{};
    /// How many frames of 10 ms a streaming model hears at a time: silence as long as that brings
    /// out the last word.
    int chunkFrames = 0;

    /// Whether it hears while somebody speaks; else only what was said as a whole.
    [[nodiscard]] bool isStreaming() const { return kind <= OnnxModelKind::StreamingParaformer; }

    [[nodiscard]] bool canFavourTerms() const { return !modelingUnit.isEmpty(); }
};

/// The model in @p folder. Reads a few kilobytes of its files and the table of tokens, which takes
/// some milliseconds. Whatever sherpa-onnx would end the program for (metadata that is missing or
/// that it cannot use, tokens that it needs) is a problem here, which names the file and the key.
[[nodiscard]] OnnxResult<OnnxModel> findOnnxModel(const QString& folder);

} // namespace tavrin
