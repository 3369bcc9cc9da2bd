#include "Fields.h"

#include <QApplication>
#include <QClipboard>
#include <QKeyEvent>
#include <QMimeData>
#include <QPainter>

#include <algorithm>

namespace tavrin::testing {
namespace {

QString tidied(const QString& pasted)
{
    QStringList lines = pasted.split(u'\n');
    for (QString& line : lines)
        line = line.trimmed();
    QString text = lines.join(u'\n');
    bool opens = true;
    for (QChar& character : text) {
        if (character != u'"')
            continue;
        character = opens ? u'“' : u'”';
        opens = !opens;
    }
    return text;
}

} // namespace

PlainField::PlainField(const QString& text, const FieldHabits& habits)
    : QPlainTextEdit(text)
    , m_habits(habits)
{
}

void PlainField::select(int anchor, int caret)
{
    const int end = document()->characterCount() - 1; // It counts the end of the last line.
    QTextCursor cursor = textCursor();
    cursor.setPosition(std::clamp(anchor, 0, end));
    cursor.setPosition(std::clamp(caret, 0, end), QTextCursor::KeepAnchor);
    setTextCursor(cursor);
}

void PlainField::insertFromMimeData(const QMimeData* source)
{
    if (m_habits.swallowsPaste)
        return;
    if (m_habits.tidiesPaste)
        insertPlainText(tidied(source->text()));
    else
        QPlainTextEdit::insertFromMimeData(source);
}

void PlainField::keyPressEvent(QKeyEvent* event)
{
    if (!m_habits.ignoresKeys)
        QPlainTextEdit::keyPressEvent(event);
}

BareField::BareField(QString text)
    : m_text(std::move(text))
{
    setFocusPolicy(Qt::StrongFocus);
}

void BareField::keyPressEvent(QKeyEvent* event)
{
    m_text +=
        event->matches(QKeySequence::Paste) ? QApplication::clipboard()->text() : event->text();
    update();
}

void BareField::paintEvent(QPaintEvent* /*event*/)
{
    QPainter(this).drawText(rect(), Qt::TextWordWrap, m_text);
}

QString textOf(const QWidget& field)
{
    if (const auto* const plain = dynamic_cast<const PlainField*>(&field))
        return plain->toPlainText();
    if (const auto* const line = dynamic_cast<const QLineEdit*>(&field))
        return line->text();
    return static_cast<const BareField&>(field).text();
}

} // namespace tavrin::testing
