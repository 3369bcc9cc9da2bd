#include "audio/AudioEnvironment.h"

#include "audio/AudioTexts.h"
#include "audio/RecordingMicrophone.h"
#include "base/Log.h"
#include "platform/MainQueue.h"
#include "platform/SystemInfo.h"
#include "platform/preferences/PreferenceKeys.h"
#include "platform/preferences/PreferenceValues.h"

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tavrin {
namespace {

constexpr quint32 muted = 1;
constexpr float silent = 0;
constexpr float stillSilent = 0.001F; // At most this is what we set; above it the user raised it.

// What is owed is tried again, less and less often: a server may answer, a device be plugged in.
constexpr Seconds firstRetryDelay = 1s;
constexpr Seconds longestRetryDelay = 60s;

} // namespace

bool MuteDuringRecordingEnabled(const Preferences& preferences)
{
    return valueOf(preferences, keys::muteDuringRecording);
}

AudioEnvironment::AudioEnvironment(AudioDevices& devices, Preferences& preferences,
    const SystemInfo& systemInfo, MainQueue& mainQueue, std::function<bool()> isRecording)
    : m_devices(devices)
    , m_preferences(preferences)
    , m_mainQueue(mainQueue)
    , m_isRecording(std::move(isRecording))
    , m_note(systemInfo.applicationSupportDirectory() + u"/Tavrin"_s)
    , m_retryDelay(firstRetryDelay)
{
}

AudioEnvironment::~AudioEnvironment() = default;

void AudioEnvironment::applyPreferredMicrophoneForRecording()
{
    undoOwedChanges();
    m_input.didOverrideInputDevice = false;
    const auto preferred = preferredMicrophone(m_devices, m_preferences);
    if (!preferred)
        return;
    const std::optional<AudioDeviceId> current = m_devices.defaultInputDevice();
    if (!current || *current == preferred->id)
        return;

    if (const auto uid = m_devices.uid(*current)) {
        m_changes.inputs = {{*uid, preferred->uid}};
        writeNote();
    }
    if (!m_devices.setDefaultInputDevice(preferred->id)) {
        m_changes.inputs.clear();
        writeNote();
        return;
    }
    m_input = {.didOverrideInputDevice = true,
        .previousInputDevice = *current,
        .activePreferredInputDevice = preferred->id};
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
    noteOutput({{}, current, {}});
    m_output.didCaptureOutputMute = m_devices.setOutputMute(m_output.isolatedOutputDevice, muted);
    if (!m_output.didCaptureOutputMute) {
        m_changes.outputs.clear();
        writeNote();
    }
}

void AudioEnvironment::silenceOutput(float current)
{
    m_output.previousOutputVolume = current;
    noteOutput({{}, {}, current});
    m_output.didCaptureOutputVolume =
        m_devices.setOutputVolume(m_output.isolatedOutputDevice, silent);
    if (!m_output.didCaptureOutputVolume) {
        m_changes.outputs.clear();
        writeNote();
    }
}

void AudioEnvironment::noteOutput(AudioChanges::Output output)
{
    const auto uid = m_devices.uid(m_output.isolatedOutputDevice);
    if (!uid)
        return;
    output.uid = *uid;
    m_changes.outputs = {std::move(output)};
    writeNote();
}

void AudioEnvironment::writeNote()
{
    m_note.write({m_owed.outputs + m_changes.outputs, m_owed.inputs + m_changes.inputs});
}

void AudioEnvironment::restoreAudioEnvironment()
{
    if (!restoreOutput())
        m_owed.outputs += m_changes.outputs;
    if (!restoreInput())
        m_owed.inputs += m_changes.inputs;
    m_changes = {};
    undoOwedChanges();
}

bool AudioEnvironment::restoreOutput()
{
    const OutputIsolation output = std::exchange(m_output, {});
    const AudioDeviceId device = output.isolatedOutputDevice;
    if (device != 0 && output.didCaptureOutputMute) {
        const auto mute = m_devices.outputMute(device);
        if (mute == muted)
            m_devices.setOutputMute(device, output.previousOutputMute);
        return mute.has_value();
    }
    if (device != 0 && output.didCaptureOutputVolume) {
        const auto volume = m_devices.outputVolume(device);
        if (volume && *volume <= stillSilent)
            m_devices.setOutputVolume(device, output.previousOutputVolume);
        return volume.has_value();
    }
    return true;
}

bool AudioEnvironment::restoreInput()
{
    const InputOverride input = std::exchange(m_input, {});
    if (!input.didOverrideInputDevice)
        return true;
    const auto current = m_devices.defaultInputDevice();
    if (!current)
        return false;
    if (current != input.activePreferredInputDevice && current != input.previousInputDevice)
        // The user's choice, unless a device had to stand in for one that is away.
        return m_devices.devices().contains(input.activePreferredInputDevice);
    // Also when the switch has not shown yet: it would come after this.
    if (input.previousInputDevice != 0)
        m_devices.setDefaultInputDevice(input.previousInputDevice);
    return input.previousInputDevice != 0;
}

void AudioEnvironment::restoreAfterCrash()
{
    m_owed = m_note.adopt();
    if (!m_owed.isEmpty())
        qCInfo(log::audio) << "undoing the audio changes of a process that died";
    undoOwedChanges();
}

void AudioEnvironment::undoOwedChanges()
{
    const bool inForce = m_input.didOverrideInputDevice || m_output.didCaptureOutputMute
        || m_output.didCaptureOutputVolume;
    if (inForce)
        return;
    if (!m_owed.isEmpty() && !m_devices.devices().isEmpty()) {
        m_owed.outputs.removeIf(
            [this](const AudioChanges::Output& change) { return restoreOwed(change); });
        m_owed.inputs.removeIf(
            [this](const AudioChanges::Input& change) { return restoreOwed(change); });
    }
    m_note.write(m_owed);
    tryAgainLater();
}

/// The same steps and guards as after a recording, on the devices as they are called today.
bool AudioEnvironment::restoreOwed(const AudioChanges::Output& change)
{
    m_output = {.isolatedOutputDevice = deviceWithUid(change.uid, false),
        .didCaptureOutputMute = change.previousMute.has_value(),
        .previousOutputMute = change.previousMute.value_or(0),
        .didCaptureOutputVolume = change.previousVolume.has_value(),
        .previousOutputVolume = change.previousVolume.value_or(0)};
    const bool isThere = m_output.isolatedOutputDevice != 0;
    return restoreOutput() && isThere;
}

bool AudioEnvironment::restoreOwed(const AudioChanges::Input& change)
{
    m_input = {.didOverrideInputDevice = true,
        .previousInputDevice = deviceWithUid(change.previousUid, true),
        .activePreferredInputDevice = deviceWithUid(change.preferredUid, true)};
    return restoreInput();
}

void AudioEnvironment::tryAgainLater()
{
    if (m_owed.isEmpty()) {
        m_retry.reset();
        m_retryDelay = firstRetryDelay;
        return;
    }
    m_retry = m_mainQueue.after(m_retryDelay, [this] {
        m_retryDelay = std::min(2 * m_retryDelay, longestRetryDelay);
        undoOwedChanges();
    });
}

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

MicrophoneContent AudioEnvironment::refreshMicrophoneControls(const Localize& localize)
{
    m_availableInputDevices = AudioInputDevices(m_devices);
    return microphoneContent(m_availableInputDevices,
        valueOf(m_preferences, keys::preferredMicrophoneUID), localize(texts::followSystemDefault));
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
