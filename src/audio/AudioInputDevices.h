#pragma once

#include "platform/audio/AudioDevices.h"

#include <QList>
#include <QString>

namespace tavrin {

/// One device that sound can be recorded from.
struct AudioInputDevice {
    AudioDeviceId id = 0; ///< Valid for the moment only; never stored.
    QString name; ///< For people; may be empty or the same as another device's.
    QString uid; ///< What preferences remember the device by.

    friend bool operator==(const AudioInputDevice&, const AudioInputDevice&) = default;
};

/// The devices with input channels whose name and UID can both be read, sorted by name as the
/// user's language sorts it, case not counting; equal names stay in the system's order. Empty when
/// the device list cannot be read.
[[nodiscard]] QList<AudioInputDevice> AudioInputDevices(AudioDevices& devices);

} // namespace tavrin
