#include "ui/controls/Label.h"

#include "ui/controls/Placing.h"

#include <QFontInfo>
#include <QPainter>
#include <QTextDocument>

#include <algorithm>
#include <cmath>

namespace tavrin::ui {

QString plainToolTip(const QString& text)
{
    constexpr qsizetype mostShown = 2000;
    const QString shown = text.left(mostShown);
    return Qt::mightBeRichText(shown) ? Qt::convertFromPlainText(shown) : shown;
}

namespace {

/// The lines of a body text of 12.5 points are 19 apart.
int usualLineHeight(const QFont& font)
{
    constexpr double lineSpacing = 1.48;
    constexpr double mostExtra = 6;
    const double size = QFontInfo(font).pixelSize();
    return static_cast<int>(std::lround(std::min(size * lineSpacing, size + mostExtra)));
}

} // namespace

Label::Label(QWidget& parent, const QRect& frame, const QFont& font, const QColor& color,
    const QString& text)
    : QLabel(&parent)
    , m_font(font)
    , m_frame(flipped(frame, parent.height()))
    , m_lineHeight(usualLineHeight(font))
{
    setTextFormat(Qt::PlainText);
    QLabel::setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    setGeometry(m_frame);
    setColor(color);
    setFullText(text);
}

void Label::setFullText(const QString& text)
{
    if (text == m_text && !m_shown.lines.isEmpty())
        return;
    m_text = text;
    fit();
}

void Label::setFont(const QFont& font)
{
    m_font = font;
    m_lineHeight = usualLineHeight(font);
    fit();
}

void Label::setColor(const QColor& color)
{
    QPalette colors = palette();
    colors.setColor(QPalette::WindowText, color);
    setPalette(colors);
}

void Label::setFitting(const Fitting& fitting)
{
    m_fitting = fitting;
    fit();
}

void Label::setSecondLine(SecondLine place, int lineHeight)
{
    m_secondLine = place;
    m_lineHeight = lineHeight;
    fit();
}

void Label::setTextAsToolTip()
{
    m_textIsToolTip = true;
    fit();
}

void Label::setAlignment(Qt::Alignment alignment)
{
    QLabel::setAlignment(alignment);
    update();
}

void Label::fit()
{
    m_shown = fitText(m_text, m_font, m_frame.width(), m_fitting);
    const int height =
        std::max(m_frame.height(), m_lineHeight * static_cast<int>(m_shown.lines.size()));
    const bool below = m_secondLine == SecondLine::Below;
    const int top = below ? m_frame.top() : m_frame.center().y() + 1 - (height + 1) / 2;
    setGeometry(m_frame.left(), top, m_frame.width(), height);
    setText(m_text); // For whoever asks the label what it says.
    setAccessibleName(m_text);
    setToolTip(m_textIsToolTip || m_shown.isElided ? plainToolTip(m_text) : QString());
    update();
}

void Label::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    painter.setFont(m_shown.font);
    painter.setPen(
        palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, QPalette::WindowText));
    const int lines = static_cast<int>(m_shown.lines.size());
    const int lineHeight = lines > 1 ? m_lineHeight : height();
    int top = (height() - lines * lineHeight) / 2;
    const auto flags = static_cast<int>((alignment() & Qt::AlignHorizontal_Mask) | Qt::AlignVCenter)
        | Qt::TextSingleLine | Qt::TextDontClip;
    for (const QString& line : m_shown.lines) {
        painter.drawText(QRect(0, top, width(), lineHeight), flags, line);
        top += lineHeight;
    }
}

} // namespace tavrin::ui
