#pragma once

#include <QUrl>

#include <optional>

namespace tavrin {

/// Whether sound may be sent to @p address: to this computer (127.0.0.1, ::1, localhost) over any
/// of the two schemes, to any other only over the encrypted one. Empty when it may not, or is no
/// address. @p plain and @p encrypted are such as "http" and "https".
[[nodiscard]] std::optional<QUrl> speechServerAddress(
    const QString& address, const QString& plain, const QString& encrypted);

/// Whether the address is this computer's own.
[[nodiscard]] bool isLoopback(const QUrl& address);

/// The address without user name, password and query, for showing.
[[nodiscard]] QString shownAddress(const QUrl& address);

} // namespace tavrin
