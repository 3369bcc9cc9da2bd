#pragma once

#include <QAccessible>
#include <QWidget>

namespace tavrin::testing {

/// Does what a screen reader does with @p control when its user wants it pressed: the first action
/// that it names. Whether there was one.
inline bool pressByScreenReader(QWidget& control)
{
    QAccessibleInterface* const accessible = QAccessible::queryAccessibleInterface(&control);
    QAccessibleActionInterface* const actions =
        accessible ? accessible->actionInterface() : nullptr;
    if (!actions || actions->actionNames().isEmpty())
        return false;
    actions->doAction(actions->actionNames().first());
    return true;
}

} // namespace tavrin::testing
