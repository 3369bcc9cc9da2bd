#include "app/session/RecordingSession.h"

#include "app/menu/StatusMenu.h"
#include "app/notices/ErrorAlert.h"
#include "app/session/CorrectionLearning.h"
#include "app/session/SessionProcessing.h"
#include "app/session/SessionTexts.h"
#include "app/session/SoundEffects.h"
#include "app/session/StageTimes.h"
#include "app/settings/Localization.h"
#include "app/settings/OperationShortcut.h"
#include "app/windows/AccountPanel.h"
#include "app/windows/RecordingHUD.h"
#include "audio/AudioEnvironment.h"
#include "base/Log.h"
#include "cloud/StoredSession.h"
#include "delivery/TargetContext.h"
#include "platform/Alerts.h"
#include "platform/Clock.h"
#include "platform/DesktopTexts.h"
#include "platform/MainQueue.h"
#include "platform/audio/AudioRecorder.h"
#include "speech/LiveTranscriber.h"

#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tavrin {
namespace {

/// Lets the start sound be heard before the output is silenced.
constexpr Seconds muteDelay = 220ms;

} // namespace

RecordingSession::RecordingSession(const Neighbours& neighbours)
    : m_neighbours(neighbours)
{
}

RecordingSession::~RecordingSession() = default;

void RecordingSession::toggleOperationMode(OperationMode mode)
{
    if (m_state == SessionState::Idle) {
        m_activeOperationMode = mode;
        startRecording();
        return;
    }
    const bool finishes = m_state == SessionState::Recording && !m_recording.cancellationPending
        && mode == m_activeOperationMode;
    if (finishes)
        finishRecording();
    else
        m_neighbours.alerts.beep();
}

void RecordingSession::startRecording()
{
    if (!hasCloudSession(m_neighbours.preferences)) {
        m_neighbours.accountPanel.showLoginDialog();
        return;
    }
    m_neighbours.stageTimes.begin(m_neighbours.clock.uptime());
    m_neighbours.correctionLearning.finishCorrectionLearningAndAnalyze(true);
    m_neighbours.target.capture();
    m_recording.cancellationPending = false;
    m_neighbours.audioEnvironment.applyPreferredMicrophoneForRecording();

    if (const Result<void> started = startRecorder(); !started) {
        m_recording = {};
        m_neighbours.audioEnvironment.restoreAudioEnvironment();
        const QString& reason = started.error().message;
        const QString advice = m_neighbours.localization.desktopText(
            &DesktopTexts::checkMicrophonePermission, texts::checkMicrophonePermission);
        m_neighbours.errorAlert.showError(
            texts::cannotStartRecording.toString(), reason.isEmpty() ? advice : reason);
        return;
    }
    setState(SessionState::Recording);
    m_neighbours.hud.setOperationName(operationName(m_activeOperationMode));
    m_neighbours.hud.setOperationShortcutName(
        firstShortcutName(m_neighbours.settings, m_activeOperationMode));
    showRecording();
    m_neighbours.sounds.playSoundNamed(u"start"_s);
    m_muteTimer = m_neighbours.mainQueue.after(muteDelay, m_guard.bind([this] {
        m_neighbours.audioEnvironment.muteSystemAudioForRecordingIfNeeded();
    }));
    endStage("start");
}

Result<void> RecordingSession::startRecorder()
{
    m_recording.file.emplace(m_neighbours.systemInfo, m_neighbours.background);
    auto recorder =
        m_neighbours.audioRecorders.createRecorder(m_recording.file->audioURL(), recordingSettings);
    if (!recorder)
        return failure(recorder.error());
    m_recording.recorder = std::move(*recorder);
    m_recording.recorder->setMeteringEnabled(true);
    if (!m_recording.recorder->prepareToRecord() || !m_recording.recorder->record())
        return failure(m_recording.recorder->failure());
    return {};
}

void RecordingSession::showRecording()
{
    m_neighbours.hud.showRecordingWithRecorder(m_recording.recorder);
    // Without live text the recording is as good: whatever the reason is, it goes on.
    static_cast<void>(m_neighbours.liveTranscriber.startWithUpdate(
        m_guard.bind([this](const QString& text) { m_neighbours.hud.updateTranscript(text); })));
}

void RecordingSession::handleEscape()
{
    if (m_state != SessionState::Recording)
        return;
    if (m_recording.cancellationPending) {
        cancelCurrentRecording();
        return;
    }
    m_recording.cancellationPending = true;
    m_recording.recorder->pause();
    m_neighbours.liveTranscriber.stop();
    m_neighbours.hud.showCancelConfirmationWithConfirm(
        m_guard.bind([this] { cancelCurrentRecording(); }),
        m_guard.bind([this] { continueCurrentRecording(); }));
}

void RecordingSession::cancelCurrentRecording()
{
    if (m_state != SessionState::Recording)
        return;
    m_recording.cancellationPending = false;
    static_cast<void>(stopRecording());
    std::optional<RecordingFile> audioFile = std::exchange(m_recording.file, std::nullopt);
    m_neighbours.target.clear();
    setState(SessionState::Idle);
    m_neighbours.hud.hide();
    audioFile.reset();
    m_neighbours.sounds.playSoundNamed(u"cancel"_s);
}

void RecordingSession::continueCurrentRecording()
{
    if (m_state != SessionState::Recording)
        return;
    m_recording.cancellationPending = false;
    // One that cannot go on has a failure(), which the panel shows: what was said is still there.
    if (!m_recording.recorder->record())
        qCWarning(log::app) << "a recording cannot go on";
    showRecording();
}

void RecordingSession::finishRecording()
{
    endStage("recording");
    m_recording.cancellationPending = false;
    const Seconds duration = m_recording.recorder->currentTime();
    Error failure = stopRecording();
    setState(SessionState::Processing);
    m_neighbours.processing.process(
        {
            .mode = m_activeOperationMode,
            .file = *std::exchange(m_recording.file, std::nullopt),
            .duration = duration,
            .failure = std::move(failure),
        },
        m_guard.bind([this] { setState(SessionState::Idle); }));
}

Error RecordingSession::stopRecording()
{
    m_neighbours.liveTranscriber.stop();
    m_recording.recorder->stop();
    Error failure = m_recording.recorder->failure();
    m_recording.recorder.reset();
    m_neighbours.audioEnvironment.restoreAudioEnvironment();
    return failure;
}

void RecordingSession::endStage(const char* name)
{
    m_neighbours.stageTimes.ended(name, m_neighbours.clock.uptime());
}

void RecordingSession::setState(SessionState state)
{
    m_state = state;
    updateUI();
}

void RecordingSession::updateUI()
{
    m_neighbours.statusMenu.updateUI(m_state, m_activeOperationMode);
}

} // namespace tavrin
