#pragma once

#include "app/vocabulary/OperationMode.h"
#include "app/vocabulary/SessionState.h"
#include "audio/RecordingFile.h"
#include "base/CallbackGuard.h"
#include "base/Result.h"
#include "base/Seconds.h"

#include <memory>
#include <optional>

namespace tavrin {

class AccountPanel;
class Alerts;
class AudioEnvironment;
class AudioRecorder;
class AudioRecorders;
class BackgroundQueue;
class Clock;
class CorrectionLearning;
class ErrorAlert;
class LiveTranscriber;
class Localization;
class MainQueue;
class Preferences;
class RecordingHUD;
class SessionProcessing;
class Settings;
class SoundEffects;
class StageTimes;
class StatusMenu;
class SystemInfo;
class TargetContext;
class Timer;

/// The one voice session of the program: its states, and its recording. What becomes of the
/// recording is up to SessionProcessing.
///
///     idle ── startRecording ──► recording ── finishRecording ──► processing ──► idle
///
/// Cancelling leads from recording straight back to idle; Escape pauses a recording and asks first.
/// A press that fits no transition beeps. Main thread only.
class RecordingSession {
public:
    struct Neighbours {
        AccountPanel& accountPanel;
        Alerts& alerts;
        AudioEnvironment& audioEnvironment;
        AudioRecorders& audioRecorders;
        BackgroundQueue& background;
        const Clock& clock;
        CorrectionLearning& correctionLearning;
        ErrorAlert& errorAlert;
        RecordingHUD& hud;
        LiveTranscriber& liveTranscriber;
        const Localization& localization;
        MainQueue& mainQueue;
        Preferences& preferences;
        SessionProcessing& processing;
        Settings& settings;
        SoundEffects& sounds;
        StageTimes& stageTimes; ///< Of the session.
        StatusMenu& statusMenu;
        const SystemInfo& systemInfo;
        TargetContext& target;
    };

    /// @param neighbours must outlive the session. One that is destroyed meanwhile delivers nothing
    /// any more and deletes its recording.
    explicit RecordingSession(const Neighbours& neighbours);
    ~RecordingSession();

    RecordingSession(const RecordingSession&) = delete;
    RecordingSession& operator=(const RecordingSession&) = delete;

    [[nodiscard]] SessionState state() const { return m_state; }

    /// Of the current session, or of the last one.
    [[nodiscard]] OperationMode activeOperationMode() const { return m_activeOperationMode; }

    /// Starts the operation, or finishes the recording that it started.
    void toggleOperationMode(OperationMode mode);

    /// Escape was pressed: the first one pauses the recording and asks, the second one cancels.
    void handleEscape();

    /// Gives the recording up. Does nothing unless recording.
    void cancelCurrentRecording();

    /// Goes on with a recording that Escape paused. Does nothing unless recording.
    void continueCurrentRecording();

    /// Shows state and operation in the status item and its menu.
    void updateUI();

private:
    /// What is recorded, while it is.
    struct Recording {
        bool cancellationPending = false; ///< Paused, and the panel asks whether to cancel.
        std::shared_ptr<AudioRecorder> recorder; ///< Null once it is stopped. The panel watches it.
        std::optional<RecordingFile> file;
    };

    void startRecording();
    /// On failure, the message may be empty.
    [[nodiscard]] Result<void> startRecorder();
    /// Shows the panel with live text that starts afresh.
    void showRecording();

    void finishRecording();

    /// The stage @p name, a literal, has ended now.
    void endStage(const char* name);

    /// Ends the capture; the file stays.
    /// @return why capturing had ended before; without a message when it had not.
    Error stopRecording();
    void setState(SessionState state);

    Neighbours m_neighbours;
    SessionState m_state = SessionState::Idle;
    OperationMode m_activeOperationMode = OperationMode::Dictation;
    Recording m_recording;
    std::unique_ptr<Timer> m_muteTimer; ///< Of the last start.
    CallbackGuard m_guard;
};

} // namespace tavrin
