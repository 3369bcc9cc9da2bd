#include "ui/window/PageTransition.h"

#include "ui/style/BrandStyle.h"

#include <QPainter>

namespace tavrin::ui {
namespace {

constexpr int duration = 160; // Milliseconds.
constexpr double opacityAtFirst = 0.94;
constexpr double pointsBelow = 4;

} // namespace

PageTransition::PageTransition(QWidget& window)
    : QWidget(&window)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAttribute(Qt::WA_OpaquePaintEvent);
    hide();
    m_progress.setDuration(duration);
    m_progress.setEasingCurve(QEasingCurve::OutCubic);
    m_progress.setStartValue(0.0);
    m_progress.setEndValue(1.0);
    connect(&m_progress, &QVariantAnimation::valueChanged, this, [this] { update(); });
    connect(&m_progress, &QVariantAnimation::finished, this, [this] { stop(); });
}

void PageTransition::start(QWidget& page)
{
    m_progress.stop();
    m_picture = page.grab();
    setGeometry(page.geometry());
    raise();
    show();
    m_progress.start();
}

void PageTransition::stop()
{
    m_progress.stop();
    m_picture = {};
    hide();
}

void PageTransition::paintEvent(QPaintEvent* /*event*/)
{
    const double progress = m_progress.currentValue().toDouble();
    QPainter painter(this);
    painter.fillRect(rect(), brand::tavWarmBackground());
    painter.setOpacity(opacityAtFirst + (1 - opacityAtFirst) * progress);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawPixmap(QPointF(0, pointsBelow * (1 - progress)), m_picture);
}

} // namespace tavrin::ui
