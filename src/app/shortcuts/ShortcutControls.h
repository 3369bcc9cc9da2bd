#pragma once

#include <QtGlobal>

#include <array>

class QString;

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

/// The controls of the settings page that show the shortcuts: the six popups, each listing
/// Settings::ShortcutItems(), `instructionLabel` and `shortcutStatusLabel`.
/// Main thread only.
class ShortcutControls {
public:
    virtual ~ShortcutControls() = default;

    /// The row that the popup shows; -1 when it shows none.
    [[nodiscard]] virtual qsizetype selectedIndex(ShortcutSlot slot) const = 0;

    /// Shows the row without telling anyone that it was chosen.
    virtual void setSelectedIndex(ShortcutSlot slot, qsizetype index) = 0;

    virtual void setInstruction(const QString& text) = 0;
    virtual void setShortcutStatus(const QString& text, ShortcutStatus status) = 0;
};

} // namespace tavrin
