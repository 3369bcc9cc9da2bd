#pragma once

#include "audio/AudioInputDevices.h"

#include <optional>

namespace tavrin {

class Preferences;

/// The microphone that the user chose to record from, while it is there. Asks the devices.
[[nodiscard]] std::optional<AudioInputDevice> preferredMicrophone(
    AudioDevices& devices, const Preferences& preferences);

/// What the next recording hears: that one, else the system's default. Empty when there is neither,
/// or it cannot be told.
[[nodiscard]] std::optional<AudioDeviceId> recordingMicrophone(
    AudioDevices& devices, const Preferences& preferences);

} // namespace tavrin
