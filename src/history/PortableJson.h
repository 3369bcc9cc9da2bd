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

} // namespace tavrin
