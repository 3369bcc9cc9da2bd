#include "history/PortableJson.h"

#include <QChar>
#include <QJsonDocument>
#include <QRegularExpression>

#include <algorithm>
#include <optional>
#include <string_view>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

constexpr qsizetype escapeLength = 6; // "\uXXXX"
constexpr std::string_view replacement = "\\ufffd";

/// The unit that the escape at @p place stands for; empty when none of that kind stands there.
std::optional<char16_t> unitAt(const QByteArray& json, qsizetype place)
{
    if (place + escapeLength > json.size() || json[place] != '\\' || json[place + 1] != 'u')
        return std::nullopt;
    bool isNumber = false;
    const ushort unit = json.mid(place + 2, 4).toUShort(&isNumber, 16);
    return isNumber ? std::optional<char16_t>(unit) : std::nullopt;
}

/// What stands for a number that readers refuse, never longer than it; empty for any other.
QByteArray inRange(const QByteArray& number)
{
    constexpr qsizetype alwaysInRange = 18; // Digits, with a point or without.
    if (number.size() <= alwaysInRange && !number.toLower().contains('e'))
        return {};
    static const QRegularExpression shape(
        uR"(^(-?)(?:0|[1-9]\d*)(\.\d+)?([eE](?:(-)|\+?)\d+)?\z)"_s);
    const QRegularExpressionMatch match = shape.match(QString::fromLatin1(number));
    if (!match.hasMatch())
        return {};
    const bool isInteger = !match.hasCaptured(2) && !match.hasCaptured(3);
    bool fits = false;
    if (isInteger) {
        number.toLongLong(&fits);
        if (!fits)
            number.toULongLong(&fits);
        if (fits)
            return {};
    }
    number.toDouble(&fits);
    const bool isNegative = match.capturedLength(1) > 0;
    if (!fits && match.hasCaptured(4))
        return "0"_ba; // Too small.
    if (!fits)
        return isNegative ? "-1e308"_ba : "1e308"_ba;
    if (!isInteger)
        return {};
    constexpr qsizetype keptDigits = 17; // As many as a double tells apart.
    const qsizetype kept = match.capturedLength(1) + keptDigits;
    return number.first(kept) + 'e' + QByteArray::number(number.size() - kept);
}

/// Where the string ends whose opening quotation mark stands at @p place.
qsizetype afterString(const QByteArray& json, qsizetype place)
{
    for (++place; place < json.size() && json[place] != '"'; ++place) {
        if (json[place] == '\\')
            ++place;
    }
    return place + 1;
}

bool isOfNumber(char character)
{
    return (character >= '0' && character <= '9') || character == '-' || character == '+'
        || character == '.' || character == 'e' || character == 'E';
}

} // namespace

QByteArray portableJson(const QJsonDocument& document)
{
    QByteArray json = withoutLoneSurrogates(document.toJson(QJsonDocument::Indented));
    json.replace("\xEF\xBB\xBF", "\\ufeff"); // Qt drops it at the beginning of a string.
    return json;
}

QByteArray withoutLoneSurrogates(QByteArray json)
{
    for (qsizetype place = json.indexOf('\\'); place >= 0; place = json.indexOf('\\', place)) {
        const std::optional<char16_t> unit = unitAt(json, place);
        if (!unit) {
            place += 2; // Some other escape, which may be that of a backslash.
            continue;
        }
        const std::optional<char16_t> next = unitAt(json, place + escapeLength);
        if (QChar::isHighSurrogate(*unit) && next && QChar::isLowSurrogate(*next))
            place += escapeLength;
        else if (QChar::isSurrogate(*unit))
            std::ranges::copy(replacement, json.begin() + place);
        place += escapeLength;
    }
    return json;
}

QByteArray withNumbersInRange(QByteArray json)
{
    qsizetype place = 0;
    while (place < json.size()) {
        if (json[place] == '"') {
            place = afterString(json, place);
            continue;
        }
        const qsizetype begin = place;
        while (place < json.size() && isOfNumber(json[place]))
            ++place;
        if (place == begin) {
            ++place;
            continue;
        }
        const QByteArray replacing = inRange(json.sliced(begin, place - begin));
        if (!replacing.isEmpty())
            json.replace(begin, place - begin, replacing.leftJustified(place - begin, ' '));
    }
    return json;
}

} // namespace tavrin
