#include "platform/linux/speech/LinuxPermissions.h"

#include "platform/AudioDevices.h"
#include "platform/SpeechRecognizer.h"

#include <algorithm>

namespace tavrin {
namespace {

AuthorizationStatus statusOf(bool isThere)
{
    return isThere ? AuthorizationStatus::Authorized : AuthorizationStatus::Denied;
}

} // namespace

LinuxPermissions::LinuxPermissions(AudioDevices& devices, const FileSpeechRecognizer& recognizer)
    : m_devices(devices)
    , m_recognizer(recognizer)
{
}

AuthorizationStatus LinuxPermissions::microphoneStatus() const
{
    const QList<AudioDeviceId> devices = m_devices.devices();
    return statusOf(std::ranges::any_of(devices,
        [this](AudioDeviceId device) { return m_devices.inputChannels(device).value_or(0) > 0; }));
}

void LinuxPermissions::requestMicrophone(Completion<AuthorizationStatus> completion)
{
    completion(microphoneStatus());
}

AuthorizationStatus LinuxPermissions::speechStatus() const
{
    return statusOf(m_recognizer.isAvailable());
}

void LinuxPermissions::requestSpeech(Completion<AuthorizationStatus> completion)
{
    completion(speechStatus());
}

} // namespace tavrin
