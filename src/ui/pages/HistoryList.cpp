#include "ui/pages/HistoryList.h"

#include "app/pages/history/HistoryTexts.h"
#include "app/settings/Localization.h"
#include "ui/controls/AccessibleList.h"
#include "ui/controls/Card.h"
#include "ui/controls/ListKeys.h"
#include "ui/controls/Painting.h"
#include "ui/controls/Placing.h"
#include "ui/controls/ScrollBar.h"
#include "ui/style/BrandStyle.h"

#include <QFocusEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QScopedValueRollback>

#include <algorithm>
#include <iterator>

using namespace Qt::StringLiterals;

namespace tavrin::ui {
namespace {

constexpr int cardLeft = 16;
constexpr QRect barFrame(575, 16, 6, 366);
constexpr QRect dayFrame(18, 5, 300, 22);
constexpr int dayHeight = 34;
constexpr int shadowReach = 28; // Below a card that is itself out of sight.
constexpr int cardCount = 6; // Of 94 points and more, with parts of two at the edges.
constexpr int wheelStep = 32; // A notch of the wheel is three steps.

} // namespace

HistoryList::HistoryList(QWidget& parent, const QRect& frame, const Localization& localization,
    const RecordCard::Actions& actions)
    : QAbstractScrollArea(&parent)
{
    place(*this, frame);
    setObjectName(u"historyList"_s);
    setAccessibleList(*this);
    setAccessibleName(localization.LT(texts::historyTitle));
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::ClickFocus);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    viewport()->setObjectName(u"historyDocumentView"_s);
    viewport()->setAutoFillBackground(false);
    QScrollBar* const own = verticalScrollBar();
    own->setSingleStep(wheelStep);
    own->setPageStep(height());
    for (int i = 0; i < cardCount; ++i)
        addCard(localization, actions);

    // The bar stands at the edge of the page's column, where a list would not put its own.
    auto* const bar = new ScrollBar(this);
    place(*bar, barFrame);
    bar->setFocusPolicy(Qt::NoFocus);
    connect(own, &QScrollBar::rangeChanged, bar, [bar, own](int least, int most) {
        bar->setRange(least, most);
        bar->setPageStep(own->pageStep());
        bar->setVisible(most > least);
    });
    connect(own, &QScrollBar::valueChanged, bar, &QScrollBar::setValue);
    connect(bar, &QScrollBar::valueChanged, own, &QScrollBar::setValue);
    bar->hide();

    m_topBorder = new ui::Panel(*this, QRect(0, height() - 1, width(), 1), 0, brand::tavBorder());
    m_topBorder->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_topBorder->hide();
}

void HistoryList::addCard(const Localization& localization, const RecordCard::Actions& actions)
{
    auto* const card = new RecordCard(*viewport(), localization, actions);
    card->hide();
    for (QWidget* const control : card->controls())
        control->installEventFilter(this);
    m_cards.push_back(card);
}

void HistoryList::setContent(const Content& content, bool fromTop)
{
    const Anchor kept = anchor();
    const QString current = m_current.row >= 0 && m_current.row < m_content.rows.size()
        ? m_content.rows.idOf(m_current.row)
        : QString();
    const bool isSame = content.rows.isSameAs(m_content.rows)
        && content.openedRecordIDs == m_content.openedRecordIDs;
    m_content = content;
    m_isStale = true;
    if (!isSame) {
        layOut();
        // A record that is gone leaves the keyboard to the one that took its place.
        const auto found = current.isEmpty() ? std::nullopt : m_content.rows.indexOf(current);
        m_current.row = found.value_or(std::min(m_current.row, m_content.rows.size() - 1));
        if (fromTop)
            verticalScrollBar()->setValue(0);
        else
            restore(kept);
    }
    fillCards();
}

HistoryList::Anchor HistoryList::anchor() const
{
    const int top = verticalScrollBar()->value();
    const qsizetype row = m_layout.firstRowBelow(top);
    if (top == 0 || row >= m_content.rows.size())
        return {}; // Whoever is at the top wants to see what is new there.
    return {m_content.rows.idOf(row), top - m_layout.itemOfRow(row).top};
}

void HistoryList::restore(const Anchor& anchor)
{
    if (anchor.id.isEmpty())
        return;
    if (const auto row = m_content.rows.indexOf(anchor.id))
        verticalScrollBar()->setValue(m_layout.itemOfRow(*row).top + anchor.above);
}

void HistoryList::layOut()
{
    m_layout = HistoryLayout(m_content.rows, m_content.openedRecordIDs,
        [this](qsizetype row) { return RecordCard::countLines(m_content.rows.row(row).text); });
    verticalScrollBar()->setRange(0, std::max(0, m_layout.height() - height()));
}

void HistoryList::fillCards()
{
    // A control that is hidden passes the keyboard on.
    const QScopedValueRollback filling(m_isFilling, true);
    const bool hadKeyboard = hasKeyboard();
    const int top = verticalScrollBar()->value();
    const qsizetype first = m_layout.firstRowBelow(top);
    const bool isMoved = m_isStale || first != m_firstRow;
    m_firstRow = first;
    m_isStale = false;
    qsizetype row = first;
    for (RecordCard* const card : m_cards) {
        if (row >= m_content.rows.size())
            break;
        if (isMoved)
            card->setContent(contentOf(row));
        card->move(cardLeft, m_layout.itemOfRow(row).top - top);
        card->show();
        ++row;
    }
    if (hadKeyboard)
        moveKeyboard();
    for (auto card = m_cards.begin() + (row - first); card != m_cards.end(); ++card)
        (*card)->hide();
    m_topBorder->setVisible(top > 0);
    viewport()->update();
}

RecordCard::Content HistoryList::contentOf(qsizetype row) const
{
    RecordCard::Content content;
    content.row = m_content.rows.row(row);
    content.day = dayOf(row);
    content.lines = m_layout.linesOf(row);
    content.isOpened = m_content.openedRecordIDs.contains(content.row.id);
    content.isCopied = !content.row.id.isEmpty() && content.row.id == m_content.copiedRecordID;
    content.query = m_content.query;
    return content;
}

const QString& HistoryList::dayOf(qsizetype row) const
{
    const auto& days = m_content.rows.days();
    const auto next = std::ranges::upper_bound(days, row, {}, &HistoryRows::Day::firstRow);
    return std::prev(next)->label; // The first day begins with the first row.
}

bool HistoryList::hasKeyboard() const
{
    return hasFocus() || std::ranges::any_of(m_cards, [](const RecordCard* card) {
        return std::ranges::any_of(
            card->controls(), [](const QWidget* control) { return control->hasFocus(); });
    });
}

RecordCard* HistoryList::cardOf(qsizetype row) const
{
    const qsizetype place = row - m_firstRow;
    if (row < 0 || row >= m_content.rows.size() || place < 0 || place >= std::ssize(m_cards))
        return nullptr;
    RecordCard* const card = m_cards.at(static_cast<std::size_t>(place));
    return card->y() < height() ? card : nullptr;
}

/// To the control that it was on, wherever that is now; to the list itself while it is out of
/// sight.
void HistoryList::moveKeyboard()
{
    RecordCard* const card = cardOf(m_current.row);
    if (!card) {
        setFocus(Qt::OtherFocusReason);
        return;
    }
    QWidget* const control = card->controls().at(m_current.control);
    (control->isHidden() ? card : control)->setFocus(Qt::OtherFocusReason);
}

bool HistoryList::takeKeyboard(Qt::FocusReason reason)
{
    if (m_content.rows.isEmpty())
        return false;
    m_cards.front()->setFocus(reason);
    return true;
}

bool HistoryList::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::KeyPress)
        return handleKey(static_cast<QKeyEvent*>(event)->key());
    if (event->type() != QEvent::FocusIn || m_isFilling)
        return QAbstractScrollArea::eventFilter(watched, event);
    for (std::size_t place = 0; place < m_cards.size(); ++place) {
        const auto& controls = m_cards[place]->controls();
        const auto* const control = std::ranges::find(controls, watched);
        if (control != controls.end())
            m_current = {m_firstRow + static_cast<qsizetype>(place),
                static_cast<std::size_t>(control - controls.begin())};
    }
    // What is moved to by scrolling must not be scrolled to.
    if (static_cast<QFocusEvent*>(event)->reason() != Qt::OtherFocusReason)
        makeVisible(m_current.row);
    return false;
}

void HistoryList::keyPressEvent(QKeyEvent* event)
{
    if (!handleKey(event->key()))
        event->ignore();
}

bool HistoryList::handleKey(int key)
{
    if (m_content.rows.isEmpty())
        return false;
    const auto row = rowAtKey(key, m_current.row, m_content.rows.size(), [this](int pages) {
        const qsizetype from = std::max<qsizetype>(m_current.row, 0);
        return rowAt(m_layout.itemOfRow(from).top + pages * height());
    });
    if (row)
        goTo(*row);
    return row.has_value();
}

void HistoryList::goTo(qsizetype row)
{
    m_current.row = std::clamp<qsizetype>(row, 0, m_content.rows.size() - 1);
    makeVisible(m_current.row);
    if (RecordCard* const card = cardOf(m_current.row)) {
        QWidget* const control = card->controls().at(m_current.control);
        (control->isHidden() ? card : control)->setFocus(Qt::TabFocusReason);
    }
}

qsizetype HistoryList::rowAt(int y) const
{
    return m_layout.firstRowBelow(std::clamp(y, 0, m_layout.height()));
}

void HistoryList::makeVisible(qsizetype row)
{
    if (row < 0 || row >= m_content.rows.size())
        return;
    const HistoryLayout::Item item = m_layout.itemOfRow(row);
    const auto& days = m_content.rows.days();
    const bool beginsDay = std::ranges::binary_search(days, row, {}, &HistoryRows::Day::firstRow);
    const int top = item.top - (beginsDay ? dayHeight : wheelStep / 4);
    const int bottom = item.top + item.height + wheelStep / 4;
    const int offset = verticalScrollBar()->value();
    if (top < offset || item.height > height())
        verticalScrollBar()->setValue(top);
    else if (bottom > offset + height())
        verticalScrollBar()->setValue(bottom - height());
}

void HistoryList::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(viewport());
    const int offset = verticalScrollBar()->value();
    painter.setFont(brand::tavRowTitleFont());
    painter.setPen(brand::secondaryLabelColor());
    const auto items = m_layout.itemsBetween(offset - shadowReach, offset + height() + shadowReach);
    for (const HistoryLayout::Item& item : items) {
        const int top = item.top - offset;
        if (item.isDay)
            painter.drawText(flipped(dayFrame, dayHeight).translated(0, top),
                Qt::AlignVCenter | Qt::TextSingleLine, m_content.rows.days().at(item.index).label);
        else
            drawShadow(painter, {cardLeft, top, RecordCard::cardWidth, item.height},
                RecordCard::cardRadius, cardShadow());
    }
}

void HistoryList::scrollContentsBy(int /*dx*/, int /*dy*/)
{
    if (!m_isStale)
        fillCards();
}

} // namespace tavrin::ui
