#include "ui/controls/ListKeys.h"

#include <Qt>

namespace tavrin::ui {

std::optional<qsizetype> rowAtKey(int key, qsizetype current, qsizetype count,
    const std::function<qsizetype(int pages)>& pagesAway)
{
    switch (key) {
    case Qt::Key_Up:
        return current - 1;
    case Qt::Key_Down:
        return current + 1;
    case Qt::Key_PageUp:
        return pagesAway(-1);
    case Qt::Key_PageDown:
        return pagesAway(1);
    case Qt::Key_Home:
        return 0;
    case Qt::Key_End:
        return count - 1;
    default:
        return std::nullopt;
    }
}

} // namespace tavrin::ui
