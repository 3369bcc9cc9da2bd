#pragma once

#include "base/Result.h"
#include "base/Seconds.h"

#include <QString>

#include <memory>

namespace tavrin {

/// How a recording is encoded; the values are those of the macOS settings dictionary.
struct AudioRecorderSettings {
    quint32 formatId = 0; ///< `AVFormatIDKey`, a four-character code.
    double sampleRate = 0; ///< `AVSampleRateKey`, in Hz.
    int numberOfChannels = 0; ///< `AVNumberOfChannelsKey`.
    int encoderAudioQuality = 0; ///< `AVEncoderAudioQualityKey`, 0 to 127.

    friend bool operator==(const AudioRecorderSettings&, const AudioRecorderSettings&) = default;
};

/// One recording of the default input device into one file.
///
/// Main thread only; capturing and encoding happen on threads of its own. Destroying a recorder
/// stops it. Whatever goes wrong while recording (device unplugged, sound server gone, disk full),
/// what was captured until then stays in a valid file after stop(). The file is readable by its
/// owner only.
class AudioRecorder {
public:
    virtual ~AudioRecorder() = default;

    /// Turns averagePower() on. Off after creation.
    virtual void setMeteringEnabled(bool enabled) = 0;

    /// Creates the file and makes the device ready. False when either is impossible; failure() then
    /// tells the reason, if there is one to tell.
    virtual bool prepareToRecord() = 0;

    /// Starts, or goes on after pause() in the same file. False when it cannot, with the reason in
    /// failure(): nothing is captured any more.
    virtual bool record() = 0;

    virtual void pause() = 0;

    /// Finishes the file, waiting until it is complete. A second call does nothing.
    virtual void stop() = 0;

    /// Seconds recorded so far, pauses not counted; 0 after stop().
    [[nodiscard]] virtual Seconds currentTime() const = 0;

    /// Takes the level of the sound captured since the last call; averagePower() answers for it.
    virtual void updateMeters() = 0;

    /// Mean power of @p channel in dBFS, from -160 (silence) to 0 (full scale).
    [[nodiscard]] virtual float averagePower(int channel) const = 0;

    /// Why capturing ended early or could not begin; empty message while nothing went wrong.
    [[nodiscard]] virtual Error failure() const = 0;
};

/// Makes recorders. Main thread only.
class AudioRecorders {
public:
    virtual ~AudioRecorders() = default;

    /// Loads in the background what the first recording would otherwise wait for (Linux: libraries,
    /// and the connection to the sound server). Called once, a little after the launch; recording
    /// works without.
    virtual void warmUp() = 0;

    /// A recorder for the file at @p path, not yet started; fails when the settings or the path
    /// are impossible.
    [[nodiscard]] virtual Result<std::unique_ptr<AudioRecorder>> createRecorder(
        const QString& path, const AudioRecorderSettings& settings) = 0;
};

} // namespace tavrin
