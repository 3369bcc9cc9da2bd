#include "ui/controls/Toggle.h"

#include "ui/controls/Painting.h"
#include "ui/controls/Placing.h"
#include "ui/controls/Symbol.h"
#include "ui/controls/TextLines.h"
#include "ui/style/BrandStyle.h"

#include <QPainter>

using namespace Qt::StringLiterals;

namespace tavrin::ui {
namespace {

constexpr int boxSide = 16;
constexpr int boxGap = 8;
constexpr double outline = 1.5;
constexpr QColor disabledTrack(0xD5, 0xCF, 0xBF);

} // namespace

CheckBox::CheckBox(QWidget& parent, const QRect& frame, const QString& title)
    : QCheckBox(title, &parent)
{
    place(*this, frame);
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::StrongFocus);
}

void CheckBox::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    const QRect square(0, (height() - boxSide) / 2, boxSide, boxSide);
    Box box{5, Qt::white, isEnabled() ? brand::track() : disabledTrack, outline};
    if (isChecked()) {
        box.fill = isEnabled() ? brand::tavPurple() : brand::purpleDisabled();
        box.border = box.fill;
    } else if (isDown()) {
        box.fill = brand::pressed();
    } else if (underMouse()) {
        box.fill = brand::hover();
    }
    drawBox(painter, square, box);
    if (isChecked())
        drawSymbol(painter, u"tick"_s, square, Qt::white);
    const QRect place(boxSide + boxGap, 0, width() - boxSide - boxGap, height());
    constexpr Fitting oneLineThatShrinks{1, 1};
    const TextLines title =
        fitText(text(), brand::tavControlFont(), place.width(), oneLineThatShrinks);
    painter.setFont(title.font);
    painter.setPen(isEnabled() ? brand::labelColor() : brand::disabledText());
    painter.drawText(
        place, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine, title.lines.value(0));
}

bool CheckBox::hitButton(const QPoint& position) const
{
    return rect().contains(position);
}

Switch::Switch(QWidget& parent, const QRect& frame, const QString& name)
    : QCheckBox(&parent)
{
    place(*this, frame);
    setAccessibleName(name);
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::StrongFocus);
}

void Switch::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    const QColor edge = isEnabled() ? brand::track() : disabledTrack;
    const bool on = isChecked();
    const QColor onColor = isEnabled() ? brand::tavPurple() : brand::purpleDisabled();
    drawBox(painter, rect(),
        {height() / 2.0, on ? onColor : brand::sand(), on ? onColor : edge, outline});
    const double knob = on ? 16 : 18;
    const double inset = (height() - knob) / 2;
    const QRectF place(on ? width() - inset - knob : inset, inset, knob, knob);
    drawBox(painter, place, {knob / 2, Qt::white, on ? QColor() : edge, outline});
}

bool Switch::hitButton(const QPoint& position) const
{
    return rect().contains(position);
}

} // namespace tavrin::ui
