#include "platform/linux/audio/AudioDecoder.h"
#include "platform/linux/audio/PulseAudioDevices.h"
#include "platform/linux/audio/PulseAudioRecorder.h"
#include "platform/linux/audio/SilentServer.h"
#include "support/QtPrinters.h"

#include <QElapsedTimer>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace tavrin {
namespace {

constexpr AudioRecorderSettings settings{1633772320, 16'000, 1, 96};
/// One wait, and work for a busy machine. In milliseconds.
constexpr qint64 halfASecond = 500 + 200;

/// No sound server, or one that never answers.
class AbsentServerTest : public ::testing::Test {
protected:
    QTemporaryDir folder;
    QString socketPath = folder.filePath("socket");
    testing::SoundServerAddress address{socketPath};
    std::shared_ptr<PulseConnection> connection = std::make_shared<PulseConnection>();
    PulseAudioDevices devices{connection};
    PulseAudioRecorders recorders{connection};

    void SetUp() override { ASSERT_TRUE(AudioDecoder::warmUp()); } // As the program does.

    void expectNothingToBeKnown()
    {
        EXPECT_TRUE(devices.devices().isEmpty());
        EXPECT_EQ(devices.defaultInputDevice(), std::nullopt);
        EXPECT_EQ(devices.defaultOutputDevice(), std::nullopt);
        for (const AudioDeviceId device : {0U, 1U, 77U}) {
            EXPECT_EQ(devices.inputChannels(device), std::nullopt);
            EXPECT_EQ(devices.name(device), std::nullopt);
            EXPECT_EQ(devices.uid(device), std::nullopt);
            EXPECT_FALSE(devices.setDefaultInputDevice(device));
            EXPECT_EQ(devices.outputMute(device), std::nullopt);
            EXPECT_FALSE(devices.isOutputMuteSettable(device));
            EXPECT_FALSE(devices.setOutputMute(device, 1));
            EXPECT_EQ(devices.outputVolume(device), std::nullopt);
            EXPECT_FALSE(devices.isOutputVolumeSettable(device));
            EXPECT_FALSE(devices.setOutputVolume(device, 0));
        }
    }

    void expectNoRecording() const
    {
        auto recorder = PulseAudioRecorder(connection, folder.filePath("a.m4a"), settings);
        EXPECT_FALSE(recorder.prepareToRecord());
        EXPECT_FALSE(recorder.record());
        EXPECT_EQ(recorder.failure().code, PcmCapture::NoMicrophone);
        EXPECT_FALSE(recorder.failure().message.isEmpty());
        recorder.pause();
        recorder.updateMeters();
        EXPECT_EQ(recorder.averagePower(0), -160);
        EXPECT_EQ(recorder.currentTime().count(), 0);
        recorder.stop();
    }
};

TEST_F(AbsentServerTest, WithoutAServerNothingIsKnownAndNothingWaits)
{
    QElapsedTimer timer;
    timer.start();

    expectNothingToBeKnown();
    expectNoRecording();

    EXPECT_LT(timer.elapsed(), halfASecond);
}

TEST_F(AbsentServerTest, AServerThatNeverAnswersCostsOneWaitInAll)
{
    const testing::SilentServer server(socketPath);
    ASSERT_TRUE(server.listening);
    QElapsedTimer timer;
    timer.start();

    expectNothingToBeKnown();
    expectNoRecording();

    EXPECT_LT(timer.elapsed(), halfASecond);
}

TEST_F(AbsentServerTest, AServerThatHangsUpIsLookedForAgain)
{
    {
        const testing::SilentServer server(socketPath);
        EXPECT_TRUE(devices.devices().isEmpty());
    }
    QElapsedTimer timer;
    timer.start();

    expectNothingToBeKnown();

    EXPECT_LT(timer.elapsed(), halfASecond);
}

TEST_F(AbsentServerTest, ImpossibleSettingsAndPathsGetNoRecorder)
{
    const QString path = folder.filePath("a.m4a");
    EXPECT_TRUE(recorders.createRecorder(path, settings));
    for (const AudioRecorderSettings& wrong :
        {AudioRecorderSettings{1, 16'000, 1, 96}, AudioRecorderSettings{1633772320, 0, 1, 96},
            AudioRecorderSettings{1633772320, 44'100, 1, 96},
            AudioRecorderSettings{1633772320, 16'000, 2, 96},
            AudioRecorderSettings{1633772320, 16'000, 1, 128},
            AudioRecorderSettings{1633772320, 16'000, 1, -1}}) {
        const auto recorder = recorders.createRecorder(path, wrong);
        ASSERT_FALSE(recorder);
        EXPECT_FALSE(recorder.error().message.isEmpty());
    }
    EXPECT_FALSE(recorders.createRecorder({}, settings));
    EXPECT_FALSE(recorders.createRecorder(folder.filePath("missing/a.m4a"), settings));
}

} // namespace
} // namespace tavrin
