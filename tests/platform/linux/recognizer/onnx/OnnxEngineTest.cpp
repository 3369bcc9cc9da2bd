#include "platform/linux/recognizer/onnx/OnnxEngine.h"

#include "platform/linux/recognizer/onnx/Tones.h"
#include "platform/linux/speech/engine/SpeechEngineErrors.h"
#include "platform/linux/speech/onnx/OnnxBytes.h"
#include "platform/linux/speech/onnx/OnnxModel.h"
#include "platform/speech/SpeechAvailability.h"
#include "support/QtPrinters.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <chrono>
#include <thread>

using namespace std::chrono_literals;

namespace tavrin {
namespace {

namespace tones = testing::tones;

const QString greeting = QStringLiteral("你好，世界 HELLO WORLD");
const SpeechRequest live{.shouldReportPartialResults = true, .contextualStrings = {}};

QString modelFolder(const QString& name)
{
    return QStringLiteral(TAVRIN_ONNX_MODELS) + u'/' + name;
}

std::unique_ptr<OnnxEngine> engineOf(const QString& folder, const QString& finalFolder = {})
{
    auto engine = std::make_unique<OnnxEngine>(OnnxEngineSettings{
        .libraryFolder = QStringLiteral(TAVRIN_SHERPA_FOLDER),
        .modelFolder = folder,
        .finalModelFolder = finalFolder,
    });
    engine->open();
    return engine;
}

std::unique_ptr<OnnxEngine> opened(const QString& name, const QString& finalName = {})
{
    auto engine =
        engineOf(modelFolder(name), finalName.isEmpty() ? QString{} : modelFolder(finalName));
    EXPECT_TRUE(engine->availability().isAvailable)
        << engine->availability().argument.toStdString();
    return engine;
}

/// Feeds a tenth of a second at a time, as a microphone would, and notes the texts on the way.
struct Listener {
    explicit Listener(OnnxEngine& engine, const SpeechRequest& request = {})
        : utterance(*engine.begin(request, {}))
    {
    }

    void hear(std::span<const qint16> samples)
    {
        constexpr std::size_t block = 1600;
        while (!samples.empty()) {
            const auto part = samples.first(std::min(block, samples.size()));
            samples = samples.subspan(part.size());
            ASSERT_TRUE(utterance->feed(part));
            const QString text = utterance->partialText();
            if (!text.isEmpty() && (texts.isEmpty() || texts.last() != text))
                texts.append(text);
        }
    }

    QString finish() const { return utterance->finish().value_or(QStringLiteral("(failed)")); }

    std::unique_ptr<Utterance> utterance;
    QStringList texts;
};

QString heard(OnnxEngine& engine, const std::vector<qint16>& samples, const QStringList& terms = {})
{
    Listener listener(engine, {.contextualStrings = terms});
    listener.hear(samples);
    return listener.finish();
}

struct KindCase {
    const char* folder;
    OnnxModelKind kind;
    const char16_t* text;
};

constexpr const char16_t* inCapitals = u"你好，世界 HELLO WORLD";
constexpr const char16_t* inSmallLetters = u"你好，世界 hello world";

class OnnxEngineKindTest : public ::testing::TestWithParam<KindCase> { };

INSTANTIATE_TEST_SUITE_P(Models, OnnxEngineKindTest,
    ::testing::Values(
        // It knows another word with the tone of 世, and prefers it.
        KindCase{
            "streaming-transducer", OnnxModelKind::StreamingTransducer, u"你好，是界 HELLO WORLD"},
        KindCase{"streaming-zipformer-ctc", OnnxModelKind::StreamingZipformerCtc, inCapitals},
        KindCase{"streaming-nemo-ctc", OnnxModelKind::StreamingNemoCtc, inCapitals},
        KindCase{"streaming-paraformer", OnnxModelKind::StreamingParaformer, inSmallLetters},
        KindCase{"sense-voice", OnnxModelKind::SenseVoice, inCapitals},
        KindCase{"paraformer", OnnxModelKind::Paraformer, inSmallLetters},
        KindCase{"zipformer-ctc", OnnxModelKind::ZipformerCtc, inCapitals},
        KindCase{"whisper", OnnxModelKind::Whisper, inCapitals}),
    [](const auto& each) { return QString(each.param.folder).remove('-').toStdString(); });

TEST_P(OnnxEngineKindTest, TheModelIsToldAndUnderstands)
{
    EXPECT_EQ(findOnnxModel(modelFolder(GetParam().folder))->kind, GetParam().kind);
    const auto engine = opened(GetParam().folder);
    EXPECT_TRUE(engine->hearsLive());
    EXPECT_EQ(engine->availability().argument, GetParam().folder);
    EXPECT_EQ(heard(*engine, tones::greeting()), QString::fromUtf16(GetParam().text));
}

TEST_P(OnnxEngineKindTest, OneUtteranceKnowsNothingOfAnother)
{
    const auto engine = opened(GetParam().folder);
    heard(*engine, tones::greeting());
    EXPECT_EQ(heard(*engine, tones::said({tones::ni, tones::hao})), "你好");
}

TEST_P(OnnxEngineKindTest, TheLastWordNeedsNoSilenceAfterIt)
{
    const auto engine = opened(GetParam().folder);
    std::vector<qint16> samples = tones::said({tones::ni, tones::hao});
    samples.resize(samples.size() - tones::silence(0.08).size());
    EXPECT_EQ(heard(*engine, samples), "你好");
}

TEST_P(OnnxEngineKindTest, SilenceAndTheShortestSoundsHaveNoText)
{
    const auto engine = opened(GetParam().folder);
    EXPECT_EQ(heard(*engine, {}), "");
    EXPECT_EQ(heard(*engine, tones::silence(3)), "");
    constexpr double noWord = 5500;
    for (const double seconds : {0.0001, 0.01, 0.03, 0.05, 0.06, 0.08})
        EXPECT_EQ(heard(*engine, testing::tone(seconds, 0.3, 16'000, 1, noWord)), "") << seconds;
}

TEST_P(OnnxEngineKindTest, NothingIsToldOnTheWayUnlessItWasAskedFor)
{
    const auto engine = opened(GetParam().folder);
    Listener listener(*engine);
    listener.hear(tones::greeting());
    EXPECT_EQ(listener.texts, QStringList{});
}

TEST_P(OnnxEngineKindTest, WhatIsSaidAfterLongSilenceIsJoined)
{
    const auto engine = opened(GetParam().folder);
    std::vector<qint16> samples = tones::said({tones::ni, tones::hao});
    tones::append(samples, tones::silence(3));
    tones::append(samples, tones::said({tones::jie}));
    Listener listener(*engine, live);
    listener.hear(samples);
    EXPECT_EQ(listener.finish(), "你好界");
}

TEST_P(OnnxEngineKindTest, MoreThanTheModelHearsAtATimeIsHeardWhole)
{
    const auto engine = opened(GetParam().folder);
    Listener listener(*engine, live);
    QString expected;
    for (int i = 0; i < 30; ++i) {
        listener.hear(tones::said({tones::ni, tones::hao}));
        listener.hear(tones::silence(1.6));
        expected += QStringLiteral("你好");
    }
    EXPECT_EQ(listener.finish(), expected);
}

TEST_P(OnnxEngineKindTest, TheLibraryHasNothingToSay)
{
    ::testing::internal::CaptureStderr();
    ::testing::internal::CaptureStdout();
    const auto engine = opened(GetParam().folder);
    heard(*engine, tones::greeting(),
        {"世界", "龘世", "#tag", "世界 :x", "世/界", "hello world", "\x01"});
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "");
}

TEST_P(OnnxEngineKindTest, ARequestToStopEndsIt)
{
    const auto engine = opened(GetParam().folder);
    std::stop_source stop;
    const auto utterance = engine->begin({}, stop.get_token());
    ASSERT_TRUE(utterance);
    ASSERT_TRUE((*utterance)->feed(tones::greeting()));
    stop.request_stop();
    EXPECT_EQ((*utterance)->finish().error(), speechEngineError(SpeechEngineError::Cancelled));
}

class OnnxEngineTest : public ::testing::Test {
protected:
    QTemporaryDir folder;

    void copyModel(const QString& name) const
    {
        for (const QString& file : QDir(modelFolder(name)).entryList(QDir::Files))
            ASSERT_TRUE(QFile::copy(modelFolder(name) + u'/' + file, folder.filePath(file)));
    }

    QByteArray content(const QString& name) const
    {
        QFile file(folder.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    }

    void write(const QString& name, const QByteArray& bytes) const
    {
        QFile file(folder.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(bytes), bytes.size());
    }

    std::optional<OnnxProblem> problem() const { return engineOf(folder.path())->problem(); }
};

TEST_F(OnnxEngineTest, AStreamingModelTellsWordForWord)
{
    for (const char* name : {"streaming-zipformer-ctc", "streaming-nemo-ctc"}) {
        const auto engine = opened(name);
        Listener listener(*engine, live);
        listener.hear(tones::greeting());
        listener.hear(tones::silence(0.3));
        EXPECT_EQ(listener.texts,
            (QStringList{
                "你", "你好", "你好，", "你好，世", "你好，世界", "你好，世界 HELLO", greeting}))
            << name;
        EXPECT_EQ(listener.finish(), greeting);
    }
}

TEST_F(OnnxEngineTest, LiveTextKeepsWhatWasSaidBeforeAPause)
{
    const auto engine = opened("streaming-transducer");
    Listener listener(*engine, live);
    listener.hear(tones::said({tones::ni, tones::hao}));
    listener.hear(tones::silence(2));
    listener.hear(tones::said({tones::hello}));
    listener.hear(tones::silence(0.3));
    EXPECT_EQ(listener.texts, (QStringList{"你", "你好", "你好 HELLO"}));
}

TEST_F(OnnxEngineTest, AModelForWholeUtterancesTellsOnTheWayToo)
{
    const auto engine = opened("sense-voice");
    Listener listener(*engine, live);
    listener.hear(tones::said({tones::ni, tones::hao}));
    ASSERT_FALSE(listener.texts.isEmpty());
    EXPECT_TRUE(QStringLiteral("你好").startsWith(listener.texts.first()));
    listener.hear(tones::said({tones::hello}));
    // It looks again when it has had as much rest as its last look took.
    const auto end = std::chrono::steady_clock::now() + 10s;
    while (listener.texts.last() != "你好 HELLO" && std::chrono::steady_clock::now() < end) {
        std::this_thread::sleep_for(5ms);
        listener.hear(tones::silence(0.1));
    }
    EXPECT_EQ(listener.texts.last(), "你好 HELLO");
}

TEST_F(OnnxEngineTest, TwoModelsShareTheWork)
{
    const auto engine = opened("streaming-transducer", "sense-voice");
    Listener listener(*engine, live);
    listener.hear(tones::greeting());
    listener.hear(tones::silence(0.3));
    EXPECT_EQ(listener.texts.last(), "你好，是界 HELLO WORLD") << "the streaming one";
    EXPECT_EQ(listener.finish(), greeting) << "the one for whole utterances";
    EXPECT_EQ(heard(*engine, tones::greeting()), greeting);
}

TEST_F(OnnxEngineTest, FavouredTermsWin)
{
    const auto engine = opened("streaming-transducer");
    EXPECT_EQ(heard(*engine, tones::greeting()), "你好，是界 HELLO WORLD");
    EXPECT_EQ(heard(*engine, tones::greeting(), {"世界"}), greeting);
    EXPECT_EQ(
        heard(*engine, tones::greeting(), {"龘世", "世/界", "世界 :x"}), "你好，是界 HELLO WORLD")
        << "terms that it cannot favour do not favour parts of them";
}

TEST_F(OnnxEngineTest, FavouredWordsAreCutIntoPieces)
{
    const auto engine = opened("streaming-transducer-pieces");
    EXPECT_EQ(heard(*engine, tones::greeting()), "你好，是界 HALLO WORLD");
    EXPECT_EQ(heard(*engine, tones::greeting(), {"hello"}), "你好，是界 HELLO WORLD");
    EXPECT_EQ(heard(*engine, tones::greeting(), {"世界", "Hello World"}), greeting);
}

TEST_F(OnnxEngineTest, RecordingsAreCutToWhatTheModelHears)
{
    EXPECT_EQ(opened("whisper")->longestUtterance(), Seconds(29));
    EXPECT_EQ(opened("streaming-transducer", "whisper")->longestUtterance(), Seconds(29));
    EXPECT_EQ(opened("streaming-transducer")->longestUtterance(), Seconds(60));
}

TEST_F(OnnxEngineTest, BeforeItIsOpenNothingCanBeHeard)
{
    OnnxEngine engine({.libraryFolder = QStringLiteral(TAVRIN_SHERPA_FOLDER),
        .modelFolder = modelFolder("whisper")});
    EXPECT_FALSE(engine.availability().isAvailable);
    EXPECT_EQ(engine.availability().argument, "whisper");
    EXPECT_EQ(engine.problem(), std::nullopt);
    EXPECT_EQ(engine.begin({}, {}).error(), speechEngineError(SpeechEngineError::ModelUnusable));
}

TEST_F(OnnxEngineTest, WhatIsWrongIsToldInPlaceOfTheModel)
{
    const auto engine = engineOf(folder.path());
    const OnnxProblem expected{OnnxFault::NoModel, folder.path()};
    EXPECT_EQ(engine->problem(), expected);
    const SpeechAvailability availability = engine->availability();
    EXPECT_FALSE(availability.isAvailable);
    EXPECT_EQ(availability.text.en, textOf(OnnxFault::NoModel).en);
    EXPECT_EQ(availability.argument, folder.path());
    EXPECT_EQ(engine->begin({}, {}).error(), speechEngineError(SpeechEngineError::ModelUnusable));
}

TEST_F(OnnxEngineTest, AStreamingModelMakesNoFinalTextsBesideAnother)
{
    const auto engine = engineOf(modelFolder("whisper"), modelFolder("streaming-transducer"));
    EXPECT_EQ(engine->problem(),
        (OnnxProblem{OnnxFault::NotWholeUtterance, modelFolder("streaming-transducer")}));
    EXPECT_EQ(engineOf(modelFolder("streaming-transducer"), folder.path())->problem()->fault,
        OnnxFault::NoModel);
}

TEST_F(OnnxEngineTest, AnAbsentLibraryIsTold)
{
    OnnxEngine engine({.libraryFolder = folder.path(), .modelFolder = modelFolder("whisper")});
    engine.open();
    EXPECT_EQ(engine.problem()->fault, OnnxFault::NoLibrary);
}

TEST_F(OnnxEngineTest, MetadataThatIsMissingDoesNotEndTheProcess)
{
    copyModel("streaming-zipformer-ctc");
    write("model.onnx", content("model.onnx").replace("num_heads", "xxx_heads"));
    EXPECT_EQ(problem(), (OnnxProblem{OnnxFault::KeyMissing, "model.onnx: num_heads"}));
}

TEST_F(OnnxEngineTest, AModelWhoseGraphIsNonsenseIsRefusedByTheLibrary)
{
    copyModel("zipformer-ctc");
    write("model.onnx", testing::onnxFile({}));
    EXPECT_EQ(problem(), (OnnxProblem{OnnxFault::ModelRefused, folder.path()}));
}

TEST_F(OnnxEngineTest, ATruncatedModelIsRefusedWhereverItEnds)
{
    copyModel("streaming-nemo-ctc");
    const QByteArray whole = content("model.onnx");
    for (int tenth = 0; tenth < 10; ++tenth) {
        write("model.onnx", whole.left(whole.size() * tenth / 10));
        EXPECT_TRUE(problem()) << tenth;
    }
}

TEST_F(OnnxEngineTest, ATableOfTokensThatIsMissingOrShortIsTold)
{
    copyModel("streaming-nemo-ctc");
    write("tokens.txt", "<blk> 0\n你 1\n");
    EXPECT_EQ(problem()->fault, OnnxFault::TokensShort);
    ASSERT_TRUE(QFile::remove(folder.filePath("tokens.txt")));
    EXPECT_EQ(problem()->fault, OnnxFault::NoTokens);
}

TEST_F(OnnxEngineTest, ATokenThatTheTableLacksFailsTheUtteranceAlone)
{
    copyModel("streaming-zipformer-ctc"); // It does not say how many tokens it knows.
    write("tokens.txt", "<blk> 0\n你 1\n");
    const auto engine = engineOf(folder.path());
    EXPECT_EQ(engine->problem(), std::nullopt);
    EXPECT_EQ(heard(*engine, tones::said({tones::ni})), "你");
    const auto utterance = engine->begin({}, {});
    EXPECT_EQ((*utterance)->feed(tones::said({tones::hao, tones::jie, tones::jie})).error(),
        speechEngineError(SpeechEngineError::ModelUnusable));
    EXPECT_EQ(heard(*engine, tones::said({tones::ni})), "你");
}

TEST_F(OnnxEngineTest, ShapesThatDoNotFitFailTheUtterance)
{
    const auto engine = engineOf(modelFolder("broken-shapes"));
    EXPECT_EQ(engine->problem(), std::nullopt);
    const auto utterance = engine->begin({}, {});
    EXPECT_EQ((*utterance)->feed(tones::greeting()).error(),
        speechEngineError(SpeechEngineError::ModelUnusable));
}

} // namespace
} // namespace tavrin
