#include "audio/AudioEnvironment.h"

#include "audio/AudioTexts.h"
#include "base/Log.h"
#include "platform/PreferenceKeys.h"
#include "platform/PreferenceValues.h"
#include "platform/SystemInfo.h"

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

constexpr quint32 muted = 1;
constexpr float silent = 0;
constexpr float stillSilent = 0.001F; // At most this is what we set; above it the user raised it.

} // namespace

bool MuteDuringRecordingEnabled(const Preferences& preferences)
{
    return storedBool(preferences, keys::muteDuringRecording).value_or(false);
}

AudioEnvironment::AudioEnvironment(AudioDevices& devices, Preferences& preferences,
    const SystemInfo& systemInfo, std::function<bool()> isRecording)
    : m_devices(devices)
    , m_preferences(preferences)
    , m_isRecording(std::move(isRecording))
    , m_note(systemInfo.applicationSupportDirectory() + u"/Tavrin"_s)
{
}

void AudioEnvironment::applyPreferredMicrophoneForRecording()
{
    undoAbandonedChanges();
    m_input.didOverrideInputDevice = false;
    const QString preferred =
        storedString(m_preferences, keys::preferredMicrophoneUID).value_or(QString());
    if (preferred.isEmpty())
        return;
    const QList<AudioInputDevice> devices = AudioInputDevices(m_devices);
    const auto device = std::ranges::find(devices, preferred, &AudioInputDevice::uid);
    if (device == devices.end() || device->id == 0)
        return;
    const std::optional<AudioDeviceId> current = m_devices.defaultInputDevice();
    if (!current || *current == device->id)
        return;

    if (const auto uid = m_devices.uid(*current)) {
        m_changes.input = {*uid, preferred};
        m_note.write(m_changes);
    }
    if (!m_devices.setDefaultInputDevice(device->id)) {
        m_changes.input.reset();
        m_note.write(m_changes);
        return;
    }
    m_input = {.didOverrideInputDevice = true,
        .previousInputDevice = *current,
        .activePreferredInputDevice = device->id};
}

void AudioEnvironment::muteSystemAudioForRecordingIfNeeded()
{
    if (!MuteDuringRecordingEnabled(m_preferences) || m_output.didCaptureOutputMute
        || m_output.didCaptureOutputVolume || !m_isRecording())
        return;
    m_output.isolatedOutputDevice = m_devices.defaultOutputDevice().value_or(0);
    if (m_output.isolatedOutputDevice == 0)
        return;

    const auto mute = m_devices.outputMute(m_output.isolatedOutputDevice);
    if (mute && m_devices.isOutputMuteSettable(m_output.isolatedOutputDevice)) {
        muteOutput(*mute);
        return;
    }
    const auto volume = m_devices.outputVolume(m_output.isolatedOutputDevice);
    if (volume && m_devices.isOutputVolumeSettable(m_output.isolatedOutputDevice))
        silenceOutput(*volume);
}

void AudioEnvironment::muteOutput(quint32 current)
{
    m_output.previousOutputMute = current;
    noteOutput(AudioChanges::Output{{}, current, {}});
    m_output.didCaptureOutputMute = m_devices.setOutputMute(m_output.isolatedOutputDevice, muted);
    if (!m_output.didCaptureOutputMute)
        noteOutput({});
}

void AudioEnvironment::silenceOutput(float current)
{
    m_output.previousOutputVolume = current;
    noteOutput(AudioChanges::Output{{}, {}, current});
    m_output.didCaptureOutputVolume =
        m_devices.setOutputVolume(m_output.isolatedOutputDevice, silent);
    if (!m_output.didCaptureOutputVolume)
        noteOutput({});
}

void AudioEnvironment::noteOutput(std::optional<AudioChanges::Output> output)
{
    m_changes.output = std::move(output);
    if (m_changes.output)
        m_changes.output->uid = m_devices.uid(m_output.isolatedOutputDevice).value_or(QString());
    m_note.write(m_changes);
}

void AudioEnvironment::restoreAudioEnvironment()
{
    restoreOutput();
    restoreInput();
    m_changes = {};
    m_note.write(m_abandoned);
}

void AudioEnvironment::restoreOutput()
{
    const OutputIsolation output = std::exchange(m_output, {});
    const AudioDeviceId device = output.isolatedOutputDevice;
    if (device == 0)
        return;
    if (output.didCaptureOutputMute && m_devices.outputMute(device) == muted)
        m_devices.setOutputMute(device, output.previousOutputMute);
    if (output.didCaptureOutputVolume && m_devices.outputVolume(device).value_or(1) <= stillSilent)
        m_devices.setOutputVolume(device, output.previousOutputVolume);
}

void AudioEnvironment::restoreInput()
{
    const InputOverride input = std::exchange(m_input, {});
    if (input.didOverrideInputDevice && input.previousInputDevice != 0
        && m_devices.defaultInputDevice() == input.activePreferredInputDevice)
        m_devices.setDefaultInputDevice(input.previousInputDevice);
}

void AudioEnvironment::restoreAfterCrash()
{
    m_abandoned = m_note.adopt();
    undoAbandonedChanges();
}

void AudioEnvironment::undoAbandonedChanges()
{
    if (m_abandoned.isEmpty() || m_devices.devices().isEmpty())
        return;
    qCInfo(log::audio) << "undoing the audio changes of a process that died";

    // The same steps and guards as after a recording, on the devices as they are called today.
    if (const auto& output = m_abandoned.output) {
        m_output.isolatedOutputDevice = deviceWithUid(output->uid, false);
        m_output.didCaptureOutputMute = output->previousMute.has_value();
        m_output.previousOutputMute = output->previousMute.value_or(0);
        m_output.didCaptureOutputVolume = output->previousVolume.has_value();
        m_output.previousOutputVolume = output->previousVolume.value_or(0);
    }
    if (const auto& input = m_abandoned.input) {
        m_input.activePreferredInputDevice = deviceWithUid(input->preferredUid, true);
        m_input.previousInputDevice = deviceWithUid(input->previousUid, true);
        m_input.didOverrideInputDevice = m_input.activePreferredInputDevice != 0;
    }
    m_abandoned = {};
    restoreAudioEnvironment();
}

/// The device with this UID; 0 when there is none. A microphone and a loudspeaker may share one.
AudioDeviceId AudioEnvironment::deviceWithUid(const QString& uid, bool input)
{
    AudioDeviceId found = 0;
    for (const AudioDeviceId device : m_devices.devices()) {
        if (m_devices.uid(device) != uid)
            continue;
        const bool hasInput = m_devices.inputChannels(device).value_or(0) > 0;
        if (hasInput == input)
            return device;
        found = device;
    }
    return found;
}

MicrophoneControls AudioEnvironment::refreshMicrophoneControls(const Localize& localize)
{
    m_availableInputDevices = AudioInputDevices(m_devices);
    return microphoneControls(m_availableInputDevices,
        storedString(m_preferences, keys::preferredMicrophoneUID).value_or(QString()),
        localize(texts::followSystemDefault));
}

void AudioEnvironment::selectPreferredMicrophone(const QString& uid)
{
    if (uid.isEmpty())
        m_preferences.remove(keys::preferredMicrophoneUID);
    else
        m_preferences.setValue(keys::preferredMicrophoneUID, uid);
    m_preferences.synchronize();
}

void AudioEnvironment::toggleMuteDuringRecording(bool on)
{
    m_preferences.setValue(keys::muteDuringRecording, on);
    m_preferences.synchronize();
}

} // namespace tavrin
