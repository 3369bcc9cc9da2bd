#include "ui/pages/TermRow.h"

#include "app/pages/DictionaryTexts.h"
#include "app/settings/Localization.h"
#include "ui/controls/Button.h"
#include "ui/controls/FocusRing.h"
#include "ui/controls/Label.h"
#include "ui/controls/Painting.h"
#include "ui/controls/Placing.h"
#include "ui/style/BrandStyle.h"

#include <QFontMetricsF>
#include <QPainter>

#include <cmath>

using namespace Qt::StringLiterals;

namespace tavrin::ui {
namespace {

// The list lies one point inside of its card, whose edge the frames count from.
constexpr QRect termFrame(21, 34, 372, 20);
constexpr QPoint badgeOrigin(21, 11);
constexpr int buttonsRight = 525;
constexpr int buttonsTop = 20;
constexpr int buttonGap = 2;
constexpr qsizetype mostSpoken = 200; ///< Characters of a term in the name of a button.

} // namespace

/// Where a term is from: a short text in a coloured capsule.
class Badge final : public QLabel {
public:
    explicit Badge(QWidget& parent)
        : QLabel(&parent)
    {
        setTextFormat(Qt::PlainText);
    }

    void show(const QString& text, const QColor& color, const QColor& fill)
    {
        constexpr int height = 18;
        constexpr int inset = 8;
        m_color = color;
        m_fill = fill;
        setText(text);
        const double width = QFontMetricsF(brand::tavBadgeFont()).horizontalAdvance(text);
        place(*this, {badgeOrigin, QSize(static_cast<int>(std::ceil(width)) + 2 * inset, height)});
        update();
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override
    {
        QPainter painter(this);
        drawBox(painter, rect(), {height() / 2.0, m_fill});
        painter.setFont(brand::tavBadgeFont());
        painter.setPen(m_color);
        painter.drawText(rect(), Qt::AlignCenter | Qt::TextSingleLine, text());
    }

private:
    QColor m_color;
    QColor m_fill;
};

TermRow::TermRow(QWidget& parent, const Localization& localization)
    : QWidget(&parent)
    , m_localization(localization)
{
    resize(rowSize);
    m_term = new Label(*this, termFrame, brand::tavRowTitleFont(), brand::labelColor());
    m_term->setFitting(elideAtOnce);
    m_badge = new Badge(*this);
    m_buttons = {new Button(*this, localization.LT(texts::editRow), Button::Look::Plain),
        new Button(*this, localization.LT(texts::deleteRow), Button::Look::PlainDelete)};
    for (Button* const button : m_buttons) {
        FocusRing::setInside(*button);
        FocusRing::setRadius(*button, 8);
    }
    placeButtons();
    setRow({});
}

void TermRow::setRow(const DictionaryRow& row)
{
    // A press that began on one term must not end on another.
    if (row.identifier != m_row.identifier) {
        for (Button* const button : m_buttons)
            button->setDown(false);
    }
    m_row = row;
    m_term->setFullText(row.term);
    const QString source =
        m_localization.LT(row.isLearned ? texts::learnedBadge : texts::manualBadge);
    if (row.isLearned)
        m_badge->show(source, brand::deepPurple(), brand::tint());
    else
        m_badge->show(source, brand::secondaryLabelColor(), brand::sand());
    const QString spoken = row.term.left(mostSpoken);
    setAccessibleName(spoken);
    m_buttons[0]->setAccessibleName(m_localization.LT(texts::editNamedRow, spoken));
    m_buttons[1]->setAccessibleName(m_localization.LT(texts::deleteNamedRow, spoken));
}

void TermRow::placeButtons()
{
    int right = buttonsRight;
    for (Button* const button : {m_buttons[1], m_buttons[0]}) {
        const QSize size = button->sizeHint();
        button->setGeometry(QRect(QPoint(right - size.width(), buttonsTop), size));
        right -= size.width() + buttonGap;
    }
}

} // namespace tavrin::ui
