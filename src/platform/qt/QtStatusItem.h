#pragma once

#include "platform/StatusItem.h"

#include <QMenu>
#include <QSystemTrayIcon>
#include <QTimer>

namespace tavrin {

/// The status item in the desktop's tray: as StatusNotifierItem where the desktop knows that, else
/// as a window in the tray of the panel. The menu opens on either button.
class QtStatusItem final : public StatusItem {
public:
    QtStatusItem();

    void setLength(double length) override;
    void setVisible(bool visible) override;
    void setImage(const StatusImage& image) override;
    void setTitle(const QString& title) override;
    void setToolTip(const QString& text) override;
    void setAccessibilityLabel(const QString& text) override;
    void setMenu(const QList<MenuItem>& items) override;

private:
    void draw();
    void fillMenu();

    QMenu m_menu;
    QSystemTrayIcon m_icon; // Shows m_menu, and so goes before it.
    QString m_imageText;
    QString m_title;
    QString m_drawn;
    QTimer m_filling; // Fills the menu once the program has got to its events.
    QList<MenuItem> m_firstItems; // Until they are in the menu.
    bool m_isMenuFilled = false;
    bool m_warned = false;
};

} // namespace tavrin
