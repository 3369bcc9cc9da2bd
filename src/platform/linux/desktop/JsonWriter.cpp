#include "platform/linux/desktop/JsonText.h"

#include <QLocale>

namespace tavrin::json {
namespace {

std::optional<QVariant> normalized(const QVariant& value, int depth);

std::optional<QVariant> normalizedList(const QVariantList& list, int depth)
{
    QVariantList result;
    result.reserve(list.size());
    for (const QVariant& element : list) {
        const auto plain = normalized(element, depth + 1);
        if (!plain)
            return {};
        result.append(*plain);
    }
    return result;
}

std::optional<QVariant> normalizedMap(const QVariantMap& map, int depth)
{
    QVariantMap result;
    for (auto member = map.begin(); member != map.end(); ++member) {
        const auto plain = normalized(member.value(), depth + 1);
        if (!plain)
            return {};
        result.insert(member.key(), *plain);
    }
    return result;
}

std::optional<QVariant> normalized(const QVariant& value, int depth)
{
    if (depth > deepestNesting)
        return {};
    switch (value.typeId()) {
    case QMetaType::UnknownType:
    case QMetaType::Nullptr:
        return QVariant();
    case QMetaType::Bool:
    case QMetaType::QString:
        return value;
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Long:
    case QMetaType::LongLong:
        return value.toLongLong();
    case QMetaType::ULong:
    case QMetaType::ULongLong: {
        const qulonglong number = value.toULongLong();
        constexpr auto largest = static_cast<qulonglong>(std::numeric_limits<qlonglong>::max());
        return number > largest ? QVariant(number) : QVariant(static_cast<qlonglong>(number));
    }
    case QMetaType::Float:
    case QMetaType::Double:
        return qIsFinite(value.toDouble()) ? std::optional<QVariant>(value.toDouble())
                                           : std::nullopt;
    case QMetaType::QStringList:
    case QMetaType::QVariantList:
        return normalizedList(value.toList(), depth);
    case QMetaType::QVariantMap:
    case QMetaType::QVariantHash:
        return normalizedMap(value.toMap(), depth);
    default:
        return {};
    }
}

void appendEscaped(QString& out, QChar character)
{
    switch (character.unicode()) {
    case u'"':
        out += QStringLiteral("\\\"");
        break;
    case u'\\':
        out += QStringLiteral("\\\\");
        break;
    case u'\n':
        out += QStringLiteral("\\n");
        break;
    case u'\t':
        out += QStringLiteral("\\t");
        break;
    default:
        out += QStringLiteral("\\u%1").arg(character.unicode(), 4, 16, QLatin1Char('0'));
    }
}

QString quoted(const QString& text)
{
    QString out;
    out.reserve(text.size() + 2);
    out += u'"';
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar character = text[i];
        const bool pair =
            character.isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate();
        if (pair)
            out += text[i++];
        else if (character < u' ' || character == u'"' || character == u'\\'
            || character.isSurrogate()) {
            appendEscaped(out, character);
            continue;
        }
        out += text[i];
    }
    out += u'"';
    return out;
}

/// Always with a point or an exponent, so that it is read back as a double.
QString realNumber(double number)
{
    QString text = QString::number(number, 'g', QLocale::FloatingPointShortest);
    if (!text.contains(u'.') && !text.contains(u'e'))
        text += QStringLiteral(".0");
    return text;
}

QString text(const QVariant& value) // NOLINT(misc-no-recursion): bounded by deepestNesting
{
    switch (value.typeId()) {
    case QMetaType::Bool:
        return value.toBool() ? QStringLiteral("true") : QStringLiteral("false");
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
        return value.toString();
    case QMetaType::Double:
        return realNumber(value.toDouble());
    case QMetaType::QString:
        return quoted(value.toString());
    case QMetaType::QVariantList: {
        QStringList elements;
        for (const QVariant& element : value.toList())
            elements.append(text(element));
        return u'[' + elements.join(QStringLiteral(", ")) + u']';
    }
    case QMetaType::QVariantMap: {
        QStringList members;
        const QVariantMap map = value.toMap();
        for (auto member = map.begin(); member != map.end(); ++member)
            members.append(quoted(member.key()) + QStringLiteral(": ") + text(member.value()));
        return u'{' + members.join(QStringLiteral(", ")) + u'}';
    }
    default:
        return QStringLiteral("null");
    }
}

} // namespace

std::optional<QVariant> normalized(const QVariant& value)
{
    return normalized(value, 1);
}

QByteArray serialized(const QVariant& value)
{
    return text(value).toUtf8();
}

QByteArray serializedObject(const QVariantMap& members)
{
    QByteArray out = "{";
    for (auto member = members.begin(); member != members.end(); ++member) {
        out += member == members.begin() ? "\n    " : ",\n    ";
        out += quoted(member.key()).toUtf8() + ": " + serialized(member.value());
    }
    out += "\n}\n";
    return out;
}

} // namespace tavrin::json
