#pragma once

#include <QScrollBar>

namespace tavrin::ui {

/// A slim bar at the right edge of a list: 6 points wide, no arrows.
class ScrollBar final : public QScrollBar {
    Q_OBJECT

public:
    explicit ScrollBar(QWidget* parent);

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    [[nodiscard]] QRectF handle() const;

    int m_grabbedAt = -1; ///< Where in the handle, in points from its top; -1: not at all.
};

} // namespace tavrin::ui
