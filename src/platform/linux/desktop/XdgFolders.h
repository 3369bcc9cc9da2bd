#pragma once

#include <QString>
#include <QStringList>

/// The folders of the XDG base directory rules. A variable that holds no absolute path counts as
/// unset, as the rules demand. Paths have no final slash.
namespace tavrin::xdg {

/// XDG_CONFIG_HOME, else ~/.config.
[[nodiscard]] QString configHome();

/// XDG_DATA_HOME, else ~/.local/share.
[[nodiscard]] QString dataHome();

/// dataHome() and then every entry of XDG_DATA_DIRS (else /usr/local/share and /usr/share).
[[nodiscard]] QStringList dataFolders();

/// XDG_RUNTIME_DIR; empty when it is not set.
[[nodiscard]] QString runtimeFolder();

} // namespace tavrin::xdg
