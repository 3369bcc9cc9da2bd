#include "ui/hud/HudController.h"

#include "app/settings/Localization.h"
#include "app/settings/Settings.h"
#include "platform/Clock.h"
#include "platform/MainQueue.h"
#include "platform/audio/AudioRecorder.h"
#include "ui/hud/HudPanel.h"
#include "ui/hud/HudTexts.h"

#include <algorithm>
#include <cmath>
#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tavrin {
namespace {

constexpr Seconds recordingInterval = 100ms;
constexpr Seconds processingInterval = 60ms;
constexpr Seconds clipboardNoticeDuration = 3500ms;

} // namespace

/// What an operation says while it listens and while it works.
struct HudController::PhaseTexts {
    LocalizedText listening;
    LocalizedText processing;
    LocalizedText processingDetail;
};

const HudController::PhaseTexts& HudController::phaseTexts() const
{
    static constexpr PhaseTexts dictation{
        texts::listeningDictation, texts::editingText, texts::editingTextDetail};
    static constexpr PhaseTexts translation{
        texts::listeningTranslation, texts::translating, texts::translatingDetail};
    static constexpr PhaseTexts chat{
        texts::listeningChat, texts::answering, texts::answeringDetail};
    if (m_operation.operationName == "translation"_L1)
        return translation;
    return m_operation.operationName == "chat"_L1 ? chat : dictation;
}

HudController::HudController(const Neighbours& neighbours)
    : m_neighbours(neighbours)
{
    const Localization& localization = m_neighbours.localization;
    m_content.titleLabel = texts::initialTitle.toString();
    m_content.detailLabel = texts::initialDetail.toString().arg(
        localization.withKeyNames(m_neighbours.settings.ShortcutDisplayName()));
    m_content.timeLabel = hud::recordingTime(0s);
    m_content.transcriptLabel = texts::initialTranscript.toString();
    m_neighbours.panel.setActions(m_guard.bind([this] { confirmCancellation(); }),
        m_guard.bind([this] { continueAfterCancelPrompt(); }));
    m_neighbours.panel.setContent(m_content);
}

HudController::~HudController() = default;

void HudController::setOperationName(const QString& name)
{
    m_operation.operationName = name;
}

void HudController::setOperationShortcutName(const QString& name)
{
    m_operation.operationShortcutName = name;
}

void HudController::showRecordingWithRecorder(std::weak_ptr<AudioRecorder> recorder)
{
    m_timer.reset();
    m_recorder = std::move(recorder);
    m_phase.processing = false;
    m_phase.brokenOff = false;
    m_phase.startedAt = m_neighbours.clock.uptime();

    const Localization& localization = m_neighbours.localization;
    const QString shortcut = m_operation.operationShortcutName.isEmpty()
        ? m_neighbours.settings.ShortcutDisplayName()
        : m_operation.operationShortcutName;
    m_content = {};
    m_content.dot = hud::Dot::Recording;
    m_content.titleLabel = localization.LT(phaseTexts().listening);
    m_content.detailLabel =
        localization.LT(texts::pressAgainToFinish, localization.withKeyNames(shortcut));
    m_content.timeLabel = hud::recordingTime(0s);
    m_content.transcriptLabel = localization.LT(texts::waitingForSpeech);
    m_content.bars = hud::waveBars(0s, hud::barLevel(0));
    show();
    start(recordingInterval);
}

void HudController::updateTranscript(const QString& text)
{
    if (text.isEmpty() || m_phase.brokenOff)
        return;
    m_content.transcriptLabel = text;
    m_neighbours.panel.setContent(m_content);
}

void HudController::showProcessing()
{
    showProcessingWithEstimate(std::nullopt);
}

void HudController::showProcessingWithEstimate(std::optional<Seconds> estimate)
{
    m_timer.reset();
    m_phase.processing = true;
    m_phase.estimatedDuration = std::max(estimate.value_or(0s), Seconds(0));
    m_recorder.reset();
    m_phase.startedAt = m_neighbours.clock.uptime();

    const bool estimated = m_phase.estimatedDuration > 0s;
    m_content = {};
    m_content.dot = hud::Dot::Processing;
    m_content.titleLabel = m_neighbours.localization.LT(phaseTexts().processing);
    m_content.detailLabel = estimated ? texts::estimatedDuration.toString().arg(
                                std::ceil(m_phase.estimatedDuration.count()), 0, 'f', 0)
                                      : texts::noEstimate.toString();
    m_content.transcriptLabel = m_neighbours.localization.LT(phaseTexts().processingDetail);
    m_content.bars = hud::staircaseBars();
    m_content.progressVisible = true;
    m_content.progressIndeterminate = !estimated;
    m_content.progress = estimated ? hud::progressValue(0s, m_phase.estimatedDuration) : 0;
    show();
    start(processingInterval);
}

void HudController::showSuccess()
{
    hide();
}

void HudController::showCancelConfirmationWithConfirm(Handler confirm, Handler continueRecording)
{
    m_timer.reset();
    m_cancelPrompt.confirmCancelHandler = std::move(confirm);
    m_cancelPrompt.continueHandler = std::move(continueRecording);

    m_content.takesMouse = true;
    m_content.dot = hud::Dot::Attention;
    m_content.titleLabel = texts::cancelQuestion.toString();
    m_content.detailLabel = texts::cancelDetail.toString();
    m_content.transcriptLabel = texts::cancelHint.toString();
    m_content.timeLabel = texts::cancelTime.toString();
    m_content.barsVisible = false;
    m_content.buttonsVisible = true;
    show();
}

void HudController::showClipboardFallbackWithReason(const QString& reason)
{
    m_timer.reset();
    const Localization& localization = m_neighbours.localization;
    m_content.progressVisible = false;
    m_content.dot = hud::Dot::Attention;
    m_content.titleLabel = texts::pasteUnconfirmed.toString();
    m_content.detailLabel =
        reason.isEmpty() ? localization.withKeyNames(texts::textOnPasteboard.toString()) : reason;
    m_content.transcriptLabel = texts::nothingLost.toString();
    m_content.timeLabel = localization.withKeyNames(texts::pasteShortcut.toString());
    m_content.barsVisible = false;
    show();
    // Not cancelled by what is shown meanwhile: the notice's time ends whatever stands there then.
    m_neighbours.mainQueue.callLater(clipboardNoticeDuration, m_guard.bind([this] { hide(); }));
}

void HudController::hide()
{
    m_timer.reset();
    m_content.progressVisible = false;
    m_content.takesMouse = false;
    m_content.buttonsVisible = false;
    m_cancelPrompt = {};
    m_neighbours.panel.setContent(m_content);
    m_neighbours.panel.orderOut();
}

void HudController::start(Seconds interval)
{
    m_timer = m_neighbours.mainQueue.every(interval, m_guard.bind([this] { updateMeter(); }));
}

void HudController::updateMeter()
{
    double power = 0;
    if (const auto recorder = m_recorder.lock()) {
        recorder->updateMeters();
        power = static_cast<double>(recorder->averagePower(0));
        if (const QString reason = recorder->failure().message; !reason.isEmpty())
            tellThatRecordingBrokeOff(reason);
    }
    const Seconds elapsed = m_neighbours.clock.uptime() - m_phase.startedAt;
    if (!m_phase.processing) {
        if (!m_phase.brokenOff) // What is no longer recorded takes no time.
            m_content.timeLabel = hud::recordingTime(elapsed);
    } else if (m_phase.estimatedDuration > 0s) {
        m_content.timeLabel = hud::remainingTime(elapsed, m_phase.estimatedDuration);
        m_content.progress = hud::progressValue(elapsed, m_phase.estimatedDuration);
    }
    m_content.lightX = hud::lightX(elapsed, m_phase.processing);
    m_content.bars = hud::waveBars(elapsed, hud::barLevel(hud::levelForPower(power)));
    m_neighbours.panel.setContent(m_content);
}

/// So that nobody talks on to nobody. What was said until then is kept for the end.
void HudController::tellThatRecordingBrokeOff(const QString& reason)
{
    m_phase.brokenOff = true;
    m_content.dot = hud::Dot::Attention;
    m_content.transcriptLabel = reason;
}

void HudController::confirmCancellation()
{
    callOnce(m_cancelPrompt.confirmCancelHandler);
}

void HudController::continueAfterCancelPrompt()
{
    callOnce(m_cancelPrompt.continueHandler);
}

void HudController::callOnce(Handler& handler)
{
    const Handler taken = std::exchange(handler, nullptr);
    m_cancelPrompt = {};
    if (taken)
        taken();
}

void HudController::show()
{
    m_neighbours.panel.setContent(m_content);
    m_neighbours.panel.positionAndShow();
}

} // namespace tavrin
