#include "history/HistoryJson.h"

#include "history/PortableJson.h"
#include "history/RecordHead.h"

#include <QJsonDocument>
#include <QUuid>

#include <simdjson.h>
#include <utility>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

namespace ondemand = simdjson::ondemand;

QString newID()
{
    return QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper();
}

/// The record with the keys that it lacks behind the others, where they count, and each of the
/// others as it is written.
HistoryRecord extended(QByteArray json, const RecordHead& head)
{
    HistoryDigest digest = head.digest;
    json.chop(1);
    if (!head.id) {
        const QByteArray id = newID().toUtf8();
        json.append(R"(,"id":")");
        digest.id = {static_cast<quint32>(json.size()), static_cast<quint32>(id.size())};
        json.append(id + '"');
    }
    if (!head.hasMode)
        json.append(R"(,"mode":"dictation")");
    json.append('}');
    const auto buffer = std::make_shared<const QByteArray>(std::move(json));
    return {buffer, 0, buffer->size(), head.timestamp, digest};
}

/// The record with the keys that it lacks.
HistoryRecord mended(const QByteArray& json, const RecordHead& head)
{
    const QJsonDocument document = QJsonDocument::fromJson(json);
    if (document.isNull() || withNumbersInRange(json) != json)
        return extended(json, head); // Written anew, it would lose what a double cannot hold.
    QJsonObject object = document.object();
    if (!head.id)
        object.insert("id"_L1, newID());
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

/// @param element is read in a text that differs from @p kept in numbers only.
void readElement(ondemand::value element, const char* textBegin,
    const std::shared_ptr<const QByteArray>& kept, ParsedHistory& history)
{
    if (element.type() != ondemand::json_type::object) {
        history.changed = true;
        return;
    }
    const char* const begin = std::string_view(element.raw_json_token()).data();
    ondemand::object object = element.get_object();
    const RecordHead head = readRecordHead(object, begin);
    object.reset();
    std::string_view json = object.raw_json();
    json.remove_suffix(json.size() - 1 - json.find_last_of('}')); // It may end in white space.
    const qsizetype offset = json.data() - textBegin;
    const auto length = static_cast<qsizetype>(json.size());
    if (head.id && head.hasMode) {
        history.records.append(HistoryRecord(kept, offset, length, head.timestamp, head.digest));
        return;
    }
    history.records.append(mended(kept->sliced(offset, length), head));
    history.changed = true;
}

} // namespace

qint64 writtenSize(const HistoryRecords& records)
{
    if (records.isEmpty())
        return 2; // "[]"
    constexpr qint64 separator = 2; // ",\n"
    qint64 size = 4 - 1; // "[" and "\n]\n", less the comma that the first record lacks.
    for (const HistoryRecord& record : records)
        size += separator + record.json().size();
    return size;
}

std::optional<ParsedHistory> parseHistory(QByteArray text)
{
    constexpr QByteArrayView byteOrderMark("\xEF\xBB\xBF");
    if (text.startsWith(byteOrderMark))
        text.remove(0, byteOrderMark.size());
    PaddedText kept = padded(text);
    PaddedText read = kept;
    ParsedHistory history;
    if (!isArray(kept.view)) {
        const QByteArray repaired = withoutLoneSurrogates(text);
        history.changed = repaired != text;
        kept = padded(repaired);
        read = padded(withNumbersInRange(repaired));
        if (!isArray(read.view))
            return std::nullopt;
    }

    try {
        ondemand::parser parser;
        ondemand::document document = parser.iterate(read.view);
        for (ondemand::value element : document.get_array())
            readElement(element, read.buffer->constData(), kept.buffer, history);
    } catch (const simdjson::simdjson_error&) {
        return std::nullopt; // Stays within this function: the library reports errors this way.
    }
    return history;
}

} // namespace tavrin
