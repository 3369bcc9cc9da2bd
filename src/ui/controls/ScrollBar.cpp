#include "ui/controls/ScrollBar.h"

#include "ui/controls/Painting.h"

#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace tavrin::ui {
namespace {

constexpr int barWidth = 6;
constexpr double leastHandle = 28;
constexpr QColor handleColor(90, 80, 50, 71);
constexpr QColor activeColor(90, 80, 50, 120);

} // namespace

ScrollBar::ScrollBar(QWidget* parent)
    : QScrollBar(Qt::Vertical, parent)
{
    setAttribute(Qt::WA_Hover);
    setAttribute(Qt::WA_OpaquePaintEvent, false);
}

QSize ScrollBar::sizeHint() const
{
    return {barWidth, static_cast<int>(leastHandle)}; // A list hides a bar without any size.
}

QRectF ScrollBar::handle() const
{
    const double range = maximum() - minimum();
    const double length = std::max(leastHandle, height() * pageStep() / (range + pageStep()));
    const double top = range > 0 ? (height() - length) * (value() - minimum()) / range : 0;
    return {0, top, static_cast<double>(width()), length};
}

void ScrollBar::paintEvent(QPaintEvent* /*event*/)
{
    if (maximum() <= minimum())
        return;
    QPainter painter(this);
    drawBox(painter, handle(),
        {barWidth / 2.0, underMouse() || m_grabbedAt >= 0 ? activeColor : handleColor});
}

void ScrollBar::mousePressEvent(QMouseEvent* event)
{
    const QRectF bar = handle();
    const int y = event->position().toPoint().y();
    if (y < bar.top() || y > bar.bottom()) {
        triggerAction(y < bar.top() ? SliderPageStepSub : SliderPageStepAdd);
        return;
    }
    m_grabbedAt = static_cast<int>(y - bar.top());
    update();
}

void ScrollBar::mouseMoveEvent(QMouseEvent* event)
{
    if (m_grabbedAt < 0)
        return;
    const double room = height() - handle().height();
    const double share = room > 0 ? (event->position().y() - m_grabbedAt) / room : 0;
    setValue(minimum()
        + static_cast<int>(std::lround(std::clamp(share, 0.0, 1.0) * (maximum() - minimum()))));
}

void ScrollBar::mouseReleaseEvent(QMouseEvent* /*event*/)
{
    m_grabbedAt = -1;
    update();
}

} // namespace tavrin::ui
