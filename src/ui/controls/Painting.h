#pragma once

#include <QColor>
#include <QRectF>

class QPainter;
class QWidget;

namespace tavrin::ui {

/// A box with round corners: @p border lies inside @p frame, `width` points wide; none when it is
/// not valid.
struct Box {
    double radius = 0;
    QColor fill;
    QColor border{};
    double borderWidth = 1;
};

void drawBox(QPainter& painter, const QRectF& frame, const Box& box);

/// A soft shadow of a box of this radius at @p frame.
struct Shadow {
    QColor color;
    int blur = 12; ///< Standard deviation of the Gaussian, in points.
    int down = 2; ///< By how many points it lies lower than the box.
};

/// `styleCard`: what lies below every card.
[[nodiscard]] Shadow cardShadow();

/// Below the selected button of the sidebar.
[[nodiscard]] Shadow selectionShadow();

/// Draws the shadow alone: outside of the box and below its corners, the rest is covered by the
/// box. The picture of one size is kept and stretched.
void drawShadow(QPainter& painter, const QRect& frame, int radius, const Shadow& shadow);

} // namespace tavrin::ui
