#pragma once

#include "base/Result.h"
#include "platform/linux/recognizer/onnx/SherpaHandle.h"
#include "platform/linux/recognizer/onnx/SherpaLibrary.h"
#include "platform/linux/speech/onnx/OnnxModel.h"

#include <span>
#include <stop_token>

namespace tavrin {

/// Speech that a streaming model hears. Errors are those of a speech engine; after one the stream
/// is of no use any more.
class OnlineStream {
public:
    OnlineStream(const SherpaLibrary& library, const sherpa::OnlineRecognizer& recognizer,
        SherpaHandle<sherpa::OnlineStream> stream);

    /// Samples of full scale 1, 16,000 a second; decodes as far as they reach. Between two steps,
    /// which take some milliseconds, it looks at @p stop.
    [[nodiscard]] Result<void> hear(std::span<const float> samples, const std::stop_token& stop);

    /// Nothing more comes: decodes what is left.
    [[nodiscard]] Result<void> end(const std::stop_token& stop);

    /// What was said since the last reset.
    [[nodiscard]] Result<QString> text() const;

    /// Whether a sentence may have ended: silence for 1.2 s after speech, or 2.4 s without any.
    [[nodiscard]] bool isAtEndpoint() const;

    void reset();

private:
    [[nodiscard]] Result<void> decode(const std::stop_token& stop);

    const SherpaLibrary& m_library;
    const sherpa::OnlineRecognizer& m_recognizer;
    SherpaHandle<sherpa::OnlineStream> m_stream;
};

/// A streaming model that is loaded.
class OnlineDecoder {
public:
    /// @param model one that was found to be usable.
    /// @param provider see SessionOptions.
    [[nodiscard]] static OnnxResult<std::unique_ptr<OnlineDecoder>> load(
        const SherpaLibrary& library, const OnnxModel& model, const QByteArray& provider);

    /// @param hotwords from OnnxHotwords, of a model that can favour terms; else empty.
    [[nodiscard]] Result<std::unique_ptr<OnlineStream>> begin(const QByteArray& hotwords) const;

private:
    OnlineDecoder(const SherpaLibrary& library, SherpaHandle<sherpa::OnlineRecognizer> recognizer);

    const SherpaLibrary& m_library;
    SherpaHandle<sherpa::OnlineRecognizer> m_recognizer;
};

} // namespace tavrin
