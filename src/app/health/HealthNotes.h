#pragma once

#include "app/health/HealthContent.h"

namespace tavrin {

class Localization;
struct HealthSources;

/// What else decides on this desktop whether Tavrin can work: the recogniser and its language
/// always, and what is wrong with the microphone, the shortcuts and the session. Nothing on a
/// desktop that does not name its recogniser (DesktopTexts::recogniser).
[[nodiscard]] QList<HealthNote> readHealthNotes(const HealthSources& sources);

/// Says that programs of these names have to be restarted.
[[nodiscard]] HealthNote restartNote(const Localization& localization, const QStringList& names);

} // namespace tavrin
