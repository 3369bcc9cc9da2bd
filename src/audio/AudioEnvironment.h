#pragma once

#include "audio/AudioChangeNote.h"
#include "audio/AudioInputDevices.h"
#include "audio/MicrophoneControls.h"
#include "base/LocalizedText.h"

#include <functional>

namespace tavrin {

class Preferences;
class SystemInfo;

/// Whether other sound is silenced while the user speaks; off until the user turns it on.
[[nodiscard]] bool MuteDuringRecordingEnabled(const Preferences& preferences);

/// What the program does to the machine's sound around one recording: the preferred microphone
/// becomes the default input, the output is silenced, and both are put back afterwards.
///
/// A change that the user made meanwhile is never overwritten. Every failure is silent: the
/// recording goes on with whatever devices there are. Changes in force are noted on disk, so that
/// the next start undoes them when this process dies. Main thread only.
class AudioEnvironment {
public:
    /// @param isRecording whether a recording is under way now (not: being processed).
    /// The ports must outlive the environment.
    AudioEnvironment(AudioDevices& devices, Preferences& preferences, const SystemInfo& systemInfo,
        std::function<bool()> isRecording);

    /// Undoes what a process changed that died before it could. Called once, at the start; while
    /// the devices cannot be read it is tried again before each recording.
    void restoreAfterCrash();

    /// Called before the recorder is created: it records the default input.
    void applyPreferredMicrophoneForRecording();

    /// Called a moment after the recording began; does nothing when it is over by then.
    void muteSystemAudioForRecordingIfNeeded();

    /// Called at every end of a recording, at its failure to start and at termination.
    void restoreAudioEnvironment();

    // The controls of the settings page.

    /// What the popup shows now, its own text chosen by @p localize. Reads the devices anew.
    [[nodiscard]] MicrophoneControls refreshMicrophoneControls(const Localize& localize);

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
    void restoreOutput();
    void restoreInput();
    void noteOutput(std::optional<AudioChanges::Output> output);
    void undoAbandonedChanges();
    [[nodiscard]] AudioDeviceId deviceWithUid(const QString& uid, bool input);

    AudioDevices& m_devices;
    Preferences& m_preferences;
    std::function<bool()> m_isRecording;

    QList<AudioInputDevice> m_availableInputDevices;

    InputOverride m_input;
    OutputIsolation m_output;

    AudioChangeNote m_note;
    AudioChanges m_changes; ///< In force; what m_note says.
    AudioChanges m_abandoned; ///< A dead process's, still to be undone.
};

} // namespace tavrin
