#include "ui/controls/FocusRing.h"

#include "ui/controls/Painting.h"
#include "ui/style/BrandStyle.h"

#include <QAbstractScrollArea>
#include <QApplication>
#include <QFocusEvent>
#include <QLineEdit>
#include <QPainter>
#include <QPlainTextEdit>
#include <QTextEdit>
#include <QVariant>

namespace tavrin::ui {
namespace {

constexpr auto radiusProperty = "focusRingRadius";
constexpr auto insideProperty = "focusRingInside";
constexpr auto noneProperty = "focusRingNone";
constexpr int ringWidth = 2;
constexpr int ringGap = 2;
constexpr double usualRadius = 10;

bool wantsNone(const QWidget& control)
{
    return control.property(noneProperty).toBool() || qobject_cast<const QLineEdit*>(&control)
        || qobject_cast<const QTextEdit*>(&control)
        || qobject_cast<const QPlainTextEdit*>(&control);
}

/// What of @p window may be covered around @p control: the list that it lies in, or everything.
QRect room(const QWidget& control, const QWidget& window)
{
    for (QWidget* parent = control.parentWidget(); parent && parent != &window;
         parent = parent->parentWidget()) {
        const auto* const list = qobject_cast<QAbstractScrollArea*>(parent);
        if (list)
            return {list->mapTo(&window, QPoint()), list->size()};
    }
    return window.rect();
}

} // namespace

bool isByKeyboard(Qt::FocusReason reason)
{
    return reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason
        || reason == Qt::ShortcutFocusReason;
}

FocusRing::FocusRing(QWidget& window)
    : QWidget(&window)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    hide();
    qApp->installEventFilter(this);
}

void FocusRing::setRadius(QWidget& control, double radius)
{
    control.setProperty(radiusProperty, radius);
}

void FocusRing::setInside(QWidget& control)
{
    control.setProperty(insideProperty, true);
}

void FocusRing::setNone(QWidget& control)
{
    control.setProperty(noneProperty, true);
}

bool FocusRing::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type()) {
    case QEvent::FocusIn: {
        auto* const control = qobject_cast<QWidget*>(watched);
        if (!control || control->window() != window() || control == window())
            break;
        const Qt::FocusReason reason = static_cast<QFocusEvent*>(event)->reason();
        if (reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason
            && reason != Qt::OtherFocusReason)
            m_keyboard = isByKeyboard(reason);
        follow(control);
        break;
    }
    case QEvent::FocusOut:
        if (watched == m_control)
            follow(nullptr);
        break;
    case QEvent::Move:
    case QEvent::Resize:
    case QEvent::Show:
    case QEvent::Hide:
        if (m_control && watched != this && watched->isWidgetType()
            && (watched == m_control || static_cast<QWidget*>(watched)->isAncestorOf(m_control)))
            updatePlace();
        break;
    default:
        break;
    }
    return false;
}

void FocusRing::follow(QWidget* control)
{
    m_control = control;
    updatePlace();
}

void FocusRing::updatePlace()
{
    const QWidget* const control = m_control.data();
    if (!control || !m_keyboard || wantsNone(*control) || !control->isVisible()) {
        hide();
        return;
    }
    const bool inside = control->property(insideProperty).toBool();
    const int outside = inside ? 0 : ringGap + ringWidth;
    const QRect around = QRect(control->mapTo(window(), QPoint()), control->size())
                             .adjusted(-outside, -outside, outside, outside);
    setGeometry(around);
    const QRect visible = around & room(*control, *window());
    setMask(visible.translated(-around.topLeft()));
    raise();
    setVisible(!visible.isEmpty());
    update();
}

void FocusRing::paintEvent(QPaintEvent* /*event*/)
{
    const QWidget* const control = m_control.data();
    if (!control)
        return;
    QPainter painter(this);
    const QVariant radius = control->property(radiusProperty);
    const bool inside = control->property(insideProperty).toBool();
    const double own = radius.isValid() ? radius.toDouble() : usualRadius;
    drawBox(painter, rect(),
        {inside ? own : own + ringGap + ringWidth, {}, brand::tavPurple(), ringWidth});
}

} // namespace tavrin::ui
