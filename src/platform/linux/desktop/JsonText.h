#pragma once

#include "base/Result.h"

#include <QByteArray>
#include <QVariantMap>

#include <optional>

/// JSON that keeps what QJsonDocument blurs: 1 stays an integer and 1.0 a double, integers keep all
/// their 64 bits, and a lone surrogate in a string survives.
namespace tavrin::json {

/// Values nested deeper than this are neither read nor written.
inline constexpr int deepestNesting = 256;

/// Reads one JSON object. Of members with the same name the last one holds; a byte order mark is
/// skipped; null becomes an invalid QVariant. The error says at which character reading ended, and
/// quotes nothing.
[[nodiscard]] Result<QVariantMap> parseObject(const QByteArray& text);

/// @p value as it would be read back: every integer as qlonglong (qulonglong where it must), lists
/// as QVariantList, maps as QVariantMap. Empty when JSON cannot hold it: a type of its own, a
/// number that is not finite, nested too deep.
[[nodiscard]] std::optional<QVariant> normalized(const QVariant& value);

/// A normalised value on one line.
[[nodiscard]] QByteArray serialized(const QVariant& value);

/// Normalised members, each on a line of its own, so that the file is pleasant to edit by hand.
[[nodiscard]] QByteArray serializedObject(const QVariantMap& members);

} // namespace tavrin::json
