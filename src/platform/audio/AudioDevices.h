#pragma once

#include <QList>
#include <QString>

#include <optional>

namespace tavrin {

/// Identifies a device until the next boot or restart of the sound server; 0 is no device.
using AudioDeviceId = quint32;

/// The machine's sound devices and what can be read and set of them.
///
/// Main thread only. No call waits longer than half a second, also when the sound server hangs; a
/// server that is absent or dies reads as "unknown" everywhere and is found again when it returns.
/// An empty optional means that the device lacks the property or that it cannot be read. A change
/// that answers false is not made, now or later; one that answers true is made, or was asked for
/// and may show late.
/// Linux: a source is an input device, a sink an output device; monitor sources are left out, and
/// the source or sink name is the UID.
class AudioDevices {
public:
    virtual ~AudioDevices() = default;

    /// Every device, in the system's order; empty when the list cannot be read.
    [[nodiscard]] virtual QList<AudioDeviceId> devices() = 0;

    /// Channels of all input streams together; 0 for a device without input.
    [[nodiscard]] virtual std::optional<int> inputChannels(AudioDeviceId device) = 0;

    [[nodiscard]] virtual std::optional<QString> name(AudioDeviceId device) = 0;

    /// The persistent identifier, valid across restarts.
    [[nodiscard]] virtual std::optional<QString> uid(AudioDeviceId device) = 0;

    /// Whether nothing but silence can come from an input device: it is muted, turned all the way
    /// down, or nothing is plugged into it.
    [[nodiscard]] virtual std::optional<bool> isInputSilent(AudioDeviceId device) = 0;

    [[nodiscard]] virtual std::optional<AudioDeviceId> defaultInputDevice() = 0;
    virtual bool setDefaultInputDevice(AudioDeviceId device) = 0;

    [[nodiscard]] virtual std::optional<AudioDeviceId> defaultOutputDevice() = 0;

    /// 1 when the output is muted, 0 when not.
    [[nodiscard]] virtual std::optional<quint32> outputMute(AudioDeviceId device) = 0;
    [[nodiscard]] virtual bool isOutputMuteSettable(AudioDeviceId device) = 0;
    virtual bool setOutputMute(AudioDeviceId device, quint32 mute) = 0;

    /// 0.0 (silent) to 1.0 (full).
    [[nodiscard]] virtual std::optional<float> outputVolume(AudioDeviceId device) = 0;
    [[nodiscard]] virtual bool isOutputVolumeSettable(AudioDeviceId device) = 0;
    virtual bool setOutputVolume(AudioDeviceId device, float volume) = 0;
};

} // namespace tavrin
