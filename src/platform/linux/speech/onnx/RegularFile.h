#pragma once

#include <QFile>
#include <QString>

namespace tavrin {

/// Opens the regular file at @p path for reading, without a buffer. Whatever else stands there (a
/// folder, a pipe that nobody writes into) is refused at once.
[[nodiscard]] bool openRegularFile(const QString& path, QFile& file);

} // namespace tavrin
