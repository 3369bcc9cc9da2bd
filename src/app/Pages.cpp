#include "app/Pages.h"

#include "app/menu/StatusMenu.h"
#include "app/shortcuts/ShortcutSettings.h"
#include "history/HistoryStore.h"
#include "platform/Platform.h"

#include <utility>

namespace tavrin {

Pages::Pages(UserInterfaceNeighbours neighbours, std::function<void()> showPersonalizationWindow)
    : m_neighbours(std::move(neighbours))
    , m_showPersonalizationWindow(std::move(showPersonalizationWindow))
    , m_mainWindow({*m_neighbours.platform.preferences, *m_neighbours.platform.workspace,
          [this](SettingsPage page) { refresh(page); }})
    , m_account(accountNeighbours())
    , m_health(healthNeighbours())
    , m_overview({.clock = *m_neighbours.platform.clock,
          .historyStore = m_neighbours.historyStore,
          .mainQueue = *m_neighbours.platform.mainQueue,
          .shortcutSettings = m_neighbours.shortcutSettings})
    , m_historyActions(historyActionNeighbours())
    , m_history(historyNeighbours())
    , m_personalization({*m_neighbours.platform.preferences, m_neighbours.playSound})
    , m_dictionary(dictionaryNeighbours())
    , m_general(
          {*m_neighbours.platform.alerts, m_neighbours.audioEnvironment, m_neighbours.localization,
              *m_neighbours.platform.preferences, *m_neighbours.platform.recogniserSettings})
    , m_inputOutput({m_neighbours.settings, m_neighbours.shortcutSettings, m_neighbours.statusMenu})
{
    m_neighbours.historyStore.setSavedHandler([this] {
        m_overview.refreshDashboardUsage();
        m_history.refreshHistoryView();
    });
}

Pages::~Pages()
{
    m_neighbours.historyStore.setSavedHandler({});
}

void Pages::configure()
{
    m_neighbours.statusMenu.refreshTranslationControls();
    m_health.refreshHealthStatus();
    m_account.refreshAccountUI();
}

void Pages::refresh(SettingsPage page)
{
    switch (page) {
    case SettingsPage::Overview:
        return m_overview.refreshDashboardUsage();
    case SettingsPage::InputAndOutput:
        return;
    case SettingsPage::Dictionary:
        return m_dictionary.refreshDictionaryView();
    case SettingsPage::Permissions:
        return m_health.refreshHealthStatus();
    case SettingsPage::General:
        return m_general.refreshMicrophoneControls();
    case SettingsPage::History:
        return m_history.refreshHistoryView();
    case SettingsPage::Account:
        return m_account.refreshAccountUI();
    }
    Q_UNREACHABLE();
}

void Pages::refreshShortcuts()
{
    m_overview.refreshShortcuts();
    m_neighbours.shortcutSettings.refreshShortcutControls();
}

AccountController::Neighbours Pages::accountNeighbours()
{
    return {
        .api = m_neighbours.api,
        .localization = m_neighbours.localization,
        .mainQueue = *m_neighbours.platform.mainQueue,
        .preferences = *m_neighbours.platform.preferences,
        .isAccountPageShown =
            [this] { return m_mainWindow.content().page == SettingsPage::Account; },
        .refreshDashboardUsage = [this] { m_overview.refreshDashboardUsage(); },
        .refreshHealthStatus = [this] { m_health.refreshHealthStatus(); },
        .selectAccountPage = [this] { m_mainWindow.selectSettingsPage(SettingsPage::Account); },
        .showMainWindow = m_neighbours.showMainWindow,
        .showSignedIn = [this](bool) { m_mainWindow.refreshSidebar(); },
    };
}

HealthController::Neighbours Pages::healthNeighbours()
{
    const Platform& platform = m_neighbours.platform;
    return {
        .sources =
            {
                .accessibility = *platform.accessibility,
                .audioDevices = *platform.audioDevices,
                .clock = *platform.clock,
                .hotKeyProbe = *platform.hotKeyProbe,
                .localization = m_neighbours.localization,
                .permissions = *platform.permissions,
                .preferences = *platform.preferences,
                .recognizer = *platform.fileSpeechRecognizer,
                .settings = m_neighbours.settings,
                .systemInfo = *platform.systemInfo,
                .workspace = *platform.workspace,
            },
        .alerts = *platform.alerts,
        .mainQueue = *platform.mainQueue,
        .configureActiveService = [this] { m_account.configureActiveService(); },
        .showHistoryWindow = [this] { showHistoryWindow(); },
        .showShortcuts = [this] { m_mainWindow.selectSettingsPage(SettingsPage::InputAndOutput); },
    };
}

HistoryActions::Neighbours Pages::historyActionNeighbours()
{
    const Platform& platform = m_neighbours.platform;
    return {
        .store = m_neighbours.historyStore,
        .alerts = *platform.alerts,
        .pasteboard = *platform.pasteboard,
        .preferences = *platform.preferences,
        .workspace = *platform.workspace,
        .playSound = m_neighbours.playSound,
        .refreshHistoryView = [this] { m_history.refreshHistoryView(); },
        .selectHistoryPage = [this] { m_mainWindow.selectSettingsPage(SettingsPage::History); },
        .showMainWindow = m_neighbours.showMainWindow,
    };
}

HistoryController::Neighbours Pages::historyNeighbours()
{
    return {
        .actions = m_historyActions,
        .clock = *m_neighbours.platform.clock,
        .historyStore = m_neighbours.historyStore,
        .localization = m_neighbours.localization,
        .mainQueue = *m_neighbours.platform.mainQueue,
        .preferences = *m_neighbours.platform.preferences,
        .settings = m_neighbours.settings,
    };
}

DictionaryController::Neighbours Pages::dictionaryNeighbours()
{
    return {
        .alerts = *m_neighbours.platform.alerts,
        .clock = *m_neighbours.platform.clock,
        .localization = m_neighbours.localization,
        .preferences = *m_neighbours.platform.preferences,
        .playSound = m_neighbours.playSound,
        .endCorrectionWatch = m_neighbours.endCorrectionWatch,
        .showPersonalizationWindow = m_showPersonalizationWindow,
    };
}

} // namespace tavrin
