#pragma once

#include <QtGlobal>

namespace tavrin {

/// A stretch of text in UTF-16 units. Values that come from another process may be anything:
/// negative, or beyond the end.
struct TextRange {
    qint64 location = -1;
    qint64 length = 0;

    friend bool operator==(const TextRange&, const TextRange&) = default;
};

} // namespace tavrin
