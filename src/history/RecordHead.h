#pragma once

#include "history/HistoryRecord.h"

#include <QByteArray>
#include <QString>

#include <optional>
#include <simdjson.h>

namespace tavrin {

/// What the file's rules and the pages need of a record; the rest stays text.
struct RecordHead {
    std::optional<QString> id;
    bool hasMode = false;
    double timestamp = 0;
    HistoryDigest digest;
};

/// Where a key stands twice, the last one counts, as for every other reader.
/// @param begin of the object's text.
/// @throws simdjson::simdjson_error when the object is not well-formed.
[[nodiscard]] RecordHead readRecordHead(simdjson::ondemand::object object, const char* begin);

/// The head of the object that @p json is; nothing but defaults for anything else.
[[nodiscard]] RecordHead readRecordHead(const QByteArray& json);

} // namespace tavrin
