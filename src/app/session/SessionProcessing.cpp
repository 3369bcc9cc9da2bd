#include "app/session/SessionProcessing.h"

#include "app/notices/ErrorAlert.h"
#include "app/session/CorrectionLearning.h"
#include "app/session/ProcessingTimeEstimator.h"
#include "app/session/SessionMessages.h"
#include "app/session/SessionTexts.h"
#include "app/session/SoundEffects.h"
#include "app/session/StageTimes.h"
#include "app/settings/Settings.h"
#include "app/windows/RecordingHUD.h"
#include "audio/AudioEnvironment.h"
#include "base/Log.h"
#include "cloud/TavrinAPI.h"
#include "delivery/TargetContext.h"
#include "delivery/TextDelivery.h"
#include "history/HistoryStore.h"
#include "platform/Clock.h"
#include "platform/MainQueue.h"
#include "platform/preferences/PreferenceKeys.h"
#include "platform/preferences/Preferences.h"
#include "speech/SystemTranscriber.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace tavrin {

SessionProcessing::SessionProcessing(Neighbours neighbours)
    : m_neighbours(std::move(neighbours))
{
}

void SessionProcessing::process(FinishedRecording recording, std::function<void()> ended)
{
    const Seconds duration = recording.duration;
    Running& running = m_running.emplace(Running{
        std::move(recording), std::move(ended), m_neighbours.clock.uptime(), {}, {}, {}, {}});
    m_neighbours.hud.showProcessingWithEstimate(
        m_neighbours.estimator.estimatedProcessingDurationForAudio(duration));
    m_neighbours.sounds.playSoundNamed(u"stop"_s);

    running.style = m_neighbours.settings.OutputStyle();
    running.application = m_neighbours.target.applicationContext();
    running.translationTarget =
        translates() ? m_neighbours.settings.TranslationTarget() : u"none"_s;
    m_neighbours.transcriber.transcribe(
        running.recording.file.audioURL(), onMainQueue(&SessionProcessing::transcribed));
    endStage("stop");
}

void SessionProcessing::transcribed(const Result<QString>& transcript)
{
    endStage("recogniser");
    if (!transcript) {
        // A recording that broke off explains why nothing was understood.
        const Error& failure = m_running->recording.failure;
        finishWithError(failure.message.isEmpty() ? transcript.error() : failure);
        return;
    }
    m_running->transcript = *transcript;
    if (m_running->recording.mode == OperationMode::Chat) {
        m_neighbours.api.chat(*transcript, chatContext(m_running->application),
            onMainQueue(&SessionProcessing::rewritten));
        return;
    }
    m_neighbours.api.polish(*transcript,
        QJsonObject::fromVariantMap(m_running->application.toVariantMap()), m_running->style,
        m_running->translationTarget, onMainQueue(&SessionProcessing::rewritten));
}

void SessionProcessing::rewritten(const Result<QString>& text)
{
    endStage("service");
    if (text)
        deliver(*text);
    else if (m_running->recording.mode == OperationMode::Dictation)
        deliver(m_running->transcript); // Dictation never loses words to a failing service.
    else
        finishWithError(text.error());
}

void SessionProcessing::deliver(const QString& text)
{
    m_neighbours.delivery.pasteText(text,
        m_guard.bind([this, text](const DeliveryOutcome& outcome) { delivered(text, outcome); }));
}

void SessionProcessing::delivered(const QString& text, const DeliveryOutcome& outcome)
{
    endStage("delivery");
    const Seconds audio = m_running->recording.duration;
    const Seconds processing = m_neighbours.clock.uptime() - m_running->processingStartedAt;
    m_neighbours.estimator.recordProcessingDuration(processing, audio);
    m_running->ended();
    storeOutcome(outcome);
    m_neighbours.saveHistoryTranscript({
        .transcript = m_running->transcript,
        .finalText = text,
        .delivery = historyDelivery(outcome),
        .mode = operationName(m_running->recording.mode),
        .targetLanguage = translates() ? m_running->translationTarget : QString(),
        .audio = audio,
        .processing = processing,
        .application = m_running->application.toVariantMap(),
    });
    announce(text, outcome);
    release();
    endStage("closing");
    qCInfo(log::app).noquote() << "stages:" << m_neighbours.stageTimes.toString();
}

void SessionProcessing::storeOutcome(const DeliveryOutcome& outcome)
{
    Preferences& preferences = m_neighbours.preferences;
    preferences.setValue(keys::lastDeliveryVerified, outcome.verified);
    preferences.setValue(
        keys::lastDeliveryReason, outcome.reason.isNull() ? u""_s : outcome.reason);
    preferences.synchronize();
    m_neighbours.refreshHealthStatus();
}

void SessionProcessing::announce(const QString& text, const DeliveryOutcome& outcome)
{
    if (outcome.verified) {
        if (m_running->recording.mode != OperationMode::Chat)
            m_neighbours.correctionLearning.beginCorrectionLearningForInsertedText(text);
        m_neighbours.hud.showSuccess();
        m_neighbours.sounds.playSoundNamed(u"success"_s);
        return;
    }
    m_neighbours.hud.showClipboardFallbackWithReason(
        clipboardNotice(outcome, m_neighbours.localization));
    m_neighbours.sounds.playSoundNamed(u"error"_s);
}

void SessionProcessing::finishWithError(const Error& error)
{
    const QString message = error.message; // It may be the recording's own.
    m_neighbours.audioEnvironment.restoreAudioEnvironment();
    m_running->ended();
    m_neighbours.hud.hide();
    m_neighbours.errorAlert.showError(texts::processingFailed.toString(), message);
    release();
    qCInfo(log::app).noquote() << "stages:" << m_neighbours.stageTimes.toString();
}

/// The recording is deleted, and the target let go.
void SessionProcessing::release()
{
    m_running.reset();
    m_neighbours.target.releaseElements();
}

void SessionProcessing::endStage(const char* name)
{
    m_neighbours.stageTimes.ended(name, m_neighbours.clock.uptime());
}

bool SessionProcessing::translates() const
{
    return m_running->recording.mode == OperationMode::Translation;
}

Completion<Result<QString>> SessionProcessing::onMainQueue(
    void (SessionProcessing::*step)(const Result<QString>&))
{
    return tavrin::onMainQueue(m_neighbours.mainQueue,
        m_guard.bind([this, step](const Result<QString>& result) { (this->*step)(result); }));
}

} // namespace tavrin
