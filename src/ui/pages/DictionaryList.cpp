#include "ui/pages/DictionaryList.h"

#include "ui/controls/AccessibleList.h"
#include "ui/controls/Button.h"
#include "ui/controls/FocusRing.h"
#include "ui/controls/ListKeys.h"
#include "ui/controls/Placing.h"
#include "ui/controls/ScrollBar.h"
#include "ui/pages/TermRow.h"
#include "ui/style/BrandStyle.h"

#include <QFocusEvent>
#include <QKeyEvent>
#include <QPainter>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace tavrin::ui {
namespace {

constexpr int rowHeight = TermRow::rowSize.height();
constexpr int rowsPerPage = 5;
constexpr QRect listFrame(1, 1, TermRow::rowSize.width(), rowsPerPage* rowHeight);
constexpr QRect barFrame(528, 8, 6, 316);
constexpr int slotCount = rowsPerPage + 1; // Between two rows, parts of one more are in sight.
constexpr int wheelStep = rowHeight / 3; // A notch of the wheel is three steps.
constexpr int hairlineLeft = 21;
constexpr int hairlineWidth = 494;

} // namespace

DictionaryList::DictionaryList(QWidget& card, const Localization& localization, Actions actions)
    : QAbstractScrollArea(&card)
    , m_actions(std::move(actions))
{
    place(*this, listFrame);
    setAccessibleList(*this);
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::ClickFocus);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    viewport()->setAutoFillBackground(false); // The card has round corners.
    viewport()->setObjectName(u"dictionaryDocumentView"_s);
    verticalScrollBar()->setSingleStep(wheelStep);
    for (int i = 0; i < slotCount; ++i)
        addSlot(localization);
    addBar(card);
}

/// The bar stands away from the corners of the card, where a list would not put its own.
void DictionaryList::addBar(QWidget& card)
{
    auto* const bar = new ScrollBar(&card);
    place(*bar, barFrame);
    bar->setFocusPolicy(Qt::NoFocus);
    QScrollBar* const own = verticalScrollBar();
    connect(own, &QScrollBar::rangeChanged, bar, [bar, own](int least, int most) {
        bar->setRange(least, most);
        bar->setPageStep(own->pageStep());
        bar->setVisible(most > least);
    });
    connect(own, &QScrollBar::valueChanged, bar, &QScrollBar::setValue);
    connect(bar, &QScrollBar::valueChanged, own, &QScrollBar::setValue);
    bar->hide();
}

void DictionaryList::addSlot(const Localization& localization)
{
    auto* const slot = new TermRow(*viewport(), localization);
    slot->hide();
    const auto& [edit, remove] = slot->buttons();
    connect(edit, &QAbstractButton::clicked, this,
        [this, slot] { m_actions.editTerm(QString(slot->identifier())); });
    connect(remove, &QAbstractButton::clicked, this,
        [this, slot] { m_actions.deleteTerm(QString(slot->identifier())); });
    for (Button* const button : slot->buttons())
        button->installEventFilter(this);
    m_slots.push_back(slot);
}

void DictionaryList::setRows(const QList<DictionaryRow>& rows, bool fromTop)
{
    const int offset = verticalScrollBar()->value();
    const QString top = m_rows.value(firstRow()).identifier;
    const QString current = m_rows.value(m_current.row).identifier;
    m_rows = rows;

    verticalScrollBar()->setPageStep(listFrame.height());
    verticalScrollBar()->setRange(
        0, std::max(0, static_cast<int>(rows.size()) * rowHeight - listFrame.height()));
    int newOffset = fromTop ? 0 : offset;
    if (const qsizetype moved = newOffset > 0 ? rowOf(top) : -1; moved >= 0)
        newOffset = static_cast<int>(moved) * rowHeight + offset % rowHeight;
    // A term that is gone leaves the keyboard to the one that took its place.
    const qsizetype kept = rowOf(current);
    m_current.row = kept >= 0 ? kept : std::min(m_current.row, rows.size() - 1);
    verticalScrollBar()->setValue(newOffset);
    fillSlots();
}

void DictionaryList::showTop()
{
    verticalScrollBar()->setValue(0);
}

void DictionaryList::fillSlots()
{
    const int offset = verticalScrollBar()->value();
    qsizetype row = firstRow();
    for (TermRow* const slot : m_slots) {
        if (row < m_rows.size()) {
            slot->setRow(m_rows[row]);
            slot->move(0, static_cast<int>(row) * rowHeight - offset);
            slot->show();
        }
        ++row;
    }
    if (hasKeyboard())
        moveKeyboard();
    // Not before the keyboard has left them: it would go anywhere.
    const qsizetype shown =
        std::clamp<qsizetype>(m_rows.size() - firstRow(), 0, std::ssize(m_slots));
    for (auto slot = m_slots.begin() + shown; slot != m_slots.end(); ++slot)
        (*slot)->hide();
    viewport()->update();
}

bool DictionaryList::hasKeyboard() const
{
    return hasFocus() || std::ranges::any_of(m_slots, [](const TermRow* slot) {
        return std::ranges::any_of(
            slot->buttons(), [](const Button* button) { return button->hasFocus(); });
    });
}

/// To the button that it was on, wherever that is now; to the list itself while it is out of sight.
void DictionaryList::moveKeyboard()
{
    const qsizetype slot = m_current.row - firstRow();
    const bool isInSight = m_current.row >= 0 && slot >= 0 && slot < std::ssize(m_slots)
        && m_slots[static_cast<std::size_t>(slot)]->y() < listFrame.height();
    if (!isInSight || m_current.row >= m_rows.size())
        setFocus(Qt::OtherFocusReason);
    else
        m_slots[static_cast<std::size_t>(slot)]
            ->buttons()
            .at(m_current.button)
            ->setFocus(Qt::OtherFocusReason);
}

bool DictionaryList::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::KeyPress)
        return handleKey(static_cast<QKeyEvent*>(event)->key());
    if (event->type() != QEvent::FocusIn)
        return false;
    for (std::size_t slot = 0; slot < m_slots.size(); ++slot) {
        const auto& buttons = m_slots[slot]->buttons();
        const auto button = std::ranges::find(buttons, watched);
        if (button == buttons.end())
            continue;
        m_current = {firstRow() + static_cast<qsizetype>(slot),
            static_cast<std::size_t>(button - buttons.begin())};
    }
    // A list that moved under the pointer would have another term pressed.
    if (isByKeyboard(static_cast<QFocusEvent*>(event)->reason()))
        makeVisible(m_current.row);
    return false;
}

void DictionaryList::keyPressEvent(QKeyEvent* event)
{
    if (!handleKey(event->key()))
        event->ignore();
}

bool DictionaryList::handleKey(int key)
{
    const auto row = rowAtKey(key, m_current.row, m_rows.size(),
        [this](int pages) { return m_current.row + static_cast<qsizetype>(pages) * rowsPerPage; });
    if (row)
        goTo(*row);
    return row.has_value();
}

void DictionaryList::goTo(qsizetype row)
{
    if (m_rows.isEmpty())
        return;
    m_current.row = std::clamp<qsizetype>(row, 0, m_rows.size() - 1);
    makeVisible(m_current.row);
    const auto slot = static_cast<std::size_t>(m_current.row - firstRow());
    m_slots.at(slot)->buttons().at(m_current.button)->setFocus(Qt::TabFocusReason);
}

void DictionaryList::makeVisible(qsizetype row)
{
    const int top = static_cast<int>(row) * rowHeight;
    const int offset = verticalScrollBar()->value();
    if (top < offset)
        verticalScrollBar()->setValue(top);
    else if (top + rowHeight > offset + listFrame.height())
        verticalScrollBar()->setValue(top + rowHeight - listFrame.height());
}

void DictionaryList::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(viewport());
    const int offset = verticalScrollBar()->value();
    for (qsizetype row = firstRow() + 1; row < m_rows.size(); ++row) {
        const int bottom = static_cast<int>(row) * rowHeight - offset - 1;
        if (bottom >= listFrame.height() - 1) // There the card has its border.
            break;
        painter.fillRect(hairlineLeft, bottom, hairlineWidth, 1, brand::hairline());
    }
}

void DictionaryList::scrollContentsBy(int /*dx*/, int /*dy*/)
{
    fillSlots();
}

qsizetype DictionaryList::firstRow() const
{
    return verticalScrollBar()->value() / rowHeight;
}

qsizetype DictionaryList::rowOf(const QString& identifier) const
{
    if (identifier.isEmpty())
        return -1;
    const auto found = std::ranges::find(m_rows, identifier, &DictionaryRow::identifier);
    return found == m_rows.end() ? -1 : found - m_rows.begin();
}

} // namespace tavrin::ui
