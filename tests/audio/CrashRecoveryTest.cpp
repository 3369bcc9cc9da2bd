#include "audio/AudioEnvironment.h"
#include "platform/preferences/PreferenceKeys.h"
#include "support/QtPrinters.h"
#include "support/ports/InMemoryPreferences.h"
#include "support/ports/InMemorySystemInfo.h"
#include "support/ports/VirtualTime.h"
#include "support/sound/InMemoryAudioDevices.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <memory>

namespace tavrin {
namespace {

constexpr AudioDeviceId builtIn = 1;
constexpr AudioDeviceId headset = 2;
constexpr AudioDeviceId speakers = 3;

/// A process dies with its environment changed; the next one starts. Destroying an AudioEnvironment
/// restores nothing and gives up its lock, which is what a crash looks like from outside.
class CrashRecoveryTest : public ::testing::Test {
protected:
    QTemporaryDir folder;
    testing::InMemoryAudioDevices devices;
    testing::InMemoryPreferences preferences;
    testing::InMemorySystemInfo systemInfo;
    testing::VirtualTime time;
    std::unique_ptr<AudioEnvironment> environment;

    CrashRecoveryTest()
    {
        systemInfo.supportFolder = folder.path();
        devices.addMicrophone(builtIn, "Built-in", "pci-built-in");
        devices.addMicrophone(headset, "Headset", "usb-headset");
        devices.addLoudspeaker(speakers, "pci-speakers").volume = 0.4F;
        devices.defaultInput = builtIn;
        devices.defaultOutput = speakers;
        preferences.setValue(keys::preferredMicrophoneUID, "usb-headset");
        preferences.setValue(keys::muteDuringRecording, true);
        environment = newEnvironment();
    }

    std::unique_ptr<AudioEnvironment> newEnvironment()
    {
        return std::make_unique<AudioEnvironment>(
            devices, preferences, systemInfo, time, [] { return true; });
    }

    void startRecording()
    {
        environment->applyPreferredMicrophoneForRecording();
        environment->muteSystemAudioForRecordingIfNeeded();
    }

    void crash()
    {
        environment.reset();
        devices.writes.clear();
        environment = newEnvironment();
    }

    QString notePath() const { return folder.filePath("Tavrin/AudioChanges.json"); }
};

TEST_F(CrashRecoveryTest, TheNextStartUndoesWhatACrashLeft)
{
    startRecording();
    crash();

    environment->restoreAfterCrash();

    EXPECT_EQ(devices.defaultInput, builtIn);
    EXPECT_EQ(devices.device(speakers).mute, 0U);
    EXPECT_FALSE(QFile::exists(notePath()));
}

TEST_F(CrashRecoveryTest, ASilencedVolumeIsPutBack)
{
    devices.device(speakers).mute = std::nullopt;
    startRecording();
    crash();

    environment->restoreAfterCrash();

    EXPECT_EQ(devices.device(speakers).volume, 0.4F);
}

TEST_F(CrashRecoveryTest, WhatTheUserChangedSinceTheCrashIsKept)
{
    devices.device(speakers).mute = 1;
    startRecording();
    crash();
    devices.defaultInput = AudioDeviceId{9};
    devices.device(speakers).mute = 0;

    environment->restoreAfterCrash();

    EXPECT_EQ(devices.writes, QStringList());
}

TEST_F(CrashRecoveryTest, DevicesAreFoundByUidBecauseIdsChange)
{
    startRecording();
    crash();
    devices.device(builtIn).id = 11;
    devices.device(headset).id = 12;
    devices.device(speakers).id = 13;
    devices.defaultInput = 12;

    environment->restoreAfterCrash();

    EXPECT_EQ(devices.writes, (QStringList{"mute 13 0", "input 11"}));
}

TEST_F(CrashRecoveryTest, DevicesThatAreAwayAreRememberedUntilTheyReturn)
{
    startRecording();
    crash();
    const auto all = devices.all;
    devices.all.clear();
    devices.addMicrophone(20, "New", "new");
    devices.defaultInput = 20;

    environment->restoreAfterCrash();
    EXPECT_EQ(devices.writes, QStringList());
    EXPECT_TRUE(QFile::exists(notePath()));

    crash();
    devices.all = all;
    devices.defaultInput = headset;
    environment->restoreAfterCrash();
    EXPECT_EQ(devices.writes, (QStringList{"mute 3 0", "input 1"}));
    EXPECT_FALSE(QFile::exists(notePath()));
}

TEST_F(CrashRecoveryTest, OnePresentDeviceDoesNotMakeTheOthersForgotten)
{
    startRecording();
    crash();
    const testing::InMemoryAudioDevices::Device away = devices.device(speakers);
    std::erase_if(devices.all, [](const auto& device) { return device.id == speakers; });
    environment->restoreAfterCrash();
    EXPECT_EQ(devices.writes, QStringList{"input 1"});

    // A whole recording, and the next crash, with the loudspeakers still away.
    environment->applyPreferredMicrophoneForRecording();
    crash();
    devices.all.push_back(away);
    environment->restoreAfterCrash();

    EXPECT_EQ(devices.writes, (QStringList{"mute 3 0", "input 1"}));
    EXPECT_FALSE(QFile::exists(notePath()));
}

TEST_F(CrashRecoveryTest, AProcessThatEndsWhileTheServerIsSilentLeavesItsNoteToTheNext)
{
    startRecording();
    devices.answers = false;
    environment->restoreAudioEnvironment();
    crash();

    devices.answers = true;
    environment->restoreAfterCrash();

    EXPECT_EQ(devices.writes, (QStringList{"mute 3 0", "input 1"}));
}

TEST_F(CrashRecoveryTest, AfterACrashASilentServerIsAskedAgain)
{
    startRecording();
    crash();
    devices.answers = false;
    environment->restoreAfterCrash();
    EXPECT_EQ(devices.writes, QStringList());

    devices.answers = true;
    time.advance(Seconds{1});

    EXPECT_EQ(devices.writes, (QStringList{"mute 3 0", "input 1"}));
}

TEST_F(CrashRecoveryTest, WhileTheSoundServerIsAwayTheNoteIsKeptForTheNextRecording)
{
    startRecording();
    crash();
    const auto all = std::exchange(devices.all, {});
    environment->restoreAfterCrash();
    EXPECT_EQ(devices.writes, QStringList());
    EXPECT_TRUE(QFile::exists(notePath()));
    environment->restoreAudioEnvironment();
    EXPECT_TRUE(QFile::exists(notePath()));

    devices.all = all;
    preferences.remove(keys::preferredMicrophoneUID);
    environment->applyPreferredMicrophoneForRecording();

    EXPECT_EQ(devices.writes, (QStringList{"mute 3 0", "input 1"}));
    EXPECT_FALSE(QFile::exists(notePath()));
}

TEST_F(CrashRecoveryTest, ChangesOfALivingProcessAreLeftAlone)
{
    startRecording();
    devices.writes.clear();

    newEnvironment()->restoreAfterCrash();

    EXPECT_EQ(devices.writes, QStringList());
    environment->restoreAudioEnvironment();
    EXPECT_EQ(devices.device(speakers).mute, 0U);
}

TEST_F(CrashRecoveryTest, ANoteIsOnDiskBeforeEachChangeAndGoneAfterTheRestore)
{
    QStringList notes;
    devices.onWrite = [&](const QString& change) {
        QFile file(notePath());
        const bool noted = file.open(QIODevice::ReadOnly);
        notes.append(change + (noted ? ": " + file.readAll() : QByteArray(": nothing")));
    };
    startRecording();
    devices.onWrite = nullptr;

    ASSERT_EQ(notes.size(), 2);
    EXPECT_TRUE(notes[0].startsWith("input 2: ") && notes[0].contains("pci-built-in"))
        << notes[0].toStdString();
    EXPECT_TRUE(notes[1].startsWith("mute 3 1: ") && notes[1].contains("pci-speakers"))
        << notes[1].toStdString();
    EXPECT_TRUE(notes[1].contains("pci-built-in")) << notes[1].toStdString();

    environment->restoreAudioEnvironment();
    EXPECT_FALSE(QFile::exists(notePath()));
    EXPECT_TRUE(QDir(folder.filePath("Tavrin")).isEmpty());
}

TEST_F(CrashRecoveryTest, ChangesThatFailedLeaveNoNote)
{
    devices.switchingSucceeds = false;
    devices.device(speakers).muteWritesSucceed = false;

    startRecording();

    EXPECT_FALSE(QFile::exists(notePath()));
}

TEST_F(CrashRecoveryTest, AFolderThatCannotBeWrittenOnlyCostsTheNote)
{
    QFile inTheWay(folder.filePath("Tavrin"));
    ASSERT_TRUE(inTheWay.open(QIODevice::WriteOnly));

    startRecording();
    EXPECT_EQ(devices.defaultInput, headset);
    EXPECT_EQ(devices.device(speakers).mute, 1U);

    environment->restoreAudioEnvironment();
    EXPECT_EQ(devices.defaultInput, builtIn);
    EXPECT_EQ(devices.device(speakers).mute, 0U);
}

} // namespace
} // namespace tavrin
