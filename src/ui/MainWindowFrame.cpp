#include "ui/MainWindowFrame.h"

#include "app/menu/StatusMenu.h"
#include "app/settings/Localization.h"
#include "app/settings/OperationShortcut.h"
#include "app/settings/Settings.h"
#include "app/shortcuts/ShortcutTexts.h"
#include "platform/DesktopTexts.h"
#include "platform/Workspace.h"
#include "ui/ApplicationIcon.h"
#include "ui/BrandStyle.h"

#include <QGuiApplication>
#include <QLabel>
#include <QScreen>
#include <QVBoxLayout>
#include <QWidget>

#include <utility>

namespace tavrin {
namespace {

constexpr QSize windowSize{820, 640};
constexpr int iconSize = 112;
constexpr double instructionSize = 14;

QLabel* addLabel(QBoxLayout& layout, const QFont& font, const QColor& color)
{
    auto* const label = new QLabel;
    label->setTextFormat(Qt::PlainText);
    label->setAlignment(Qt::AlignCenter);
    label->setFont(font);
    QPalette palette = label->palette();
    palette.setColor(QPalette::WindowText, color);
    label->setPalette(palette);
    layout.addWidget(label);
    return label;
}

} // namespace

MainWindowFrame::MainWindowFrame(UserInterfaceNeighbours neighbours)
    : m_neighbours(std::move(neighbours))
{
}

MainWindowFrame::~MainWindowFrame() = default;

void MainWindowFrame::configureMainWindow()
{
    m_window = std::make_unique<QWidget>(nullptr,
        Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint
            | Qt::WindowCloseButtonHint | Qt::WindowMinimizeButtonHint);
    m_window->setWindowTitle(QStringLiteral("Tavrin"));
    m_window->setFixedSize(windowSize);
    brand::applyBrandPalette(*m_window);
    centreOnScreen();
    m_neighbours.statusMenu.refreshTranslationControls();
    refreshHealthStatus();
    refreshAccountUI();
}

void MainWindowFrame::show()
{
    m_window->setWindowState(m_window->windowState() & ~Qt::WindowMinimized);
    m_window->show();
    // The fonts are read while the window manager makes place: it draws nothing before that.
    if (!m_instructionLabel)
        buildContents();
    refreshShortcuts();
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
    if (!m_instructionLabel)
        return;
    Settings& settings = m_neighbours.settings;
    m_instructionLabel->setText(m_neighbours.localization.LT(texts::shortcutSummary,
        firstShortcutName(settings, OperationMode::Dictation),
        firstShortcutName(settings, OperationMode::Translation),
        firstShortcutName(settings, OperationMode::Chat)));
}

void MainWindowFrame::selectSettingsPage(SettingsPage /*page*/)
{
    m_neighbours.showMainWindow();
}

void MainWindowFrame::showLoginDialog()
{
    m_neighbours.showMainWindow();
}

void MainWindowFrame::showHistoryWindow() const
{
    m_neighbours.showMainWindow();
}

void MainWindowFrame::showPersonalizationWindow() const
{
    m_neighbours.showMainWindow();
}

void MainWindowFrame::buildContents()
{
    brand::useGlyphsOf(m_neighbours.localization.InterfaceLanguage());
    auto* const layout = new QVBoxLayout(m_window.get());
    layout->setContentsMargins(36, 0, 36, 24); // Slightly above the middle looks centred.
    layout->setSpacing(0);
    layout->addStretch();

    QLabel* const picture = addLabel(*layout, brand::tavBodyFont(), brand::labelColor());
    picture->setPixmap(
        applicationPicture(iconSize, QGuiApplication::primaryScreen()->devicePixelRatio()));
    layout->addSpacing(18);

    QLabel* const name = addLabel(*layout, brand::tavPageTitleFont(), brand::labelColor());
    name->setText(m_window->windowTitle());
    layout->addSpacing(10);

    m_instructionLabel = addLabel(
        *layout, brand::systemFont(instructionSize, QFont::Normal), brand::tavSecondaryText());
    addReachNotice(*layout);
    layout->addStretch();
}

void MainWindowFrame::addReachNotice(QVBoxLayout& layout) const
{
    constexpr LocalizedText nothing{u""};
    const QString notice =
        m_neighbours.localization.desktopText(&DesktopTexts::limitedReach, nothing);
    if (m_neighbours.workspace.reachesEveryProgram() || notice.isEmpty())
        return;
    layout.addSpacing(14);
    addLabel(layout, brand::tavBodyFont(), brand::labelColor())->setText(notice);
}

void MainWindowFrame::centreOnScreen()
{
    QRect frame(QPoint(), windowSize);
    frame.moveCenter(QGuiApplication::primaryScreen()->availableGeometry().center());
    m_window->move(frame.topLeft());
}

} // namespace tavrin
