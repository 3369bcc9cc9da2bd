#pragma once

#include "base/Result.h"

#include <QString>

#include <memory>
#include <span>

namespace tavrin {

/// A recording on its way into an MPEG-4 audio file: AAC-LC, 16 kHz, mono.
///
/// Whatever happens while it grows, finish() leaves a valid file with everything that was added
/// successfully: the space for the index that ends it is set aside as it grows. Any one thread at a
/// time. Errors have the domain "TavrinAudio" and a message ready to show.
class AacFile {
public:
    static constexpr int sampleRate = 16'000;

    enum ErrorCode {
        CannotCreate = 21,
        DiskFull = 22,
        EncodingFailed = 23,
    };

    /// @param quality 0 to 127, as `AVEncoderAudioQualityKey`.
    [[nodiscard]] static Result<std::unique_ptr<AacFile>> create(const QString& path, int quality);

    ~AacFile(); ///< Finishes the file.

    AacFile(const AacFile&) = delete;
    AacFile& operator=(const AacFile&) = delete;

    /// Encodes and writes. An empty message when all went well; after an error nothing more is
    /// taken.
    Error add(std::span<const qint16> samples);

    /// Writes what is still in the encoder and the index. A second call does nothing.
    void finish();

private:
    class Implementation;
    explicit AacFile(std::unique_ptr<Implementation> implementation);
    std::unique_ptr<Implementation> m_implementation;
};

} // namespace tavrin
