#include "ui/DesktopInterface.h"

#include "app/Pages.h"
#include "app/settings/Localization.h"
#include "base/CallbackGuard.h"
#include "platform/MainQueue.h"
#include "platform/Platform.h"
#include "ui/hud/HudController.h"
#include "ui/hud/HudWidget.h"
#include "ui/pages/AccountPage.h"
#include "ui/pages/DictionaryPage.h"
#include "ui/pages/GeneralPage.h"
#include "ui/pages/HealthPage.h"
#include "ui/pages/HistoryPage.h"
#include "ui/pages/InputOutputPage.h"
#include "ui/pages/OverviewPage.h"
#include "ui/pages/PersonalizationWindow.h"
#include "ui/style/ApplicationIcon.h"
#include "ui/window/MainWindowFrame.h"

#include <QApplication>

namespace tavrin {
namespace {

class DesktopInterface final : public UserInterface {
public:
    explicit DesktopInterface(const UserInterfaceNeighbours& neighbours)
        : m_captions(neighbours.localization.ofThisMoment())
        , m_mainQueue(*neighbours.platform.mainQueue)
        , m_panel(*neighbours.platform.workspace)
        , m_hud({m_panel, *neighbours.platform.clock, m_mainQueue, neighbours.localization,
              neighbours.settings})
        , m_pages(neighbours, [this] { showPersonalizationWindow(); })
        , m_frame({
              .localization = *m_captions,
              .workspace = *neighbours.platform.workspace,
              .controller = m_pages.mainWindow(),
              .createPage = [this](QWidget& window,
                                SettingsPage page) { return createPage(window, page); },
              .configurePages = [this] { m_pages.configure(); },
              .refreshShortcuts = [this] { m_pages.refreshShortcuts(); },
          })
    {
    }

    bool loadApplicationIcon() override
    {
        if (!hasApplicationIcon())
            return false;
        // Decoded when the window stands there: the first image takes as long as half the window.
        m_mainQueue.post(m_guard.bind([] {
            const QIcon appIcon = windowIcon();
            QApplication::setWindowIcon(appIcon);
        }));
        return true;
    }

    [[nodiscard]] RecordingHUD& hud() override { return m_hud; }

    [[nodiscard]] MainWindow& mainWindow() override { return m_frame; }

    [[nodiscard]] AccountPanel& accountPanel() override { return m_pages.account(); }

    void showHistoryWindow() override { m_pages.showHistoryWindow(); }

    void showPersonalizationWindow() override
    {
        if (!m_personalization)
            m_personalization =
                std::make_unique<ui::PersonalizationWindow>(m_pages.personalization());
        m_pages.personalization().showPersonalizationWindow();
    }

    void refreshHealthStatus() override { m_pages.health().refreshHealthStatus(); }

    void refreshDictionaryView() override { m_pages.dictionary().refreshDictionaryView(); }

private:
    ui::Page* createPage(QWidget& window, SettingsPage page)
    {
        switch (page) {
        case SettingsPage::Overview:
            return new ui::OverviewPage(window, m_pages.overview(), *m_captions);
        case SettingsPage::InputAndOutput:
            return new ui::InputOutputPage(window, m_pages.inputOutput(), *m_captions);
        case SettingsPage::Dictionary:
            return new ui::DictionaryPage(window, m_pages.dictionary(), *m_captions);
        case SettingsPage::Permissions:
            return new ui::HealthPage(window, m_pages.health(), *m_captions);
        case SettingsPage::General:
            return new ui::GeneralPage(window, m_pages.general(), *m_captions);
        case SettingsPage::History:
            return new ui::HistoryPage(window, m_pages.history(), *m_captions);
        case SettingsPage::Account:
            return new ui::AccountPage(window, m_pages.account(), *m_captions);
        }
        Q_UNREACHABLE();
    }

    /// The pages keep the language of the launch: one that is first opened later has it too.
    const std::unique_ptr<const Localization> m_captions;
    MainQueue& m_mainQueue;
    hud::Widget m_panel;
    HudController m_hud;
    Pages m_pages;
    std::unique_ptr<ui::PersonalizationWindow> m_personalization; ///< Null until it was shown.
    MainWindowFrame m_frame;
    CallbackGuard m_guard;
};

} // namespace

std::unique_ptr<UserInterface> createDesktopInterface(const UserInterfaceNeighbours& neighbours)
{
    return std::make_unique<DesktopInterface>(neighbours);
}

} // namespace tavrin
