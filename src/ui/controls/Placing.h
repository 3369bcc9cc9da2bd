#pragma once

#include <QRect>
#include <QWidget>

namespace tavrin::ui {

/// A frame whose origin is the bottom left corner of a container of this height, in the coordinates
/// of widgets. In points.
[[nodiscard]] inline QRect flipped(const QRect& frame, int containerHeight)
{
    return {frame.x(), containerHeight - frame.y() - frame.height(), frame.width(), frame.height()};
}

/// Puts @p widget at @p frame, counted from the bottom left of its parent, which has its size.
inline void place(QWidget& widget, const QRect& frame)
{
    widget.setGeometry(flipped(frame, widget.parentWidget()->height()));
}

} // namespace tavrin::ui
