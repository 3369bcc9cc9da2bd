#pragma once

#include "app/shortcuts/ShortcutKeys.h"

#include <QList>

namespace tavrin {

class HotKeyProbe;
class Settings;

/// The combinations that the user has chosen and another program holds, in the order of
/// `spaceShortcuts`. Asks the desktop for each that is chosen.
[[nodiscard]] QList<SpaceShortcut> takenShortcuts(Settings& settings, HotKeyProbe& probe);

} // namespace tavrin
