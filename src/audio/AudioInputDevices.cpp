#include "audio/AudioInputDevices.h"

#include <QCollator>

#include <algorithm>

namespace tavrin {

QList<AudioInputDevice> AudioInputDevices(AudioDevices& devices)
{
    QList<AudioInputDevice> found;
    for (const AudioDeviceId id : devices.devices()) {
        if (devices.inputChannels(id).value_or(0) <= 0)
            continue;
        const std::optional<QString> name = devices.name(id);
        const std::optional<QString> uid = devices.uid(id);
        if (name && uid)
            found.append({id, *name, *uid});
    }

    QCollator collator;
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    std::ranges::stable_sort(found, [&](const AudioInputDevice& a, const AudioInputDevice& b) {
        return collator.compare(a.name, b.name) < 0;
    });
    return found;
}

} // namespace tavrin
