#include "ui/controls/Popup.h"

#include "ui/controls/Painting.h"
#include "ui/controls/Placing.h"
#include "ui/controls/ScrollBar.h"
#include "ui/controls/Symbol.h"
#include "ui/controls/TextLines.h"
#include "ui/style/BrandStyle.h"

#include <QAbstractItemView>
#include <QFontMetricsF>
#include <QFrame>
#include <QKeyEvent>
#include <QListView>
#include <QPainter>
#include <QPainterPath>
#include <QProxyStyle>
#include <QRegion>
#include <QScreen>
#include <QStyledItemDelegate>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace tavrin::ui {
namespace {

constexpr double radius = 9;
constexpr int listRadius = 12;
constexpr int itemHeight = 28;
constexpr int listInset = 5;
constexpr int mostVisible = 14;
constexpr int textLeft = 28; // In a row, behind the tick.
constexpr int textRight = 10;

/// Shows the choices in a list below the control, not over it.
class ListStyle final : public QProxyStyle {
public:
    using QProxyStyle::QProxyStyle;

    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
        QStyleHintReturn* returnData) const override
    {
        return hint == SH_ComboBox_Popup ? 0
                                         : QProxyStyle::styleHint(hint, option, widget, returnData);
    }
};

QStyle* listStyle()
{
    static ListStyle style(u"Fusion"_s);
    return &style;
}

class ItemDelegate final : public QStyledItemDelegate {
public:
    explicit ItemDelegate(QComboBox& owner)
        : QStyledItemDelegate(&owner)
        , m_owner(owner)
    {
    }

    [[nodiscard]] QSize sizeHint(
        const QStyleOptionViewItem& /*option*/, const QModelIndex& /*index*/) const override
    {
        return {0, itemHeight};
    }

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
        const QModelIndex& index) const override
    {
        const QRect row = option.rect.adjusted(listInset, 0, -listInset, 0);
        const bool current = option.state.testFlag(QStyle::State_Selected)
            || option.state.testFlag(QStyle::State_MouseOver);
        if (current)
            drawBox(*painter, row, {8, brand::tint()});
        painter->setFont(brand::tavControlFont());
        if (index.row() == m_owner.currentIndex()) {
            painter->setPen(brand::tavPurple());
            painter->drawText(row.adjusted(9, 0, 0, 0), Qt::AlignVCenter | Qt::AlignLeft, u"✓"_s);
        }
        painter->setPen(current ? brand::deepPurple() : brand::labelColor());
        const QRect place = row.adjusted(textLeft, 0, -textRight, 0);
        const TextLines text =
            fitText(index.data().toString(), brand::tavControlFont(), place.width(), elideAtOnce);
        painter->drawText(
            place, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine, text.lines.value(0));
    }

private:
    QComboBox& m_owner;
};

/// The border around a list with round corners, over all that it holds.
class ListOutline final : public QWidget {
public:
    explicit ListOutline(QWidget& list)
        : QWidget(&list)
    {
        setObjectName(u"listOutline"_s);
        setAttribute(Qt::WA_TransparentForMouseEvents);
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override
    {
        QPainter painter(this);
        drawBox(painter, rect(), {listRadius, {}, brand::popupBorderHover()});
    }
};

} // namespace

Popup::Popup(QWidget& parent, const QRect& frame, const QString& name)
    : QComboBox(&parent)
{
    place(*this, frame);
    setStyle(listStyle());
    setAccessibleName(name);
    // On Linux the name that screen readers hear of a combo box is its choice.
    setAccessibleDescription(name);
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover);
    setMaxVisibleItems(mostVisible);
    setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
}

void Popup::setItems(const QStringList& titles, qsizetype selected)
{
    const QSignalBlocker blocker(this);
    QStringList present;
    for (int i = 0; i < count(); ++i)
        present.append(itemText(i));
    if (present != titles) {
        clear();
        addItems(titles);
    }
    setCurrentIndex(static_cast<int>(selected));
    setToolTip({});
    update();
}

void Popup::showPopup()
{
    // The list is only made when it is looked at: a page has many of them.
    if (!qobject_cast<QListView*>(view()) || !view()->itemDelegate()
        || view()->itemDelegate()->parent() != this) {
        auto* const list = new QListView(this);
        list->setFrameShape(QFrame::NoFrame);
        list->setVerticalScrollBar(new ScrollBar(list));
        setView(list);
        setItemDelegate(new ItemDelegate(*this));
        list->setMouseTracking(true);
        QPalette colors = list->palette();
        colors.setColor(QPalette::Base, Qt::white);
        colors.setColor(QPalette::Window, Qt::white);
        list->setPalette(colors);
        list->window()->setPalette(colors);
        if (auto* const frame = qobject_cast<QFrame*>(list->window()))
            frame->setFrameShape(QFrame::NoFrame);
        new ListOutline(*list->window());
    }
    QComboBox::showPopup();
    QWidget& window = *view()->window();
    window.setContentsMargins(0, listInset, 0, listInset);
    window.setGeometry(listPlace());
    QPainterPath outline;
    outline.addRoundedRect(QRectF(window.rect()), listRadius, listRadius);
    window.setMask(QRegion(outline.toFillPolygon().toPolygon()));
    auto* const border = window.findChild<QWidget*>(u"listOutline"_s);
    border->setGeometry(window.rect());
    border->raise();
    border->show();
}

QRect Popup::listPlace() const
{
    const QFontMetricsF metrics(brand::tavControlFont());
    double widest = 0;
    for (int i = 0; i < count(); ++i)
        widest = std::max(widest, metrics.horizontalAdvance(itemText(i)));
    constexpr int besideText = textLeft + textRight + 2 * listInset;
    const bool scrolls = count() > mostVisible;
    const int needed = static_cast<int>(std::ceil(widest)) + besideText
        + (scrolls ? view()->verticalScrollBar()->sizeHint().width() : 0);
    const QRect screen = this->screen()->availableGeometry();
    QRect place(mapToGlobal(QPoint(0, height())),
        QSize(std::min(std::max(width(), needed), screen.width()),
            std::min(count(), mostVisible) * itemHeight + 2 * listInset));
    if (place.bottom() > screen.bottom())
        place.moveBottom(mapToGlobal(QPoint()).y() - 1);
    if (place.right() > screen.right())
        place.moveRight(screen.right());
    return place;
}

void Popup::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    const bool isOpen = view()->isVisible();
    Box box{radius, brand::fieldBackground(), brand::tavBorder()};
    QColor color = brand::tavPurple();
    if (!isEnabled()) {
        box.fill = brand::hover();
        color = brand::disabledText();
    } else if (isOpen) {
        box.fill = brand::pressed();
        color = brand::purplePressed();
    } else if (underMouse()) {
        box.border = brand::popupBorderHover();
        color = brand::purpleHover();
    }
    drawBox(painter, rect(), box);
    constexpr int chevronWidth = 10;
    const QRect chevron(width() - 8 - chevronWidth, 0, chevronWidth, height());
    drawSymbol(painter, u"chevron-down"_s, chevron, color);
    const QRect place(10, 0, chevron.left() - 6 - 10, height());
    constexpr Fitting oneLineThatShrinks{1, 1};
    const TextLines text =
        fitText(currentText(), brand::tavControlFont(), place.width(), oneLineThatShrinks);
    if (text.isElided && toolTip().isEmpty())
        setToolTip(currentText());
    painter.setFont(text.font);
    painter.setPen(color);
    painter.drawText(
        place, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine, text.lines.value(0));
}

/// What is passed on the way to a choice must not be chosen: a shortcut that is taken already asks
/// for another one, and a short retention deletes.
void Popup::keyPressEvent(QKeyEvent* event)
{
    switch (event->key()) {
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
    case Qt::Key_Home:
    case Qt::Key_End:
        showPopup();
        break;
    default:
        QComboBox::keyPressEvent(event);
    }
}

/// A page that is scrolled must not change what the pointer happens to pass.
void Popup::wheelEvent(QWheelEvent* event)
{
    event->ignore();
}

} // namespace tavrin::ui
