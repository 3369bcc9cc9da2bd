#pragma once

#include "platform/keyboard/KeyNames.h"

namespace tavrin {

/// The keys by the names on a PC keyboard: "Right Alt", "Ctrl+V", "Shift+Super+Space".
[[nodiscard]] inline KeyNames linuxKeyNames()
{
    // "⌘V" is the paste shortcut and therefore Ctrl; everywhere else "⌘" is the key itself. The
    // space between symbols and key goes with the last symbol, hence the longer forms first.
    return KeyNames{{
        {QStringLiteral("⌘V"), QStringLiteral("Ctrl+V")},
        {QStringLiteral("⌃ "), QStringLiteral("Ctrl+")},
        {QStringLiteral("⌥ "), QStringLiteral("Alt+")},
        {QStringLiteral("⇧ "), QStringLiteral("Shift+")},
        {QStringLiteral("⌘ "), QStringLiteral("Super+")},
        {QStringLiteral("⌃"), QStringLiteral("Ctrl+")},
        {QStringLiteral("⌥"), QStringLiteral("Alt+")},
        {QStringLiteral("⇧"), QStringLiteral("Shift+")},
        {QStringLiteral("⌘"), QStringLiteral("Super+")},
        {QStringLiteral("Option"), QStringLiteral("Alt")},
    }};
}

} // namespace tavrin
