#include "platform/linux/atspi/TextOffsets.h"

#include <QtNumeric>

#include <algorithm>
#include <limits>

namespace tavrin {
namespace {

/// Whether a surrogate pair starts at @p index.
bool isPairAt(QStringView text, qsizetype index)
{
    return index + 1 < text.size() && text[index].isHighSurrogate()
        && text[index + 1].isLowSurrogate();
}

qint64 codePointCount(QStringView text)
{
    qint64 count = 0;
    for (qsizetype index = 0; index < text.size(); ++count)
        index += isPairAt(text, index) ? 2 : 1;
    return count;
}

} // namespace

qint64 offsetCount(QStringView text, OffsetUnit unit)
{
    return unit == OffsetUnit::Utf16Units ? text.size() : codePointCount(text);
}

qint64 utf16FromOffset(QStringView text, qint64 offset, OffsetUnit unit)
{
    if (unit == OffsetUnit::Utf16Units || offset <= 0)
        return offset;
    qsizetype index = 0;
    qint64 passed = 0;
    for (; passed < offset && index < text.size(); ++passed)
        index += isPairAt(text, index) ? 2 : 1;
    qint64 position = 0;
    if (qAddOverflow<qint64>(index, offset - passed, &position))
        return std::numeric_limits<qint64>::max();
    return position;
}

qint64 offsetFromUtf16(QStringView text, qint64 position, OffsetUnit unit)
{
    if (unit == OffsetUnit::Utf16Units || position <= 0)
        return position;
    qint64 offset = 0;
    qsizetype index = 0;
    for (; index < position && index < text.size(); ++offset)
        index += isPairAt(text, index) ? 2 : 1;
    return offset + std::max<qint64>(position - index, 0);
}

OffsetUnit offsetUnitFor(QStringView text, qint64 count, OffsetUnit usual)
{
    const bool codePointsFit = count == codePointCount(text);
    const bool unitsFit = count == text.size();
    if (codePointsFit == unitsFit)
        return usual;
    return codePointsFit ? OffsetUnit::CodePoints : OffsetUnit::Utf16Units;
}

} // namespace tavrin
