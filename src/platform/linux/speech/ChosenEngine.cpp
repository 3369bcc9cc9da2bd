#include "platform/linux/speech/ChosenEngine.h"

#include "platform/preferences/PreferenceKeys.h"
#include "platform/preferences/PreferenceValues.h"

namespace tavrin {

QString chosenEngineName(const Preferences& preferences)
{
    const QString set = valueOf(preferences, keys::linuxSpeechEngine);
    const bool isKnown =
        set == engine_names::builtIn || set == engine_names::http || set == engine_names::vosk;
    return isKnown ? set : keys::linuxSpeechEngine.fallback;
}

} // namespace tavrin
