#pragma once

#include "platform/StatusItem.h"

class QMenu;

namespace tavrin {

/// Makes @p menu show @p items. Entries that stay what they are (an action, a submenu, a separator)
/// are changed in place, so that an open menu stays open.
void updateMenu(QMenu& menu, const QList<MenuItem>& items);

} // namespace tavrin
