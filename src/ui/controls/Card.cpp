#include "ui/controls/Card.h"

#include "ui/controls/Label.h"
#include "ui/controls/Painting.h"
#include "ui/controls/Placing.h"
#include "ui/style/BrandStyle.h"

#include <QPainter>

namespace tavrin::ui {

Card::Card(QWidget& parent, const QRect& frame, int radius)
    : QWidget(&parent)
    , m_radius(radius)
{
    place(*this, frame);
}

void Card::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    drawBox(painter, rect(), {static_cast<double>(m_radius), Qt::white, brand::tavBorder()});
}

Panel::Panel(QWidget& parent, const QRect& frame, int radius, const QColor& fill)
    : QWidget(&parent)
    , m_radius(radius)
    , m_fill(fill)
{
    place(*this, frame);
}

void Panel::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    if (m_radius == 0)
        painter.fillRect(rect(), m_fill);
    else
        drawBox(painter, rect(), {static_cast<double>(m_radius), m_fill});
}

Panel* addHairline(QWidget& parent, const QRect& frame)
{
    return new Panel(parent, frame, 0, brand::hairline());
}

void addCaption(QWidget& card, int y, const QString& text)
{
    new Label(
        card, QRect(22, y, 138, 30), brand::tavBodyFont(), brand::secondaryLabelColor(), text);
}

} // namespace tavrin::ui
