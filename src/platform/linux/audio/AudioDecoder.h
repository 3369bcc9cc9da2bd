#pragma once

#include "base/Result.h"
#include "base/Seconds.h"

#include <QString>

#include <memory>
#include <span>

namespace tavrin {

/// Decodes the sound of a file, piece by piece, to 16 kHz mono, so that memory stays the same
/// however long the file is. Any one thread; no global state.
///
/// The file may be hostile: nothing but it is opened, and every size in it is checked. Errors have
/// the domain "TavrinAudio" and a message ready to show.
class AudioDecoder {
public:
    static constexpr int sampleRate = 16'000;

    /// Longer sound than anyone dictates.
    static constexpr Seconds longestSound = std::chrono::hours{4};

    enum ErrorCode {
        CannotOpen = 1, ///< Not there, not readable, not a file.
        Empty = 2, ///< No bytes at all.
        Damaged = 3, ///< No sound in it that can be decoded.
        TooLong = 4, ///< Reading passed the longest sound allowed.
    };

    /// Loads the libraries that decoding, and encoding too, would otherwise load at the first use
    /// in some 60 ms. False when one is missing. Any thread.
    static bool warmUp();

    [[nodiscard]] static Result<AudioDecoder> open(
        const QString& path, Seconds longest = longestSound);

    ~AudioDecoder();
    AudioDecoder(AudioDecoder&&) noexcept;
    AudioDecoder& operator=(AudioDecoder&&) noexcept;
    AudioDecoder(const AudioDecoder&) = delete;
    AudioDecoder& operator=(const AudioDecoder&) = delete;

    /// The next samples, valid until the next call; none at the end. A file that breaks off gives
    /// what stands before the break and then ends; Damaged when that is nothing.
    [[nodiscard]] Result<std::span<const qint16>> read();

private:
    class Implementation;
    explicit AudioDecoder(std::unique_ptr<Implementation> implementation);
    std::unique_ptr<Implementation> m_implementation;
};

} // namespace tavrin
