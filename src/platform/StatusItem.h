#pragma once

#include <QList>
#include <QString>

#include <functional>

namespace tavrin {

/// A drawing for the status bar: a rounded frame with a short text in its middle. Points; the
/// origin is at the bottom left. Drawn in the colour that the bar uses (a template image).
struct StatusImage {
    double width = 0;
    double height = 0;
    double frameX = 0;
    double frameY = 0;
    double frameWidth = 0;
    double frameHeight = 0;
    double cornerRadius = 0;
    double lineWidth = 0;
    QString text;
    double fontSize = 0; ///< Bold system font.
    double textOffsetY = 0; ///< Added to the centred position.
    QString accessibilityDescription;

    friend bool operator==(const StatusImage&, const StatusImage&) = default;
};

/// One entry of a menu. An entry with children opens a submenu and has no action of its own.
struct MenuItem {
    QString title; ///< Shown as it is; "&" marks nothing.
    bool separator = false;
    bool enabled = true;
    bool checked = false;
    QString keyEquivalent; ///< One letter, pressed with Command (Linux: Ctrl); empty for none.
    QList<MenuItem> children;
    std::function<void()> action;
};

/// The program's place in the status bar (Linux: the desktop's tray). Main thread only.
///
/// Where no tray exists, everything is accepted and nothing shown; the platform says so once, and
/// shows the item when a tray appears. A Linux tray shows squares: the image is drawn to fit, and
/// a title takes its place inside the frame.
class StatusItem {
public:
    virtual ~StatusItem() = default;

    /// Points; the item is made this wide where the bar allows widths.
    virtual void setLength(double length) = 0;
    virtual void setVisible(bool visible) = 0;

    /// Shows @p image; an image without size shows none.
    virtual void setImage(const StatusImage& image) = 0;
    virtual void setTitle(const QString& title) = 0;
    virtual void setToolTip(const QString& text) = 0;
    virtual void setAccessibilityLabel(const QString& text) = 0;

    /// Replaces the menu. Entries at the same place are changed in place, so that a menu that is
    /// open stays open.
    virtual void setMenu(const QList<MenuItem>& items) = 0;
};

} // namespace tavrin
