#pragma once

#include "devcloud/polish/EnglishLine.h"

namespace tavrin::devcloud {

/// "um", "uh" …; capitals ("UM") are short for something.
bool isSound(const Run& run);

/// The runs of a line without the sounds that stand alone, and without the marks that were their
/// own.
Runs withoutSounds(Runs runs);

} // namespace tavrin::devcloud
