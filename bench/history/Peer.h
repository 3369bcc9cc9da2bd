#pragma once

#include <QByteArray>
#include <QString>

namespace bench {

/// Milliseconds on a clock that never runs backwards.
[[nodiscard]] double now();

/// Milliseconds that the JSON library alone takes to read @p text, from memory.
[[nodiscard]] double parse(const QByteArray& text);

/// Milliseconds that it takes to replace the file by @p text, so that a crash leaves one or the
/// other: a new file beside it, written, synchronized and renamed.
[[nodiscard]] double rewrite(const QString& path, const QByteArray& text);

[[noreturn]] void stop(const char* reason);

} // namespace bench
