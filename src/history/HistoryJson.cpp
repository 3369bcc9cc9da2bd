#include "history/HistoryJson.h"

#include "history/PortableJson.h"

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
        return timestampFromText(toQString(value.get_string()));
    return 0;
}

/// Where a key stands twice, the last one counts, as for every other reader.
Head readHead(ondemand::object object)
{
    Head head;
    for (auto field : object) {
        const std::string_view key = field.unescaped_key();
        if (key != "timestamp" && key != "id" && key != "mode")
            continue;
        ondemand::value value = field.value();
        if (key == "timestamp") {
            head.timestamp = readTimestamp(value);
            continue;
        }
        std::optional<QString> text;
        if (value.type() == ondemand::json_type::string)
            text = toQString(value.get_string());
        if (key == "id")
            head.id = text;
        else
            head.hasMode = text.has_value();
    }
    return head;
}

/// The record with the keys that it lacks; empty where it holds a number too small for a double,
/// for which it cannot be taken apart.
std::optional<HistoryRecord> mended(std::string_view json, const Head& head)
{
    QJsonObject object =
        QJsonDocument::fromJson(QByteArray(json.data(), static_cast<qsizetype>(json.size())))
            .object();
    if (object.isEmpty() && json.find('"') != std::string_view::npos)
        return std::nullopt;
    if (!head.id)
        object.insert("id"_L1, QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper());
    if (!head.hasMode)
        object.insert("mode"_L1, u"dictation"_s);
    return HistoryRecord::fromObject(object);
}

/// A text with the room behind it that the library may read.
struct PaddedText {
    std::shared_ptr<const QByteArray> buffer;
    simdjson::padded_string_view view;
};

PaddedText padded(QByteArray text)
{
    const qsizetype length = text.size();
    text.append(static_cast<qsizetype>(simdjson::SIMDJSON_PADDING), ' ');
    const auto buffer = std::make_shared<const QByteArray>(std::move(text));
    return {buffer,
        simdjson::padded_string_view(buffer->constData(), static_cast<std::size_t>(length),
            static_cast<std::size_t>(buffer->size()))};
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
    if (!head.id || !head.hasMode) {
        if (const std::optional<HistoryRecord> record = mended(json, head)) {
            history.records.append(*record);
            history.changed = true;
            return;
        }
    }
    history.records.append(HistoryRecord(buffer, json.data() - buffer->constData(),
        static_cast<qsizetype>(json.size()), head.id.value_or(QString()), head.timestamp));
}

} // namespace

std::optional<ParsedHistory> parseHistory(QByteArray text)
{
    constexpr QByteArrayView byteOrderMark("\xEF\xBB\xBF");
    if (text.startsWith(byteOrderMark))
        text.remove(0, byteOrderMark.size());
    PaddedText whole = padded(text);
    ParsedHistory history;
    if (!isArray(whole.view)) {
        whole = padded(withoutLoneSurrogates(text));
        history.changed = true;
        if (!isArray(whole.view))
            return std::nullopt;
    }

    try {
        ondemand::parser parser;
        ondemand::document document = parser.iterate(whole.view);
        for (ondemand::value element : document.get_array())
            readElement(element, whole.buffer, history);
    } catch (const simdjson::simdjson_error&) {
        return std::nullopt; // Stays within this function: the library reports errors this way.
    }
    return history;
}

} // namespace tavrin
