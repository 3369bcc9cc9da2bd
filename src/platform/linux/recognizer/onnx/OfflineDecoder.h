#pragma once

#include "base/Result.h"
#include "base/Seconds.h"
#include "platform/linux/recognizer/onnx/SherpaHandle.h"
#include "platform/linux/recognizer/onnx/SherpaLibrary.h"
#include "platform/linux/speech/onnx/OnnxModel.h"

#include <span>

namespace tavrin {

/// A model for whole utterances that is loaded.
class OfflineDecoder {
public:
    /// @param model one that was found to be usable.
    /// @param provider see SessionOptions.
    [[nodiscard]] static OnnxResult<std::unique_ptr<OfflineDecoder>> load(
        const SherpaLibrary& library, const OnnxModel& model, const QByteArray& provider);

    /// More than this is not heard, or heard badly.
    [[nodiscard]] static Seconds longestUtterance();

    /// What @p samples say: 16,000 a second. The error is one of a speech engine.
    [[nodiscard]] Result<QString> decode(std::span<const qint16> samples) const;

private:
    OfflineDecoder(
        const SherpaLibrary& library, SherpaHandle<sherpa::OfflineRecognizer> recognizer);

    const SherpaLibrary& m_library;
    SherpaHandle<sherpa::OfflineRecognizer> m_recognizer;
};

} // namespace tavrin
