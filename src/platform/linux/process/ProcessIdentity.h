#pragma once

#include <QtGlobal>

#include <optional>

namespace tavrin {

/// One process of this machine until the next boot: its number is given out again once it has
/// ended, but never with the same birth.
struct ProcessIdentity {
    qint64 number = 0;
    quint64 birth = 0; ///< Clock ticks since boot.

    friend bool operator==(const ProcessIdentity&, const ProcessIdentity&) = default;
};

/// The process that has @p number now; empty when there is none, or only its corpse.
[[nodiscard]] std::optional<ProcessIdentity> processWithNumber(qint64 number);

[[nodiscard]] ProcessIdentity thisProcess();

} // namespace tavrin
