#pragma once

#include "app/windows/RecordingHUD.h"
#include "base/CallbackGuard.h"
#include "ui/hud/HudContent.h"

#include <QString>

#include <memory>

namespace tavrin {

class AudioRecorder;
class Clock;
class Localization;
class MainQueue;
class Settings;
class Timer;

namespace hud {
class Panel;
}

/// Drives the recording panel: its texts, its timer and its movement. Main thread only.
class HudController final : public RecordingHUD {
public:
    struct Neighbours {
        hud::Panel& panel;
        const Clock& clock;
        MainQueue& mainQueue;
        const Localization& localization;
        Settings& settings;
    };

    /// The neighbours must outlive it. The panel stays hidden.
    explicit HudController(const Neighbours& neighbours);
    ~HudController() override;

    HudController(const HudController&) = delete;
    HudController& operator=(const HudController&) = delete;

    void setOperationName(const QString& name) override;
    void setOperationShortcutName(const QString& name) override;
    void showRecordingWithRecorder(std::weak_ptr<AudioRecorder> recorder) override;
    void updateTranscript(const QString& text) override;

    /// Processing without an estimate.
    void showProcessing();
    void showProcessingWithEstimate(std::optional<Seconds> estimate) override;
    void showSuccess() override;
    void showClipboardFallbackWithReason(const QString& reason) override;
    void showCancelConfirmationWithConfirm(Handler confirm, Handler continueRecording) override;
    void hide() override;

private:
    struct PhaseTexts;

    [[nodiscard]] const PhaseTexts& phaseTexts() const;
    void start(Seconds interval);
    void updateMeter();
    void tellThatRecordingBrokeOff(const QString& reason);
    void confirmCancellation();
    void continueAfterCancelPrompt();
    void callOnce(Handler& handler);
    void show();

    struct Operation {
        QString operationName;
        QString operationShortcutName;
    };

    struct Phase {
        bool processing = false;
        bool brokenOff = false; // The recorder has failed, and the panel says so.
        Seconds startedAt{0}; // Uptime.
        Seconds estimatedDuration{0}; // 0 for none.
    };

    struct CancelPrompt {
        Handler confirmCancelHandler;
        Handler continueHandler;
    };

    Neighbours m_neighbours;
    Operation m_operation;
    Phase m_phase;
    CancelPrompt m_cancelPrompt;
    hud::Content m_content;
    std::weak_ptr<AudioRecorder> m_recorder; // Empty while processing.
    std::unique_ptr<Timer> m_timer;
    CallbackGuard m_guard;
};

} // namespace tavrin
