#pragma once

#include <QtGlobal>

#include <functional>
#include <optional>

namespace tavrin::ui {

/// The row that @p key leads to from @p current in a list of @p count rows; may lie outside of it.
/// Nothing for keys that do not move in lists.
/// @param pagesAway the row that is that many pages away: -1 or 1.
[[nodiscard]] std::optional<qsizetype> rowAtKey(int key, qsizetype current, qsizetype count,
    const std::function<qsizetype(int pages)>& pagesAway);

} // namespace tavrin::ui
