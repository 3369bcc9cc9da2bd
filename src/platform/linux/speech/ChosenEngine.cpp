#include "platform/linux/speech/ChosenEngine.h"

#include "platform/preferences/PreferenceKeys.h"
#include "platform/preferences/PreferenceValues.h"

#include <QStringList>

namespace tavrin {

QString chosenEngineName(const Preferences& preferences)
{
    const QStringList known{
        engine_names::builtIn, engine_names::neural, engine_names::http, engine_names::vosk};
    QString set = stored(preferences, keys::linuxSpeechEngine).value_or(QString());
    if (known.contains(set))
        return set;
    return valueOf(preferences, keys::linuxSpeechOnnxModel).isEmpty()
        ? keys::linuxSpeechEngine.fallback
        : engine_names::neural;
}

} // namespace tavrin
