#pragma once

#include "app/account/AccountController.h"
#include "app/health/HealthController.h"
#include "app/pages/DictionaryController.h"
#include "app/pages/GeneralController.h"
#include "app/pages/InputOutputController.h"
#include "app/pages/MainWindowController.h"
#include "app/pages/OverviewController.h"
#include "app/pages/PersonalizationController.h"
#include "app/pages/history/HistoryController.h"
#include "app/windows/UserInterface.h"
#include "history/HistoryActions.h"

#include <functional>

namespace tavrin {

/// What the pages of the main window show and do, connected with each other. It goes on with a
/// window and without one. Main thread only.
class Pages {
public:
    /// @param neighbours must outlive the pages.
    /// @param showPersonalizationWindow opens the window, which the pages do not have.
    Pages(UserInterfaceNeighbours neighbours, std::function<void()> showPersonalizationWindow);
    ~Pages();

    Pages(const Pages&) = delete;
    Pages& operator=(const Pages&) = delete;

    /// Shows everywhere what is stored, before the first page is selected.
    void configure();

    /// The page was selected.
    void refresh(SettingsPage page);

    /// Shows the shortcuts of the moment on the pages that show them.
    void refreshShortcuts();

    /// Shows the history page in front of everything.
    void showHistoryWindow() { m_historyActions.showHistoryWindow(); }

    [[nodiscard]] MainWindowController& mainWindow() { return m_mainWindow; }

    [[nodiscard]] AccountController& account() { return m_account; }

    [[nodiscard]] HealthController& health() { return m_health; }

    [[nodiscard]] OverviewController& overview() { return m_overview; }

    [[nodiscard]] HistoryController& history() { return m_history; }

    [[nodiscard]] DictionaryController& dictionary() { return m_dictionary; }

    [[nodiscard]] PersonalizationController& personalization() { return m_personalization; }

    [[nodiscard]] GeneralController& general() { return m_general; }

    [[nodiscard]] InputOutputController& inputOutput() { return m_inputOutput; }

private:
    [[nodiscard]] AccountController::Neighbours accountNeighbours();
    [[nodiscard]] HealthController::Neighbours healthNeighbours();
    [[nodiscard]] HistoryActions::Neighbours historyActionNeighbours();
    [[nodiscard]] HistoryController::Neighbours historyNeighbours();
    [[nodiscard]] DictionaryController::Neighbours dictionaryNeighbours();

    UserInterfaceNeighbours m_neighbours;
    std::function<void()> m_showPersonalizationWindow;
    MainWindowController m_mainWindow;
    AccountController m_account;
    HealthController m_health;
    OverviewController m_overview;
    HistoryActions m_historyActions;
    HistoryController m_history;
    PersonalizationController m_personalization;
    DictionaryController m_dictionary;
    GeneralController m_general;
    InputOutputController m_inputOutput;
};

} // namespace tavrin
