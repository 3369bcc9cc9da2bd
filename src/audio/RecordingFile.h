#pragma once

#include "platform/AudioRecorder.h"

#include <QString>

#include <future>
#include <memory>

class QLockFile;

namespace tavrin {

class SystemInfo;

/// How every recording is encoded: AAC, 16 kHz, mono, high quality.
inline constexpr AudioRecorderSettings recordingSettings{
    .formatId = 1633772320, // 'aac ', `kAudioFormatMPEG4AAC`
    .sampleRate = 16000,
    .numberOfChannels = 1,
    .encoderAudioQuality = 96, // `AVAudioQualityHigh`
};

/// A place for one recording, "tavrin-<UUID>.m4a" in the temporary directory. The recorder creates
/// the file; it is deleted with this object at the latest. Main thread only.
///
/// A lock file beside it says that a living process owns it, so that what a crashed one left can
/// be told apart. The lock waits for the disk: a thread of its own takes it.
class RecordingFile {
public:
    explicit RecordingFile(const SystemInfo& systemInfo);
    ~RecordingFile();

    RecordingFile(RecordingFile&&) noexcept;
    RecordingFile& operator=(RecordingFile&&) noexcept;
    RecordingFile(const RecordingFile&) = delete;
    RecordingFile& operator=(const RecordingFile&) = delete;

    /// Where to record; empty after remove().
    [[nodiscard]] const QString& audioURL() const { return m_audioURL; }

    /// Deletes the recording. A second call does nothing.
    void remove();

private:
    QString m_audioURL;
    std::unique_ptr<QLockFile> m_claim;
    std::future<void> m_claiming; ///< Uses m_claim.
};

/// Deletes the recordings that crashed processes of this user left; those of living ones stay.
void removeAbandonedRecordings(const SystemInfo& systemInfo);

} // namespace tavrin
