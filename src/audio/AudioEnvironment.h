#pragma once

#include "audio/AudioChangeNote.h"
#include "audio/AudioInputDevices.h"
#include "audio/MicrophoneContent.h"
#include "base/Localize.h"
#include "base/Seconds.h"

#include <functional>
#include <memory>

namespace tavrin {

class MainQueue;
class Preferences;
class SystemInfo;
class Timer;

/// Whether other sound is silenced while the user speaks; off until the user turns it on.
[[nodiscard]] bool MuteDuringRecordingEnabled(const Preferences& preferences);

/// What the program does to the machine's sound around one recording: the preferred microphone
/// becomes the default input, the output is silenced, and both are put back afterwards.
///
/// A change that the user made meanwhile is never overwritten. Every failure is silent: the
/// recording goes on with whatever devices there are. Changes in force are noted on disk, so that
/// the next start undoes them when this process dies. What cannot be told at the end of a
/// recording, because the devices cannot be read or one of them is away, is owed: it is undone once
/// they can, by the next process if need be. Main thread only.
class AudioEnvironment {
public:
    /// @param isRecording whether a recording is under way now (not: being processed).
    /// The ports must outlive the environment.
    AudioEnvironment(AudioDevices& devices, Preferences& preferences, const SystemInfo& systemInfo,
        MainQueue& mainQueue, std::function<bool()> isRecording);
    ~AudioEnvironment();

    AudioEnvironment(const AudioEnvironment&) = delete;
    AudioEnvironment& operator=(const AudioEnvironment&) = delete;

    /// Undoes what a process changed that died before it could. Called once, at the start.
    void restoreAfterCrash();

    /// Called before the recorder is created: it records the default input.
    void applyPreferredMicrophoneForRecording();

    /// Called a moment after the recording began; does nothing when it is over by then.
    void muteSystemAudioForRecordingIfNeeded();

    /// Called at every end of a recording, at its failure to start and at termination.
    void restoreAudioEnvironment();

    // The controls of the settings page.

    /// What the popup shows now, its own text chosen by @p localize. Reads the devices anew.
    [[nodiscard]] MicrophoneContent refreshMicrophoneControls(const Localize& localize);

    /// The devices that the popup was last filled with.
    [[nodiscard]] const QList<AudioInputDevice>& availableInputDevices() const
    {
        return m_availableInputDevices;
    }

    /// Stores the microphone to record from; an empty @p uid follows the system's default.
    void selectPreferredMicrophone(const QString& uid);

    void toggleMuteDuringRecording(bool on);

private:
    /// The default input was switched for this recording: to what, and from what.
    struct InputOverride {
        bool didOverrideInputDevice = false;
        AudioDeviceId previousInputDevice = 0;
        AudioDeviceId activePreferredInputDevice = 0;
    };

    /// The output was silenced: which, how, and what it was before.
    struct OutputIsolation {
        AudioDeviceId isolatedOutputDevice = 0;
        bool didCaptureOutputMute = false;
        quint32 previousOutputMute = 0;
        bool didCaptureOutputVolume = false;
        float previousOutputVolume = 0;
    };

    void muteOutput(quint32 current);
    void silenceOutput(float current);
    void noteOutput(AudioChanges::Output output);
    void writeNote();

    /// Both end what is in force. False when it cannot be told what is to be done.
    bool restoreOutput();
    bool restoreInput();
    bool restoreOwed(const AudioChanges::Output& change);
    bool restoreOwed(const AudioChanges::Input& change);

    /// Undoes what is owed and can be told now; does nothing while changes are in force.
    void undoOwedChanges();
    void tryAgainLater();
    [[nodiscard]] AudioDeviceId deviceWithUid(const QString& uid, bool input);

    AudioDevices& m_devices;
    Preferences& m_preferences;
    MainQueue& m_mainQueue;
    std::function<bool()> m_isRecording;

    QList<AudioInputDevice> m_availableInputDevices;

    InputOverride m_input;
    OutputIsolation m_output;

    AudioChangeNote m_note; ///< Of both that follow.
    AudioChanges m_changes; ///< In force, one of each kind at most.
    AudioChanges m_owed; ///< Still to be undone.

    std::unique_ptr<Timer> m_retry;
    Seconds m_retryDelay;
};

} // namespace tavrin
