#pragma once

#include <QPushButton>

namespace tavrin::ui {

/// A button as the brand draws it.
class Button final : public QPushButton {
    Q_OBJECT

public:
    enum class Look {
        Primary, ///< `stylePrimaryButton`: filled with the accent.
        Secondary, ///< `styleSecondaryButton`: white, with a border.
        SmallSecondary, ///< The same in the font of captions.
        Plain, ///< In a row: a box only under the pointer.
        PlainDelete, ///< The same, red under the pointer.
        Danger, ///< Filled with red.
    };

    /// @param frame from the bottom left of @p parent.
    Button(QWidget& parent, const QRect& frame, const QString& title, Look look);

    /// Without a frame yet: whoever lays it out sets its geometry.
    Button(QWidget& parent, const QString& title, Look look);

    /// Says in place, for a moment, that it was done: @p text in green. The owner calls it again
    /// with an empty one when that is over.
    void setDoneText(const QString& text);

    /// How wide a plain one is for its title.
    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    [[nodiscard]] QFont titleFont() const;
    /// What is drawn: two ampersands in a title stand for one, as a single one marks a shortcut.
    [[nodiscard]] QString shownTitle() const;

    Look m_look;
    QString m_doneText;
};

} // namespace tavrin::ui
