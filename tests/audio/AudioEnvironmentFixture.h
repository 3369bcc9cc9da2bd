#pragma once

#include "audio/AudioEnvironment.h"
#include "platform/preferences/PreferenceKeys.h"
#include "support/QtPrinters.h"
#include "support/ports/InMemoryPreferences.h"
#include "support/ports/InMemorySystemInfo.h"
#include "support/ports/VirtualTime.h"
#include "support/sound/InMemoryAudioDevices.h"

#include <QDir>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace tavrin::testing {

/// A laptop with a headset that is the preferred microphone, and loudspeakers to be muted.
class AudioEnvironmentFixture : public ::testing::Test {
protected:
    static constexpr AudioDeviceId builtIn = 1;
    static constexpr AudioDeviceId headset = 2;
    static constexpr AudioDeviceId speakers = 3;

    QTemporaryDir folder;
    InMemoryAudioDevices devices;
    InMemoryPreferences preferences;
    InMemorySystemInfo systemInfo;
    VirtualTime time;
    bool recording = true;

    AudioEnvironmentFixture()
    {
        systemInfo.supportFolder = folder.path();
        devices.addMicrophone(builtIn, "Built-in", "pci-built-in");
        devices.addMicrophone(headset, "Headset", "usb-headset");
        devices.addLoudspeaker(speakers, "pci-speakers");
        devices.defaultInput = builtIn;
        devices.defaultOutput = speakers;
        preferences.setValue(keys::preferredMicrophoneUID, "usb-headset");
        preferences.setValue(keys::muteDuringRecording, true);
    }

    AudioEnvironment environment{
        devices, preferences, withFolder(), time, [this] { return recording; }};

    QString notePath() const { return folder.filePath("Tavrin/AudioChanges.json"); }

    InMemorySystemInfo& withFolder()
    {
        systemInfo.supportFolder = folder.path();
        return systemInfo;
    }

    InMemoryAudioDevices::Device& output() { return devices.device(speakers); }
};

} // namespace tavrin::testing
