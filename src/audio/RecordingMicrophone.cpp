#include "audio/RecordingMicrophone.h"

#include "platform/preferences/PreferenceKeys.h"
#include "platform/preferences/PreferenceValues.h"

#include <algorithm>

namespace tavrin {

std::optional<AudioInputDevice> preferredMicrophone(
    AudioDevices& devices, const Preferences& preferences)
{
    const QString preferred = valueOf(preferences, keys::preferredMicrophoneUID);
    if (preferred.isEmpty())
        return std::nullopt;
    const QList<AudioInputDevice> present = AudioInputDevices(devices);
    const auto device = std::ranges::find(present, preferred, &AudioInputDevice::uid);
    return device == present.end() || device->id == 0 ? std::nullopt : std::optional(*device);
}

std::optional<AudioDeviceId> recordingMicrophone(
    AudioDevices& devices, const Preferences& preferences)
{
    const std::optional<AudioInputDevice> preferred = preferredMicrophone(devices, preferences);
    return preferred ? preferred->id : devices.defaultInputDevice();
}

} // namespace tavrin
