#include "audio/MicrophoneContent.h"

namespace tavrin {

MicrophoneContent microphoneContent(const QList<AudioInputDevice>& devices,
    const QString& preferredUid, const QString& followSystemDefault)
{
    MicrophoneContent controls;
    controls.items.append({followSystemDefault, {}});
    for (const AudioInputDevice& device : devices) {
        if (device.uid == preferredUid)
            controls.selected = controls.items.size();
        controls.items.append({device.name, device.uid});
    }
    return controls;
}

} // namespace tavrin
