#include "audio/AudioEnvironment.h"
#include "audio/AudioInputDevices.h"
#include "platform/linux/audio/AacFile.h"
#include "platform/linux/audio/EitherServer.h"
#include "platform/preferences/PreferenceKeys.h"
#include "support/ports/InMemoryPreferences.h"
#include "support/ports/InMemorySystemInfo.h"
#include "support/ports/VirtualTime.h"

using namespace std::chrono_literals;

namespace tavrin {
namespace {

/// A sound server that dies, hangs and comes back while it is used.
class ServerFaultTest : public testing::EitherServer {
protected:
    AudioDeviceId microphone()
    {
        for (const AudioInputDevice& device : AudioInputDevices(devices)) {
            if (device.uid == "mic")
                return device.id;
        }
        return 0;
    }

    /// Until the one who asks has noticed the loss of the server.
    bool losesTheServer()
    {
        return waitUntil([&] { return devices.devices().isEmpty(); });
    }
};

TEST_P(ServerFaultTest, WhatWasRecordedBeforeTheServerDiedIsKept)
{
    recordAWhile(recorder);

    server->kill();

    ASSERT_TRUE(waitUntil([&] { return recorder.failure() != Error{}; }));
    EXPECT_EQ(recorder.failure().code, PcmCapture::MicrophoneLost);
    EXPECT_FALSE(recorder.failure().message.isEmpty());
    EXPECT_LT(millisecondsOf([&] { EXPECT_FALSE(recorder.record()); }), halfASecond);
    const double recorded = recorder.currentTime().count();
    EXPECT_LT(millisecondsOf([&] { recorder.stop(); }), halfASecond);
    EXPECT_GT(recorded, 0.5);
    EXPECT_DOUBLE_EQ(decodedSeconds(path), recorded);
}

TEST_P(ServerFaultTest, AServerThatComesBackIsUsedAgainUnderTheSameIds)
{
    const AudioDeviceId before = microphone();
    ASSERT_NE(before, 0U);
    server->kill();
    EXPECT_TRUE(losesTheServer());
    EXPECT_EQ(devices.uid(before), std::nullopt);

    ASSERT_TRUE(server->start());

    EXPECT_TRUE(waitUntil([&] { return devices.defaultInputDevice() == before; }));
    EXPECT_EQ(microphone(), before);
    EXPECT_EQ(devices.uid(before), "mic");
    recordAWhile(recorder);
}

TEST_P(ServerFaultTest, AfterARestartDuringARecordingTheNextOneWorks)
{
    recordAWhile(recorder);

    server->kill();
    ASSERT_TRUE(server->start());

    ASSERT_TRUE(waitUntil([&] { return recorder.failure() != Error{}; }));
    EXPECT_EQ(recorder.failure().code, PcmCapture::MicrophoneLost);
    EXPECT_LT(millisecondsOf([&] { recorder.stop(); }), halfASecond);
    EXPECT_GT(decodedSeconds(path), 0.5);

    const QString nextPath = folder.filePath("next.m4a");
    PulseAudioRecorder next(connection, nextPath, settings);
    recordAWhile(next);
    next.stop();
    EXPECT_EQ(next.failure(), Error{});
    EXPECT_GT(decodedSeconds(nextPath), 0.5);
}

TEST_P(ServerFaultTest, MuteAndMicrophoneOfALostServerAreGivenUpAtOnce)
{
    ASSERT_TRUE(server->addOutput("out"));
    ASSERT_TRUE(server->addMicrophone("second", "Second"));
    testing::InMemoryPreferences preferences;
    testing::InMemorySystemInfo systemInfo;
    systemInfo.supportFolder = folder.path();
    preferences.setValue(keys::preferredMicrophoneUID, "second");
    preferences.setValue(keys::muteDuringRecording, true);
    testing::VirtualTime time;
    AudioEnvironment environment(devices, preferences, systemInfo, time, [] { return true; });
    environment.applyPreferredMicrophoneForRecording();
    EXPECT_EQ(devices.uid(devices.defaultInputDevice().value_or(0)), "second");
    environment.muteSystemAudioForRecordingIfNeeded();
    const AudioDeviceId output = devices.defaultOutputDevice().value_or(0);
    EXPECT_EQ(devices.outputMute(output), 1U);

    server->kill();
    EXPECT_LT(millisecondsOf([&] { environment.restoreAudioEnvironment(); }), halfASecond);

    // Nothing of the old server is held against the new one.
    ASSERT_TRUE(server->start());
    ASSERT_TRUE(waitUntil([&] { return devices.defaultInputDevice() == microphone(); }));
    environment.applyPreferredMicrophoneForRecording();
    environment.restoreAudioEnvironment();
    EXPECT_EQ(devices.defaultInputDevice(), microphone());
}

TEST_P(ServerFaultTest, AServerThatHangsWhileRecordingHoldsNobodyUp)
{
    recordAWhile(recorder);
    const AudioDeviceId before = microphone();
    server->suspend();

    // It has been asked for and may come yet.
    EXPECT_LT(
        millisecondsOf([&] { EXPECT_TRUE(devices.setDefaultInputDevice(before)); }), halfASecond);
    // The server is known to hang now: nothing waits for it any more.
    EXPECT_LT(millisecondsOf([&] {
        EXPECT_TRUE(devices.devices().isEmpty());
        EXPECT_EQ(devices.defaultInputDevice(), std::nullopt);
        recorder.pause();
        EXPECT_FALSE(recorder.record());
        recorder.stop();
    }),
        halfASecond);
    EXPECT_EQ(recorder.failure().code, PcmCapture::MicrophoneLost);
    EXPECT_EQ(recorder.failure().message, QString::fromUtf8("麦克风已断开。"));
    EXPECT_GT(decodedSeconds(path), 0.5);

    server->resume();
    EXPECT_TRUE(waitUntil([&] { return devices.defaultInputDevice() == before; }));
}

TEST_P(ServerFaultTest, AServerThatHangsDoesNotHoldUpTheEndOfARecording)
{
    recordAWhile(recorder);
    server->suspend();

    EXPECT_LT(millisecondsOf([&] { recorder.stop(); }), halfASecond);

    EXPECT_GT(decodedSeconds(path), 0.5);
    server->resume();
}

TEST_P(ServerFaultTest, WhatComesInAPauseThatTheServerDidNotHearOfIsNotRecorded)
{
    recordAWhile(recorder);
    server->suspend();
    recorder.pause();
    Seconds atPause{-1};
    ASSERT_TRUE(waitUntil([&] { // What it had sent by then: far more lies between two packets.
        atPause = recorder.currentTime();
        std::this_thread::sleep_for(100ms);
        return recorder.currentTime() == atPause;
    }));

    server->resume();
    ASSERT_TRUE(waitUntil([&] { return !devices.devices().isEmpty(); }));
    std::this_thread::sleep_for(500ms); // What it had kept back would come now.
    EXPECT_EQ(recorder.currentTime(), atPause);

    EXPECT_TRUE(recorder.record());
    EXPECT_TRUE(waitUntil([&] { return recorder.currentTime() > atPause + Seconds{0.2}; }));
    EXPECT_EQ(recorder.failure(), Error{});
}

TEST_P(ServerFaultTest, WhatWasRecordedBeforeTheMicrophoneWasUnpluggedIsKept)
{
    // Another source to go on with would be what the output plays.
    ASSERT_TRUE(server->addOutput("out"));
    recordAWhile(recorder);

    ASSERT_TRUE(server->removeMicrophones());

    ASSERT_TRUE(waitUntil([&] { return recorder.failure() != Error{}; }));
    EXPECT_EQ(recorder.failure().code, PcmCapture::MicrophoneLost);
    EXPECT_LT(millisecondsOf([&] { recorder.stop(); }), halfASecond);
    EXPECT_GT(decodedSeconds(path), 0.5);
}

TEST_P(ServerFaultTest, DevicesThatComeAndGoAreSeenAtOnce)
{
    EXPECT_EQ(AudioInputDevices(devices).size(), 1);

    ASSERT_TRUE(server->addMicrophone("second", "Second"));
    const QList<AudioInputDevice> both = AudioInputDevices(devices);
    ASSERT_EQ(both.size(), 2);
    const AudioDeviceId second = both[both[0].uid == "second" ? 0 : 1].id;
    EXPECT_EQ(devices.uid(second), "second");

    ASSERT_TRUE(server->removeMicrophones());
    EXPECT_TRUE(waitUntil([&] { return AudioInputDevices(devices).isEmpty(); }));
    EXPECT_EQ(devices.name(second), std::nullopt);
}

TEST_P(ServerFaultTest, MonitorsOfOutputsAreNoMicrophones)
{
    ASSERT_TRUE(server->addOutput("out"));

    const QList<AudioInputDevice> microphones = AudioInputDevices(devices);

    ASSERT_EQ(microphones.size(), 1);
    EXPECT_EQ(microphones[0].uid, "mic");
    EXPECT_GE(devices.devices().size(), 2);
}

TEST_P(ServerFaultTest, WithoutAnyMicrophoneWhatAnOutputPlaysIsNotRecorded)
{
    // The only source left is the monitor of the output.
    ASSERT_TRUE(server->removeMicrophones());
    ASSERT_TRUE(server->addOutput("out"));
    ASSERT_TRUE(waitUntil([&] { return AudioInputDevices(devices).isEmpty(); }));

    EXPECT_FALSE(recorder.record());

    EXPECT_EQ(recorder.failure().code, PcmCapture::NoMicrophone);
    EXPECT_EQ(recorder.failure().message, QString::fromUtf8("没有可用的麦克风。"));
    EXPECT_FALSE(QFile::exists(path));
}

TEST_P(ServerFaultTest, AMicrophoneIsSilentWhileItIsMutedOrTurnedDown)
{
    const AudioDeviceId microphone = devices.defaultInputDevice().value_or(0);
    const auto becomesSilent = [&](bool silent) {
        return waitUntil([&] { return devices.isInputSilent(microphone) == silent; });
    };
    EXPECT_TRUE(becomesSilent(false));

    ASSERT_TRUE(server->mute("mic", true));
    EXPECT_TRUE(becomesSilent(true));
    ASSERT_TRUE(server->mute("mic", false));
    EXPECT_TRUE(becomesSilent(false));

    ASSERT_TRUE(server->setVolume("mic", "0%"));
    EXPECT_TRUE(becomesSilent(true));
    ASSERT_TRUE(server->setVolume("mic", "20%"));
    EXPECT_TRUE(becomesSilent(false));
}

TEST_P(ServerFaultTest, WhatAnOutputPlaysIsNoInputAlsoWhenItIsMuted)
{
    ASSERT_TRUE(server->addOutput("out"));
    for (const AudioDeviceId device : devices.devices()) {
        if (devices.inputChannels(device) == 0) {
            EXPECT_EQ(devices.isInputSilent(device), std::nullopt);
        }
    }
}

TEST_P(ServerFaultTest, AMonitorThatIsMadeTheDefaultIsNoMicrophoneEither)
{
    ASSERT_TRUE(server->addOutput("out"));
    ASSERT_TRUE(server->makeDefault("out.monitor"));

    EXPECT_FALSE(recorder.record());

    EXPECT_EQ(recorder.failure().code, PcmCapture::NoMicrophone);
}

INSTANTIATE_TEST_SUITE_P(On, ServerFaultTest, testing::eitherServer, testing::serverName);

/// What only PulseAudio does.
class PulseAudioFaultTest : public testing::SoundServerFixture<::testing::Test> {
protected:
    testing::PrivatePulseAudio server;
    std::shared_ptr<PulseConnection> connection = std::make_shared<PulseConnection>();
    PulseAudioDevices devices{connection};
    QString path = folder.filePath("recording.m4a");
    PulseAudioRecorder recorder{connection, path, settings};

    void SetUp() override { ASSERT_TRUE(server.start()); }
};

TEST_F(PulseAudioFaultTest, AFileThatCannotBeMadeIsReported)
{
    PulseAudioRecorder nowhere(connection, folder.filePath("missing/recording.m4a"), settings);

    EXPECT_FALSE(nowhere.prepareToRecord());
    EXPECT_EQ(nowhere.failure(),
        (Error{"TavrinAudio", AacFile::CannotCreate, QString::fromUtf8("无法创建录音文件。")}));
    nowhere.stop();
    recordAWhile(recorder);
}

TEST_F(PulseAudioFaultTest, NamesMayBeEmptyOrTheSameOrFourKilobytesLong)
{
    const QString longName = QString::fromUtf8("麦克风é").repeated(370);
    ASSERT_TRUE(server.addMicrophone("a", longName));
    ASSERT_TRUE(server.addMicrophone("b", longName));
    ASSERT_TRUE(server.addMicrophone("c", " "));

    const QList<AudioInputDevice> microphones = AudioInputDevices(devices);

    ASSERT_EQ(microphones.size(), 4);
    EXPECT_EQ(microphones[0].uid, "c");
    EXPECT_EQ(microphones[2].name, longName);
    EXPECT_EQ(microphones[3].name, longName);
    EXPECT_GT(longName.toUtf8().size(), 4'000);
    EXPECT_TRUE(devices.setDefaultInputDevice(microphones[2].id));
    EXPECT_EQ(devices.defaultInputDevice(), microphones[2].id);
}

/// What only PipeWire does: it dies and hangs in parts.
class PipeWireFaultTest : public testing::SoundServerFixture<::testing::Test> {
protected:
    testing::PrivatePipeWire server;
    std::shared_ptr<PulseConnection> connection = std::make_shared<PulseConnection>();
    PulseAudioDevices devices{connection};
    QString path = folder.filePath("recording.m4a");
    PulseAudioRecorder recorder{connection, path, settings};

    void SetUp() override { ASSERT_TRUE(server.start()); }

    void nextRecordingWorks()
    {
        const QString nextPath = folder.filePath("next.m4a");
        PulseAudioRecorder next(connection, nextPath, settings);
        recordAWhile(next);
        next.stop();
        EXPECT_EQ(next.failure(), Error{});
        EXPECT_GT(decodedSeconds(nextPath), 0.5);
    }
};

TEST_F(PipeWireFaultTest, ADaemonThatDiesBehindItsFrontEndsTheRecording)
{
    recordAWhile(recorder);

    server.killDaemon();

    ASSERT_TRUE(waitUntil([&] { return recorder.failure() != Error{}; }));
    EXPECT_EQ(recorder.failure().code, PcmCapture::MicrophoneLost);
    EXPECT_LT(millisecondsOf([&] { EXPECT_TRUE(devices.devices().isEmpty()); }), halfASecond);
    EXPECT_LT(millisecondsOf([&] { recorder.stop(); }), halfASecond);
    EXPECT_GT(decodedSeconds(path), 0.5);

    server.startDaemon();
    ASSERT_TRUE(server.addMicrophone("mic", "Microphone"));
    ASSERT_TRUE(server.makeDefault("mic"));
    nextRecordingWorks();
}

TEST_F(PipeWireFaultTest, AFrontThatDiesEndsTheRecording)
{
    recordAWhile(recorder);

    server.killFront();

    ASSERT_TRUE(waitUntil([&] { return recorder.failure() != Error{}; }));
    EXPECT_EQ(recorder.failure().code, PcmCapture::MicrophoneLost);
    EXPECT_LT(millisecondsOf([&] { recorder.stop(); }), halfASecond);
    EXPECT_GT(decodedSeconds(path), 0.5);

    server.startFront();
    ASSERT_TRUE(server.addMicrophone("mic", "Microphone"));
    ASSERT_TRUE(server.makeDefault("mic"));
    nextRecordingWorks();
}

TEST_F(PipeWireFaultTest, ADaemonThatHangsBehindItsFrontHoldsNobodyUp)
{
    recordAWhile(recorder);
    server.suspendDaemon();

    qint64 longest = 0;
    for (const auto& call : std::initializer_list<std::function<void()>>{
             [&] { static_cast<void>(devices.devices()); },
             [&] { static_cast<void>(devices.defaultInputDevice()); },
             [&] { recorder.pause(); },
             [&] { recorder.record(); },
             [&] { recorder.stop(); },
         })
        longest = std::max(longest, millisecondsOf(call));
    EXPECT_LT(longest, halfASecond);
    EXPECT_GT(decodedSeconds(path), 0.5);

    server.resumeDaemon();
    nextRecordingWorks();
}

TEST_F(PipeWireFaultTest, WithoutASessionManagerThereIsNoMicrophone)
{
    server.killManager();
    ASSERT_TRUE(waitUntil([&] { return !devices.defaultInputDevice(); }));

    EXPECT_LT(millisecondsOf([&] { EXPECT_FALSE(recorder.record()); }), halfASecond);
    EXPECT_EQ(recorder.failure().code, PcmCapture::NoMicrophone);

    // It names the microphone before it leads anybody there, which takes a busy machine its time.
    server.startManager();
    ASSERT_TRUE(waitUntil([&] {
        PulseAudioRecorder next(connection, folder.filePath("next.m4a"), settings);
        return next.prepareToRecord();
    }));
    nextRecordingWorks();
}

} // namespace
} // namespace tavrin
