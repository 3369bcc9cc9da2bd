#include "ui/pages/RecordCard.h"

#include "app/pages/history/HistoryTexts.h"
#include "app/settings/Localization.h"
#include "ui/controls/Button.h"
#include "ui/controls/FocusRing.h"
#include "ui/controls/Painting.h"
#include "ui/controls/Placing.h"
#include "ui/controls/Symbol.h"
#include "ui/style/BrandStyle.h"

#include <QAbstractButton>
#include <QAccessibleWidget>
#include <QFontMetricsF>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include <utility>

using namespace Qt::StringLiterals;

namespace tavrin::ui {
namespace {

constexpr int mostLines = 60;
constexpr int lineHeight = 20;
constexpr int textLeft = 22;
constexpr int textWidth = 494;
constexpr int textBottom = 13;
// Counted from the first line of the text upwards, which has more lines below it when it is long.
constexpr QRect headerFrame(22, 58, 304, 24);
constexpr QRect captionFrame(22, 36, 460, 16);
constexpr int buttonsRight = 526;
constexpr int buttonsBottom = 57;
constexpr int buttonGap = 2;
constexpr QRect chevronFrame(499, 32, 24, 24); // Around a drawing of 10 × 14 points.
constexpr double buttonRadius = 8;

RecordText::Options textOptions(int lines)
{
    constexpr qsizetype mostUnits = 300;
    constexpr qsizetype mostUnitsWhenOpened = 12'000;
    return {.font = brand::tavBodyFont(),
        .width = textWidth,
        .mostLines = lines,
        .mostUnits = lines > 2 ? mostUnitsWhenOpened : mostUnits};
}

/// Shows the whole text, or less again.
class Chevron final : public QAbstractButton {
public:
    explicit Chevron(QWidget* parent)
        : QAbstractButton(parent)
    {
        setAttribute(Qt::WA_Hover);
        setFocusPolicy(Qt::StrongFocus);
        setCheckable(false);
    }

    void setOpened(bool opened)
    {
        m_opened = opened;
        update();
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override
    {
        QPainter painter(this);
        if (isDown() || underMouse())
            drawBox(painter, rect(), {buttonRadius, isDown() ? brand::pressed() : brand::hover()});
        drawSymbol(painter, m_opened ? u"chevron-up"_s : u"chevron-down"_s, rect(),
            underMouse() ? brand::labelColor() : brand::secondaryLabelColor());
    }

    void keyPressEvent(QKeyEvent* event) override
    {
        if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
            click();
        else
            QAbstractButton::keyPressEvent(event);
    }

private:
    bool m_opened = false;
};

/// A record for screen readers: an item of a list.
class RecordInterface final : public QAccessibleWidget {
public:
    explicit RecordInterface(RecordCard& card)
        : QAccessibleWidget(&card, QAccessible::ListItem)
        , m_card(card)
    {
    }

    [[nodiscard]] QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.expandable = m_card.canOpen();
        state.expanded = m_card.content().isOpened;
        state.collapsed = state.expandable && !state.expanded;
        return state;
    }

private:
    RecordCard& m_card;
};

QAccessibleInterface* accessibleRecord(const QString& /*className*/, QObject* object)
{
    auto* const card = dynamic_cast<RecordCard*>(object);
    return card ? new RecordInterface(*card) : nullptr;
}

Button* addButton(RecordCard& card)
{
    auto* const button = new Button(card, {}, Button::Look::Plain);
    FocusRing::setInside(*button);
    FocusRing::setRadius(*button, buttonRadius);
    return button;
}

} // namespace

RecordCard::RecordCard(QWidget& parent, const Localization& localization, Actions actions)
    : QWidget(&parent)
    , m_localization(localization)
    , m_actions(std::move(actions))
    , m_copy(addButton(*this))
    , m_toggle(addButton(*this))
    , m_delete(new Button(*this, localization.LT(texts::deleteRecord), Button::Look::PlainDelete))
    , m_chevron(new Chevron(this))
    , m_controls{this, m_copy, m_toggle, m_delete, m_chevron}
{
    static const bool isKnown = [] {
        QAccessible::installFactory(&accessibleRecord);
        return true;
    }();
    Q_UNUSED(isKnown)
    m_copy->setText(localization.LT(texts::copyRecord));
    for (QWidget* const button :
        {static_cast<QWidget*>(m_delete), static_cast<QWidget*>(m_chevron)}) {
        FocusRing::setInside(*button);
        FocusRing::setRadius(*button, buttonRadius);
    }
    FocusRing::setRadius(*this, cardRadius);
    setFocusPolicy(Qt::TabFocus);
    // Copies: the record may be another one, or none, when the handler returns.
    const auto onClick = [this](QAbstractButton* button, const Handler& handler) {
        connect(button, &QAbstractButton::clicked, this,
            [this, handler] { handler(QString(m_content.row.id)); });
    };
    onClick(m_copy, m_actions.copy);
    onClick(m_toggle, m_actions.toggleOriginal);
    onClick(m_delete, m_actions.remove);
    onClick(m_chevron, m_actions.toggleWholeText);
}

void RecordCard::setContent(const Content& content)
{
    m_content = content;
    RecordText::Options options = textOptions(content.lines);
    options.query = content.query;
    m_text.setText(content.row.text, options);
    constexpr qsizetype mostSpoken = 2000;
    setAccessibleName(spokenName());
    setAccessibleDescription(content.row.caption + u": "_s + content.row.text.left(mostSpoken));
    m_copy->setDoneText(content.isCopied ? m_localization.LT(texts::recordCopied) : QString());
    m_toggle->setText(
        m_localization.LT(content.row.showsOriginal ? texts::showResult : texts::showOriginal));
    if (!content.isCopied)
        nameAfterRecord(*m_copy);
    nameAfterRecord(*m_toggle);
    nameAfterRecord(*m_delete);
    m_chevron->setText(m_localization.LT(
        content.isOpened ? texts::showLessText : texts::showWholeText)); // It is not drawn.
    static_cast<Chevron*>(m_chevron)->setOpened(content.isOpened);
    m_chevron->setVisible(canOpen());
    resize(cardWidth, headerFrame.bottom() + 1 + 12 + (content.lines - 1) * lineHeight);
    placeControls();
    update();
}

QString RecordCard::spokenName() const
{
    return m_content.day + u", "_s + m_content.row.header;
}

/// Every record has the same buttons: their names say whose they are.
void RecordCard::nameAfterRecord(Button& button) const
{
    button.setAccessibleName(button.text() + u" · "_s + spokenName());
}

int RecordCard::countLines(const QString& text)
{
    RecordText counted;
    counted.setText(text, textOptions(mostLines));
    return counted.lineCount();
}

void RecordCard::placeControls()
{
    const int below = (m_content.lines - 1) * lineHeight;
    int right = buttonsRight;
    for (Button* const button : {m_delete, m_toggle, m_copy}) {
        const QSize size = button->sizeHint();
        right -= size.width();
        place(*button, {QPoint(right, buttonsBottom + below), size});
        right -= buttonGap;
    }
    place(*m_chevron, chevronFrame.translated(0, below));
}

void RecordCard::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    drawBox(painter, rect(), {cardRadius, Qt::white, brand::tavBorder()});
    const int below = (m_content.lines - 1) * lineHeight;

    QRectF header = flipped(headerFrame.translated(0, below), height());
    const QFont bold = brand::systemFont(13, QFont::DemiBold);
    painter.setPen(brand::labelColor());
    painter.setFont(bold);
    painter.drawText(header, Qt::AlignVCenter | Qt::TextSingleLine, m_content.row.time);
    header.setLeft(header.left() + QFontMetricsF(bold).horizontalAdvance(m_content.row.time));
    const QFont plain = brand::tavControlFont();
    painter.setFont(plain);
    header.setRight(m_copy->x() - buttonGap);
    painter.drawText(header, Qt::AlignVCenter | Qt::TextSingleLine,
        QFontMetricsF(plain).elidedText(
            m_content.row.header.mid(m_content.row.time.size()), Qt::ElideRight, header.width()));

    painter.setFont(brand::tavCaptionFont());
    painter.setPen(
        m_content.row.showsOriginal ? brand::deepPurple() : brand::secondaryLabelColor());
    painter.drawText(flipped(captionFrame.translated(0, below), height()),
        Qt::AlignVCenter | Qt::TextSingleLine, m_content.row.caption);

    painter.setPen(brand::labelColor());
    const int top = height() - textBottom - lineHeight - below;
    m_text.paint(painter, QPointF(textLeft, top), lineHeight);
}

void RecordCard::toggleWholeText() const
{
    if (canOpen())
        m_actions.toggleWholeText(QString(m_content.row.id));
}

void RecordCard::keyPressEvent(QKeyEvent* event)
{
    if (event->matches(QKeySequence::Copy))
        m_actions.copy(QString(m_content.row.id));
    else if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        toggleWholeText();
    else
        QWidget::keyPressEvent(event);
}

void RecordCard::mousePressEvent(QMouseEvent* event)
{
    event->accept(); // Without it the release would not come here.
}

void RecordCard::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton && rect().contains(event->position().toPoint()))
        toggleWholeText();
}

} // namespace tavrin::ui
