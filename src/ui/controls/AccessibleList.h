#pragma once

class QWidget;

namespace tavrin::ui {

/// Tells screen readers that @p widget is a list of what stands in it: a scroll area is nothing to
/// them otherwise. To be called before anything else is told of it.
void setAccessibleList(QWidget& widget);

} // namespace tavrin::ui
