#pragma once

#include "ui/hud/HudPanel.h"

#include <QWidget>

#include <functional>

class QPushButton;

namespace tavrin {
class Workspace;
}

namespace tavrin::hud {

/// The recording panel as a window of its own: above all others, on every desktop, in no task list,
/// and never with the keyboard focus.
class Widget final : public QWidget, public Panel {
public:
    /// @param workspace says which screen the user works on, and whether windows may have
    /// transparent corners at the moment; where not, the corners are cut off instead.
    explicit Widget(const Workspace& workspace);

    void setActions(
        std::function<void()> confirm, std::function<void()> continueRecording) override;
    void setContent(const Content& content) override;
    void positionAndShow() override;
    void orderOut() override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void setButtonsVisible(bool visible);
    void addButtons();
    [[nodiscard]] QPushButton* addButton(const QString& title, const QRectF& frame);
    void paintTexts(QPainter& painter) const;
    void paintTrack(QPainter& painter) const;
    void paintProgress(QPainter& painter, const QRectF& track) const;

    const Workspace& m_workspace;
    Content m_content;
    std::function<void()> m_confirm;
    std::function<void()> m_continue;
    // Children; null until they are first needed: their style sheets take time to read.
    QPushButton* m_continueButton = nullptr;
    QPushButton* m_confirmButton = nullptr;
};

} // namespace tavrin::hud
