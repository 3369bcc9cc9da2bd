#pragma once

#include "app/settings/Settings.h"
#include "app/vocabulary/OperationMode.h"

namespace tavrin {

/// The name of the first shortcut of @p mode; "Not set" when it has none.
[[nodiscard]] inline QString firstShortcutName(Settings& settings, OperationMode mode)
{
    if (mode == OperationMode::Dictation)
        return settings.ShortcutDisplayName();
    const QStringList identifiers = mode == OperationMode::Translation
        ? settings.TranslationShortcutIdentifiers()
        : settings.ChatShortcutIdentifiers();
    return settings.ShortcutDisplayNameForIdentifier(identifiers.value(0, QStringLiteral("none")));
}

} // namespace tavrin
