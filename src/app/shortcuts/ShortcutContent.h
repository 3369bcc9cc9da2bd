#pragma once

#include <QString>

#include <array>

namespace tavrin {

/// The six places for a shortcut, two for each operation, and the popups that show them.
enum class ShortcutSlot {
    DictationPrimary, ///< `shortcutPopup`
    DictationSecondary, ///< `dictationSecondaryShortcutPopup`
    TranslationPrimary, ///< `translationShortcutPopup`
    TranslationSecondary, ///< `translationSecondaryShortcutPopup`
    ChatPrimary, ///< `chatShortcutPopup`
    ChatSecondary, ///< `chatSecondaryShortcutPopup`
};

inline constexpr std::array shortcutSlots{ShortcutSlot::DictationPrimary,
    ShortcutSlot::DictationSecondary, ShortcutSlot::TranslationPrimary,
    ShortcutSlot::TranslationSecondary, ShortcutSlot::ChatPrimary, ShortcutSlot::ChatSecondary};

enum class ShortcutStatus {
    NoConflict, ///< Shown in green, sRGB (0.13, 0.52, 0.31, 1).
    Conflict, ///< Shown in the system's orange.
};

/// What the settings page shows of the shortcuts.
struct ShortcutContent {
    /// Of each popup, in the order of shortcutSlots: the row of Settings::ShortcutItems().
    std::array<qsizetype, shortcutSlots.size()> rows{};
    QString instruction; ///< `instructionLabel`
    QString statusText; ///< `shortcutStatusLabel`
    ShortcutStatus status = ShortcutStatus::NoConflict;

    friend bool operator==(const ShortcutContent&, const ShortcutContent&) = default;
};

} // namespace tavrin
