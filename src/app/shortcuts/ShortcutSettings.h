#pragma once

#include "app/shortcuts/ShortcutControls.h"

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
    void setControls(ShortcutControls* controls) { m_controls = controls; }

    /// The user chose the row at @p index in the popup of @p slot. A shortcut that another popup
    /// shows already is refused with an alert.
    void selectShortcut(ShortcutSlot slot, qsizetype index);

    /// Shows the stored shortcuts in the controls and in the tool tip.
    void refreshShortcutControls();

    /// Finds out whether another program holds one of the combinations in use, and shows it;
    /// without controls, and with them too, the log tells what is held whenever that has changed.
    void updateShortcutStatus();

private:
    using Choices = std::array<QString, shortcutSlots.size()>; ///< In the order of shortcutSlots.

    [[nodiscard]] Choices choicesWith(ShortcutSlot slot, const QString& identifier);
    [[nodiscard]] Choices shownChoices() const;
    [[nodiscard]] Choices storedChoices();
    void store(const Choices& choices);
    void refuse();
    [[nodiscard]] QStringList takenCombinations();
    void logTaken(const QStringList& identifiers);

    Neighbours m_neighbours;
    Actions m_actions;
    ShortcutControls* m_controls = nullptr;
    QStringList m_loggedAsTaken;
};

} // namespace tavrin
