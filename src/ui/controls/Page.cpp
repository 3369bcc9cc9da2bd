#include "ui/controls/Page.h"

#include "ui/controls/Card.h"
#include "ui/controls/Label.h"
#include "ui/controls/Painting.h"
#include "ui/style/BrandStyle.h"

#include <QPainter>

namespace tavrin::ui {
namespace {

constexpr QRect pageFrame(190, 0, 610, 640);
constexpr QRect titleFrame(36, 584, 520, 34);
constexpr QRect subtitleFrame(36, 558, 520, 22);
constexpr int subtitleLineHeight = 19;

} // namespace

Page::Page(QWidget& parent, const QString& title, const QString& subtitle)
    : QWidget(&parent)
{
    setGeometry(pageFrame);
    setAccessibleName(title);
    new Label(*this, titleFrame, brand::tavPageTitleFont(), brand::labelColor(), title);
    auto* const below =
        new Label(*this, subtitleFrame, brand::tavSubtitleFont(), brand::tavSecondaryText());
    below->setSecondLine(Label::SecondLine::Below, subtitleLineHeight);
    below->setFullText(subtitle);
}

void Page::showEvent(QShowEvent* /*event*/)
{
    pageShown();
}

void Page::hideEvent(QHideEvent* /*event*/)
{
    pageHidden();
}

void Page::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    for (const QObject* child : children()) {
        const auto* const card = dynamic_cast<const Card*>(child);
        if (card && card->isVisible())
            drawShadow(painter, card->geometry(), card->radius(), cardShadow());
    }
}

} // namespace tavrin::ui
