#include "LyingAccessible.h"

#include <QHash>
#include <QThread>

using namespace Qt::StringLiterals;

namespace tavrin::testing {
namespace {

constexpr int hugeCount = 50'000'000;

struct Disguise {
    PlainField* field = nullptr;
    Lie lie = Lie::Stale;
    int reads = 0;
};

Disguise& disguiseInUse()
{
    static Disguise disguise;
    return disguise;
}

void countRead()
{
    ++disguiseInUse().reads;
}

QAccessibleInterface* makeAccessible(const QString& /*className*/, QObject* object)
{
    const Disguise& disguise = disguiseInUse();
    return object && object == disguise.field ? new LyingAccessible(*disguise.field, disguise.lie)
                                              : nullptr;
}

} // namespace

std::optional<Lie> lieNamed(const QString& name)
{
    static const QHash<QString, Lie> lies{{u"stale"_s, Lie::Stale}, {u"read-only"_s, Lie::ReadOnly},
        {u"negative"_s, Lie::Negative}, {u"counts"_s, Lie::Counts}, {u"huge"_s, Lie::Huge},
        {u"secret"_s, Lie::Secret}, {u"stuck-insert"_s, Lie::StuckInsert},
        {u"terminal"_s, Lie::Terminal}};
    const auto found = lies.find(name);
    return found == lies.end() ? std::nullopt : std::optional(*found);
}

LyingAccessible::LyingAccessible(PlainField& field, Lie lie)
    : QAccessibleWidget(&field, QAccessible::EditableText)
    , m_field(field)
    , m_lie(lie)
    , m_atStart(field.toPlainText())
{
}

void LyingAccessible::disguise(PlainField& field, Lie lie)
{
    // While its text was set, the field has got a face already.
    if (QAccessibleInterface* const face = QAccessible::queryAccessibleInterface(&field))
        QAccessible::deleteAccessibleInterface(QAccessible::uniqueId(face));
    disguiseInUse() = {&field, lie};
    QAccessible::installFactory(makeAccessible);
}

int LyingAccessible::reads()
{
    return disguiseInUse().reads;
}

void* LyingAccessible::interface_cast(QAccessible::InterfaceType type)
{
    if (type == QAccessible::TextInterface)
        return static_cast<QAccessibleTextInterface*>(this);
    if (type == QAccessible::EditableTextInterface)
        return static_cast<QAccessibleEditableTextInterface*>(this);
    return QAccessibleWidget::interface_cast(type);
}

QAccessible::Role LyingAccessible::role() const
{
    return m_lie == Lie::Terminal ? QAccessible::Terminal : QAccessible::EditableText;
}

QAccessible::State LyingAccessible::state() const
{
    QAccessible::State state = QAccessibleWidget::state();
    state.editable = true;
    state.multiLine = true;
    state.passwordEdit = m_lie == Lie::Secret; // Makes a password field of it on the bus.
    return state;
}

void LyingAccessible::selection(int /*selectionIndex*/, int* startOffset, int* endOffset) const
{
    *startOffset = m_lie == Lie::Negative ? -7 : m_field.textCursor().selectionStart();
    *endOffset = m_lie == Lie::Negative ? -3 : m_field.textCursor().selectionEnd();
}

int LyingAccessible::selectionCount() const
{
    countRead();
    return m_lie == Lie::Negative || m_field.textCursor().hasSelection() ? 1 : 0;
}

void LyingAccessible::addSelection(int startOffset, int endOffset)
{
    setSelection(0, startOffset, endOffset);
}

void LyingAccessible::removeSelection(int /*selectionIndex*/) { }

void LyingAccessible::setSelection(int /*selectionIndex*/, int startOffset, int endOffset)
{
    m_field.select(startOffset, endOffset);
}

int LyingAccessible::cursorPosition() const
{
    countRead();
    switch (m_lie) {
    case Lie::Stale:
        return 0;
    case Lie::Negative:
        return -3;
    case Lie::Counts:
    case Lie::Huge:
        return hugeCount + 1;
    case Lie::ReadOnly:
    case Lie::StuckInsert:
    case Lie::Secret:
    case Lie::Terminal:
        break;
    }
    return m_field.textCursor().position();
}

void LyingAccessible::setCursorPosition(int position)
{
    m_field.select(position, position);
}

QString LyingAccessible::text(int startOffset, int endOffset) const
{
    countRead();
    if (m_lie == Lie::Huge)
        return {hugeCount, u'x'};
    const QString whole = m_lie == Lie::Stale ? m_atStart : m_field.toPlainText();
    return whole.mid(startOffset, endOffset - startOffset);
}

QString LyingAccessible::text(QAccessible::Text kind) const
{
    return QAccessibleWidget::text(kind);
}

int LyingAccessible::characterCount() const
{
    countRead();
    switch (m_lie) {
    case Lie::Stale:
        return static_cast<int>(m_atStart.size());
    case Lie::Negative:
        return -5;
    case Lie::Counts:
    case Lie::Huge:
        return hugeCount;
    case Lie::ReadOnly:
    case Lie::StuckInsert:
    case Lie::Secret:
    case Lie::Terminal:
        break;
    }
    return static_cast<int>(m_field.toPlainText().size());
}

QRect LyingAccessible::characterRect(int /*offset*/) const
{
    return {};
}

int LyingAccessible::offsetAtPoint(const QPoint& /*point*/) const
{
    return -1;
}

void LyingAccessible::scrollToSubstring(int /*startIndex*/, int /*endIndex*/) { }

QString LyingAccessible::attributes(int /*offset*/, int* startOffset, int* endOffset) const
{
    *startOffset = *endOffset = 0;
    return {};
}

void LyingAccessible::deleteText(int startOffset, int endOffset)
{
    replaceText(startOffset, endOffset, {});
}

void LyingAccessible::insertText(int offset, const QString& text)
{
    if (m_lie == Lie::StuckInsert) {
        constexpr unsigned long longerThanAnybodyWaits = 2;
        QThread::sleep(longerThanAnybodyWaits);
        return;
    }
    replaceText(offset, offset, text);
}

void LyingAccessible::replaceText(int startOffset, int endOffset, const QString& text)
{
    if (m_lie == Lie::ReadOnly)
        return;
    m_field.select(startOffset, endOffset);
    m_field.insertPlainText(text);
}

} // namespace tavrin::testing
