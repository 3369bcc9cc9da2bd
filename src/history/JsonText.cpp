#include "history/JsonText.h"

#include <optional>

namespace tavrin {
namespace {

constexpr qsizetype digits = 4; // Of a unit: "\uXXXX".

char16_t controlCharacter(char16_t letter)
{
    switch (letter) {
    case u'b':
        return u'\b';
    case u'f':
        return u'\f';
    case u'n':
        return u'\n';
    case u'r':
        return u'\r';
    case u't':
        return u'\t';
    default:
        return letter; // A quotation mark, a stroke or a backslash stands for itself.
    }
}

std::optional<char16_t> unitFrom(QStringView text)
{
    bool isNumber = false;
    const ushort unit = text.left(digits).toUShort(&isNumber, 16);
    return isNumber && text.size() >= digits ? std::optional<char16_t>(unit) : std::nullopt;
}

} // namespace

QString textFromJson(QByteArrayView written)
{
    QString text = QString::fromUtf8(written);
    qsizetype length = text.indexOf(u'\\');
    if (length < 0)
        return text;
    QChar* const units = text.data();
    qsizetype read = length;
    while (read < text.size()) {
        if (units[read] != u'\\' || read + 1 == text.size()) {
            units[length++] = units[read++];
            continue;
        }
        const char16_t letter = units[read + 1].unicode();
        read += 2;
        std::optional<char16_t> unit;
        if (letter == u'u')
            unit = unitFrom(QStringView(text).sliced(read));
        if (unit)
            read += digits;
        units[length++] = unit.value_or(controlCharacter(letter));
    }
    text.truncate(length);
    return text;
}

} // namespace tavrin
