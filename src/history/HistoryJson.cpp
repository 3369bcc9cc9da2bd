#include "history/HistoryJson.h"

#include <QJsonDocument>
#include <QUuid>

#include <simdjson.h>
#include <utility>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

namespace ondemand = simdjson::ondemand;

/// What the file's rules need of a record; the rest stays text.
struct Head {
    std::optional<QString> id;
    bool hasMode = false;
    double timestamp = 0;
};

QString toQString(std::string_view text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

double readTimestamp(ondemand::value value)
{
    const ondemand::json_type type = value.type();
    if (type == ondemand::json_type::number)
        return value.get_double();
    if (type == ondemand::json_type::string)
        return toQString(value.get_string()).toDouble();
    return 0;
}

Head readHead(ondemand::object object)
{
    Head head;
    for (auto field : object) {
        const std::string_view key = field.unescaped_key();
        if (key == "timestamp") {
            head.timestamp = readTimestamp(field.value());
        } else if (key == "id" || key == "mode") {
            ondemand::value value = field.value();
            if (value.type() != ondemand::json_type::string)
                continue;
            const QString text = toQString(value.get_string());
            if (key == "id")
                head.id = text;
            else
                head.hasMode = true;
        }
    }
    return head;
}

/// The record with the keys that it lacks.
HistoryRecord mended(std::string_view json, const Head& head)
{
    QJsonObject object =
        QJsonDocument::fromJson(QByteArray(json.data(), static_cast<qsizetype>(json.size())))
            .object();
    if (!head.id)
        object.insert("id"_L1, QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper());
    if (!head.hasMode)
        object.insert("mode"_L1, u"dictation"_s);
    return HistoryRecord::fromObject(object);
}

/// Checks the text as a whole: reading on demand looks only at what it is asked for.
bool isArray(const simdjson::padded_string_view& text)
{
    simdjson::dom::parser parser;
    simdjson::dom::element root;
    return parser.parse(text.data(), text.length(), false).get(root) == simdjson::SUCCESS
        && root.is_array();
}

void readElement(ondemand::value element, const std::shared_ptr<const QByteArray>& buffer,
    ParsedHistory& history)
{
    if (element.type() != ondemand::json_type::object) {
        history.changed = true;
        return;
    }
    ondemand::object object = element.get_object();
    const Head head = readHead(object);
    object.reset();
    std::string_view json = object.raw_json();
    json.remove_suffix(json.size() - 1 - json.find_last_of('}')); // It may end in white space.
    if (head.id && head.hasMode) {
        history.records.append(HistoryRecord(buffer, json.data() - buffer->constData(),
            static_cast<qsizetype>(json.size()), *head.id, head.timestamp));
        return;
    }
    history.records.append(mended(json, head));
    history.changed = true;
}

} // namespace

std::optional<ParsedHistory> parseHistory(QByteArray text)
{
    constexpr QByteArrayView byteOrderMark("\xEF\xBB\xBF");
    if (text.startsWith(byteOrderMark))
        text.remove(0, byteOrderMark.size());
    const qsizetype length = text.size();
    text.append(static_cast<qsizetype>(simdjson::SIMDJSON_PADDING), ' ');
    const auto buffer = std::make_shared<const QByteArray>(std::move(text));
    const simdjson::padded_string_view view(buffer->constData(), static_cast<std::size_t>(length),
        static_cast<std::size_t>(buffer->size()));
    if (!isArray(view))
        return std::nullopt;

    ParsedHistory history;
    try {
        ondemand::parser parser;
        ondemand::document document = parser.iterate(view);
        for (ondemand::value element : document.get_array())
            readElement(element, buffer, history);
    } catch (const simdjson::simdjson_error&) {
        return std::nullopt; // Stays within this function: the library reports errors this way.
    }
    return history;
}

} // namespace tavrin
