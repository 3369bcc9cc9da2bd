#include "platform/linux/speech/process/ProcessEngine.h"

#include "platform/linux/speech/engine/SpeechEngineErrors.h"
#include "platform/linux/speech/engine/SpeechEngineTexts.h"
#include "support/QtPrinters.h"
#include "support/WaitUntil.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

#include <csignal>
#include <string>
#include <thread>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tavrin {
namespace {

/// The processes that this one has started and that have not been waited for.
QStringList children()
{
    QStringList numbers;
    for (const QString& thread :
        QDir(u"/proc/self/task"_s).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile list(u"/proc/self/task/%1/children"_s.arg(thread));
        if (list.open(QIODevice::ReadOnly))
            numbers += QString::fromLatin1(list.readAll()).split(u' ', Qt::SkipEmptyParts);
    }
    return numbers;
}

ProcessEngine::Settings settingsFor(const QStringList& words)
{
    return {.command = {QStringLiteral(TAVRIN_UNRULY_RECOGNIZER), words},
        .availability = {true, texts::sphinxReady, u"en"_s},
        .patience = {.load = 10s, .answer = 10s, .finish = 10s}};
}

/// Patience that a recogniser uses up which never answers.
ProcessEngine::Settings impatientFor(const QStringList& words)
{
    ProcessEngine::Settings settings = settingsFor(words);
    settings.patience = {.load = 300ms, .answer = 300ms, .finish = 300ms};
    return settings;
}

const SpeechRequest live{true, SpeechTaskHint::Dictation, {}, false};
const std::vector<qint16> sound(320, 7);

/// What comes of one utterance: its text, or its error.
Result<QString> hear(SpeechEngine& engine)
{
    auto utterance = engine.begin({}, {});
    if (!utterance)
        return failure(utterance.error());
    if (const auto fed = (*utterance)->feed(sound); !fed)
        return failure(fed.error());
    return (*utterance)->finish();
}

class ProcessEngineTest : public ::testing::Test {
protected:
    void TearDown() override { EXPECT_EQ(children(), QStringList()); }
};

TEST_F(ProcessEngineTest, AnUtteranceIsHeardInTheProcess)
{
    ProcessEngine engine(settingsFor({u"good"_s}));
    engine.open();
    EXPECT_EQ(children().size(), 1);
    auto utterance = engine.begin(live, {});
    ASSERT_TRUE(utterance);
    ASSERT_TRUE((*utterance)->feed(sound));
    EXPECT_EQ((*utterance)->partialText(), u"heard 320"_s);
    ASSERT_TRUE((*utterance)->feed(std::vector<qint16>(50'000)));
    EXPECT_EQ((*utterance)->partialText(), u"heard 50320"_s);
    EXPECT_EQ((*utterance)->finish(), u"first"_s);
    EXPECT_EQ(hear(engine), u"second"_s);
}

TEST_F(ProcessEngineTest, UtterancesDoNotMix)
{
    ProcessEngine engine(settingsFor({u"good"_s}));
    auto spoken = engine.begin(live, {});
    ASSERT_TRUE(spoken);
    ASSERT_TRUE((*spoken)->feed(sound));
    EXPECT_EQ(hear(engine), u"second"_s);
    ASSERT_TRUE((*spoken)->feed(sound));
    EXPECT_EQ((*spoken)->partialText(), u"heard 640"_s);
    EXPECT_EQ((*spoken)->finish(), u"first"_s);
}

TEST_F(ProcessEngineTest, WithoutAModelNothingIsStarted)
{
    ProcessEngine::Settings settings = settingsFor({u"good"_s});
    settings.availability = {false, texts::noSphinxModel, {}};
    ProcessEngine engine(settings);
    engine.open();
    EXPECT_EQ(children(), QStringList());
    EXPECT_EQ(hear(engine).error(), speechEngineError(SpeechEngineError::ModelUnusable));
}

TEST_F(ProcessEngineTest, AProgramThatIsNotThereIsAnError)
{
    ProcessEngine::Settings settings = settingsFor({});
    settings.command.program = u"/nowhere/recogniser"_s;
    ProcessEngine engine(settings);
    EXPECT_EQ(hear(engine).error(), speechEngineError(SpeechEngineError::RecognizerEnded));
}

TEST_F(ProcessEngineTest, WhatTheProcessSaysOfItselfIsBelieved)
{
    ProcessEngine engine(settingsFor({u"good"_s}));
    EXPECT_EQ(engine.availability().argument, u"en"_s);
    engine.open();
    EXPECT_TRUE(engine.availability().isAvailable);
}

class UnrulyTest : public ProcessEngineTest, public ::testing::WithParamInterface<std::string> { };

TEST_P(UnrulyTest, WhoeverEndsOrTalksNonsenseFailsWhatWasAsked)
{
    for (const QString& what : {u"ends"_s, u"rubbish"_s, u"long"_s, u"other"_s}) {
        ProcessEngine engine(settingsFor({what, QString::fromStdString(GetParam())}));
        EXPECT_EQ(hear(engine).error(), speechEngineError(SpeechEngineError::RecognizerEnded))
            << what.toStdString();
    }
}

TEST_P(UnrulyTest, WhoeverDoesNotAnswerIsNotWaitedForLonger)
{
    for (const QString& what : {u"hangs"_s, u"floods"_s}) {
        ProcessEngine engine(impatientFor({what, QString::fromStdString(GetParam())}));
        const Error error = hear(engine).error();
        // Old answers before the greeting are nonsense.
        const bool isNonsense = what == u"floods"_s && GetParam() == "start";
        EXPECT_EQ(error,
            speechEngineError(isNonsense ? SpeechEngineError::RecognizerEnded
                                         : SpeechEngineError::RecognizerHung))
            << what.toStdString();
    }
}

INSTANTIATE_TEST_SUITE_P(ProcessEngineTest, UnrulyTest,
    ::testing::Values("start", "begin", "sound", "finish"),
    [](const auto& parameter) { return parameter.param; });

TEST_F(ProcessEngineTest, AnotherVersionIsNotSpokenWith)
{
    ProcessEngine engine(settingsFor({u"old"_s}));
    EXPECT_EQ(hear(engine).error(), speechEngineError(SpeechEngineError::RecognizerEnded));
}

TEST_F(ProcessEngineTest, AModelThatEndsItsProcessTwiceInARowIsSaidToBeBroken)
{
    ProcessEngine::Settings settings = settingsFor({u"ends"_s, u"start"_s});
    settings.broken = {false, texts::brokenSphinxModel, u"/models/bad"_s};
    ProcessEngine engine(settings);
    engine.open();
    EXPECT_TRUE(engine.availability().isAvailable);
    EXPECT_FALSE(hear(engine));
    EXPECT_FALSE(engine.availability().isAvailable);
    EXPECT_EQ(engine.availability().text.en, texts::brokenSphinxModel.en);
    EXPECT_EQ(engine.availability().argument, u"/models/bad"_s);
}

TEST_F(ProcessEngineTest, ASlowStartIsNoBrokenModel)
{
    ProcessEngine engine(impatientFor({u"hangs"_s, u"start"_s}));
    EXPECT_FALSE(hear(engine));
    EXPECT_FALSE(hear(engine));
    EXPECT_TRUE(engine.availability().isAvailable);
}

TEST_F(ProcessEngineTest, AFreshProcessIsStartedAfterOneThatWasKilled)
{
    ProcessEngine engine(settingsFor({u"good"_s}));
    EXPECT_EQ(hear(engine), u"first"_s);
    const QString before = children().value(0);
    ASSERT_EQ(kill(before.toInt(), SIGKILL), 0);
    EXPECT_EQ(hear(engine).error(), speechEngineError(SpeechEngineError::RecognizerEnded));
    EXPECT_EQ(hear(engine), u"first"_s);
    EXPECT_NE(children(), QStringList{before});
}

TEST_F(ProcessEngineTest, AnUtteranceOfALostProcessDoesNotReachItsSuccessor)
{
    ProcessEngine engine(settingsFor({u"good"_s}));
    auto old = engine.begin({}, {});
    ASSERT_TRUE(old);
    ASSERT_EQ(kill(children().value(0).toInt(), SIGKILL), 0);
    EXPECT_FALSE((*old)->feed(sound));
    EXPECT_EQ(hear(engine), u"first"_s);
    EXPECT_FALSE((*old)->feed(sound));
    EXPECT_FALSE((*old)->finish());
}

TEST_F(ProcessEngineTest, AStopIsObeyedWhileTheProcessIsBusy)
{
    ProcessEngine engine(settingsFor({u"hangs"_s, u"finish"_s}));
    std::stop_source source;
    auto utterance = engine.begin({}, source.get_token());
    ASSERT_TRUE(utterance);
    std::thread stopper([&] {
        std::this_thread::sleep_for(50ms);
        source.request_stop();
    });
    EXPECT_EQ((*utterance)->finish().error(), speechEngineError(SpeechEngineError::Cancelled));
    stopper.join();
}

TEST_F(ProcessEngineTest, AnAnswerThatNobodyWaitedForIsPassedOver)
{
    ProcessEngine engine(settingsFor({u"good"_s}));
    std::stop_source source;
    auto stopped = engine.begin({}, source.get_token());
    ASSERT_TRUE(stopped);
    source.request_stop();
    static_cast<void>((*stopped)->finish()); // Its answer may be there already, and it may not.
    EXPECT_EQ(hear(engine), u"second"_s);
}

TEST_F(ProcessEngineTest, AtRestThereIsNoProcess)
{
    ProcessEngine engine(settingsFor({u"good"_s}));
    EXPECT_EQ(hear(engine), u"first"_s);
    engine.rest();
    EXPECT_EQ(children(), QStringList());
    EXPECT_TRUE(engine.availability().isAvailable);
    EXPECT_EQ(hear(engine), u"first"_s);
}

TEST_F(ProcessEngineTest, WhileAnUtteranceIsUnderWayThereIsNoRest)
{
    ProcessEngine engine(settingsFor({u"good"_s}));
    auto utterance = engine.begin({}, {});
    ASSERT_TRUE(utterance);
    engine.rest();
    ASSERT_TRUE((*utterance)->feed(sound));
    EXPECT_EQ((*utterance)->finish(), u"first"_s);
}

TEST_F(ProcessEngineTest, TheProcessEndsWithTheThreadThatStartedIt)
{
    qint64 number = 0;
    std::optional<ProcessEngine> engine;
    std::thread starter([&] {
        engine.emplace(settingsFor({u"good"_s}));
        engine->open();
        number = children().value(0).toLongLong();
    });
    starter.join();
    ASSERT_NE(number, 0);
    // Its parent has not asked for its end yet: it is dead before.
    EXPECT_TRUE(testing::waitUntil([&] {
        QFile status(u"/proc/%1/stat"_s.arg(number));
        return status.open(QIODevice::ReadOnly) && status.readAll().contains(") Z ");
    }));
}

} // namespace
} // namespace tavrin
