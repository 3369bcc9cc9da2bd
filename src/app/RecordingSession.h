#pragma once

#include "app/OperationMode.h"
#include "app/SessionState.h"
#include "app/StageTimes.h"
#include "audio/RecordingFile.h"
#include "base/CallbackGuard.h"
#include "base/Completion.h"
#include "base/Result.h"
#include "base/Seconds.h"
#include "delivery/ApplicationContext.h"

#include <QString>

#include <memory>
#include <optional>

namespace tavrin {

class AccountPanel;
class Alerts;
class AudioEnvironment;
class AudioRecorder;
class AudioRecorders;
class Clock;
class CorrectionLearning;
class ErrorAlert;
class HealthPanel;
class LiveTranscriber;
class Localization;
class MainQueue;
class Preferences;
class ProcessingTimeEstimator;
class RecordingHUD;
class SessionHistory;
class Settings;
class SoundEffects;
class StatusMenu;
class SystemInfo;
class SystemTranscriber;
class TargetContext;
class TavrinAPI;
class TextDelivery;
class Timer;
struct DeliveryOutcome;

/// The one voice session of the program, from the press of a shortcut to the delivered text:
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
        TavrinAPI& api;
        AudioEnvironment& audioEnvironment;
        AudioRecorders& audioRecorders;
        const Clock& clock;
        CorrectionLearning& correctionLearning;
        TextDelivery& delivery;
        ErrorAlert& errorAlert;
        ProcessingTimeEstimator& estimator;
        HealthPanel& healthPanel;
        SessionHistory& history;
        RecordingHUD& hud;
        LiveTranscriber& liveTranscriber;
        const Localization& localization;
        MainQueue& mainQueue;
        Preferences& preferences;
        Settings& settings;
        SoundEffects& sounds;
        StatusMenu& statusMenu;
        const SystemInfo& systemInfo;
        TargetContext& target;
        SystemTranscriber& transcriber;
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
    /// What is recorded, from the start to the end of the session.
    struct Recording {
        bool cancellationPending = false; ///< Paused, and the panel asks whether to cancel.
        std::shared_ptr<AudioRecorder> recorder; ///< Null once it is stopped. The panel watches it.
        std::optional<RecordingFile> file; ///< While recording and processing.
        Seconds currentAudioDuration{0}; ///< Taken when it is stopped.
        Error failure; ///< Why capturing ended before that.
    };

    /// What was decided when the recording stopped, for as long as it is processed.
    struct Processing {
        Seconds processingStartedAt{0}; ///< On the clock's uptime.
        ApplicationContext application;
        QString style;
        QString translationTarget; ///< "none" unless the mode is translation.
        QString transcript;
    };

    void startRecording();
    /// On failure, the message may be empty.
    [[nodiscard]] Result<void> startRecorder();
    /// Shows the panel with live text that starts afresh.
    void showRecording();

    void finishRecording();
    void transcribed(const Result<QString>& transcript);
    void rewritten(const Result<QString>& text);
    void deliver(const QString& text);
    void delivered(const QString& text, const DeliveryOutcome& outcome);
    void storeOutcome(const DeliveryOutcome& outcome);
    void announce(const QString& text, const DeliveryOutcome& outcome);
    void finishWithError(const Error& error);

    /// The stage @p name has ended now.
    void endStage(const char* name);
    void logStages() const;

    /// Ends the capture; the file stays.
    void stopRecording();
    void setState(SessionState state);
    [[nodiscard]] bool translates() const;
    /// For answers that may come on any thread: hops to the main queue, and does nothing there once
    /// the session is gone.
    [[nodiscard]] Completion<Result<QString>> onMainQueue(
        void (RecordingSession::*step)(const Result<QString>&));

    Neighbours m_neighbours;
    SessionState m_state = SessionState::Idle;
    OperationMode m_activeOperationMode = OperationMode::Dictation;
    Recording m_recording;
    Processing m_processing;
    StageTimes m_stageTimes; ///< Of the current session.
    std::unique_ptr<Timer> m_muteTimer; ///< Of the last start.
    CallbackGuard m_guard;
};

} // namespace tavrin
