#pragma once

#include "platform/programs/Workspace.h"

#include <QList>
#include <QStringList>

namespace tavrin {

/// The commands that open the settings at @p pane, best first: those of the desktop that
/// @p currentDesktop names (XDG_CURRENT_DESKTOP), then what serves on every desktop. No desktop has
/// settings for speech.
[[nodiscard]] QList<QStringList> settingsCommands(SettingsPane pane, const QString& currentDesktop);

/// Starts the first of @p commands that is installed, and leaves it to itself. False when none is,
/// or it does not start.
/// @param folders where programs are looked for; those of PATH when empty.
bool startFirstInstalled(const QList<QStringList>& commands, const QStringList& folders = {});

} // namespace tavrin
