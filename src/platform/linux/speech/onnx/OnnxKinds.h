#pragma once

#include "platform/linux/speech/onnx/OnnxModel.h"
#include "platform/linux/speech/onnx/OnnxSheet.h"
#include "platform/linux/speech/onnx/OnnxTokens.h"

namespace tavrin {

/// The kind of a model, and the sheet that says so.
struct OnnxKindFound {
    OnnxModelKind kind = OnnxModelKind::ZipformerCtc;
    OnnxSheet sheet; ///< Of the model, or of its encoder.
    int vocabulary = 0; ///< How many tokens the model knows; 0 where nothing tells.
};

/// Tells the kind by the metadata, and checks everything that the library requires for it.
[[nodiscard]] OnnxResult<OnnxKindFound> findOnnxKind(const OnnxFiles& files);

/// Whether the table has the tokens that the library and the model need.
[[nodiscard]] OnnxResult<void> checkOnnxTokens(
    const OnnxKindFound& found, const OnnxTokens& tokens, const OnnxFiles& files);

} // namespace tavrin
