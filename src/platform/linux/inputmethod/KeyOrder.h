#pragma once

#include <QByteArray>

namespace tavrin {

/// Whether the program of process @p identifier mixes up the order of keys that come faster than
/// its input method answers, whatever engine is in use: GTK 4 with the module of IBus, which
/// handles the next key while it waits for the answer to the last, and Qt with that of IBus, which
/// does so on a busy machine.
[[nodiscard]] bool mixesTypedKeys(qint64 identifier);

/// The same of what the kernel tells of a process: the files it has mapped, and the environment it
/// was started with. @p ibusRuns decides for Qt, which maps the chosen module alone, and where that
/// names no module for GTK, which maps all there are.
[[nodiscard]] bool usesModuleThatMixesKeys(
    const QByteArray& maps, const QByteArray& environment, bool ibusRuns);

} // namespace tavrin
