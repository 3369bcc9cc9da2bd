#pragma once

#include <QIcon>
#include <QPixmap>

namespace tavrin {

/// Whether the program carries its icon.
[[nodiscard]] bool hasApplicationIcon();

/// In the sizes that window lists and title bars use. The image of 1024 pixels stands for them all;
/// to send it to the window manager would cost four megabytes for every window.
[[nodiscard]] QIcon windowIcon();

/// For showing it @p side large in a window; in points, up to 128, at up to two pixels each.
[[nodiscard]] QPixmap applicationPicture(int side, double devicePixelRatio);

} // namespace tavrin
