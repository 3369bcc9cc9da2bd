#pragma once

#include "app/shortcuts/ShortcutContent.h"
#include "app/windows/View.h"

#include <QStringList>

#include <array>
#include <functional>

namespace tavrin {

class Alerts;
class HotKeyProbe;
class Localization;
class Preferences;
class Settings;
class ShortcutMonitor;

/// Stores the shortcuts that the user chooses, no two the same, and shows them. Main thread only.
class ShortcutSettings {
public:
    struct Neighbours {
        Alerts& alerts;
        HotKeyProbe& hotKeyProbe;
        const Localization& localization;
        Preferences& preferences;
        Settings& settings;
        ShortcutMonitor& shortcutMonitor;
    };

    /// What else shows shortcuts.
    struct Actions {
        std::function<void()> refreshToolTip; ///< Of the status item.
        std::function<void()> updateUI; ///< Of the session: the titles of the menu.
    };

    /// @param neighbours must outlive this object.
    ShortcutSettings(const Neighbours& neighbours, Actions actions);

    /// The controls of the settings page; null while there is none.
    void setView(View<ShortcutContent>* view) { m_view = view; }

    /// What they show: the stored shortcuts, and what updateShortcutStatus() has found out.
    [[nodiscard]] ShortcutContent content();

    /// The user chose the row at @p index, clamped into the list, in the popup of @p slot. A
    /// shortcut that another slot has already is refused with an alert.
    void selectShortcut(ShortcutSlot slot, qsizetype index);

    /// Shows the stored shortcuts on the page and in the tool tip.
    void refreshShortcutControls();

    /// Finds out whether another program holds one of the combinations in use, and shows it. The
    /// log tells what is held whenever that has changed, with a page and without one.
    void updateShortcutStatus();

private:
    using Choices = std::array<QString, shortcutSlots.size()>; ///< In the order of shortcutSlots.

    [[nodiscard]] Choices storedChoices();
    void store(const Choices& choices);
    void refuse();
    void show();
    [[nodiscard]] QStringList takenCombinations() const;
    void logTaken(const QStringList& identifiers) const;

    Neighbours m_neighbours;
    Actions m_actions;
    View<ShortcutContent>* m_view = nullptr;
    QStringList m_taken; ///< Combinations in use that another program held when last asked.
};

} // namespace tavrin
