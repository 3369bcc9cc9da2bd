#include "app/menu/StatusMenu.h"

#include "app/menu/MenuBarIcon.h"
#include "app/menu/OperationItems.h"
#include "app/menu/StatusMenuTexts.h"
#include "app/settings/Localization.h"
#include "app/settings/OperationShortcut.h"
#include "app/settings/Settings.h"
#include "app/vocabulary/OutputStyles.h"
#include "app/vocabulary/TableIndex.h"
#include "app/vocabulary/TranslationTargets.h"

#include <algorithm>
#include <utility>

namespace tavrin {
namespace {

constexpr double itemLength = 38;

// Places in the menu.
constexpr qsizetype toggleItem = 0;
constexpr qsizetype translationToggleItem = 1;
constexpr qsizetype chatToggleItem = 2;
constexpr qsizetype styleMenu = 3;
constexpr qsizetype translationMenu = 4;

MenuItem item(const QString& title, std::function<void()> action, const QString& key = {})
{
    MenuItem result;
    result.title = title;
    result.keyEquivalent = key;
    result.action = std::move(action);
    return result;
}

MenuItem submenu(const QString& title, QList<MenuItem> children)
{
    MenuItem result;
    result.title = title;
    result.children = std::move(children);
    return result;
}

MenuItem separator()
{
    MenuItem result;
    result.separator = true;
    return result;
}

/// Checks the item at the place that @p identifier has in @p table, and no other one.
template <class Table>
void checkOnly(MenuItem& menu, const Table& table, const QString& identifier)
{
    auto child = menu.children.begin();
    for (const auto& row : table)
        (child++)->checked = row.identifier == identifier;
}

} // namespace

StatusMenu::StatusMenu(const Neighbours& neighbours, Actions actions)
    : m_neighbours(neighbours)
    , m_actions(std::move(actions))
    , m_menuBarIcon(createMenuBarIcon())
{
}

OutputContent StatusMenu::outputContent()
{
    Settings& settings = m_neighbours.settings;
    return {
        .outputStyle = indexOfIdentifier(outputStyles, settings.OutputStyle()),
        .translationTarget = indexOfIdentifier(translationTargets, settings.TranslationTarget()),
    };
}

void StatusMenu::configureMenu()
{
    const Localization& localization = m_neighbours.localization;
    Settings& settings = m_neighbours.settings;

    m_menu = operationMenuItems();
    m_menu.append(submenu(localization.LT(texts::writingStyle),
        choiceItems(
            settings.OutputStyleItems(), settings.OutputStyle(), &StatusMenu::selectStyle)));
    m_menu.append(submenu(localization.LT(texts::translationTarget),
        choiceItems(settings.translationTargetItems(), settings.TranslationTarget(),
            &StatusMenu::selectTranslationMenu)));
    m_menu.append(separator());
    m_menu.append(item(localization.LT(texts::showTavrin), m_actions.showMainWindow));
    m_menu.append(item(localization.LT(texts::history), m_actions.showHistoryWindow));
    m_menu.append(
        item(localization.LT(texts::writingStyleSettings), m_actions.showPersonalizationWindow));
    m_menu.append(item(localization.LT(texts::checkForUpdates), m_actions.checkForUpdatesNow));
    m_menu.append(item(localization.LT(texts::quitTavrin), m_actions.quit, QStringLiteral("q")));

    StatusItem& statusItem = m_neighbours.statusItem;
    statusItem.setLength(itemLength);
    statusItem.setAccessibilityLabel(localization.LT(texts::statusItemLabel));
    refreshToolTip();
    showState();
    showMenu();
    statusItem.setVisible(true);
}

void StatusMenu::updateUI(SessionState state, OperationMode mode)
{
    m_state = state;
    m_mode = mode;
    if (m_menu.isEmpty())
        return;
    showState();
    const auto items =
        operationItems(state, mode, m_neighbours.settings, m_neighbours.localization);
    for (std::size_t row = 0; row < items.size(); ++row) {
        MenuItem& shown = m_menu[static_cast<qsizetype>(row)];
        shown.title = items.at(row).title;
        shown.enabled = items.at(row).enabled;
    }
    showMenu();
}

void StatusMenu::refreshToolTip()
{
    Settings& settings = m_neighbours.settings;
    m_neighbours.statusItem.setToolTip(m_neighbours.localization.LT(texts::shortcutsToolTip,
        firstShortcutName(settings, OperationMode::Dictation),
        firstShortcutName(settings, OperationMode::Translation),
        firstShortcutName(settings, OperationMode::Chat)));
}

void StatusMenu::selectStyle(const QString& identifier)
{
    m_neighbours.settings.setOutputStyle(identifier);
    if (!m_menu.isEmpty()) {
        checkOnly(m_menu[styleMenu], outputStyles, identifier);
        showMenu();
    }
    showOutput();
}

void StatusMenu::selectStylePopup(qsizetype index)
{
    const QString identifier = itemAtClampedIndex(outputStyles, index).identifier.toString();
    m_neighbours.settings.setOutputStyle(identifier);
    // Titles keep the language of the launch: after a change of it, the submenu is not found.
    const auto menu = std::ranges::find(
        m_menu, m_neighbours.localization.LT(texts::writingStyle), &MenuItem::title);
    if (menu == m_menu.end())
        return;
    checkOnly(*menu, outputStyles, identifier);
    showMenu();
}

void StatusMenu::selectTranslationMenu(const QString& identifier)
{
    m_neighbours.settings.setTranslationTarget(identifier);
    refreshTranslationControls();
}

void StatusMenu::selectTranslationPopup(qsizetype index)
{
    selectTranslationMenu(itemAtClampedIndex(translationTargets, index).identifier.toString());
}

void StatusMenu::refreshTranslationControls()
{
    Settings& settings = m_neighbours.settings;
    const QString target = settings.TranslationTarget();
    showOutput();
    if (!m_menu.isEmpty())
        checkOnly(m_menu[translationMenu], translationTargets, target);
    m_neighbours.statusItem.setToolTip(m_neighbours.localization.LT(texts::targetToolTip,
        firstShortcutName(settings, OperationMode::Dictation),
        firstShortcutName(settings, OperationMode::Translation),
        settings.TranslationDisplayNameForTarget(target),
        firstShortcutName(settings, OperationMode::Chat)));
    refreshUI();
}

QList<MenuItem> StatusMenu::operationMenuItems()
{
    const auto operations =
        operationItems(m_state, m_mode, m_neighbours.settings, m_neighbours.localization);
    QList<MenuItem> items(static_cast<qsizetype>(operations.size()));
    for (std::size_t row = 0; row < operations.size(); ++row) {
        items[static_cast<qsizetype>(row)].title = operations.at(row).title;
        items[static_cast<qsizetype>(row)].enabled = operations.at(row).enabled;
    }
    items[toggleItem].action = [this] { toggle(); };
    items[translationToggleItem].action = [this] { toggleTranslation(); };
    items[chatToggleItem].action = [this] { toggleChat(); };
    return items;
}

void StatusMenu::toggle() const
{
    m_actions.toggleOperationMode(OperationMode::Dictation);
}

void StatusMenu::toggleTranslation() const
{
    m_actions.toggleOperationMode(OperationMode::Translation);
}

void StatusMenu::toggleChat() const
{
    m_actions.toggleOperationMode(OperationMode::Chat);
}

QList<MenuItem> StatusMenu::choiceItems(
    const QList<SettingChoice>& choices, const QString& selected, Choose choose)
{
    QList<MenuItem> items;
    for (const SettingChoice& choice : choices) {
        items.append(item(choice.title,
            [this, choose, identifier = choice.identifier] { (this->*choose)(identifier); }));
        items.last().checked = choice.identifier == selected;
    }
    return items;
}

void StatusMenu::showOutput()
{
    if (m_outputView)
        m_outputView->setContent(outputContent());
}

void StatusMenu::showState()
{
    const bool isIdle = m_state == SessionState::Idle;
    m_neighbours.statusItem.setImage(isIdle ? m_menuBarIcon : StatusImage{});
    const SimplifiedText& busyTitle = m_state == SessionState::Recording
        ? texts::recordingTitle.at(static_cast<std::size_t>(m_mode))
        : texts::processingTitle;
    m_neighbours.statusItem.setTitle(isIdle ? QString() : busyTitle.toString());
}

void StatusMenu::showMenu()
{
    m_neighbours.statusItem.setMenu(m_menu);
}

} // namespace tavrin
