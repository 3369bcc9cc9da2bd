#include "ui/controls/Button.h"

#include "ui/controls/Painting.h"
#include "ui/controls/Placing.h"
#include "ui/controls/TextLines.h"
#include "ui/style/BrandStyle.h"

#include <QFontMetricsF>
#include <QKeyEvent>
#include <QPainter>
#include <QStyleOptionButton>

#include <cmath>

using namespace Qt::StringLiterals;

namespace tavrin::ui {
namespace {

constexpr double titleInset = 9;
constexpr double framedTitleInset = 5;
constexpr int plainHeight = 26;

struct Colours {
    QColor fill;
    QColor border;
    QColor text;
};

struct Phase {
    bool enabled;
    bool hovered;
    bool pressed;
};

Colours primaryColours(const Phase& phase, const QColor& normal, const QColor& hovered,
    const QColor& pressed, const QColor& disabled)
{
    if (!phase.enabled)
        return {disabled, {}, Qt::white};
    if (phase.pressed)
        return {pressed, {}, Qt::white};
    return {phase.hovered ? hovered : normal, {}, Qt::white};
}

Colours secondaryColours(const Phase& phase)
{
    if (!phase.enabled)
        return {brand::hover(), brand::tavBorder(), brand::disabledText()};
    if (phase.pressed)
        return {brand::pressed(), brand::borderHover(), brand::labelColor()};
    if (phase.hovered)
        return {brand::hover(), brand::borderHover(), brand::labelColor()};
    return {Qt::white, brand::tavBorder(), brand::labelColor()};
}

Colours plainColours(const Phase& phase, const QColor& underPointer)
{
    if (!phase.enabled)
        return {{}, {}, brand::disabledText()};
    if (phase.pressed)
        return {brand::pressed(), brand::tavBorder(), brand::labelColor()};
    if (phase.hovered)
        return {brand::hover(), brand::tavBorder(), underPointer};
    return {{}, {}, brand::secondaryLabelColor()};
}

Colours coloursOf(Button::Look look, const Phase& phase)
{
    switch (look) {
    case Button::Look::Primary:
        return primaryColours(phase, brand::tavPurple(), brand::purpleHover(),
            brand::purplePressed(), brand::purpleDisabled());
    case Button::Look::Danger:
        return primaryColours(phase, brand::systemRed(), brand::systemRed().darker(110),
            brand::systemRed().darker(125), brand::systemRed().lighter(160));
    case Button::Look::Secondary:
    case Button::Look::SmallSecondary:
        return secondaryColours(phase);
    case Button::Look::Plain:
        return plainColours(phase, brand::labelColor());
    case Button::Look::PlainDelete:
        return plainColours(phase, brand::systemRed());
    }
    Q_UNREACHABLE();
}

double radiusOf(Button::Look look)
{
    switch (look) {
    case Button::Look::Primary:
    case Button::Look::Danger:
        return 11;
    case Button::Look::Secondary:
        return 10;
    case Button::Look::SmallSecondary:
        return 9;
    case Button::Look::Plain:
    case Button::Look::PlainDelete:
        return 8;
    }
    Q_UNREACHABLE();
}

} // namespace

Button::Button(QWidget& parent, const QRect& frame, const QString& title, Look look)
    : Button(parent, title, look)
{
    place(*this, frame);
}

Button::Button(QWidget& parent, const QString& title, Look look)
    : QPushButton(title, &parent)
    , m_look(look)
{
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::StrongFocus);
    setAutoDefault(false);
}

void Button::setDoneText(const QString& text)
{
    m_doneText = text;
    setAccessibleName(text.isEmpty() ? QString() : text);
    update();
}

QFont Button::titleFont() const
{
    switch (m_look) {
    case Look::Primary:
    case Look::Danger:
        return brand::systemFont(13, QFont::DemiBold);
    case Look::Secondary:
        return brand::tavControlFont();
    case Look::SmallSecondary:
    case Look::Plain:
    case Look::PlainDelete:
        return brand::tavCaptionFont();
    }
    Q_UNREACHABLE();
}

QString Button::shownTitle() const
{
    return m_doneText.isEmpty() ? text().replace("&&"_L1, "&"_L1) : m_doneText;
}

QSize Button::sizeHint() const
{
    const double width =
        QFontMetricsF(titleFont()).horizontalAdvance(shownTitle()) + 2 * titleInset;
    return {static_cast<int>(std::ceil(width)), plainHeight};
}

void Button::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    Colours colours = coloursOf(m_look, {isEnabled(), underMouse(), isDown()});
    if (!m_doneText.isEmpty())
        colours = {{}, {}, brand::green()};
    const Box box{radiusOf(m_look), colours.fill, colours.border};
    if (box.fill.isValid() || box.border.isValid())
        drawBox(painter, rect(), box);
    const bool isPlain = m_look == Look::Plain || m_look == Look::PlainDelete;
    const double inset = isPlain ? titleInset : framedTitleInset;
    constexpr Fitting oneLineThatShrinks{1, 1};
    const TextLines title =
        fitText(shownTitle(), titleFont(), width() - 2 * inset + 1, oneLineThatShrinks);
    painter.setFont(title.font);
    painter.setPen(colours.text);
    painter.drawText(rect(), Qt::AlignCenter | Qt::TextSingleLine, title.lines.value(0));
}

void Button::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        click();
        return;
    }
    QPushButton::keyPressEvent(event);
}

} // namespace tavrin::ui
