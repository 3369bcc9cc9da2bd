#include "audio/AudioEnvironment.h"
#include "platform/linux/audio/EitherServer.h"
#include "platform/preferences/PreferenceKeys.h"
#include "support/ports/InMemoryPreferences.h"
#include "support/ports/InMemorySystemInfo.h"
#include "support/ports/VirtualTime.h"

#include <atomic>

using namespace std::chrono_literals;

namespace tavrin {
namespace {

/// The devices of a server to which something happens just before a change reaches it.
class InterruptedDevices final : public AudioDevices {
public:
    explicit InterruptedDevices(AudioDevices& inner)
        : m_inner(inner)
    {
    }

    std::function<void()> beforeWrite = [] {};

    QList<AudioDeviceId> devices() override { return m_inner.devices(); }

    std::optional<int> inputChannels(AudioDeviceId id) override
    {
        return m_inner.inputChannels(id);
    }

    std::optional<QString> name(AudioDeviceId id) override { return m_inner.name(id); }

    std::optional<QString> uid(AudioDeviceId id) override { return m_inner.uid(id); }

    std::optional<bool> isInputSilent(AudioDeviceId id) override
    {
        return m_inner.isInputSilent(id);
    }

    std::optional<AudioDeviceId> defaultInputDevice() override
    {
        return m_inner.defaultInputDevice();
    }

    bool setDefaultInputDevice(AudioDeviceId id) override
    {
        beforeWrite();
        return m_inner.setDefaultInputDevice(id);
    }

    std::optional<AudioDeviceId> defaultOutputDevice() override
    {
        return m_inner.defaultOutputDevice();
    }

    std::optional<quint32> outputMute(AudioDeviceId id) override { return m_inner.outputMute(id); }

    bool isOutputMuteSettable(AudioDeviceId id) override
    {
        return m_inner.isOutputMuteSettable(id);
    }

    bool setOutputMute(AudioDeviceId id, quint32 mute) override
    {
        beforeWrite();
        return m_inner.setOutputMute(id, mute);
    }

    std::optional<float> outputVolume(AudioDeviceId id) override
    {
        return m_inner.outputVolume(id);
    }

    bool isOutputVolumeSettable(AudioDeviceId id) override
    {
        return m_inner.isOutputVolumeSettable(id);
    }

    bool setOutputVolume(AudioDeviceId id, float volume) override
    {
        beforeWrite();
        return m_inner.setOutputVolume(id, volume);
    }

private:
    AudioDevices& m_inner;
};

/// A recording's changes on a server that answers too late.
class Changes {
public:
    Changes(AudioDevices& devices, const QString& folder)
        : m_interrupted(devices)
    {
        m_systemInfo.supportFolder = folder;
        m_preferences.setValue(keys::preferredMicrophoneUID, "second");
        m_preferences.setValue(keys::muteDuringRecording, true);
    }

    InterruptedDevices& interrupted() { return m_interrupted; }

    testing::VirtualTime time;

private:
    InterruptedDevices m_interrupted;
    testing::InMemoryPreferences m_preferences;
    testing::InMemorySystemInfo m_systemInfo;

public:
    AudioEnvironment environment{
        m_interrupted, m_preferences, m_systemInfo, time, [] { return true; }};
};

class LateAnswerTest : public testing::EitherServer {
protected:
    void SetUp() override
    {
        EitherServer::SetUp();
        ASSERT_TRUE(server->addOutput("out"));
        ASSERT_TRUE(server->addMicrophone("second", "Second"));
        ASSERT_TRUE(waitUntil([&] {
            return devices.uid(devices.defaultOutputDevice().value_or(0)) == "out"
                && defaultMicrophone() == "mic";
        }));
    }

    QString defaultMicrophone()
    {
        return devices.uid(devices.defaultInputDevice().value_or(0)).value_or(QString());
    }

    std::optional<quint32> mute()
    {
        return devices.outputMute(devices.defaultOutputDevice().value_or(0));
    }
};

TEST_P(LateAnswerTest, AMuteThatComesLateIsTakenBackAtTheEnd)
{
    Changes changes(devices, folder.path());
    changes.interrupted().beforeWrite = [&] { server->suspend(); };
    EXPECT_LT(millisecondsOf([&] { changes.environment.muteSystemAudioForRecordingIfNeeded(); }),
        halfASecond);
    changes.interrupted().beforeWrite = [] {};
    server->resume();
    ASSERT_TRUE(waitUntil([&] { return mute() == 1U; }));

    changes.environment.restoreAudioEnvironment();

    EXPECT_EQ(mute(), 0U);
}

TEST_P(LateAnswerTest, ASwitchThatComesLateIsTakenBackAtTheEnd)
{
    Changes changes(devices, folder.path());
    changes.interrupted().beforeWrite = [&] { server->suspend(); };
    EXPECT_LT(millisecondsOf([&] { changes.environment.applyPreferredMicrophoneForRecording(); }),
        halfASecond);
    changes.interrupted().beforeWrite = [] {};
    server->resume();
    ASSERT_TRUE(waitUntil([&] { return defaultMicrophone() == "second"; }));

    changes.environment.restoreAudioEnvironment();

    EXPECT_TRUE(waitUntil([&] { return defaultMicrophone() == "mic"; }));
}

TEST_P(LateAnswerTest, AServerThatHangsAtTheEndIsPutRightWhenItAnswers)
{
    Changes changes(devices, folder.path());
    changes.environment.applyPreferredMicrophoneForRecording();
    changes.environment.muteSystemAudioForRecordingIfNeeded();
    ASSERT_EQ(mute(), 1U);
    ASSERT_EQ(defaultMicrophone(), "second");
    server->suspend();
    EXPECT_LT(millisecondsOf([&] { changes.environment.restoreAudioEnvironment(); }), halfASecond);

    server->resume();

    EXPECT_TRUE(waitUntil([&] {
        changes.time.advance(1s);
        return mute() == 0U && defaultMicrophone() == "mic";
    }));
    EXPECT_TRUE(waitUntil([&] {
        changes.time.advance(1s);
        return changes.time.pending() == 0;
    }));
}

TEST_P(LateAnswerTest, AProcessThatEndsWhileTheServerHangsLeavesItToTheNext)
{
    {
        Changes changes(devices, folder.path());
        changes.environment.applyPreferredMicrophoneForRecording();
        changes.environment.muteSystemAudioForRecordingIfNeeded();
        server->suspend();
        changes.environment.restoreAudioEnvironment();
    }
    server->resume();
    ASSERT_TRUE(waitUntil([&] { return mute() == 1U; }));

    Changes next(devices, folder.path());
    next.environment.restoreAfterCrash();

    EXPECT_EQ(mute(), 0U);
    EXPECT_TRUE(waitUntil([&] { return defaultMicrophone() == "mic"; }));
}

INSTANTIATE_TEST_SUITE_P(On, LateAnswerTest, testing::eitherServer, testing::serverName);

/// What happens to a question when its asker has gone.
class GivenUpQuestionTest : public testing::EitherServer { };

TEST_P(GivenUpQuestionTest, WhatNobodyWaitsForAnyMoreIsNotBegun)
{
    // It takes the connection and says nothing yet.
    server->suspend();
    const auto begun = std::make_shared<std::atomic<bool>>(false);
    const auto start = [begun](pa_context*, PulseConnection::Question<bool>*) {
        *begun = true;
        return false;
    };
    EXPECT_EQ(connection->ask<bool>(PulseConnection::patience(), start), std::nullopt);

    server->resume();

    ASSERT_TRUE(waitUntil([&] { return !devices.devices().isEmpty(); }));
    EXPECT_FALSE(*begun);
}

TEST_P(GivenUpQuestionTest, AnOrderTheServerNeverGotIsRefused)
{
    server->suspend();
    const auto start = [](pa_context*, PulseConnection::Question<bool>*) { return true; };

    EXPECT_EQ(
        connection->order(PulseConnection::patience(), start), PulseConnection::Order::Refused);

    server->resume();
}

INSTANTIATE_TEST_SUITE_P(On, GivenUpQuestionTest, testing::eitherServer, testing::serverName);

/// PipeWire accepts what its session manager has yet to do.
TEST(LateSessionManagerTest, ASwitchThatShowsAfterTheEndIsTakenBackAllTheSame)
{
    testing::PrivatePipeWire server;
    ASSERT_TRUE(server.start());
    ASSERT_TRUE(server.addMicrophone("second", "Second"));
    const auto connection = std::make_shared<PulseConnection>();
    PulseAudioDevices devices(connection);
    const QTemporaryDir folder;
    const auto defaultMicrophone = [&] {
        return devices.uid(devices.defaultInputDevice().value_or(0)).value_or(QString());
    };
    using Fixture = testing::SoundServerFixture<::testing::Test>;
    ASSERT_TRUE(Fixture::waitUntil([&] { return defaultMicrophone() == "mic"; }));
    Changes changes(devices, folder.path());

    server.suspendManager();
    changes.environment.applyPreferredMicrophoneForRecording();
    EXPECT_EQ(defaultMicrophone(), "mic");
    changes.environment.restoreAudioEnvironment();
    server.resumeManager();

    // A recording needs the manager: it has done then what it was asked before.
    PulseAudioRecorder recorder(connection, folder.filePath("a.m4a"), Fixture::settings);
    ASSERT_TRUE(Fixture::waitUntil([&] { return recorder.prepareToRecord(); }));
    EXPECT_EQ(defaultMicrophone(), "mic");
}

} // namespace
} // namespace tavrin
