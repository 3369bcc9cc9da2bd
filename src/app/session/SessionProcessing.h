#pragma once

#include "app/vocabulary/OperationMode.h"
#include "audio/RecordingFile.h"
#include "base/CallbackGuard.h"
#include "base/Completion.h"
#include "base/Result.h"
#include "base/Seconds.h"
#include "delivery/ApplicationContext.h"

#include <QString>

#include <functional>
#include <optional>

namespace tavrin {

class AudioEnvironment;
class Clock;
class CorrectionLearning;
class ErrorAlert;
class HistoryStore;
class Localization;
class MainQueue;
class Preferences;
class ProcessingTimeEstimator;
class RecordingHUD;
class Settings;
class SoundEffects;
class StageTimes;
class SystemTranscriber;
class TargetContext;
class TavrinAPI;
class TextDelivery;
struct DeliveryOutcome;
struct NewHistoryRecord;

/// What the first half of a session leaves to the second.
struct FinishedRecording {
    OperationMode mode = OperationMode::Dictation;
    RecordingFile file;
    Seconds duration{0};
    Error failure; ///< Why capturing ended before it was to; without a message when it did not.
};

/// The second half of a session, one at a time:
///
///     recording ──► transcript ──► the service's text ──► delivery ──► history, sound, panel
///
/// A failure on the way ends it with an alert; but a dictation that the service cannot improve is
/// delivered as it was spoken. Main thread only.
class SessionProcessing {
public:
    struct Neighbours {
        TavrinAPI& api;
        AudioEnvironment& audioEnvironment;
        const Clock& clock;
        CorrectionLearning& correctionLearning;
        TextDelivery& delivery;
        ErrorAlert& errorAlert;
        ProcessingTimeEstimator& estimator;
        RecordingHUD& hud;
        const Localization& localization;
        MainQueue& mainQueue;
        Preferences& preferences;
        std::function<void()> refreshHealthStatus; ///< The outcome of a delivery is known.
        std::function<void(const NewHistoryRecord&)> saveHistoryTranscript;
        Settings& settings;
        SoundEffects& sounds;
        StageTimes& stageTimes; ///< Of the session.
        TargetContext& target;
        SystemTranscriber& transcriber;
    };

    /// @param neighbours must outlive it. One that is destroyed meanwhile delivers nothing any more
    /// and deletes the recording.
    explicit SessionProcessing(Neighbours neighbours);

    /// The settings and the target of this moment count, whatever is changed until the end.
    /// @param ended called when the outcome is certain, before anything is told of it.
    void process(FinishedRecording recording, std::function<void()> ended);

private:
    /// What was decided when the recording stopped, and what has come of it.
    struct Running {
        FinishedRecording recording;
        std::function<void()> ended;
        Seconds processingStartedAt{0}; ///< On the clock's uptime.
        ApplicationContext application;
        QString style;
        QString translationTarget; ///< "none" unless the mode is translation.
        QString transcript;
    };

    void transcribed(const Result<QString>& transcript);
    void rewritten(const Result<QString>& text);
    void deliver(const QString& text);
    void delivered(const QString& text, const DeliveryOutcome& outcome);
    void storeOutcome(const DeliveryOutcome& outcome);
    void announce(const QString& text, const DeliveryOutcome& outcome);
    void finishWithError(const Error& error);
    void release();

    /// The stage @p name, a literal, has ended now.
    void endStage(const char* name);
    [[nodiscard]] bool translates() const;
    /// For answers that may come on any thread; does nothing once the processing is gone.
    [[nodiscard]] Completion<Result<QString>> onMainQueue(
        void (SessionProcessing::*step)(const Result<QString>&));

    Neighbours m_neighbours;
    std::optional<Running> m_running;
    CallbackGuard m_guard;
};

} // namespace tavrin
