#pragma once

#include "platform/keyboard/KeyMonitor.h"

#include <QString>

#include <algorithm>
#include <array>

namespace tavrin {

/// The modifiers that tell shortcuts apart; all others, such as Caps Lock, are ignored.
inline constexpr KeyModifiers shortcutModifiers = KeyModifiers(KeyModifier::Shift)
    | KeyModifier::Control | KeyModifier::Option | KeyModifier::Command;

/// A shortcut that is the space bar pressed with exactly these modifiers.
struct SpaceShortcut {
    QStringView identifier;
    KeyModifiers modifiers;
};

inline constexpr std::array spaceShortcuts{
    SpaceShortcut{u"optionSpace", KeyModifier::Option},
    SpaceShortcut{u"controlOptionSpace", KeyModifiers(KeyModifier::Control) | KeyModifier::Option},
    SpaceShortcut{u"commandShiftSpace", KeyModifiers(KeyModifier::Command) | KeyModifier::Shift},
};

/// The shortcut of the space bar with @p modifiers; null when there is none.
[[nodiscard]] inline QString spaceShortcutIdentifier(KeyModifiers modifiers)
{
    const auto* const found =
        std::ranges::find(spaceShortcuts, modifiers, &SpaceShortcut::modifiers);
    return found == spaceShortcuts.end() ? QString() : found->identifier.toString();
}

} // namespace tavrin
