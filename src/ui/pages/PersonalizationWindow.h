#pragma once

#include "app/pages/PersonalizationContent.h"

#include <QWidget>

class QTextEdit;

namespace tavrin {
class PersonalizationController;
} // namespace tavrin

namespace tavrin::ui {

class Popup;

/// The window that asks how the user likes texts to be written. Hidden until it is brought to the
/// front; closing hides it. Its texts are in Simplified Chinese for everybody.
class PersonalizationWindow final : public QWidget, public PersonalizationView {
    Q_OBJECT

public:
    /// @param controller must outlive the window.
    explicit PersonalizationWindow(PersonalizationController& controller);
    ~PersonalizationWindow() override;

    PersonalizationWindow(const PersonalizationWindow&) = delete;
    PersonalizationWindow& operator=(const PersonalizationWindow&) = delete;

    void setContent(const PersonalizationContent& content) override;
    void bringToFront() override;

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void addTone();
    void addSample();
    void addSave();

    PersonalizationController& m_controller;
    Popup* m_tonePopup = nullptr;
    QTextEdit* m_styleSampleTextView = nullptr;
    bool m_isShowing = false; ///< What changes now comes from the controller.
};

} // namespace tavrin::ui
