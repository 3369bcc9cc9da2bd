#include "ui/controls/TextField.h"

#include "ui/controls/Painting.h"
#include "ui/controls/Placing.h"
#include "ui/controls/Symbol.h"
#include "ui/style/BrandStyle.h"

#include <QAbstractButton>
#include <QFontMetricsF>
#include <QPainter>

#include <cmath>

using namespace Qt::StringLiterals;

namespace tavrin::ui {
namespace {

constexpr int textInset = 10;
constexpr double radius = 9;
constexpr int symbolSide = 15;
constexpr int symbolGap = 8;
constexpr int clearSide = 24;

/// The cross that empties a search field. Escape and the keyboard's own ways do the same, so it
/// takes no focus.
class ClearButton final : public QAbstractButton {
public:
    explicit ClearButton(QWidget* parent)
        : QAbstractButton(parent)
    {
        setFocusPolicy(Qt::NoFocus);
        setCursor(Qt::ArrowCursor);
        setAttribute(Qt::WA_Hover);
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override
    {
        QPainter painter(this);
        drawSymbol(painter, u"close"_s, rect(),
            underMouse() ? brand::labelColor() : brand::secondaryLabelColor());
    }
};

} // namespace

TextField::TextField(QWidget& parent, const QRect& frame, const QString& placeholder, Kind kind)
    : QLineEdit(&parent)
    , m_kind(kind)
{
    place(*this, frame);
    setFrame(false);
    setFont(brand::tavControlFont());
    setPlaceholderText(placeholder);
    setAccessibleName(placeholder);
    setAttribute(Qt::WA_Hover);
    setAttribute(Qt::WA_MacShowFocusRect, false);
    QPalette colors = palette();
    colors.setColor(QPalette::Base, Qt::transparent);
    colors.setColor(QPalette::Text, brand::labelColor());
    colors.setColor(QPalette::PlaceholderText, brand::secondaryLabelColor());
    colors.setColor(QPalette::Disabled, QPalette::Text, brand::disabledText());
    colors.setColor(QPalette::Highlight, brand::tavPurple());
    colors.setColor(QPalette::HighlightedText, Qt::white);
    setPalette(colors);
    if (kind == Kind::Secure)
        setEchoMode(QLineEdit::Password);
    if (kind == Kind::Search) {
        m_clear = new ClearButton(this);
        m_clear->setAccessibleName(u"×"_s);
        m_clear->setGeometry(
            width() - textInset + 2 - clearSide, (height() - clearSide) / 2, clearSide, clearSide);
        m_clear->hide();
        connect(m_clear, &QAbstractButton::clicked, this, [this] { clear(); });
        connect(this, &QLineEdit::textChanged, this, [this](const QString& text) {
            m_clear->setVisible(!text.isEmpty());
            setMargins();
        });
    }
    setMargins();
}

void TextField::setNote(const QString& note)
{
    m_note = note;
    setMargins();
    update();
}

void TextField::setMargins()
{
    const bool hasSymbol = m_kind == Kind::Search || m_kind == Kind::Add;
    const int left = textInset + (hasSymbol ? symbolSide + symbolGap : 0);
    int right = textInset + (m_clear && !text().isEmpty() ? clearSide + 6 : 0);
    if (!m_note.isEmpty())
        right += static_cast<int>(
            std::ceil(QFontMetricsF(brand::tavCaptionFont()).horizontalAdvance(m_note)) + 12);
    // Qt keeps two points of its own before the text, and cuts it where the right margin begins.
    constexpr int ownMargin = 2;
    setTextMargins(left - ownMargin, 0, right, 0);
}

void TextField::paintEvent(QPaintEvent* event)
{
    {
        QPainter painter(this);
        Box box{radius, isEnabled() ? brand::fieldBackground() : brand::hover(),
            isEnabled() && underMouse() ? brand::borderHover() : brand::tavBorder()};
        if (hasFocus()) {
            box.border = brand::tavPurple();
            box.borderWidth = 2;
        }
        drawBox(painter, rect(), box);
        if (m_kind == Kind::Search || m_kind == Kind::Add)
            drawSymbol(painter, m_kind == Kind::Search ? u"search"_s : u"add"_s,
                QRect(textInset, (height() - symbolSide) / 2, symbolSide, symbolSide),
                brand::secondaryLabelColor());
        if (!m_note.isEmpty()) {
            painter.setFont(brand::tavCaptionFont());
            painter.setPen(brand::secondaryLabelColor());
            const int right = textInset + (m_clear && m_clear->isVisible() ? clearSide + 6 : 0);
            painter.drawText(rect().adjusted(0, 0, -right, 0),
                Qt::AlignRight | Qt::AlignVCenter | Qt::TextSingleLine, m_note);
        }
    }
    QLineEdit::paintEvent(event);
}

} // namespace tavrin::ui
