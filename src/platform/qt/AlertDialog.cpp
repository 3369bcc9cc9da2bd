#include "platform/qt/AlertDialog.h"

#include "platform/qt/PlainText.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QStyle>

#include <algorithm>
#include <limits>

namespace tavrin {
namespace {

constexpr int iconSide = 48;
constexpr int margin = 20;
constexpr int gap = 14;

// About 30 Chinese characters or 60 Latin letters a line, which reads well.
int columnWidth(const QFontMetrics& metrics)
{
    return metrics.height() * 24;
}

QPixmap picture(Alert::Style style, const QWidget& widget)
{
    QIcon icon = QApplication::windowIcon();
    if (style == Alert::Style::Warning)
        icon = widget.style()->standardIcon(QStyle::SP_MessageBoxWarning);
    else if (icon.isNull())
        icon = widget.style()->standardIcon(QStyle::SP_MessageBoxInformation);
    return icon.pixmap(QSize(iconSide, iconSide), widget.devicePixelRatioF());
}

/// Shows an ampersand as one, where it would mark a shortcut otherwise.
QString escaped(QString title)
{
    return title.replace(u'&', QStringLiteral("&&"));
}

/// What a screen reader calls a field: a field without a name of its own is what the alert is
/// about.
QString spokenName(const AlertField& field, const Alert& alert)
{
    if (!field.label.isEmpty())
        return field.label;
    return field.placeholder.isEmpty() ? alert.messageText : field.placeholder;
}

QDialogButtonBox::ButtonRole role(qsizetype index, qsizetype count)
{
    if (index == 0)
        return QDialogButtonBox::AcceptRole;
    return index == count - 1 ? QDialogButtonBox::RejectRole : QDialogButtonBox::ActionRole;
}

} // namespace

AlertDialog::AlertDialog(const Alert& alert, Answered answered)
    : m_answered(std::move(answered))
    , m_buttonBox(new QDialogButtonBox)
    , m_escapeButton(alert.unanswered())
{
    setObjectName(QStringLiteral("alert"));
    setWindowTitle(QGuiApplication::applicationDisplayName());
    setAccessibleName(alert.messageText);
    setWindowModality(Qt::ApplicationModal);
    setWindowFlag(Qt::WindowStaysOnTopHint);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);

    auto* outer = new QVBoxLayout(this);
    outer->setContentsMargins(margin, margin, margin, margin);
    outer->setSpacing(gap);
    outer->setSizeConstraint(QLayout::SetFixedSize);
    auto* row = new QHBoxLayout;
    row->setSpacing(gap);
    auto* icon = new QLabel;
    icon->setPixmap(picture(alert.style, *this));
    row->addWidget(icon, 0, Qt::AlignTop);
    auto* column = new QVBoxLayout;
    column->setSpacing(gap / 2);
    addTexts(alert, *column);
    addFields(alert, *column);
    column->addStretch();
    row->addLayout(column);
    outer->addLayout(row);
    outer->addWidget(m_buttonBox);
    addButtons(alert);
    if (!m_fields.isEmpty())
        m_fields.first()->setFocus();
    moveToMiddle();
}

void AlertDialog::reject()
{
    answer(m_escapeButton);
}

void AlertDialog::addTexts(const Alert& alert, QVBoxLayout& column)
{
    const int width = columnWidth(fontMetrics());
    const int screenHeight = QGuiApplication::primaryScreen()->availableGeometry().height();
    QFont titleFont = font();
    titleFont.setBold(true);
    titleFont.setPointSizeF(titleFont.pointSizeF() * 1.15);
    auto* title = new PlainText(alert.messageText, titleFont, this);
    title->setAccessibleName(alert.messageText);
    title->fit(width, screenHeight / 5);
    column.addWidget(title);
    if (alert.informativeText.isEmpty())
        return;
    auto* text = new PlainText(alert.informativeText, font(), this);
    text->fit(width, screenHeight * 2 / 5);
    column.addWidget(text);
}

void AlertDialog::addFields(const Alert& alert, QVBoxLayout& column)
{
    if (alert.fields.isEmpty())
        return;
    auto* form = new QFormLayout;
    form->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
    for (const AlertField& field : alert.fields) {
        auto* input = new QLineEdit(field.text);
        input->setPlaceholderText(field.placeholder);
        input->setMaxLength(std::numeric_limits<int>::max());
        input->setEchoMode(field.secure ? QLineEdit::Password : QLineEdit::Normal);
        input->setAccessibleName(spokenName(field, alert));
        if (!field.size.isEmpty())
            input->setFixedSize(field.size.expandedTo({0, input->sizeHint().height()}));
        m_fields.append(input);
        if (field.label.isEmpty()) {
            form->addRow(input);
            continue;
        }
        auto* label = new QLabel(field.label);
        label->setTextFormat(Qt::PlainText);
        form->addRow(label, input);
    }
    column.addLayout(form);
}

void AlertDialog::addButtons(const Alert& alert)
{
    if (alert.buttons.isEmpty()) {
        QPushButton* button = m_buttonBox->addButton(QDialogButtonBox::Ok);
        connect(button, &QPushButton::clicked, this, [this] { answer(0); });
        return;
    }
    for (qsizetype i = 0; i < alert.buttons.size(); ++i) {
        QPushButton* button =
            m_buttonBox->addButton(escaped(alert.buttons[i]), role(i, alert.buttons.size()));
        connect(button, &QPushButton::clicked, this, [this, i] { answer(static_cast<int>(i)); });
        if (i > 0)
            continue;
        button->setDefault(true);
        button->setFocus();
    }
}

void AlertDialog::answer(int button)
{
    if (!m_answered)
        return;
    AlertAnswer answer{button, {}};
    for (const QLineEdit* field : m_fields)
        answer.fields.append(field->text());
    hide();
    std::exchange(m_answered, {})(answer);
}

void AlertDialog::moveToMiddle()
{
    const QScreen* screen = QGuiApplication::screenAt(QCursor::pos());
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    const QRect available = screen->availableGeometry();
    QRect place(QPoint(), sizeHint());
    place.moveCenter(available.center());
    move(place.topLeft());
}

} // namespace tavrin
