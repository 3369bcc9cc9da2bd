#include "audio/AudioEnvironment.h"
#include "audio/RecordingFile.h"
#include "platform/linux/audio/AudioDecoder.h"
#include "platform/linux/audio/PulseAudioDevices.h"
#include "platform/linux/audio/PulseAudioRecorder.h"
#include "platform/preferences/PreferenceKeys.h"
#include "support/ChildProcess.h"
#include "support/QtPrinters.h"
#include "support/ports/InMemoryBackgroundQueue.h"
#include "support/ports/InMemoryPreferences.h"
#include "support/ports/InMemorySystemInfo.h"
#include "support/ports/VirtualTime.h"
#include "support/sound/Sounds.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <functional>
#include <thread>

using namespace std::chrono_literals;

namespace tavrin {
namespace {

/// Speech into the microphones of the virtual desktop, recorded as the product does it.
class RecordingTest : public ::testing::Test {
protected:
    QTemporaryDir folder;
    testing::InMemorySystemInfo systemInfo;
    testing::InMemoryPreferences preferences;
    testing::VirtualTime time;
    testing::InMemoryBackgroundQueue background;
    std::shared_ptr<PulseConnection> connection = std::make_shared<PulseConnection>();
    PulseAudioDevices devices{connection};
    PulseAudioRecorders recorders{connection};
    std::unique_ptr<AudioEnvironment> environment;

    /// What must be the same after a recording as before.
    struct Sound {
        QString microphone;
        std::optional<quint32> mute;
        std::optional<float> volume;

        friend bool operator==(const Sound&, const Sound&) = default;
    };

    Sound before = sound();

    RecordingTest()
    {
        systemInfo.temporaryFolder = systemInfo.supportFolder = folder.path();
        preferences.setValue(keys::preferredMicrophoneUID, "usbmic");
        preferences.setValue(keys::muteDuringRecording, true);
        environment = std::make_unique<AudioEnvironment>(
            devices, preferences, systemInfo, time, [] { return true; });
    }

    void SetUp() override
    {
        ASSERT_EQ(before.microphone, "virtmic");
        ASSERT_EQ(before.mute, 0U);
        ASSERT_TRUE(before.volume);
    }

    Sound sound()
    {
        const AudioDeviceId output = devices.defaultOutputDevice().value_or(0);
        return {devices.uid(devices.defaultInputDevice().value_or(0)).value_or(QString()),
            devices.outputMute(output), devices.outputVolume(output)};
    }

    static bool waitUntil(const std::function<bool()>& condition)
    {
        const auto deadline = std::chrono::steady_clock::now() + 15s;
        while (!condition() && std::chrono::steady_clock::now() < deadline)
            std::this_thread::sleep_for(5ms);
        return condition();
    }

    /// A sentence as a sound file.
    QString spoken(const QString& text) const
    {
        QString path = folder.filePath("speech.wav");
        testing::ChildProcess flite("flite", {"-voice", "slt", "-t", text, "-o", path});
        EXPECT_TRUE(waitUntil([&] { return !flite.isRunning(); }));
        return path;
    }

    /// Plays a file into a microphone; @p meanwhile is called over and over.
    static void play(
        const QString& file, const QString& microphoneFeed, const std::function<void()>& meanwhile)
    {
        testing::ChildProcess paplay("paplay", {"--device=" + microphoneFeed, file});
        EXPECT_TRUE(waitUntil([&] {
            meanwhile();
            return !paplay.isRunning();
        }));
        std::this_thread::sleep_for(300ms); // What is still on its way.
    }

    /// What a paused recorder has recorded, when everything under way has arrived.
    static Seconds settledTime(const AudioRecorder& recorder)
    {
        Seconds before{-1};
        while (recorder.currentTime() != before) {
            before = recorder.currentTime();
            std::this_thread::sleep_for(300ms);
        }
        return before;
    }

    static std::vector<qint16> decode(const QString& path)
    {
        auto decoder = AudioDecoder::open(path);
        EXPECT_TRUE(decoder);
        std::vector<qint16> all;
        if (!decoder)
            return all;
        for (auto piece = decoder->read(); piece && !piece->empty(); piece = decoder->read())
            all.insert(all.end(), piece->begin(), piece->end());
        return all;
    }

    static double energy(std::span<const qint16> samples)
    {
        return testing::decibels(samples) + 10 * std::log10(static_cast<double>(samples.size()));
    }
};

TEST_F(RecordingTest, ASentenceIsRecordedFromThePreferredMicrophoneWithOutputMuted)
{
    const QString speech = spoken("The quick brown fox jumps over the lazy dog.");
    RecordingFile file(systemInfo, background);

    environment->applyPreferredMicrophoneForRecording();
    auto recorder = std::move(*recorders.createRecorder(file.audioURL(), recordingSettings));
    recorder->setMeteringEnabled(true);
    ASSERT_TRUE(recorder->prepareToRecord());
    ASSERT_TRUE(recorder->record());
    ASSERT_TRUE(waitUntil([&] { return recorder->currentTime() > 0.2s; }));
    environment->muteSystemAudioForRecordingIfNeeded();
    EXPECT_EQ(sound(), (Sound{"usbmic", 1U, before.volume}));

    recorder->updateMeters();
    EXPECT_LT(recorder->averagePower(0), -100); // Nobody speaks yet.
    float loudest = -160;
    play(speech, "micfeed2", [&] {
        recorder->updateMeters();
        loudest = std::max(loudest, recorder->averagePower(0));
    });
    EXPECT_GT(loudest, -30);
    recorder->pause();
    const Seconds length = settledTime(*recorder);
    recorder->stop();
    EXPECT_EQ(recorder->failure(), Error{});
    environment->restoreAudioEnvironment();

    EXPECT_EQ(sound(), before);
    const std::vector<qint16> original = decode(speech);
    const std::vector<qint16> recorded = decode(file.audioURL());
    EXPECT_EQ(static_cast<double>(recorded.size()), length.count() * 16'000);
    EXPECT_GT(recorded.size(), original.size());
    // All of it, at its level; a server may add the two channels up by their power.
    EXPECT_GT(energy(recorded), energy(original) - 1.5);
    EXPECT_LT(energy(recorded), energy(original) + 3.5);
    EXPECT_EQ(QFile::permissions(file.audioURL())
            & (QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther),
        QFile::Permissions());
    file.remove();
    EXPECT_EQ(QDir(folder.path()).entryList({"tavrin-*"}), QStringList());
}

TEST_F(RecordingTest, APauseLeavesOutWhatIsSaidMeanwhile)
{
    preferences.remove(keys::preferredMicrophoneUID);
    const QString speech = spoken("Something for the record.");
    const RecordingFile file(systemInfo, background);
    environment->applyPreferredMicrophoneForRecording();
    auto recorder = std::move(*recorders.createRecorder(file.audioURL(), recordingSettings));
    ASSERT_TRUE(recorder->record());
    ASSERT_TRUE(waitUntil([&] { return recorder->currentTime() > 0.2s; }));

    recorder->pause();
    play(speech, "micfeed", [] {});
    const Seconds paused = recorder->currentTime();
    ASSERT_TRUE(recorder->record());
    ASSERT_TRUE(waitUntil([&] { return recorder->currentTime() > paused + 0.3s; }));
    recorder->stop();

    EXPECT_LT(testing::decibels(decode(file.audioURL())), -80);
}

TEST_F(RecordingTest, TheNextStartPutsRightWhatAKilledProcessLeft)
{
    testing::ChildProcess recorder(TAVRIN_TEST_RECORDER, {folder.path()});
    ASSERT_TRUE(waitUntil([&] { return sound() == Sound{"usbmic", 1U, before.volume}; }));
    ASSERT_EQ(QDir(folder.path()).entryList({"tavrin-*.m4a"}).size(), 1);

    // While it lives, another start leaves it alone.
    environment->restoreAfterCrash();
    removeAbandonedRecordings(systemInfo);
    EXPECT_EQ(sound(), (Sound{"usbmic", 1U, before.volume}));
    EXPECT_EQ(QDir(folder.path()).entryList({"tavrin-*.m4a"}).size(), 1);

    recorder.kill();
    EXPECT_EQ(sound(), (Sound{"usbmic", 1U, before.volume}));

    environment->restoreAfterCrash();
    removeAbandonedRecordings(systemInfo);
    EXPECT_EQ(sound(), before);
    EXPECT_EQ(QDir(folder.path()).entryList({"tavrin-*"}), QStringList());
    EXPECT_TRUE(QDir(folder.filePath("Tavrin")).isEmpty());
}

} // namespace
} // namespace tavrin
