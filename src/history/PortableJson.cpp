#include "history/PortableJson.h"

#include <QChar>
#include <QJsonDocument>

#include <algorithm>
#include <optional>
#include <string_view>

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

} // namespace tavrin
