#pragma once

#include <QIcon>
#include <QString>

namespace tavrin {

/// The square that stands in a tray: @p text in white in a rounded frame of the brand's colour.
/// It brings its own ground, because a tray does not tell whether it is light or dark. Drawn afresh
/// for every size, so that it is sharp at each.
[[nodiscard]] QIcon statusIcon(const QString& text);

} // namespace tavrin
