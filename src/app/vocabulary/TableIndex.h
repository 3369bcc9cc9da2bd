#pragma once

#include <QtGlobal>

#include <algorithm>
#include <iterator>

namespace tavrin {

/// The row of @p table (not empty) at @p index, which a popup gave: anything from -1 for "nothing
/// selected" to beyond the end is moved to the nearest row.
template <class Table>
[[nodiscard]] constexpr const auto& itemAtClampedIndex(const Table& table, qsizetype index)
{
    const auto last = static_cast<qsizetype>(std::size(table)) - 1;
    return *std::next(std::begin(table), std::clamp<qsizetype>(index, 0, last));
}

/// The index of the row of @p table whose identifier is @p identifier; 0 when there is none.
template <class Table, class Identifier>
[[nodiscard]] constexpr qsizetype indexOfIdentifier(
    const Table& table, const Identifier& identifier)
{
    const auto found =
        std::ranges::find_if(table, [&](const auto& row) { return row.identifier == identifier; });
    return found == std::end(table) ? 0 : std::distance(std::begin(table), found);
}

} // namespace tavrin
