#include "delivery/EditorText.h"

#include <QtNumeric>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

/// a + b, or empty where that leaves the range of the type: other programs report any number.
std::optional<qint64> sum(qint64 left, qint64 right)
{
    qint64 result = 0;
    if (qAddOverflow(left, right, &result))
        return std::nullopt;
    return result;
}

/// a - b, or empty.
std::optional<qint64> difference(qint64 left, qint64 right)
{
    qint64 result = 0;
    if (qSubOverflow(left, right, &result))
        return std::nullopt;
    return result;
}

template <class Value>
bool differ(const std::optional<Value>& before, const std::optional<Value>& after)
{
    return before && after && *before != *after;
}

} // namespace

QString normalizedEditorText(const std::optional<QString>& text)
{
    QString normalized = text.value_or(QString());
    normalized.replace("\r\n"_L1, "\n"_L1);
    normalized.replace(u'\r', u'\n');
    return normalized;
}

std::optional<QString> expectedValueFrom(
    const std::optional<QString>& value, TextRange range, const QString& text)
{
    if (!value || range.location < 0 || range.length < 0)
        return std::nullopt;
    const std::optional<qint64> end = sum(range.location, range.length);
    if (!end || *end > value->size())
        return std::nullopt;

    QString expected = *value;
    expected.replace(range.location, range.length, text);
    return expected;
}

bool caretAndCountMatch(
    const EditorObservation& before, const EditorObservation& after, qint64 insertedLength)
{
    if (!before.range || !after.range)
        return false;
    const std::optional<qint64> caret = sum(before.range->location, insertedLength);
    if (after.range->length != 0 || !caret || after.range->location != *caret)
        return false;
    if (!before.count || !after.count)
        return true;
    const std::optional<qint64> removed = difference(*before.count, before.range->length);
    return removed && sum(*removed, insertedLength) == after.count;
}

bool hasVisibleChange(const EditorObservation& before, const EditorObservation& after)
{
    return differ(before.text, after.text) || differ(before.range, after.range)
        || differ(before.count, after.count);
}

bool isObservationComplete(const EditorObservation& before, const EditorObservation& after)
{
    return before.text && before.range && before.count && after.text && after.range && after.count;
}

} // namespace tavrin
