#include "platform/qt/QtStatusItem.h"

#include "base/Log.h"
#include "platform/qt/MenuBuilder.h"
#include "platform/qt/StatusIcon.h"

#include <QCursor>

#include <utility>

namespace tavrin {

QtStatusItem::QtStatusItem()
{
    m_menu.setObjectName(QStringLiteral("statusMenu"));
    m_icon.setContextMenu(&m_menu);
    QObject::connect(&m_menu, &QMenu::aboutToShow, &m_menu, [this] { fillMenu(); });
    m_filling.setSingleShot(true);
    QObject::connect(&m_filling, &QTimer::timeout, &m_menu, [this] { fillMenu(); });
    QObject::connect(&m_icon, &QSystemTrayIcon::activated, &m_menu,
        [this](QSystemTrayIcon::ActivationReason why) {
            if (why == QSystemTrayIcon::Trigger)
                m_menu.popup(QCursor::pos());
        });
}

void QtStatusItem::setLength(double /*length*/)
{
    // A tray gives every program the same square.
}

void QtStatusItem::setVisible(bool visible)
{
    draw();
    m_icon.setVisible(visible);
    if (!visible || m_warned || QSystemTrayIcon::isSystemTrayAvailable())
        return;
    m_warned = true;
    qCWarning(log::platform) << "This desktop has no tray for the status menu. Tavrin runs without "
                                "it, and shows it when a tray appears.";
}

void QtStatusItem::setImage(const StatusImage& image)
{
    m_imageText = image.width > 0 && image.height > 0 ? image.text : QString();
    draw();
}

void QtStatusItem::setTitle(const QString& title)
{
    m_title = title;
    draw();
}

void QtStatusItem::setToolTip(const QString& text)
{
    m_icon.setToolTip(text);
}

void QtStatusItem::setAccessibilityLabel(const QString& text)
{
    m_menu.setAccessibleName(text);
    m_menu.setTitle(text);
}

void QtStatusItem::setMenu(const QList<MenuItem>& items)
{
    if (m_isMenuFilled)
        return updateMenu(m_menu, items);
    // It has some sixty entries, and nobody opens it before the window is there.
    m_firstItems = items;
    m_filling.start(0);
}

void QtStatusItem::fillMenu()
{
    if (!std::exchange(m_isMenuFilled, true))
        updateMenu(m_menu, std::exchange(m_firstItems, {}));
}

void QtStatusItem::draw()
{
    const QString text = m_title.isEmpty() ? m_imageText : m_title;
    if (!m_icon.icon().isNull() && text == m_drawn)
        return;
    m_drawn = text;
    m_icon.setIcon(statusIcon(text));
}

} // namespace tavrin
