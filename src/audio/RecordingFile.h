#pragma once

#include "platform/audio/AudioRecorder.h"

#include <QString>

#include <memory>

class QLockFile;

namespace tavrin {

class BackgroundQueue;
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
/// be told apart. The lock waits for the disk, so it is taken in the background.
class RecordingFile {
public:
    RecordingFile(const SystemInfo& systemInfo, BackgroundQueue& background);
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
    std::shared_ptr<QLockFile> m_claim; ///< Shared with the work that takes it, until that is done.
};

/// Deletes the recordings that crashed processes of this user left; those of living ones stay.
void removeAbandonedRecordings(const SystemInfo& systemInfo);

} // namespace tavrin
