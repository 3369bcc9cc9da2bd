#pragma once

#include "platform/StatusItem.h"
#include "support/ports/Note.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace tavrin::testing {

/// A status item that nobody sees: the test reads it and presses its menu items.
class InMemoryStatusItem final : public StatusItem {
public:
    /// @param note is told what the item shows in place of its icon: "status ●", or "status icon"
    /// for nothing.
    explicit InMemoryStatusItem(Note note = {})
        : m_note(std::move(note))
    {
    }

    double length = 0;
    bool visible = false;
    StatusImage image;
    QString title;
    QString toolTip;
    QString accessibilityLabel;
    QList<MenuItem> menu;
    int menuChanges = 0;
    std::function<void()> onVisible;

    void setLength(double newLength) override { length = newLength; }

    void setVisible(bool isVisible) override
    {
        visible = isVisible;
        if (visible && onVisible)
            onVisible();
    }

    void setImage(const StatusImage& newImage) override { image = newImage; }

    void setTitle(const QString& newTitle) override
    {
        title = newTitle;
        tell(
            m_note, QStringLiteral("status ") + (title.isEmpty() ? QStringLiteral("icon") : title));
    }

    void setToolTip(const QString& text) override { toolTip = text; }

    void setAccessibilityLabel(const QString& text) override { accessibilityLabel = text; }

    void setMenu(const QList<MenuItem>& items) override
    {
        menu = items;
        ++menuChanges;
    }

    /// The item with this title, or of the submenu of that title.
    [[nodiscard]] const MenuItem& item(const QString& itemTitle) const
    {
        return find(menu, itemTitle);
    }

    [[nodiscard]] const MenuItem& item(const QString& submenu, const QString& itemTitle) const
    {
        return find(item(submenu).children, itemTitle);
    }

    /// The titles of the items of @p submenu that carry a check mark.
    [[nodiscard]] QStringList checked(const QString& submenu) const
    {
        QStringList titles;
        for (const MenuItem& child : item(submenu).children) {
            if (child.checked)
                titles.append(child.title);
        }
        return titles;
    }

    /// Presses the item; one that is disabled does nothing.
    void press(const QString& itemTitle) const { press(item(itemTitle)); }

    void press(const QString& submenu, const QString& itemTitle) const
    {
        press(item(submenu, itemTitle));
    }

private:
    static const MenuItem& find(const QList<MenuItem>& items, const QString& itemTitle)
    {
        const auto found = std::ranges::find(items, itemTitle, &MenuItem::title);
        if (found == items.end())
            throw std::out_of_range("no menu item " + itemTitle.toStdString());
        return *found;
    }

    static void press(const MenuItem& item)
    {
        const auto action = item.action; // The action may replace the menu that holds it.
        if (item.enabled && action)
            action();
    }

    Note m_note;
};

} // namespace tavrin::testing
