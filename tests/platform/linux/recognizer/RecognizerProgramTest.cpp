#include "platform/linux/recognizer/onnx/Tones.h"
#include "platform/linux/speech/engine/EngineFileRecognizer.h"
#include "platform/linux/speech/engine/SpeechEngineTexts.h"
#include "platform/linux/speech/onnx/OnnxTexts.h"
#include "platform/linux/speech/process/ProcessEngine.h"
#include "platform/linux/speech/sphinx/SphinxModel.h"
#include "support/ChildProcess.h"
#include "support/QtPrinters.h"
#include "support/sound/HeardResults.h"
#include "support/sound/Voices.h"

#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

/// The program itself, with the model that is installed.
class RecognizerProgramTest : public ::testing::Test {
protected:
    QTemporaryDir folder;
    const QString program = QStringLiteral(TAVRIN_RECOGNIZER);

    [[nodiscard]] static QStringList modelWords()
    {
        const auto model = findSphinxModel({}, sphinxModelRoots());
        EXPECT_TRUE(model);
        if (!model)
            return {};
        return {u"sphinx"_s, model->acousticModel, model->dictionary, model->languageModel,
            model->language};
    }

    /// What the command understands of a spoken sentence.
    [[nodiscard]] QString understoodBy(const recognizer::RecognizerCommand& command) const
    {
        const QString path = folder.filePath(u"spoken.wav"_s);
        EXPECT_TRUE(testing::speak(u"the weather is nice today"_s, u"rms"_s, path));
        return recognised(path, command);
    }

    [[nodiscard]] static QString recognised(
        const QString& path, const recognizer::RecognizerCommand& command)
    {
        ProcessEngine::Settings settings;
        settings.command = command;
        settings.availability = {true, texts::sphinxReady, u"en"_s};
        EngineFileRecognizer recognizer(
            std::make_shared<SpeechEngineThread>(std::make_unique<ProcessEngine>(settings)));
        const testing::HeardResults heard;
        const auto task = recognizer.recognize(path, {}, heard.handler());
        return heard.text();
    }
};

TEST_F(RecognizerProgramTest, ASentenceIsUnderstoodInAProcessOfItsOwn)
{
    EXPECT_EQ(understoodBy({program, modelWords()}), u"the weather is nice today"_s);
}

TEST_F(RecognizerProgramTest, ANeuralModelIsHeardInAProcessOfItsOwn)
{
    const QString path = folder.filePath(u"tones.wav"_s);
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(testing::wavFile(testing::tones::greeting()));
    file.close();
    EXPECT_EQ(recognised(path,
                  {program,
                      {u"onnx"_s, QStringLiteral(TAVRIN_SHERPA_FOLDER),
                          QStringLiteral(TAVRIN_ONNX_MODELS) + u"/streaming-zipformer-ctc"_s, {}}}),
        u"你好，世界 HELLO WORLD"_s);
}

TEST_F(RecognizerProgramTest, WhatKeepsANeuralModelFromLoadingIsTold)
{
    ProcessEngine::Settings settings;
    settings.command = {program,
        {u"onnx"_s, folder.path(),
            QStringLiteral(TAVRIN_ONNX_MODELS) + u"/streaming-zipformer-ctc"_s, {}}};
    settings.availability = {true, texts::onnxReady, {}};
    ProcessEngine engine(settings);
    engine.open();
    EXPECT_FALSE(engine.availability().isAvailable);
    EXPECT_EQ(engine.availability().text.en, texts::onnxNoLibrary.en);
}

TEST_F(RecognizerProgramTest, ItOpensNoSocketAndWritesNoFile)
{
    const QString calls = folder.filePath(u"calls"_s);
    const QString tracer = u"/usr/bin/strace"_s;
    ASSERT_TRUE(QFile::exists(tracer));
    const QStringList words{u"-f"_s, u"-qq"_s, u"-e"_s, u"trace=%network,%file"_s, u"-e"_s,
        u"signal=none"_s, u"-o"_s, calls, program};
    EXPECT_EQ(understoodBy({tracer, words + modelWords()}), u"the weather is nice today"_s);

    QFile file(calls);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QStringList lines = QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
    EXPECT_GT(lines.size(), 20);
    const QRegularExpression network(u"^[0-9]+ +(socket|connect|bind|listen|accept|send|recv)"_s);
    const QRegularExpression change(
        u"O_WRONLY|O_RDWR|O_CREAT|^[0-9]+ +(unlink|rename|mkdir|chmod|link|symlink|truncate)"_s);
    EXPECT_EQ(lines.filter(network), QStringList());
    EXPECT_EQ(lines.filter(change), QStringList());
}

TEST_F(RecognizerProgramTest, WhoeverDoesNotKnowItsWordsIsTurnedAway)
{
    testing::ChildProcess process(program);
    EXPECT_EQ(process.wait(), 2);
    testing::ChildProcess other(program, {u"onnx"_s, u"folder"_s});
    EXPECT_EQ(other.wait(), 2);
}

} // namespace
} // namespace tavrin
