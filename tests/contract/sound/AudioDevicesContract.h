#pragma once

#include "platform/audio/AudioDevices.h"
#include "support/QtPrinters.h"

#include <QSet>
#include <gtest/gtest.h>

#include <algorithm>

/// What every implementation of AudioDevices does. A Machine has two microphones and an output at
/// least; `devices` reads and changes them.
namespace tavrin::testing {

template <class Machine>
class AudioDevicesContract : public ::testing::Test {
protected:
    Machine machine;
    AudioDevices& devices = *machine.devices;

    AudioDeviceId defaultInput = devices.defaultInputDevice().value_or(0);
    AudioDeviceId defaultOutput = devices.defaultOutputDevice().value_or(0);
    std::optional<quint32> mute = devices.outputMute(defaultOutput);
    std::optional<float> volume = devices.outputVolume(defaultOutput);

    void SetUp() override
    {
        ASSERT_NE(defaultInput, 0U);
        ASSERT_NE(defaultOutput, 0U);
        ASSERT_TRUE(mute && volume);
    }

    void TearDown() override
    {
        devices.setDefaultInputDevice(defaultInput);
        devices.setOutputMute(defaultOutput, mute.value_or(0));
        devices.setOutputVolume(defaultOutput, volume.value_or(1));
    }

    AudioDeviceId otherMicrophone()
    {
        const QList<AudioDeviceId> all = devices.devices();
        const auto found = std::ranges::find_if(all, [&](AudioDeviceId device) {
            return device != defaultInput && devices.inputChannels(device).value_or(0) > 0;
        });
        return found == all.end() ? 0 : *found;
    }
};

TYPED_TEST_SUITE_P(AudioDevicesContract);

TYPED_TEST_P(AudioDevicesContract, EveryDeviceHasAnIdANameAUidAndItsChannels)
{
    QSet<AudioDeviceId> ids;
    QSet<QString> uids;
    for (const AudioDeviceId device : this->devices.devices()) {
        ids.insert(device);
        EXPECT_NE(device, 0U);
        EXPECT_TRUE(this->devices.name(device).has_value());
        ASSERT_TRUE(this->devices.uid(device).has_value());
        uids.insert(*this->devices.uid(device));
        EXPECT_GE(this->devices.inputChannels(device).value_or(-1), 0);
    }

    EXPECT_GE(ids.size(), 3);
    EXPECT_EQ(ids.size(), this->devices.devices().size());
    EXPECT_EQ(uids.size(), ids.size());
}

TYPED_TEST_P(AudioDevicesContract, TheDefaultsAreAmongTheDevices)
{
    const QList<AudioDeviceId> all = this->devices.devices();

    EXPECT_TRUE(all.contains(this->defaultInput));
    EXPECT_TRUE(all.contains(this->defaultOutput));
    EXPECT_GT(this->devices.inputChannels(this->defaultInput).value_or(0), 0);
    EXPECT_EQ(this->devices.inputChannels(this->defaultOutput), 0);
}

TYPED_TEST_P(AudioDevicesContract, AnotherMicrophoneBecomesTheDefaultAtOnce)
{
    const AudioDeviceId other = this->otherMicrophone();
    ASSERT_NE(other, 0U);

    EXPECT_TRUE(this->devices.setDefaultInputDevice(other));
    EXPECT_EQ(this->devices.defaultInputDevice(), other);

    EXPECT_TRUE(this->devices.setDefaultInputDevice(this->defaultInput));
    EXPECT_EQ(this->devices.defaultInputDevice(), this->defaultInput);
}

TYPED_TEST_P(AudioDevicesContract, OnlyAMicrophoneBecomesTheDefaultInput)
{
    EXPECT_FALSE(this->devices.setDefaultInputDevice(this->defaultOutput));
    EXPECT_EQ(this->devices.defaultInputDevice(), this->defaultInput);
}

TYPED_TEST_P(AudioDevicesContract, AMicrophoneIsSilentOrNotAndAnOutputNeither)
{
    EXPECT_TRUE(this->devices.isInputSilent(this->defaultInput).has_value());
    EXPECT_EQ(this->devices.isInputSilent(this->defaultOutput), std::nullopt);
}

TYPED_TEST_P(AudioDevicesContract, OutputIsMutedAndUnmuted)
{
    ASSERT_TRUE(this->devices.isOutputMuteSettable(this->defaultOutput));

    EXPECT_TRUE(this->devices.setOutputMute(this->defaultOutput, 1));
    EXPECT_EQ(this->devices.outputMute(this->defaultOutput), 1U);

    EXPECT_TRUE(this->devices.setOutputMute(this->defaultOutput, 0));
    EXPECT_EQ(this->devices.outputMute(this->defaultOutput), 0U);
}

TYPED_TEST_P(AudioDevicesContract, VolumeIsSetBetweenSilentAndFull)
{
    ASSERT_TRUE(this->devices.isOutputVolumeSettable(this->defaultOutput));
    for (const float wanted : {0.0F, 0.5F, 1.0F}) {
        EXPECT_TRUE(this->devices.setOutputVolume(this->defaultOutput, wanted));
        EXPECT_NEAR(this->devices.outputVolume(this->defaultOutput).value_or(-1), wanted, 0.001);
    }
}

TYPED_TEST_P(AudioDevicesContract, OfUnknownDevicesNothingIsKnown)
{
    for (const AudioDeviceId unknown : {AudioDeviceId{0}, AudioDeviceId{4'000'000'000}}) {
        EXPECT_EQ(this->devices.inputChannels(unknown), std::nullopt);
        EXPECT_EQ(this->devices.isInputSilent(unknown), std::nullopt);
        EXPECT_EQ(this->devices.name(unknown), std::nullopt);
        EXPECT_EQ(this->devices.uid(unknown), std::nullopt);
        EXPECT_EQ(this->devices.outputMute(unknown), std::nullopt);
        EXPECT_EQ(this->devices.outputVolume(unknown), std::nullopt);
        EXPECT_FALSE(this->devices.isOutputMuteSettable(unknown));
        EXPECT_FALSE(this->devices.isOutputVolumeSettable(unknown));
        EXPECT_FALSE(this->devices.setDefaultInputDevice(unknown));
        EXPECT_FALSE(this->devices.setOutputMute(unknown, 1));
        EXPECT_FALSE(this->devices.setOutputVolume(unknown, 0));
    }
}

REGISTER_TYPED_TEST_SUITE_P(AudioDevicesContract, EveryDeviceHasAnIdANameAUidAndItsChannels,
    TheDefaultsAreAmongTheDevices, AnotherMicrophoneBecomesTheDefaultAtOnce,
    OnlyAMicrophoneBecomesTheDefaultInput, AMicrophoneIsSilentOrNotAndAnOutputNeither,
    OutputIsMutedAndUnmuted, VolumeIsSetBetweenSilentAndFull, OfUnknownDevicesNothingIsKnown);

} // namespace tavrin::testing
