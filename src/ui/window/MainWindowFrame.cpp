#include "ui/window/MainWindowFrame.h"

#include "app/pages/MainWindowController.h"
#include "app/settings/Localization.h"
#include "platform/DesktopTexts.h"
#include "platform/programs/Workspace.h"
#include "ui/controls/FocusRing.h"
#include "ui/controls/Page.h"
#include "ui/style/BrandStyle.h"
#include "ui/window/PageTransition.h"
#include "ui/window/Sidebar.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

#include <utility>

namespace tavrin {
namespace {

constexpr QSize windowSize{820, 640};

} // namespace

MainWindowFrame::MainWindowFrame(Neighbours neighbours)
    : m_neighbours(std::move(neighbours))
{
}

MainWindowFrame::~MainWindowFrame()
{
    m_neighbours.controller.setView(nullptr);
}

void MainWindowFrame::configureMainWindow()
{
    m_window = std::make_unique<QWidget>(nullptr,
        Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint
            | Qt::WindowCloseButtonHint | Qt::WindowMinimizeButtonHint);
    m_window->setWindowTitle(QStringLiteral("Tavrin"));
    m_window->setFixedSize(windowSize);
    brand::applyBrandControlStylesInView(*m_window);
    centreOnScreen();
    m_neighbours.controller.setView(this);
    m_neighbours.configurePages();
    m_neighbours.controller.selectFirstPage();
}

void MainWindowFrame::show()
{
    m_window->setWindowState(m_window->windowState() & ~Qt::WindowMinimized);
    m_window->show();
    // The fonts are read while the window manager makes place: it draws nothing before that.
    if (!m_contents)
        buildContents();
    m_window->raise();
    m_window->activateWindow();
}

void MainWindowFrame::hide()
{
    m_window->hide();
}

bool MainWindowFrame::isVisible() const
{
    return m_window && m_window->isVisible();
}

void MainWindowFrame::refreshShortcuts()
{
    m_neighbours.refreshShortcuts();
}

void MainWindowFrame::selectSettingsPage(SettingsPage page)
{
    m_neighbours.controller.selectSettingsPage(page);
}

void MainWindowFrame::setContent(const MainWindowContent& content)
{
    if (!m_contents)
        return; // Shown when the window is.
    m_contents->sidebar->setContent(content);
    showPage(content.page, content.animates);
}

void MainWindowFrame::buildContents()
{
    const Localization& localization = m_neighbours.localization;
    brand::useGlyphsOf(localization.InterfaceLanguage());
    constexpr LocalizedText nothing{u""};
    const QString notice = m_neighbours.workspace.reachesEveryProgram()
        ? QString()
        : localization.desktopText(&DesktopTexts::limitedReach, nothing);
    auto* const sidebar = new ui::Sidebar(*m_window, localization, notice,
        [this](SettingsPage page) { m_neighbours.controller.selectSettingsPage(page); });
    m_contents = {.sidebar = sidebar,
        .transition = new ui::PageTransition(*m_window),
        .focusRing = new ui::FocusRing(*m_window),
        .settingsPages = {}};
    sidebar->show();
    MainWindowContent content = m_neighbours.controller.content();
    content.animates = false;
    setContent(content);
    m_neighbours.controller.refreshSelectedPage();
}

void MainWindowFrame::showPage(SettingsPage selected, bool animates)
{
    ui::Page*& page = m_contents->settingsPages[selected];
    if (!page)
        page = m_neighbours.createPage(*m_window, selected);
    if (!page->isVisibleTo(m_window.get()))
        m_contents->transition->stop(); // Of another page.
    page->show();
    for (ui::Page* const other : std::as_const(m_contents->settingsPages)) {
        if (other != page)
            other->hide();
    }
    if (animates && m_window->isVisible())
        m_contents->transition->start(*page);
    m_contents->focusRing->raise();
}

void MainWindowFrame::centreOnScreen()
{
    QRect frame(QPoint(), windowSize);
    frame.moveCenter(QGuiApplication::primaryScreen()->availableGeometry().center());
    m_window->move(frame.topLeft());
}

} // namespace tavrin
