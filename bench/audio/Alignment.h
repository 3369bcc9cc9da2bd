#pragma once

#include <QtGlobal>

#include <optional>
#include <span>

namespace bench {

/// Where in @p reference the sound of @p recording stands: the index of its first sample, found by
/// a stretch that begins @p skipped samples later. Empty when it does not stand there clearly.
[[nodiscard]] std::optional<qint64> positionIn(
    std::span<const qint16> reference, std::span<const qint16> recording, std::size_t skipped);

} // namespace bench
