#include "audio/AudioEnvironmentFixture.h"

using namespace std::chrono_literals;

namespace tavrin {
namespace {

/// The sound server says nothing when the recording ends, or a device is away.
class OwedRestoreTest : public testing::AudioEnvironmentFixture {
protected:
    void endInSilence()
    {
        environment.applyPreferredMicrophoneForRecording();
        environment.muteSystemAudioForRecordingIfNeeded();
        devices.answers = false;
        devices.writes.clear();
        environment.restoreAudioEnvironment();
    }
};

TEST_F(OwedRestoreTest, ASilentServerIsPutRightOnceItAnswers)
{
    endInSilence();
    EXPECT_EQ(devices.writes, QStringList());
    EXPECT_TRUE(QFile::exists(notePath()));
    time.advance(10s);

    devices.answers = true;
    time.advance(10s);

    EXPECT_EQ(devices.writes, (QStringList{"mute 3 0", "input 1"}));
    EXPECT_FALSE(QFile::exists(notePath()));
    EXPECT_EQ(time.pending(), 0U);
}

TEST_F(OwedRestoreTest, ASilentServerIsAskedLessAndLessOften)
{
    endInSilence();
    for (const Seconds delay : {1s, 2s, 4s, 8s, 16s, 32s, 60s, 60s}) {
        EXPECT_EQ(time.pending(), 1U);
        time.advance(delay);
    }
    devices.answers = true;
    time.advance(59s);
    EXPECT_EQ(output().mute, 1U);

    time.advance(1s);
    EXPECT_EQ(output().mute, 0U);

    endInSilence();
    devices.answers = true;
    time.advance(1s);
    EXPECT_EQ(output().mute, 0U);
}

TEST_F(OwedRestoreTest, WhatTheUserChangedBeforeItAnsweredIsKept)
{
    devices.addMicrophone(4, "Chosen", "chosen");
    output().mute = 1;
    endInSilence();

    output().mute = 0;
    devices.defaultInput = 4;
    devices.answers = true;
    time.advance(1s);

    EXPECT_EQ(devices.writes, QStringList());
    EXPECT_FALSE(QFile::exists(notePath()));
}

TEST_F(OwedRestoreTest, TheNextRecordingIsNotDisturbed)
{
    endInSilence();
    devices.answers = true;
    environment.applyPreferredMicrophoneForRecording();
    EXPECT_EQ(devices.writes, (QStringList{"mute 3 0", "input 1", "input 2"}));
    environment.muteSystemAudioForRecordingIfNeeded();
    time.advance(60s);
    EXPECT_EQ(output().mute, 1U);
    EXPECT_EQ(devices.defaultInput, headset);

    environment.restoreAudioEnvironment();
    EXPECT_EQ(output().mute, 0U);
    EXPECT_EQ(devices.defaultInput, builtIn);
}

TEST_F(OwedRestoreTest, AServerThatComesBackWithinTheNextRecordingIsPutRightAfterIt)
{
    endInSilence();
    environment.applyPreferredMicrophoneForRecording();
    devices.answers = true;
    environment.muteSystemAudioForRecordingIfNeeded();
    time.advance(60s);
    EXPECT_EQ(output().mute, 1U);

    environment.restoreAudioEnvironment();

    EXPECT_EQ(output().mute, 0U);
    EXPECT_EQ(devices.defaultInput, builtIn);
    EXPECT_FALSE(QFile::exists(notePath()));
}

TEST_F(OwedRestoreTest, APreferredMicrophoneThatWasUnpluggedDoesNotStayTheDefault)
{
    devices.addMicrophone(4, "Third", "third");
    environment.applyPreferredMicrophoneForRecording();
    const auto all = devices.all;
    std::erase_if(devices.all, [](const auto& device) { return device.id == headset; });
    devices.defaultInput = 4; // The server's stand-in.
    environment.restoreAudioEnvironment();
    EXPECT_EQ(devices.defaultInput, AudioDeviceId{4});
    time.advance(3600s);

    // Plugged in again it is the default, as it was when it went.
    devices.all = all;
    devices.defaultInput = headset;
    time.advance(60s);

    EXPECT_EQ(devices.defaultInput, builtIn);
    EXPECT_FALSE(QFile::exists(notePath()));
    EXPECT_EQ(time.pending(), 0U);
}

TEST_F(OwedRestoreTest, AnOutputThatWasUnpluggedIsNotMutedWhenItReturns)
{
    environment.muteSystemAudioForRecordingIfNeeded();
    const auto all = devices.all;
    std::erase_if(devices.all, [](const auto& device) { return device.id == speakers; });
    environment.restoreAudioEnvironment();
    time.advance(3600s);

    devices.all = all;
    time.advance(60s);

    EXPECT_EQ(output().mute, 0U);
    EXPECT_EQ(time.pending(), 0U);
}

} // namespace
} // namespace tavrin
