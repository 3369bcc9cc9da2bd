#pragma once

#include "base/LocalizedText.h"

#include <QString>

namespace tavrin {

/// How a recogniser stands, in words for the user: what it hears with, or what it lacks. The text
/// is empty where it knows nothing beyond that it is not available.
struct SpeechAvailability {
    bool isAvailable = false;
    LocalizedText text;
    QString argument; ///< Stands for %1 in the text, where it has one.
    /// Why the last recognition failed, where the recogniser is to blame; ready to be shown. Empty
    /// when it did not. Somebody who is available may fail all the same: a server that is gone.
    QString lastFailure{};
};

} // namespace tavrin
