#include "app/CorrectionLearning.h"
#include "app/ErrorAlert.h"
#include "app/HealthPanel.h"
#include "app/ProcessingTimeEstimator.h"
#include "app/RecordingHUD.h"
#include "app/RecordingSession.h"
#include "app/SessionHistory.h"
#include "app/SessionMessages.h"
#include "app/SessionTexts.h"
#include "app/Settings.h"
#include "app/SoundEffects.h"
#include "audio/AudioEnvironment.h"
#include "base/Log.h"
#include "cloud/TavrinAPI.h"
#include "delivery/TargetContext.h"
#include "delivery/TextDelivery.h"
#include "platform/AudioRecorder.h"
#include "platform/Clock.h"
#include "platform/MainQueue.h"
#include "platform/PreferenceKeys.h"
#include "platform/Preferences.h"
#include "speech/SystemTranscriber.h"

#include <utility>

using namespace Qt::StringLiterals;

// The second half of a session: from the end of the recording to the delivered text.
namespace tavrin {

void RecordingSession::finishRecording()
{
    endStage("recording");
    m_recording.cancellationPending = false;
    m_recording.currentAudioDuration = m_recording.recorder->currentTime();
    stopRecording();
    setState(SessionState::Processing);
    m_processing = {};
    m_processing.processingStartedAt = m_neighbours.clock.uptime();
    m_neighbours.hud.showProcessingWithEstimate(
        m_neighbours.estimator.estimatedProcessingDurationForAudio(
            m_recording.currentAudioDuration));
    m_neighbours.sounds.playSoundNamed(u"stop"_s);

    // The settings and the target of this moment count, whatever is changed while processing.
    m_processing.style = m_neighbours.settings.OutputStyle();
    m_processing.application = m_neighbours.target.applicationContext();
    m_processing.translationTarget =
        translates() ? m_neighbours.settings.TranslationTarget() : u"none"_s;
    m_neighbours.transcriber.transcribe(
        m_recording.file->audioURL(), onMainQueue(&RecordingSession::transcribed));
    endStage("stop");
}

void RecordingSession::transcribed(const Result<QString>& transcript)
{
    endStage("recogniser");
    if (!transcript) {
        // A recording that broke off explains why nothing was understood.
        const bool brokeOff = !m_recording.failure.message.isEmpty();
        finishWithError(brokeOff ? m_recording.failure : transcript.error());
        return;
    }
    m_processing.transcript = *transcript;
    if (m_activeOperationMode == OperationMode::Chat) {
        m_neighbours.api.chat(*transcript, chatContext(m_processing.application),
            onMainQueue(&RecordingSession::rewritten));
        return;
    }
    m_neighbours.api.polish(*transcript,
        QJsonObject::fromVariantMap(m_processing.application.toVariantMap()), m_processing.style,
        m_processing.translationTarget, onMainQueue(&RecordingSession::rewritten));
}

void RecordingSession::rewritten(const Result<QString>& text)
{
    endStage("service");
    if (text)
        deliver(*text);
    else if (m_activeOperationMode == OperationMode::Dictation)
        deliver(m_processing.transcript); // Dictation never loses words to a failing service.
    else
        finishWithError(text.error());
}

void RecordingSession::deliver(const QString& text)
{
    m_neighbours.delivery.pasteText(text,
        m_guard.bind([this, text](const DeliveryOutcome& outcome) { delivered(text, outcome); }));
}

void RecordingSession::delivered(const QString& text, const DeliveryOutcome& outcome)
{
    endStage("delivery");
    const Seconds processing = m_neighbours.clock.uptime() - m_processing.processingStartedAt;
    m_neighbours.estimator.recordProcessingDuration(processing, m_recording.currentAudioDuration);
    setState(SessionState::Idle);
    storeOutcome(outcome);
    m_neighbours.history.saveHistoryTranscript({
        .transcript = m_processing.transcript,
        .finalText = text,
        .delivery = historyDelivery(outcome),
        .mode = m_activeOperationMode,
        .targetLanguage = translates() ? m_processing.translationTarget : QString(),
        .audio = m_recording.currentAudioDuration,
        .processing = processing,
        .application = m_processing.application,
    });
    announce(text, outcome);
    m_recording.file.reset();
    m_neighbours.target.releaseElements();
    endStage("closing");
    logStages();
}

void RecordingSession::storeOutcome(const DeliveryOutcome& outcome)
{
    Preferences& preferences = m_neighbours.preferences;
    preferences.setValue(keys::lastDeliveryVerified, outcome.verified);
    preferences.setValue(
        keys::lastDeliveryReason, outcome.reason.isNull() ? u""_s : outcome.reason);
    preferences.synchronize();
    m_neighbours.healthPanel.refreshHealthStatus();
}

void RecordingSession::announce(const QString& text, const DeliveryOutcome& outcome)
{
    if (outcome.verified) {
        if (m_activeOperationMode != OperationMode::Chat)
            m_neighbours.correctionLearning.beginCorrectionLearningForInsertedText(text);
        m_neighbours.hud.showSuccess();
        m_neighbours.sounds.playSoundNamed(u"success"_s);
        return;
    }
    m_neighbours.hud.showClipboardFallbackWithReason(
        clipboardNotice(outcome, m_neighbours.localization));
    m_neighbours.sounds.playSoundNamed(u"error"_s);
}

void RecordingSession::finishWithError(const Error& error)
{
    m_neighbours.audioEnvironment.restoreAudioEnvironment();
    setState(SessionState::Idle);
    m_neighbours.hud.hide();
    m_neighbours.errorAlert.showError(texts::processingFailed.toString(), error.message);
    m_recording.file.reset();
    m_neighbours.target.releaseElements();
    logStages();
}

void RecordingSession::endStage(const char* name)
{
    m_stageTimes.ended(name, m_neighbours.clock.uptime());
}

void RecordingSession::logStages() const
{
    qCInfo(log::app).noquote() << "stages:" << m_stageTimes.toString();
}

bool RecordingSession::translates() const
{
    return m_activeOperationMode == OperationMode::Translation;
}

Completion<Result<QString>> RecordingSession::onMainQueue(
    void (RecordingSession::*step)(const Result<QString>&))
{
    auto continueWith =
        m_guard.bind([this, step](const Result<QString>& result) { (this->*step)(result); });
    return [&queue = m_neighbours.mainQueue, continueWith](const Result<QString>& result) {
        queue.post([continueWith, result]() mutable { continueWith(result); });
    };
}

} // namespace tavrin
