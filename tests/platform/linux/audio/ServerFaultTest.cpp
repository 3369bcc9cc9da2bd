#include "audio/AudioInputDevices.h"
#include "platform/linux/audio/AudioDecoder.h"
#include "platform/linux/audio/PrivateSoundServer.h"
#include "platform/linux/audio/PulseAudioDevices.h"
#include "platform/linux/audio/PulseAudioRecorder.h"
#include "support/QtPrinters.h"

#include <QElapsedTimer>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <functional>

using namespace std::chrono_literals;

namespace tavrin {
namespace {

constexpr AudioRecorderSettings settings{1633772320, 16'000, 1, 96};
constexpr qint64 halfASecond = 500; // Milliseconds.

/// A sound server that dies, hangs and comes back while it is used.
class ServerFaultTest : public ::testing::Test {
protected:
    QTemporaryDir folder;
    testing::PrivateSoundServer server;
    std::shared_ptr<PulseConnection> connection = std::make_shared<PulseConnection>();
    PulseAudioDevices devices{connection};
    QString path = folder.filePath("recording.m4a");
    PulseAudioRecorder recorder{connection, path, settings};

    void SetUp() override { ASSERT_TRUE(server.ready); }

    static bool waitUntil(const std::function<bool()>& condition)
    {
        const auto deadline = std::chrono::steady_clock::now() + 10s;
        while (!condition() && std::chrono::steady_clock::now() < deadline)
            std::this_thread::sleep_for(5ms);
        return condition();
    }

    void recordAWhile()
    {
        ASSERT_TRUE(recorder.prepareToRecord());
        ASSERT_TRUE(recorder.record());
        ASSERT_TRUE(waitUntil([&] { return recorder.currentTime() > 0.5s; }));
    }

    static qint64 millisecondsOf(const std::function<void()>& call)
    {
        QElapsedTimer timer;
        timer.start();
        call();
        return timer.elapsed();
    }

    /// Seconds of sound in the finished file.
    double decodedSeconds() const
    {
        auto decoder = AudioDecoder::open(path);
        EXPECT_TRUE(decoder);
        std::size_t samples = 0;
        if (!decoder)
            return 0;
        for (auto piece = decoder->read(); piece && !piece->empty(); piece = decoder->read())
            samples += piece->size();
        return static_cast<double>(samples) / 16'000;
    }

    bool addMicrophone(const QString& name, const QString& description) const
    {
        return server.runs("load-module",
            {"module-null-source", "source_name=" + name, "description=\"" + description + '"'});
    }
};

TEST_F(ServerFaultTest, WhatWasRecordedBeforeTheServerDiedIsKept)
{
    recordAWhile();

    server.kill();

    ASSERT_TRUE(waitUntil([&] { return recorder.failure() != Error{}; }));
    EXPECT_EQ(recorder.failure().code, PcmCapture::MicrophoneLost);
    EXPECT_FALSE(recorder.failure().message.isEmpty());
    EXPECT_FALSE(recorder.record());
    const double recorded = recorder.currentTime().count();
    EXPECT_LT(millisecondsOf([&] { recorder.stop(); }), halfASecond);
    EXPECT_GT(recorded, 0.5);
    EXPECT_DOUBLE_EQ(decodedSeconds(), recorded);
}

TEST_F(ServerFaultTest, AServerThatComesBackIsUsedAgainUnderTheSameIds)
{
    const QList<AudioDeviceId> before = devices.devices();
    ASSERT_EQ(before.size(), 1);
    server.kill();
    EXPECT_TRUE(waitUntil([&] { return devices.devices().isEmpty(); }));
    EXPECT_EQ(devices.uid(before[0]), std::nullopt);

    server.start();

    EXPECT_EQ(devices.devices(), before);
    EXPECT_EQ(devices.uid(before[0]), "mic");
    EXPECT_EQ(devices.defaultInputDevice(), before[0]);
    recordAWhile();
}

TEST_F(ServerFaultTest, AServerThatHangsWhileRecordingHoldsNobodyUp)
{
    recordAWhile();
    const AudioDeviceId microphone = devices.devices().value(0);
    server.suspend();

    EXPECT_LT(millisecondsOf([&] { EXPECT_FALSE(devices.setDefaultInputDevice(microphone)); }),
        halfASecond);
    // The server is known to hang now: nothing waits for it any more.
    EXPECT_LT(millisecondsOf([&] {
        EXPECT_TRUE(devices.devices().isEmpty());
        EXPECT_EQ(devices.defaultInputDevice(), std::nullopt);
        recorder.pause();
        EXPECT_FALSE(recorder.record());
        recorder.stop();
    }),
        halfASecond);
    EXPECT_GT(decodedSeconds(), 0.5);

    server.resume();
    EXPECT_TRUE(waitUntil([&] { return devices.defaultInputDevice() == microphone; }));
}

TEST_F(ServerFaultTest, AServerThatHangsDoesNotHoldUpTheEndOfARecording)
{
    recordAWhile();
    server.suspend();

    EXPECT_LT(millisecondsOf([&] { recorder.stop(); }), halfASecond);

    EXPECT_GT(decodedSeconds(), 0.5);
    server.resume();
}

TEST_F(ServerFaultTest, WhatWasRecordedBeforeTheMicrophoneWasUnpluggedIsKept)
{
    recordAWhile();

    ASSERT_TRUE(server.runs("unload-module", {"module-null-source"}));

    ASSERT_TRUE(waitUntil([&] { return recorder.failure() != Error{}; }));
    EXPECT_EQ(recorder.failure().code, PcmCapture::MicrophoneLost);
    recorder.stop();
    EXPECT_GT(decodedSeconds(), 0.5);
}

TEST_F(ServerFaultTest, WithoutAnyMicrophoneThereIsNoRecording)
{
    ASSERT_TRUE(server.runs("unload-module", {"module-null-source"}));

    EXPECT_FALSE(recorder.prepareToRecord());
    EXPECT_EQ(recorder.failure().code, PcmCapture::NoMicrophone);
    EXPECT_TRUE(devices.devices().isEmpty());
}

TEST_F(ServerFaultTest, DevicesThatComeAndGoAreSeenAtOnce)
{
    EXPECT_EQ(AudioInputDevices(devices).size(), 1);

    ASSERT_TRUE(addMicrophone("second", "Second"));
    EXPECT_EQ(AudioInputDevices(devices).size(), 2);
    const AudioDeviceId second = devices.devices().value(1);
    EXPECT_EQ(devices.name(second), "Second");

    ASSERT_TRUE(server.runs("unload-module", {"module-null-source"})); // All of them.
    EXPECT_EQ(devices.name(second), std::nullopt);
    EXPECT_TRUE(AudioInputDevices(devices).isEmpty());
}

TEST_F(ServerFaultTest, MonitorsOfOutputsAreNoMicrophones)
{
    ASSERT_TRUE(server.runs("load-module", {"module-null-sink", "sink_name=out"}));

    const QList<AudioInputDevice> microphones = AudioInputDevices(devices);

    ASSERT_EQ(microphones.size(), 1);
    EXPECT_EQ(microphones[0].uid, "mic");
    EXPECT_EQ(devices.devices().size(), 2);
}

TEST_F(ServerFaultTest, NamesMayBeEmptyOrTheSameOrFourKilobytesLong)
{
    const QString longName = QString::fromUtf8("麦克风é").repeated(370);
    ASSERT_TRUE(addMicrophone("a", longName));
    ASSERT_TRUE(addMicrophone("b", longName));
    ASSERT_TRUE(addMicrophone("c", " "));

    const QList<AudioInputDevice> microphones = AudioInputDevices(devices);

    ASSERT_EQ(microphones.size(), 4);
    EXPECT_EQ(microphones[0].uid, "c");
    EXPECT_EQ(microphones[2].name, longName);
    EXPECT_EQ(microphones[3].name, longName);
    EXPECT_GT(longName.toUtf8().size(), 4'000);
    EXPECT_TRUE(devices.setDefaultInputDevice(microphones[2].id));
    EXPECT_EQ(devices.defaultInputDevice(), microphones[2].id);
}

} // namespace
} // namespace tavrin
