#pragma once

#include "app/menu/OutputContent.h"
#include "app/vocabulary/OperationMode.h"
#include "app/vocabulary/SessionState.h"
#include "app/windows/View.h"
#include "platform/StatusItem.h"

#include <QList>
#include <QString>

#include <functional>

namespace tavrin {

class Localization;
class Settings;
struct SettingChoice;

/// The status item and its menu: shows the state of the session, starts and finishes operations,
/// and selects writing style and translation target. Titles are built in the language of the
/// moment; of a change of language only the titles of the operations take notice.
/// Main thread only.
class StatusMenu {
public:
    /// What the items do.
    struct Actions {
        std::function<void(OperationMode)> toggleOperationMode;
        std::function<void()> showMainWindow;
        std::function<void()> showHistoryWindow;
        std::function<void()> showPersonalizationWindow;
        std::function<void()> checkForUpdatesNow;
        std::function<void()> quit;
    };

    struct Neighbours {
        const Localization& localization;
        Settings& settings;
        StatusItem& statusItem;
    };

    /// @param neighbours must outlive the menu.
    StatusMenu(const Neighbours& neighbours, Actions actions);

    /// The popups of the settings page; null while there is none.
    void setOutputView(View<OutputContent>* view) { m_outputView = view; }

    /// What they show.
    [[nodiscard]] OutputContent outputContent();

    /// Shows the status item with its icon and menu, in the idle state. Called once, at launch.
    void configureMenu();

    /// Shows a session of @p mode in @p state; @p mode means nothing while idle.
    void updateUI(SessionState state, OperationMode mode);

    /// Shows what updateUI() was told last anew, with the names and shortcuts of the moment.
    void refreshUI() { updateUI(m_state, m_mode); }

    /// Shows the shortcuts of the moment in the tool tip.
    void refreshToolTip();

    /// Stores the style and selects it in menu and popup.
    void selectStyle(const QString& identifier);
    /// The same for the style at @p index of the popup, clamped into the table.
    void selectStylePopup(qsizetype index);

    /// Stores the language to translate into and shows it everywhere.
    void selectTranslationMenu(const QString& identifier);
    /// The same for the language at @p index of the popup, clamped into the table.
    void selectTranslationPopup(qsizetype index);

    /// Shows the stored language to translate into in popup, menu, tool tip and titles.
    void refreshTranslationControls();

private:
    using Choose = void (StatusMenu::*)(const QString& identifier);

    void toggle() const;
    void toggleTranslation() const;
    void toggleChat() const;
    [[nodiscard]] QList<MenuItem> operationMenuItems();
    [[nodiscard]] QList<MenuItem> choiceItems(
        const QList<SettingChoice>& choices, const QString& selected, Choose choose);
    void showOutput();
    void showState();
    void showMenu();

    Neighbours m_neighbours;
    Actions m_actions;
    View<OutputContent>* m_outputView = nullptr;
    StatusImage m_menuBarIcon;
    QList<MenuItem> m_menu; ///< Empty until configureMenu().
    SessionState m_state = SessionState::Idle; ///< What updateUI() was told last.
    OperationMode m_mode = OperationMode::Dictation;
};

} // namespace tavrin
