#include "ui/controls/Popup.h"

#include "ui/BrandStyle.h"
#include "ui/controls/Painting.h"
#include "ui/controls/Placing.h"
#include "ui/controls/ScrollBar.h"
#include "ui/controls/Symbol.h"
#include "ui/controls/TextLines.h"

#include <QAbstractItemView>
#include <QKeyEvent>
#include <QListView>
#include <QPainter>
#include <QPainterPath>
#include <QProxyStyle>
#include <QRegion>
#include <QStyledItemDelegate>
#include <QWheelEvent>

using namespace Qt::StringLiterals;

namespace tavrin::ui {
namespace {

constexpr double radius = 9;
constexpr int listRadius = 12;
constexpr int itemHeight = 28;
constexpr int listInset = 5;
constexpr int mostVisible = 14;

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
        const QRect place = row.adjusted(28, 0, -10, 0);
        const TextLines text =
            fitText(index.data().toString(), brand::tavControlFont(), place.width(), elideAtOnce);
        painter->drawText(
            place, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine, text.lines.value(0));
    }

private:
    QComboBox& m_owner;
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
    }
    QComboBox::showPopup();
    QWidget& window = *view()->window();
    window.setContentsMargins(0, listInset, 0, listInset);
    QPainterPath outline;
    outline.addRoundedRect(QRectF(window.rect()), listRadius, listRadius);
    window.setMask(QRegion(outline.toFillPolygon().toPolygon()));
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
