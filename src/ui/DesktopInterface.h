#pragma once

#include "app/windows/UserInterface.h"

namespace tavrin {

/// The windows of the program, built with widgets. A QApplication exists.
[[nodiscard]] std::unique_ptr<UserInterface> createDesktopInterface(
    const UserInterfaceNeighbours& neighbours);

} // namespace tavrin
