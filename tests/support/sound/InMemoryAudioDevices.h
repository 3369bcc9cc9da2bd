#pragma once

#include "platform/audio/AudioDevices.h"

#include <QStringList>

#include <algorithm>
#include <functional>
#include <vector>

namespace tavrin::testing {

/// A machine's sound devices as the test arranges them. An empty optional is a property that the
/// device lacks or that cannot be read.
class InMemoryAudioDevices final : public AudioDevices {
public:
    struct Device {
        AudioDeviceId id = 0;
        std::optional<QString> name;
        std::optional<QString> uid;
        std::optional<int> inputChannels = 0;
        std::optional<bool> silent = false; ///< Of an input.
        std::optional<quint32> mute;
        bool muteSettable = true;
        bool muteWritesSucceed = true;
        std::optional<float> volume;
        bool volumeSettable = true;
        bool volumeWritesSucceed = true;
    };

    std::vector<Device> all;
    std::optional<AudioDeviceId> defaultInput;
    std::optional<AudioDeviceId> defaultOutput;
    bool switchingSucceeds = true;
    bool switchesShow = true; ///< Else a switch is accepted, and comes when the test says so.
    bool answers = true; ///< Else the sound server is silent: nothing can be read or written.

    /// Every change that was asked for, in order: "input 2", "mute 3 1", "volume 3 0".
    QStringList writes;
    std::function<void(const QString&)> onWrite; ///< Told of each at once.

    Device& addMicrophone(AudioDeviceId id, const QString& name, const QString& uid)
    {
        Device microphone;
        microphone.id = id;
        microphone.name = name;
        microphone.uid = uid;
        microphone.inputChannels = 1;
        all.push_back(microphone);
        return all.back();
    }

    Device& addLoudspeaker(AudioDeviceId id, const QString& uid)
    {
        Device loudspeaker;
        loudspeaker.id = id;
        loudspeaker.name = uid;
        loudspeaker.uid = uid;
        loudspeaker.mute = 0;
        loudspeaker.volume = 1.0F;
        all.push_back(loudspeaker);
        return all.back();
    }

    /// The device with this id; it must be there.
    Device& device(AudioDeviceId id) { return *find(id); }

    [[nodiscard]] QList<AudioDeviceId> devices() override
    {
        QList<AudioDeviceId> ids;
        if (!answers)
            return ids;
        for (const Device& each : all)
            ids.append(each.id);
        return ids;
    }

    [[nodiscard]] std::optional<int> inputChannels(AudioDeviceId id) override
    {
        return read(id, &Device::inputChannels);
    }

    [[nodiscard]] std::optional<QString> name(AudioDeviceId id) override
    {
        return read(id, &Device::name);
    }

    [[nodiscard]] std::optional<QString> uid(AudioDeviceId id) override
    {
        return read(id, &Device::uid);
    }

    [[nodiscard]] std::optional<bool> isInputSilent(AudioDeviceId id) override
    {
        return read(id, &Device::inputChannels).value_or(0) > 0 ? read(id, &Device::silent)
                                                                : std::nullopt;
    }

    [[nodiscard]] std::optional<AudioDeviceId> defaultInputDevice() override
    {
        return answers ? defaultInput : std::nullopt;
    }

    bool setDefaultInputDevice(AudioDeviceId id) override
    {
        note(QStringLiteral("input %1").arg(id));
        const Device* found = find(id);
        if (!answers || !switchingSucceeds || !found || found->inputChannels.value_or(0) == 0)
            return false;
        if (switchesShow)
            defaultInput = id;
        return true;
    }

    [[nodiscard]] std::optional<AudioDeviceId> defaultOutputDevice() override
    {
        return answers ? defaultOutput : std::nullopt;
    }

    [[nodiscard]] std::optional<quint32> outputMute(AudioDeviceId id) override
    {
        return read(id, &Device::mute);
    }

    [[nodiscard]] bool isOutputMuteSettable(AudioDeviceId id) override
    {
        const Device* found = find(id);
        return answers && found && found->mute && found->muteSettable;
    }

    bool setOutputMute(AudioDeviceId id, quint32 mute) override
    {
        note(QStringLiteral("mute %1 %2").arg(id).arg(mute));
        Device* found = find(id);
        if (!isOutputMuteSettable(id) || !found->muteWritesSucceed)
            return false;
        found->mute = mute;
        return true;
    }

    [[nodiscard]] std::optional<float> outputVolume(AudioDeviceId id) override
    {
        return read(id, &Device::volume);
    }

    [[nodiscard]] bool isOutputVolumeSettable(AudioDeviceId id) override
    {
        const Device* found = find(id);
        return answers && found && found->volume && found->volumeSettable;
    }

    bool setOutputVolume(AudioDeviceId id, float volume) override
    {
        note(QStringLiteral("volume %1 %2").arg(id).arg(static_cast<double>(volume)));
        Device* found = find(id);
        if (!isOutputVolumeSettable(id) || !found->volumeWritesSucceed)
            return false;
        found->volume = volume;
        return true;
    }

private:
    void note(const QString& write)
    {
        writes.append(write);
        if (onWrite)
            onWrite(write);
    }

    Device* find(AudioDeviceId id)
    {
        const auto found = std::ranges::find(all, id, &Device::id);
        return found == all.end() ? nullptr : &*found;
    }

    template <class Value>
    std::optional<Value> read(AudioDeviceId id, std::optional<Value> Device::*property)
    {
        const Device* found = find(id);
        return answers && found ? found->*property : std::nullopt;
    }
};

} // namespace tavrin::testing
