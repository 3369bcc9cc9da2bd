#pragma once

#include "platform/audio/SoundPlayer.h"

#include <QString>

#include <memory>

namespace tavrin {

class PulsePlayback;

/// Plays the sounds of one folder through the sound server (PulseAudio or PipeWire).
///
/// Nothing is opened before the first sound is asked for, and no call waits for the server: without
/// one nothing is heard. Its connection is made again with the next sound after it was lost.
class PulseSoundPlayer final : public SoundPlayer {
public:
    /// @p folder holds the files "<name>.wav"; a resource folder is fine.
    explicit PulseSoundPlayer(QString folder);
    ~PulseSoundPlayer() override;

    PulseSoundPlayer(const PulseSoundPlayer&) = delete;
    PulseSoundPlayer& operator=(const PulseSoundPlayer&) = delete;

    [[nodiscard]] std::unique_ptr<Sound> soundNamed(const QString& name) override;

private:
    QString m_folder;
    std::shared_ptr<PulsePlayback> m_playback; // Shared with the sounds.
};

} // namespace tavrin
