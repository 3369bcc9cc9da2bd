#include "app/shortcuts/ShortcutConflicts.h"

#include "app/settings/Settings.h"
#include "platform/keyboard/HotKeyProbe.h"

#include <algorithm>
#include <iterator>

namespace tavrin {

QList<SpaceShortcut> takenShortcuts(Settings& settings, HotKeyProbe& probe)
{
    const QStringList chosen = settings.DictationShortcutIdentifiers()
        + settings.TranslationShortcutIdentifiers() + settings.ChatShortcutIdentifiers();
    QList<SpaceShortcut> taken;
    std::ranges::copy_if(
        spaceShortcuts, std::back_inserter(taken), [&](const SpaceShortcut& shortcut) {
            return chosen.contains(shortcut.identifier)
                && !probe.isAvailable(key_codes::space, shortcut.modifiers);
        });
    return taken;
}

} // namespace tavrin
