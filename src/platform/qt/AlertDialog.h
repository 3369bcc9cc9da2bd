#pragma once

#include "platform/Alerts.h"

#include <QDialog>

#include <functional>

class QDialogButtonBox;
class QLineEdit;
class QVBoxLayout;

namespace tavrin {

/// The window of one alert. Never larger than the screen, however long its texts are.
class AlertDialog final : public QDialog {
public:
    using Answered = std::function<void(const AlertAnswer&)>;

    /// @p answered is called once, when a button is pressed or the window closed.
    AlertDialog(const Alert& alert, Answered answered);

    void reject() override;

private:
    void addTexts(const Alert& alert, QVBoxLayout& column);
    void addFields(const Alert& alert, QVBoxLayout& column);
    void addButtons(const Alert& alert);
    void answer(int button);
    void moveToMiddle();

    Answered m_answered;
    QDialogButtonBox* m_buttonBox;
    QList<QLineEdit*> m_fields;
    int m_escapeButton;
};

} // namespace tavrin
