#include "ui/alerts/AlertWindow.h"

#include "ui/alerts/PlainText.h"
#include "ui/controls/Button.h"
#include "ui/controls/FocusRing.h"
#include "ui/controls/TextField.h"
#include "ui/style/ApplicationIcon.h"
#include "ui/style/BrandStyle.h"

#include <QGuiApplication>
#include <QLabel>
#include <QPainter>
#include <QScreen>

#include <algorithm>
#include <limits>
#include <ranges>
#include <utility>

namespace tavrin::ui {
namespace {

constexpr int alertWidth = 432;
constexpr int inset = 24;
constexpr QRect iconFrame(inset, inset, 48, 48);

constexpr int textLeft = 88;
constexpr int textWidth = 320;
constexpr int titleLineHeight = 24;
constexpr int belowTitle = 4;
constexpr int lineHeight = 19;

constexpr int aboveField = 10;
constexpr int fieldHeight = 28; // At least.
constexpr int labelHeight = 18;
constexpr int belowLabel = 2;

constexpr int aboveButtons = 22;
constexpr int belowButtons = 22;
constexpr QSize buttonSize(92, 34); // At least so wide.
constexpr int buttonGap = 12;
constexpr int besideTitle = 14; // Of a button that is wider for it.

/// What a screen reader calls a field: a field without a name of its own is what the alert is
/// about.
QString spokenName(const AlertField& field, const Alert& alert)
{
    if (!field.label.isEmpty())
        return field.label;
    return field.placeholder.isEmpty() ? alert.messageText : field.placeholder;
}

/// The first button is what the user came for; red when an alert warns of it and offers another.
Button::Look lookOf(qsizetype index, const Alert& alert)
{
    if (index > 0)
        return Button::Look::Secondary;
    const bool isDestructive = alert.style == Alert::Style::Warning && alert.buttons.size() > 1;
    return isDestructive ? Button::Look::Danger : Button::Look::Primary;
}

QScreen* screenOfPointer()
{
    QScreen* const screen = QGuiApplication::screenAt(QCursor::pos());
    return screen ? screen : QGuiApplication::primaryScreen();
}

} // namespace

AlertWindow::AlertWindow(const Alert& alert, Answered answered)
    : m_answered(std::move(answered))
    , m_escapeButton(alert.unanswered())
{
    setObjectName(QStringLiteral("alert"));
    setWindowTitle(QGuiApplication::applicationDisplayName());
    setAccessibleName(alert.messageText);
    setWindowModality(Qt::ApplicationModal);
    setWindowFlag(Qt::WindowStaysOnTopHint);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    brand::applyBrandControlStylesInView(*this);

    const int textBottom = addFields(alert, addTexts(alert, inset));
    const int contentBottom = std::max(textBottom, iconFrame.bottom() + 1);
    setFixedSize(alertWidth, addButtons(alert, contentBottom + aboveButtons) + belowButtons);
    if (!m_fields.isEmpty())
        m_fields.first()->setFocus();
    moveToMiddle();
}

void AlertWindow::reject()
{
    answer(m_escapeButton);
}

void AlertWindow::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    painter.drawPixmap(
        iconFrame.topLeft(), applicationPicture(iconFrame.width(), devicePixelRatioF()));
}

bool AlertWindow::focusNextPrevChild(bool next)
{
    if (!m_focusRing)
        m_focusRing = new FocusRing(*this);
    return QDialog::focusNextPrevChild(next);
}

int AlertWindow::addTexts(const Alert& alert, int top)
{
    const int screenHeight = screenOfPointer()->availableGeometry().height();
    auto* const title = new PlainText(*this, alert.messageText,
        {brand::tavCardTitleFont(), brand::labelColor(), titleLineHeight});
    title->setAccessibleName(alert.messageText);
    title->fit(textWidth, screenHeight / 5);
    title->move(textLeft, top);
    const int bottom = title->geometry().bottom() + 1;
    if (alert.informativeText.isEmpty())
        return bottom;
    auto* const text = new PlainText(*this, alert.informativeText,
        {brand::tavBodyFont(), brand::secondaryLabelColor(), lineHeight});
    text->fit(textWidth, screenHeight * 2 / 5);
    text->move(textLeft, bottom + belowTitle);
    return text->geometry().bottom() + 1;
}

int AlertWindow::addFields(const Alert& alert, int top)
{
    for (const AlertField& field : alert.fields) {
        top += aboveField;
        if (!field.label.isEmpty()) {
            auto* const label = new QLabel(this);
            label->setTextFormat(Qt::PlainText);
            label->setText(field.label);
            label->setFont(brand::tavCaptionFont());
            label->setGeometry(textLeft, top, textWidth, labelHeight);
            top += labelHeight + belowLabel;
        }
        auto* const input = new TextField(*this, QRect(), field.placeholder,
            field.secure ? TextField::Kind::Secure : TextField::Kind::Plain);
        input->setMaxLength(std::numeric_limits<int>::max());
        input->setText(field.text);
        input->setAccessibleName(spokenName(field, alert));
        const QSize size = field.size.isEmpty() ? QSize(textWidth, fieldHeight) : field.size;
        input->setGeometry(
            QRect(QPoint(textLeft, top), size.expandedTo({0, input->sizeHint().height()})));
        m_fields.append(input);
        top = input->geometry().bottom() + 1;
    }
    return top;
}

int AlertWindow::addButtons(const Alert& alert, int top)
{
    const QStringList titles =
        alert.buttons.isEmpty() ? QStringList{QStringLiteral("OK")} : alert.buttons;
    QList<Button*> buttons;
    int together = 0;
    for (qsizetype i = 0; i < titles.size(); ++i) {
        QString title = titles[i];
        // It would mark a shortcut otherwise.
        auto* const button =
            new Button(*this, title.replace(u'&', QStringLiteral("&&")), lookOf(i, alert));
        connect(button, &QPushButton::clicked, this, [this, i] { answer(static_cast<int>(i)); });
        button->resize(buttonSize.expandedTo(button->sizeHint() + QSize(2 * besideTitle, 0)));
        together += button->width() + (i > 0 ? buttonGap : 0);
        buttons.append(button);
    }
    buttons.first()->setDefault(true);
    buttons.first()->setFocus();
    if (together <= alertWidth - 2 * inset) {
        placeInRow(buttons, top);
        return top + buttonSize.height();
    }
    for (Button* const button : std::as_const(buttons)) {
        button->setGeometry(textLeft, top, textWidth, buttonSize.height());
        top += buttonSize.height() + buttonGap;
    }
    return top - buttonGap;
}

/// The first one rightmost; the keyboard goes through them as one reads.
void AlertWindow::placeInRow(const QList<Button*>& buttons, int top)
{
    int right = textLeft + textWidth;
    QWidget* next = nullptr;
    for (Button* const button : buttons) {
        button->move(right - button->width(), top);
        right -= button->width() + buttonGap;
        if (next)
            setTabOrder(button, next);
        next = button;
    }
}

void AlertWindow::answer(int button)
{
    if (!m_answered)
        return;
    AlertAnswer answer{button, {}};
    for (const TextField* const field : std::as_const(m_fields))
        answer.fields.append(field->text());
    hide();
    std::exchange(m_answered, {})(answer);
}

void AlertWindow::moveToMiddle()
{
    QRect place(QPoint(), size());
    place.moveCenter(screenOfPointer()->availableGeometry().center());
    move(place.topLeft());
}

} // namespace tavrin::ui
