#pragma once

#include <QColor>
#include <QString>
#include <QWidget>

class QPainter;

namespace tavrin::ui {

/// Draws the symbol @p name of ":/Symbols" in @p color in the middle of @p place, in its own size.
void drawSymbol(QPainter& painter, const QString& name, const QRectF& place, const QColor& color);

/// A symbol in its frame; screen readers pass it by.
class Symbol final : public QWidget {
    Q_OBJECT

public:
    /// @param frame from the bottom left of @p parent.
    Symbol(QWidget& parent, const QRect& frame, QString name, const QColor& color);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString m_name;
    QColor m_color;
};

} // namespace tavrin::ui
