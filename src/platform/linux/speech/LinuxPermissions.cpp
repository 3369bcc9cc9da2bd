#include "platform/linux/speech/LinuxPermissions.h"

#include "platform/audio/AudioDevices.h"

#include <algorithm>

namespace tavrin {
namespace {

bool isMicrophone(AudioDevices& devices, AudioDeviceId device)
{
    return devices.inputChannels(device).value_or(0) > 0;
}

} // namespace

LinuxPermissions::LinuxPermissions(AudioDevices& devices)
    : m_devices(devices)
{
}

AuthorizationStatus LinuxPermissions::microphoneStatus() const
{
    const QList<AudioDeviceId> devices = m_devices.devices();
    const bool isThere = std::ranges::any_of(
        devices, [this](AudioDeviceId device) { return isMicrophone(m_devices, device); });
    return isThere ? AuthorizationStatus::Authorized : AuthorizationStatus::Denied;
}

void LinuxPermissions::requestMicrophone(Completion<AuthorizationStatus> completion)
{
    completion(microphoneStatus());
}

AuthorizationStatus LinuxPermissions::speechStatus() const
{
    return AuthorizationStatus::Authorized; // A missing engine tells what it lacks by itself.
}

void LinuxPermissions::requestSpeech(Completion<AuthorizationStatus> completion)
{
    completion(speechStatus());
}

} // namespace tavrin
