#pragma once

#include <QByteArray>

class QJsonDocument;

/// JSON text that every reader takes for what it says.
namespace tavrin {

/// @p document indented, without what readers refuse or drop: lone halves of surrogate pairs, and
/// a zero width no-break space that looks like a byte order mark.
[[nodiscard]] QByteArray portableJson(const QJsonDocument& document);

/// @p json with the replacement character for each escape of a surrogate that lacks its other
/// half: strict readers refuse the whole document for one.
[[nodiscard]] QByteArray withoutLoneSurrogates(QByteArray json);

/// @p json, every byte at its place, with the nearest number that readers take for each one that
/// they refuse the whole document for: an integer of more than 64 bits, a number that is too large
/// or too small for a double. Equal to @p json when there is none.
[[nodiscard]] QByteArray withNumbersInRange(QByteArray json);

} // namespace tavrin
