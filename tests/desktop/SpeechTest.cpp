#include "audio/RecordingFile.h"
#include "platform/linux/audio/PulseAudioDevices.h"
#include "platform/linux/audio/PulseAudioRecorder.h"
#include "platform/linux/recognizer/onnx/Tones.h"
#include "platform/linux/speech/LinuxPermissions.h"
#include "platform/linux/speech/LinuxSpeech.h"
#include "platform/linux/speech/PulseSpeechCapture.h"
#include "platform/preferences/PreferenceKeys.h"
#include "platform/qt/QtMainQueue.h"
#include "speech/LiveTranscriber.h"
#include "speech/SpeechContextualTerms.h"
#include "speech/SystemTranscriber.h"
#include "support/ChildProcess.h"
#include "support/QtPrinters.h"
#include "support/WaitUntil.h"
#include "support/ports/InMemoryPreferences.h"
#include "support/sound/Voices.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTimer>
#include <gtest/gtest.h>

#include <optional>

using namespace std::chrono_literals;

namespace tavrin {
namespace {

/// Speech into the virtual microphone: text while it is spoken, and the transcript afterwards.
class SpeechTest : public ::testing::Test {
protected:
    QTemporaryDir folder;
    testing::InMemoryPreferences preferences;
    const bool isArranged;
    QtMainQueue queue;
    std::shared_ptr<PulseConnection> server = std::make_shared<PulseConnection>();
    PulseAudioDevices devices{server};
    PulseAudioRecorders recorders{server};
    LinuxSpeech speech = createLinuxSpeech(
        preferences, pulseSpeechCapture(server), QStringLiteral(TAVRIN_RECOGNIZER));
    LinuxPermissions permissions{devices};
    SystemTranscriber transcriber{
        *speech.fileRecognizer, permissions, queue, [] { return SpeechContextualTerms({}); }};
    LiveTranscriber liveTranscriber{
        *speech.liveRecognizer, permissions, queue, [] { return SpeechContextualTerms({}); }};
    QStringList updates;
    QTimer wake; // Conditions on other programs and on sound make no event.

    explicit SpeechTest(const QList<std::pair<QString, QString>>& settings = {})
        : isArranged(arrange(preferences, settings))
    {
        wake.start(20ms);
    }

    static bool arrange(testing::InMemoryPreferences& preferences,
        const QList<std::pair<QString, QString>>& settings)
    {
        for (const auto& [key, value] : settings)
            preferences.setValue(key, value);
        return true;
    }

    std::unique_ptr<AudioRecorder> record(const QString& path)
    {
        auto recorder = recorders.createRecorder(path, recordingSettings);
        EXPECT_TRUE(recorder);
        if (!recorder)
            return nullptr;
        EXPECT_TRUE((*recorder)->prepareToRecord());
        EXPECT_TRUE((*recorder)->record());
        return std::move(*recorder);
    }

    void startLive()
    {
        ASSERT_TRUE(
            liveTranscriber.startWithUpdate([this](const QString& text) { updates.append(text); }));
    }

    /// Says a sentence into the microphone; false when it takes too long.
    bool say(const QString& text) const
    {
        const QString path = folder.filePath("spoken.wav");
        return testing::speak(text, "rms", path) && play(path);
    }

    /// Plays a sound into the microphone; false when it takes too long.
    static bool play(const QString& path)
    {
        testing::ChildProcess paplay("paplay", {"--device=micfeed", path});
        return testing::waitUntil([&] { return !paplay.isRunning(); }, 60s);
    }

    /// Lets the engine load, as it does a second after the launch of the program.
    void loadEngine()
    {
        startLive();
        ASSERT_TRUE(say("good morning"));
        ASSERT_TRUE(testing::waitUntil([&] { return !updates.isEmpty(); }, 60s));
        liveTranscriber.stop();
        updates.clear();
    }

    Result<QString> transcribe(const QString& path)
    {
        const auto answer = std::make_shared<std::optional<Result<QString>>>();
        transcriber.transcribe(path, [this, answer](const Result<QString>& transcript) {
            queue.post([answer, transcript] { *answer = transcript; });
        });
        EXPECT_TRUE(testing::waitUntil([&] { return answer->has_value(); }, 100s));
        return answer->value_or(failure({"Test", 0, "nothing came"}));
    }

    static QString errorText(const Result<QString>& transcript)
    {
        return transcript
            ? *transcript
            : QStringLiteral("%1 %2").arg(transcript.error().domain).arg(transcript.error().code);
    }
};

TEST_F(SpeechTest, ASentenceShowsWhileItIsSpokenAndIsTranscribedAfterwards)
{
    loadEngine();
    const QString path = folder.filePath("recording.m4a");
    const auto recorder = record(path);
    ASSERT_TRUE(recorder);
    startLive();
    ASSERT_TRUE(testing::waitUntil([&] { return recorder->currentTime() > 0.2s; }));

    ASSERT_TRUE(say("the weather is nice today and we are going home"));
    const qsizetype whileSpeaking = updates.size();
    ASSERT_TRUE(testing::waitUntil([&] { return updates.join(u' ').contains("going home"); }, 60s));
    liveTranscriber.stop();
    recorder->stop();

    EXPECT_GE(whileSpeaking, 2);
    EXPECT_EQ(
        transcribe(path).value_or(QString{}), "the weather is nice today and we are going home");
}

/// With a neural model that hears tones as words.
class NeuralSpeechTest : public SpeechTest {
protected:
    NeuralSpeechTest()
        : SpeechTest({{keys::linuxSpeechOnnxModel,
                          QStringLiteral(TAVRIN_ONNX_MODELS "/streaming-zipformer-ctc")},
            {keys::linuxSpeechOnnxLibrary, QStringLiteral(TAVRIN_SHERPA_FOLDER)}})
    {
    }
};

TEST_F(NeuralSpeechTest, ChineseAndEnglishShowWhileTheyAreSpokenAndAreTranscribedAfterwards)
{
    const QString path = folder.filePath("recording.m4a");
    const auto recorder = record(path);
    ASSERT_TRUE(recorder);
    startLive();
    ASSERT_TRUE(testing::waitUntil([&] { return recorder->currentTime() > 0.2s; }));

    const QString tones = folder.filePath("tones.wav");
    QFile file(tones);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(testing::wavFile(testing::tones::greeting()));
    file.close();
    ASSERT_TRUE(play(tones));
    const QString greeting = QStringLiteral("你好，世界 HELLO WORLD");
    ASSERT_TRUE(testing::waitUntil([&] { return updates.value(updates.size() - 1) == greeting; }));
    liveTranscriber.stop();
    recorder->stop();

    EXPECT_GE(updates.size(), 3);
    for (const QString& update : updates)
        EXPECT_TRUE(greeting.startsWith(update)) << update.toStdString();
    EXPECT_EQ(transcribe(path).value_or(QString{}), greeting);
}

TEST_F(SpeechTest, ANewRunShowsOnlyWhatIsSaidInIt)
{
    loadEngine(); // Heard "good morning".

    startLive();
    ASSERT_TRUE(say("the weather is nice"));
    ASSERT_TRUE(testing::waitUntil([&] { return !updates.isEmpty(); }, 60s));
    for (const QString& update : updates)
        EXPECT_FALSE(update.contains("morning"));
    liveTranscriber.stop();
}

TEST_F(SpeechTest, ARecordingOfSilenceHasNoValidSpeech)
{
    const QString path = folder.filePath("recording.m4a");
    const auto recorder = record(path);
    ASSERT_TRUE(recorder);
    ASSERT_TRUE(testing::waitUntil([&] { return recorder->currentTime() > 1s; }));
    recorder->stop();

    EXPECT_EQ(errorText(transcribe(path)), "TavrinSpeech 11");
}

TEST_F(SpeechTest, ZeroBytesAndTruncatedRecordingsAreClearErrors)
{
    const QString path = folder.filePath("recording.m4a");
    const auto recorder = record(path);
    ASSERT_TRUE(recorder);
    ASSERT_TRUE(testing::waitUntil([&] { return recorder->currentTime() > 1s; }));
    recorder->stop();

    ASSERT_TRUE(QFile::resize(path, 40));
    EXPECT_EQ(errorText(transcribe(path)), "TavrinAudio 3");
    ASSERT_TRUE(QFile::resize(path, 0));
    EXPECT_EQ(errorText(transcribe(path)), "TavrinAudio 2");
}

} // namespace
} // namespace tavrin
