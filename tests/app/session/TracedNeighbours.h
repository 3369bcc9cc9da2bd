#pragma once

#include "app/session/CorrectionLearning.h"
#include "app/windows/RecordingHUD.h"
#include "platform/audio/AudioRecorder.h"
#include "support/ports/Note.h"

#include <QStringList>

#include <utility>

/// Neighbours of the session that note what they are told.
namespace tavrin::testing {

class TracedCorrectionLearning final : public CorrectionLearning {
public:
    explicit TracedCorrectionLearning(Note note)
        : m_note(std::move(note))
    {
    }

    void beginCorrectionLearningForInsertedText(const QString& text) override
    {
        m_note(QStringLiteral("begin learning: ") + text);
    }

    void finishCorrectionLearningAndAnalyze(bool analyze) override
    {
        m_note(analyze ? QStringLiteral("finish learning and analyze")
                       : QStringLiteral("finish learning"));
    }

private:
    Note m_note;
};

/// A panel whose buttons the test presses.
class TracedHUD final : public RecordingHUD {
public:
    explicit TracedHUD(Note note)
        : m_note(std::move(note))
    {
    }

    QString operation;
    QString shortcut;
    QStringList transcripts;
    std::weak_ptr<AudioRecorder> recorder;
    std::optional<Seconds> estimate;
    QString reason;
    Handler confirm;
    Handler continueRecording;

    void setOperationName(const QString& name) override
    {
        m_note(QStringLiteral("panel operation ") + name);
        operation = name;
    }

    void setOperationShortcutName(const QString& name) override
    {
        m_note(QStringLiteral("panel shortcut ") + name);
        shortcut = name;
    }

    void showRecordingWithRecorder(std::weak_ptr<AudioRecorder> shownRecorder) override
    {
        m_note(QStringLiteral("panel recording"));
        recorder = std::move(shownRecorder);
    }

    void updateTranscript(const QString& text) override { transcripts.append(text); }

    void showProcessingWithEstimate(std::optional<Seconds> shownEstimate) override
    {
        m_note(QStringLiteral("panel processing"));
        estimate = shownEstimate;
    }

    void showSuccess() override { m_note(QStringLiteral("panel success")); }

    void showClipboardFallbackWithReason(const QString& shownReason) override
    {
        m_note(QStringLiteral("panel clipboard: ") + shownReason);
        reason = shownReason;
    }

    void showCancelConfirmationWithConfirm(
        Handler shownConfirm, Handler shownContinueRecording) override
    {
        m_note(QStringLiteral("panel cancel?"));
        confirm = std::move(shownConfirm);
        continueRecording = std::move(shownContinueRecording);
    }

    void hide() override { m_note(QStringLiteral("panel hide")); }

private:
    Note m_note;
};

} // namespace tavrin::testing
