#include "history/RecordHead.h"

#include "history/JsonText.h"

#include <algorithm>
#include <string_view>

namespace tavrin {
namespace {

namespace ondemand = simdjson::ondemand;

using Place = HistoryDigest::Place;

QString toQString(std::string_view text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

std::optional<double> readNumber(ondemand::value value)
{
    if (value.type() != ondemand::json_type::number)
        return std::nullopt;
    return value.get_double();
}

std::optional<QString> readText(ondemand::value value)
{
    if (value.type() != ondemand::json_type::string)
        return std::nullopt;
    return toQString(value.get_string());
}

double readTimestamp(ondemand::value value)
{
    if (value.type() == ondemand::json_type::string)
        return timestampFromText(toQString(value.get_string()));
    return readNumber(value).value_or(0);
}

/// Where the text stands, seen from @p begin; nowhere when @p value is none.
Place placeOf(ondemand::value value, const char* begin)
{
    if (value.type() != ondemand::json_type::string)
        return {};
    const std::string_view token = value.raw_json_token(); // White space may follow it.
    const std::size_t length = token.find_last_of('"') - 1;
    return {static_cast<quint32>(token.data() + 1 - begin), static_cast<quint32>(length)};
}

void readID(ondemand::value value, const char* begin, RecordHead& head)
{
    head.id = readText(value);
    head.digest.id = placeOf(value, begin);
}

qint64 charactersFrom(double number)
{
    return static_cast<qint64>(std::clamp(number, 0.0, static_cast<double>(mostCharacters)));
}

void readDigestField(std::string_view key, ondemand::value value, const char* begin,
    HistoryDigest& digest, std::optional<double>& characters)
{
    if (key == "transcript")
        digest.transcript = placeOf(value, begin);
    else if (key == "finalText")
        digest.finalText = placeOf(value, begin);
    else if (key == "inputCharacters")
        characters = readNumber(value);
    else if (key == "audioSeconds")
        digest.audioSeconds = readNumber(value).value_or(0);
    else if (key == "processingSeconds")
        digest.processingSeconds = readNumber(value).value_or(0);
}

} // namespace

RecordHead readRecordHead(ondemand::object object, const char* begin)
{
    RecordHead head;
    std::optional<double> characters;
    for (auto field : object) {
        const std::string_view key = field.unescaped_key();
        ondemand::value value = field.value();
        if (key == "timestamp")
            head.timestamp = readTimestamp(value);
        else if (key == "id")
            readID(value, begin, head);
        else if (key == "mode")
            head.hasMode = value.type() == ondemand::json_type::string;
        else
            readDigestField(key, value, begin, head.digest, characters);
    }
    const Place said = head.digest.transcript;
    head.digest.characters = characters
        ? charactersFrom(*characters)
        : textFromJson(QByteArrayView(begin + said.offset, said.length)).size();
    return head;
}

RecordHead readRecordHead(const QByteArray& json)
{
    const simdjson::padded_string padded(json.constData(), static_cast<std::size_t>(json.size()));
    try {
        ondemand::parser parser;
        ondemand::document document = parser.iterate(padded);
        return readRecordHead(document.get_object(), padded.data());
    } catch (const simdjson::simdjson_error&) {
        return {}; // Stays within this function: the library reports errors this way.
    }
}

} // namespace tavrin
