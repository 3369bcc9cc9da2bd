#pragma once

#include "base/TextRange.h"

#include <QString>
#include <QStringView>

/// Following what somebody does to a stretch of text inside a longer one that changes around it.
/// Functions on values; all positions and lengths are in UTF-16 units.
namespace tavrin {

/// How many units @p a and @p b have in common from their beginnings.
[[nodiscard]] qsizetype commonPrefixLengthBetween(QStringView a, QStringView b);

/// How many units they have in common from their ends, none of them within the first @p prefix ones
/// of the shorter.
[[nodiscard]] qsizetype commonSuffixLengthBetween(QStringView a, QStringView b, qsizetype prefix);

/// A stretch of a field's text, as it has become, and where it lies.
struct TrackedStretch {
    QString text;
    TextRange range;

    friend bool operator==(const TrackedStretch&, const TrackedStretch&) = default;
};

/// Where in a field something was changed, as the stretch sees it.
enum class EditPlace {
    Inside, ///< Between its edges; text put in right at an edge is not of it.
    Outside, ///< Before or behind it, or beyond what is known of it.
    Across, ///< Over one of its edges: where the stretch ends is not known any more.
};

/// Follows the field from @p before to @p after, which differ: @p stretch takes part in an edit
/// inside it, moves along with one before it, and stays as it is for one across its edge.
[[nodiscard]] EditPlace followEdit(TrackedStretch& stretch, QStringView before, QStringView after);

} // namespace tavrin
