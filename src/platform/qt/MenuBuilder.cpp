#include "platform/qt/MenuBuilder.h"

#include <QAction>
#include <QMenu>

namespace tavrin {
namespace {

/// An entry that calls back. What is checked is decided by the item, not by Qt's own toggling.
class ItemAction final : public QAction {
public:
    explicit ItemAction(QObject* parent)
        : QAction(parent)
    {
        connect(this, &QAction::triggered, this, [this] {
            setChecked(m_checked);
            if (const auto action = m_action) // A copy: it may replace the menu.
                action();
        });
    }

    void show(const MenuItem& item)
    {
        m_action = item.action;
        m_checked = item.checked;
        setCheckable(item.checked);
        setChecked(item.checked);
        const QKeySequence shortcut = item.keyEquivalent.isEmpty()
            ? QKeySequence()
            : QKeySequence(Qt::CTRL | Qt::Key(item.keyEquivalent.front().toUpper().unicode()));
        setShortcut(shortcut);
        setShortcutVisibleInContextMenu(true);
    }

private:
    std::function<void()> m_action;
    bool m_checked = false;
};

bool fits(const QAction& action, const MenuItem& item)
{
    return action.isSeparator() == item.separator
        && (action.menu() != nullptr) == !item.children.isEmpty();
}

QAction* insert(QMenu& menu, QAction* before, const MenuItem& item)
{
    if (item.separator)
        return menu.insertSeparator(before);
    if (!item.children.isEmpty())
        return menu.insertMenu(before, new QMenu(&menu));
    auto* action = new ItemAction(&menu);
    menu.insertAction(before, action);
    return action;
}

void discard(QMenu& menu, QAction& action)
{
    menu.removeAction(&action);
    if (action.menu())
        action.menu()->deleteLater(); // Its action goes with it.
    else
        action.deleteLater(); // It may be the one that was just chosen.
}

} // namespace

void updateMenu(
    QMenu& menu, const QList<MenuItem>& items) // NOLINT(misc-no-recursion): the depth of the items
{
    for (qsizetype i = 0; i < items.size(); ++i) {
        const MenuItem& item = items[i];
        QAction* action = menu.actions().value(i);
        if (!action || !fits(*action, item)) {
            QAction* misfit = action;
            action = insert(menu, misfit, item);
            if (misfit)
                discard(menu, *misfit);
        }
        if (item.separator)
            continue;
        QString title = item.title;
        action->setText(title.replace(u'&', QStringLiteral("&&")));
        action->setEnabled(item.enabled);
        if (action->menu())
            updateMenu(*action->menu(), item.children);
        else if (auto* itemAction = dynamic_cast<ItemAction*>(action))
            itemAction->show(item);
    }
    while (menu.actions().size() > items.size())
        discard(menu, *menu.actions().constLast());
}

} // namespace tavrin
