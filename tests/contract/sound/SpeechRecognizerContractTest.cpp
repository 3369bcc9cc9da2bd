#include "platform/linux/recognizer/sphinx/SphinxEngine.h"
#include "platform/linux/speech/engine/EngineFileRecognizer.h"
#include "platform/linux/speech/engine/EngineLiveRecognizer.h"
#include "platform/speech/SpeechAvailability.h"
#include "platform/speech/SpeechRecognizer.h"
#include "support/QtPrinters.h"
#include "support/sound/HeardResults.h"
#include "support/sound/InMemorySpeechRecognizers.h"
#include "support/sound/Sounds.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace tavrin {
namespace {

/// A recogniser of each kind, and what makes it answer.
struct Recognizers {
    std::unique_ptr<FileSpeechRecognizer> file;
    std::unique_ptr<LiveSpeechRecognizer> live;
    std::function<void()> answerFile = [] {};
};

Recognizers inMemory()
{
    auto file = std::make_unique<testing::InMemoryFileSpeechRecognizer>();
    auto* recognizer = file.get();
    return {std::move(file), std::make_unique<testing::InMemoryLiveSpeechRecognizer>(),
        [recognizer] { recognizer->calls.back().answer({}); }};
}

Recognizers sphinx()
{
    class Capture final : public SpeechCapture { };

    const auto thread = std::make_shared<SpeechEngineThread>(
        std::make_unique<SphinxEngine>(findSphinxModel({}, sphinxModelRoots())));
    return {std::make_unique<EngineFileRecognizer>(thread),
        std::make_unique<EngineLiveRecognizer>(
            thread, [](const auto&) -> Result<std::unique_ptr<SpeechCapture>> {
                return std::make_unique<Capture>();
            })};
}

class SpeechRecognizerContractTest : public ::testing::TestWithParam<Recognizers (*)()> {
protected:
    Recognizers recognizers = GetParam()();
    QTemporaryDir folder;
    testing::HeardResults heard;

    QString silentRecording() const
    {
        QString path = folder.filePath("silence.wav");
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(testing::wavFile(std::vector<qint16>(16'000)));
        return path;
    }
};

TEST_P(SpeechRecognizerContractTest, AnInstalledRecognizerIsAvailableAndSaysSo)
{
    EXPECT_TRUE(recognizers.file->isAvailable());
    EXPECT_TRUE(recognizers.file->availability().isAvailable);
    EXPECT_FALSE(recognizers.file->availability().text.en.isEmpty());
    EXPECT_TRUE(recognizers.live->isAvailable());
}

TEST_P(SpeechRecognizerContractTest, SilenceHasAnEmptyFinalResult)
{
    const auto task = recognizers.file->recognize(silentRecording(), {}, heard.handler());
    ASSERT_TRUE(task);
    recognizers.answerFile();

    const Result<SpeechResult> result = heard.outcome();
    ASSERT_TRUE(result);
    EXPECT_TRUE(result->isFinal);
    EXPECT_EQ(result->formattedString, "");
}

TEST_P(SpeechRecognizerContractTest, ATaskMayBeDestroyedAtAnyTime)
{
    recognizers.file->recognize(silentRecording(), {}, heard.handler()).reset();
    auto live = recognizers.live->start(
        {.shouldReportPartialResults = true, .contextualStrings = {}}, heard.handler());
    ASSERT_TRUE(live);
    live->reset();
    auto again = recognizers.live->start(
        {.shouldReportPartialResults = true, .contextualStrings = {}}, heard.handler());
    ASSERT_TRUE(again);
    ASSERT_TRUE(*again);
}

INSTANTIATE_TEST_SUITE_P(Recognizers, SpeechRecognizerContractTest,
    ::testing::Values(&inMemory, &sphinx),
    [](const auto& kind) { return kind.index == 0 ? "InMemory" : "Sphinx"; });

} // namespace
} // namespace tavrin
