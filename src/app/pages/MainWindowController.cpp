#include "app/pages/MainWindowController.h"

#include "cloud/StoredSession.h"
#include "platform/programs/Workspace.h"

#include <utility>

namespace tavrin {
namespace {

constexpr int accountButtonY = 182;
constexpr int accountButtonAloneY = 490;

} // namespace

MainWindowController::MainWindowController(Neighbours neighbours)
    : m_neighbours(std::move(neighbours))
{
}

void MainWindowController::selectFirstPage()
{
    selectSettingsPage(SettingsPage::Overview);
}

void MainWindowController::selectSettingsPage(SettingsPage page)
{
    m_content.page = hasCloudSession(m_neighbours.preferences) ? page : SettingsPage::Account;
    show(false);
    m_neighbours.refresh(m_content.page);
    if (!m_neighbours.workspace.prefersReducedMotion())
        show(true); // What comes in is the page with its present state.
}

void MainWindowController::refreshSidebar()
{
    show(false);
}

void MainWindowController::show(bool animates)
{
    m_content.isSignedIn = hasCloudSession(m_neighbours.preferences);
    m_content.accountSidebarButtonY = m_content.isSignedIn ? accountButtonY : accountButtonAloneY;
    m_content.animates = animates;
    if (m_view)
        m_view->setContent(m_content);
}

} // namespace tavrin
