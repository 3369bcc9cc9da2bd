#include "ui/controls/Segments.h"

#include "ui/controls/Painting.h"
#include "ui/controls/Placing.h"
#include "ui/controls/TextLines.h"
#include "ui/style/BrandStyle.h"

#include <QPainter>
#include <QRadioButton>

namespace tavrin::ui {
namespace {

constexpr int inset = 2;

class Segment final : public QRadioButton {
public:
    Segment(QWidget* parent, const QString& title)
        : QRadioButton(title, parent)
    {
        setAttribute(Qt::WA_Hover);
        setFocusPolicy(Qt::StrongFocus);
    }

protected:
    [[nodiscard]] bool hitButton(const QPoint& position) const override
    {
        return rect().contains(position);
    }

    void paintEvent(QPaintEvent* /*event*/) override
    {
        QPainter painter(this);
        constexpr double radius = 7;
        constexpr int hoverAlpha = 178;
        if (isChecked())
            drawBox(painter, rect(),
                {radius, isEnabled() ? brand::tavPurple() : brand::purpleDisabled()});
        else if (underMouse() && isEnabled())
            drawBox(painter, rect(), {radius, QColor(255, 255, 255, hoverAlpha)});
        constexpr Fitting oneLineThatShrinks{1, 1};
        const TextLines title =
            fitText(text(), brand::tavControlFont(), width() - 6, oneLineThatShrinks);
        painter.setFont(title.font);
        painter.setPen(isChecked() ? QColor(Qt::white)
                                   : (isEnabled() ? brand::labelColor() : brand::disabledText()));
        painter.drawText(rect(), Qt::AlignCenter | Qt::TextSingleLine, title.lines.value(0));
    }
};

} // namespace

Segments::Segments(QWidget& parent, const QRect& frame, const QStringList& titles)
    : QWidget(&parent)
{
    place(*this, frame);
    const auto count = static_cast<int>(titles.size());
    for (int i = 0; i < count; ++i) {
        auto* const button = new Segment(this, titles[i]);
        const int left = inset + (width() - 2 * inset) * i / count;
        const int right = inset + (width() - 2 * inset) * (i + 1) / count;
        button->setGeometry(left, inset, right - left, height() - 2 * inset);
        m_buttons.append(button);
        connect(button, &QRadioButton::toggled, this, [this, i](bool on) {
            if (on && m_handler)
                m_handler(i);
        });
    }
    setSelected(0);
}

void Segments::setSelected(qsizetype index)
{
    if (index < 0 || index >= m_buttons.size())
        return;
    const std::function<void(qsizetype)> handler = std::exchange(m_handler, {});
    m_buttons[index]->setChecked(true);
    m_handler = handler;
}

qsizetype Segments::selected() const
{
    for (qsizetype i = 0; i < m_buttons.size(); ++i) {
        if (m_buttons[i]->isChecked())
            return i;
    }
    return 0;
}

void Segments::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    drawBox(painter, rect(), {9, brand::sand()});
}

} // namespace tavrin::ui
