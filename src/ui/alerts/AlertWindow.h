#pragma once

#include "platform/Alerts.h"

#include <QDialog>

#include <functional>

namespace tavrin::ui {

class Button;
class FocusRing;
class TextField;

/// The window of one alert, 432 points wide. Never taller than the screen, however long its texts
/// are: those that do not fit are scrolled.
class AlertWindow final : public QDialog {
    Q_OBJECT

public:
    using Answered = std::function<void(const AlertAnswer&)>;

    /// @p answered is called once, when a button is pressed or the window closed.
    AlertWindow(const Alert& alert, Answered answered);

    void reject() override;

protected:
    void paintEvent(QPaintEvent* event) override;
    bool focusNextPrevChild(bool next) override;

private:
    /// Each takes the top of what it adds, and gives its bottom.
    int addTexts(const Alert& alert, int top);
    int addFields(const Alert& alert, int top);
    int addButtons(const Alert& alert, int top);
    static void placeInRow(const QList<Button*>& buttons, int top);
    void answer(int button);
    void moveToMiddle();

    Answered m_answered;
    QList<TextField*> m_fields;
    FocusRing* m_focusRing =
        nullptr; ///< Null until the keyboard moves: a dialog opens as if by Tab.
    int m_escapeButton;
};

} // namespace tavrin::ui
