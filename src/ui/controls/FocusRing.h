#pragma once

#include <QPointer>
#include <QWidget>

namespace tavrin::ui {

/// Whether a key has moved the focus, not the mouse or the program.
[[nodiscard]] bool isByKeyboard(Qt::FocusReason reason);

/// The ring around the control that has the keyboard, once the keyboard has moved there. Controls
/// that show it themselves have none. One for each window, above all that it holds.
class FocusRing final : public QWidget {
    Q_OBJECT

public:
    explicit FocusRing(QWidget& window);

    /// A control that draws its own ring (fields, rows), or wants another radius than 10 points.
    static void setRadius(QWidget& control, double radius);
    static void setInside(QWidget& control); ///< For controls without room around them.
    static void setNone(QWidget& control);

    bool eventFilter(QObject* watched, QEvent* event) override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void follow(QWidget* control);
    void updatePlace();

    QPointer<QWidget> m_control;
    bool m_keyboard = false; ///< The focus was last moved by a key.
};

} // namespace tavrin::ui
