#pragma once

#include "platform/linux/speech/onnx/OnnxProblem.h"

#include <QString>

namespace tavrin {

/// The files of a model, with their paths. Either `model` is set or `encoder` and `decoder`, with
/// `joiner` where there is one.
struct OnnxFiles {
    QString model;
    QString encoder;
    QString decoder;
    QString joiner;
    QString tokens;
    QString bpeVocabulary; ///< How words are cut into pieces; empty where there is none.
    qint64 bytes = 0; ///< Of the models, with weights in files of their own.

    friend bool operator==(const OnnxFiles&, const OnnxFiles&) = default;
};

/// Which files of @p folder make a model. Files belong together when their names are the same but
/// for the words "encoder", "decoder", "joiner" and "int8"; of several sets that one is taken whose
/// name comes last when numbers count as numbers ("epoch-99" after "epoch-20"). Of a set, "int8"
/// comes before the rest, and "fp16", which is slow on a processor, last.
[[nodiscard]] OnnxResult<OnnxFiles> findOnnxFiles(const QString& folder);

} // namespace tavrin
