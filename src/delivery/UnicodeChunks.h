#pragma once

#include <QString>
#include <QStringList>

namespace tavrin {

/// @p text in pieces for typing: at most 16 UTF-16 units each, none of which ends between the two
/// halves of a surrogate pair. Joined, they are the text again.
[[nodiscard]] QStringList unicodeChunks(const QString& text);

} // namespace tavrin
