#include "app/session/SessionFixture.h"
#include "support/CapturedLog.h"

#include <thread>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

// From the end of the recording to the delivered text.
namespace tavrin {
namespace {

const QJsonObject notes{{u"name"_s, u"Notes"_s}, {u"bundleId"_s, u"org.example.notes"_s},
    {u"windowHint"_s, u"slack"_s}, {u"focusedRole"_s, u"AXTextArea"_s}};

class RecordingSessionProcessingTest : public testing::SessionFixture {
protected:
    void finishRecording(OperationMode mode, Seconds audio = 10s)
    {
        record(mode, audio);
        press(mode);
    }

    void rememberSessions(Seconds took, Seconds audio)
    {
        estimator.recordProcessingDuration(took, audio);
        estimator.recordProcessingDuration(took, audio);
    }
};

TEST_F(RecordingSessionProcessingTest, ThePanelGetsTheEstimateForTheLengthOfTheRecording)
{
    rememberSessions(3s, 10s);

    finishRecording(OperationMode::Dictation, 10s);

    ASSERT_TRUE(hud.estimate.has_value());
    EXPECT_DOUBLE_EQ(hud.estimate->count(), 3.0);
    failRecognition({});
}

TEST_F(RecordingSessionProcessingTest, WithoutEarlierSessionsThereIsNoEstimate)
{
    finishRecording(OperationMode::Dictation);

    EXPECT_FALSE(hud.estimate.has_value());
    failRecognition({});
}

TEST_F(RecordingSessionProcessingTest, AContinuedRecordingCountsWithoutItsPauses)
{
    rememberSessions(3s, 10s);

    record(OperationMode::Dictation, 4s);
    session->handleEscape();
    time.advance(60s);
    session->continueCurrentRecording();
    time.advance(6s);
    press(OperationMode::Dictation);
    ASSERT_TRUE(hud.estimate.has_value());
    EXPECT_DOUBLE_EQ(hud.estimate->count(), 3.0); // That of ten seconds.
    recognise(u"hello"_s);
    answerCloud(u"Hello."_s);
    deliver();

    EXPECT_EQ(recorders.recordings.size(), 1);
    EXPECT_EQ(saved.last().audio, 10s);
    const auto samples = preferences.value(keys::processingTimingSamples).toList();
    EXPECT_EQ(samples.last().toMap().value(u"audio"_s), QVariant(10.0));
}

TEST_F(RecordingSessionProcessingTest, ProcessingLastsFromTheEndOfTheRecordingToTheOutcome)
{
    finishRecording(OperationMode::Dictation);
    recognise(u"hello"_s);
    time.advance(2s);
    answerCloud(u"Hello."_s);
    deliver();

    const Seconds expected = recognitionTime + 2s + deliveryTime;
    EXPECT_NEAR(saved.last().processing.count(), expected.count(), 1e-9);
    const auto samples = preferences.value(keys::processingTimingSamples).toList();
    ASSERT_EQ(samples.size(), 1);
    EXPECT_NEAR(samples.last().toMap().value(u"processing"_s).toDouble(), expected.count(), 1e-9);
}

TEST_F(RecordingSessionProcessingTest, TheFileOfTheRecordingIsTranscribed)
{
    finishRecording(OperationMode::Dictation);
    time.advance(0s);

    ASSERT_EQ(fileRecognizer.calls.size(), 1U);
    EXPECT_EQ(fileRecognizer.calls.back().path, recorders.last().path);
    EXPECT_TRUE(recordingExists());
    failRecognition({});
}

TEST_F(RecordingSessionProcessingTest, DictationIsPolishedInTheChosenStyleWithoutTranslation)
{
    preferences.arrange(keys::outputStyle, u"casual"_s);
    preferences.arrange(keys::translationTarget, u"japanese"_s);

    complete(OperationMode::Dictation, u"um hello"_s, u"Hello."_s);

    EXPECT_EQ(http.requests().last().url.path(), u"/v1/text/polish"_s);
    EXPECT_EQ(sentObject(),
        (QJsonObject{{u"transcript"_s, u"um hello"_s}, {u"application"_s, notes},
            {u"style"_s, u"casual"_s}, {u"translation"_s, u"none"_s}}));
}

TEST_F(RecordingSessionProcessingTest, TranslationIsPolishedIntoTheTarget)
{
    preferences.arrange(keys::translationTarget, u"japanese"_s);

    complete(OperationMode::Translation, u"hello"_s, u"こんにちは"_s);

    EXPECT_EQ(http.requests().last().url.path(), u"/v1/text/polish"_s);
    EXPECT_EQ(sentObject(),
        (QJsonObject{{u"transcript"_s, u"hello"_s}, {u"application"_s, notes},
            {u"style"_s, u"professional"_s}, {u"translation"_s, u"japanese"_s}}));
}

TEST_F(RecordingSessionProcessingTest, ChatIsAskedWithTheNameOfTheApplication)
{
    complete(OperationMode::Chat, u"why"_s, u"Because."_s);

    EXPECT_EQ(http.requests().last().url.path(), u"/v1/text/chat"_s);
    EXPECT_EQ(sentObject(),
        (QJsonObject{
            {u"transcript"_s, u"why"_s}, {u"context"_s, u"应用：Notes（org.example.notes）"_s}}));
}

TEST_F(RecordingSessionProcessingTest, TheSettingsOfTheEndOfTheRecordingCount)
{
    record(OperationMode::Translation, 10s);
    preferences.arrange(keys::outputStyle, u"meeting"_s);
    preferences.arrange(keys::translationTarget, u"korean"_s);
    press(OperationMode::Translation);
    preferences.arrange(keys::outputStyle, u"casual"_s);
    preferences.arrange(keys::translationTarget, u"french"_s);
    recognise(u"hello"_s);

    EXPECT_EQ(sentObject().value(u"style"_s).toString(), u"meeting"_s);
    EXPECT_EQ(sentObject().value(u"translation"_s).toString(), u"korean"_s);
    answerCloud(u"안녕하세요"_s);
    deliver();
    EXPECT_EQ(saved.last().targetLanguage, u"korean"_s);
}

TEST_F(RecordingSessionProcessingTest, TheApplicationIsDescribedAsItIsAtTheEndOfTheRecording)
{
    record(OperationMode::Dictation, 10s);
    editor->role = u"AXTextField"_s;
    press(OperationMode::Dictation);
    editor->role = u"AXGroup"_s;
    recognise(u"um hello"_s);

    const QJsonObject sent = sentObject().value(u"application"_s).toObject();
    EXPECT_EQ(sent.value(u"focusedRole"_s).toString(), u"AXTextField"_s);
    answerCloud(u"Hello."_s);
    deliver();
    EXPECT_EQ(saved.last().application.value("focusedRole"), u"AXTextField"_s);
}

TEST_F(RecordingSessionProcessingTest, TheTextArrivesInTheEditor)
{
    complete(OperationMode::Dictation, u"um hello"_s, u"Hello."_s);

    EXPECT_EQ(editor->text, u"Hello."_s);
    EXPECT_EQ(pasteboard.string(), u"Hello."_s);
}

TEST_F(RecordingSessionProcessingTest, ADictationIsKeptInTheHistory)
{
    complete(OperationMode::Dictation, u"um hello"_s, u"Hello."_s);

    ASSERT_EQ(saved.size(), 1);
    const NewHistoryRecord& record = saved.last();
    EXPECT_EQ(record.transcript, u"um hello"_s);
    EXPECT_EQ(record.finalText, u"Hello."_s);
    EXPECT_EQ(record.delivery, u"自动输入已完成"_s);
    EXPECT_EQ(record.mode, u"dictation"_s);
    EXPECT_TRUE(record.targetLanguage.isNull());
    EXPECT_EQ(record.audio, 10s);
    EXPECT_EQ(QJsonObject::fromVariantMap(record.application), notes);
}

TEST_F(RecordingSessionProcessingTest, OnlyATranslationIsKeptWithItsTarget)
{
    complete(OperationMode::Translation, u"你好"_s, u"Hello."_s);
    complete(OperationMode::Chat, u"why"_s, u"Because."_s);

    ASSERT_EQ(saved.size(), 2);
    EXPECT_EQ(saved.first().mode, u"translation"_s);
    EXPECT_EQ(saved.first().targetLanguage, u"english"_s);
    EXPECT_EQ(saved.last().mode, u"chat"_s);
    EXPECT_TRUE(saved.last().targetLanguage.isNull());
}

TEST_F(RecordingSessionProcessingTest, AnUndeliveredTextIsKeptWithTheReason)
{
    workspace.activationSucceeds = false;

    complete(OperationMode::Dictation, u"um hello"_s, u"Hello."_s);

    EXPECT_EQ(saved.last().delivery, u"保存在剪贴板 · 无法重新激活目标应用"_s);
    EXPECT_EQ(saved.last().finalText, u"Hello."_s);
}

TEST_F(RecordingSessionProcessingTest, TheOutcomeIsStoredForTheHealthPage)
{
    complete(OperationMode::Dictation, u"um hello"_s, u"Hello."_s);
    EXPECT_EQ(preferences.value(keys::lastDeliveryVerified), QVariant(true));
    EXPECT_EQ(preferences.value(keys::lastDeliveryReason), QVariant(u""_s));

    workspace.activationSucceeds = false;
    complete(OperationMode::Dictation, u"um hello"_s, u"Hello."_s);
    EXPECT_EQ(preferences.value(keys::lastDeliveryVerified), QVariant(false));
    EXPECT_EQ(preferences.value(keys::lastDeliveryReason), QVariant(u"无法重新激活目标应用"_s));
}

TEST_F(RecordingSessionProcessingTest, ADictationNeverLosesItsWordsToTheService)
{
    finishRecording(OperationMode::Dictation);
    recognise(u"um hello"_s);
    http.fail(HttpFailure::Unreachable);
    time.advance(0s);
    deliver();

    EXPECT_EQ(editor->text, u"um hello"_s);
    EXPECT_EQ(saved.last().transcript, u"um hello"_s);
    EXPECT_EQ(saved.last().finalText, u"um hello"_s);
}

TEST_F(RecordingSessionProcessingTest, ASessionThatFailsIsNeitherKeptNorLearnedFrom)
{
    for (const OperationMode mode : {OperationMode::Translation, OperationMode::Chat}) {
        finishRecording(mode);
        recognise(u"hello"_s);
        failCloud(503, u"busy"_s);
        EXPECT_EQ(session->state(), SessionState::Idle);
        EXPECT_FALSE(recordingExists());
        EXPECT_EQ(accessibility.liveReferences, 0);
    }
    finishRecording(OperationMode::Dictation);
    failRecognition({u"Engine"_s, 5, u"no model"_s});

    EXPECT_EQ(session->state(), SessionState::Idle);
    EXPECT_FALSE(recordingExists());
    EXPECT_TRUE(saved.isEmpty());
    EXPECT_TRUE(pasteboard.string().isEmpty());
    EXPECT_FALSE(preferences.value(keys::processingTimingSamples).isValid());
    EXPECT_FALSE(preferences.value(keys::lastDeliveryVerified).isValid());
}

TEST_F(RecordingSessionProcessingTest, AFailureRestoresWhatWasChangedOfTheSound)
{
    preferHeadset();
    finishRecording(OperationMode::Dictation);
    EXPECT_EQ(devices.defaultInput, builtInMicrophone);
    audioEnvironment->applyPreferredMicrophoneForRecording(); // Changed since the recording ended.
    ASSERT_EQ(devices.defaultInput, headset);

    failRecognition({u"Engine"_s, 5, u"no model"_s});

    EXPECT_EQ(devices.defaultInput, builtInMicrophone);
    EXPECT_EQ(session->state(), SessionState::Idle);
    EXPECT_TRUE(trace.last().startsWith(u"alert: 语音处理失败 | "_s));
}

TEST_F(RecordingSessionProcessingTest, ARecordingThatBrokeOffExplainsWhyNothingWasUnderstood)
{
    record(OperationMode::Dictation, 10s);
    recorders.last().failure = {u"TavrinAudio"_s, 12, u"麦克风已断开。"_s};
    press(OperationMode::Dictation);
    failRecognition({u"TavrinSpeech"_s, 3, u"没有识别到有效语音。"_s});

    EXPECT_EQ(trace.last(), u"alert: 语音处理失败 | 麦克风已断开。"_s);
}

TEST_F(RecordingSessionProcessingTest, WhatABrokenOffRecordingHoldsIsDelivered)
{
    record(OperationMode::Dictation, 10s);
    recorders.last().failure = {u"TavrinAudio"_s, 12, u"麦克风已断开。"_s};
    press(OperationMode::Dictation);
    recognise(u"um hello"_s);
    answerCloud(u"Hello."_s);
    deliver();

    EXPECT_EQ(session->state(), SessionState::Idle);
    EXPECT_EQ(saved.last().finalText, u"Hello."_s);
}

TEST_F(RecordingSessionProcessingTest, AtTheEndTheRecordingAndTheReferencesAreGone)
{
    complete(OperationMode::Dictation, u"um hello"_s, u"Hello."_s);
    EXPECT_FALSE(recordingExists());
    EXPECT_EQ(accessibility.liveReferences, 0);

    workspace.activationSucceeds = false;
    complete(OperationMode::Dictation, u"um hello"_s, u"Hello."_s);
    EXPECT_FALSE(recordingExists());
    EXPECT_EQ(accessibility.liveReferences, 0);
    EXPECT_EQ(time.pending(), 0U);
}

TEST_F(RecordingSessionProcessingTest, TheRecordingIsThereUntilTheLastSound)
{
    bool existed = false;
    onNote = [&](const QString& line) {
        if (line == "sound success"_L1)
            existed = recordingExists();
    };

    complete(OperationMode::Dictation, u"um hello"_s, u"Hello."_s);

    EXPECT_TRUE(existed);
    EXPECT_FALSE(recordingExists());
}

TEST_F(RecordingSessionProcessingTest, TheHistoryIsWrittenWhenTheStateIsIdleAgain)
{
    std::optional<SessionState> state;
    onNote = [&](const QString& line) {
        if (line == "save history"_L1)
            state = session->state();
    };

    complete(OperationMode::Dictation, u"um hello"_s, u"Hello."_s);

    EXPECT_EQ(state, SessionState::Idle);
}

TEST_F(RecordingSessionProcessingTest, TheTranscriptMayComeFromAnyThread)
{
    finishRecording(OperationMode::Dictation);
    time.advance(recognitionTime);

    std::thread([this] { fileRecognizer.calls.back().answer(u"um hello"_s); }).join();
    EXPECT_TRUE(http.requests().isEmpty());

    time.advance(0s);
    EXPECT_EQ(http.requests().size(), 1);
    answerCloud(u"Hello."_s);
    deliver();
    EXPECT_EQ(editor->text, u"Hello."_s);
}

TEST_F(RecordingSessionProcessingTest, AFailureMayComeFromAnyThread)
{
    finishRecording(OperationMode::Dictation);
    time.advance(0s);

    std::thread([this] {
        fileRecognizer.calls.back().fail({u"Engine"_s, 5, u"no model"_s});
    }).join();
    EXPECT_EQ(session->state(), SessionState::Processing);

    time.advance(0s);
    EXPECT_EQ(session->state(), SessionState::Idle);
}

TEST_F(RecordingSessionProcessingTest, TheAnswerOfTheServiceTakesItsTurnOnTheMainQueue)
{
    finishRecording(OperationMode::Translation);
    recognise(u"你好"_s);

    http.answer(500);
    EXPECT_EQ(session->state(), SessionState::Processing);

    time.advance(0s);
    EXPECT_EQ(session->state(), SessionState::Idle);
}

TEST_F(RecordingSessionProcessingTest, TheNextSessionStartsAfterwards)
{
    complete(OperationMode::Dictation, u"um hello"_s, u"Hello."_s);
    complete(OperationMode::Chat, u"why"_s, u"Because."_s);

    EXPECT_EQ(editor->text, u"Hello.Because."_s);
    EXPECT_EQ(saved.size(), 2);
    EXPECT_EQ(saved.last().transcript, u"why"_s);
}

TEST_F(RecordingSessionProcessingTest, ASessionDestroyedWhileTranscribingDoesNothingMore)
{
    finishRecording(OperationMode::Dictation);
    time.advance(0s);

    endSession();
    trace.clear();
    fileRecognizer.calls.back().answer(u"um hello"_s);
    time.advance(1s);

    EXPECT_TRUE(trace.isEmpty());
    EXPECT_FALSE(recordingExists());
}

TEST_F(RecordingSessionProcessingTest, ASessionDestroyedWhileTheServiceAnswersDoesNothingMore)
{
    finishRecording(OperationMode::Dictation);
    recognise(u"um hello"_s);

    endSession();
    trace.clear();
    answerCloud(u"Hello."_s);
    time.advance(1s);

    EXPECT_TRUE(trace.isEmpty());
    EXPECT_TRUE(pasteboard.string().isEmpty());
}

TEST_F(RecordingSessionProcessingTest, ASessionDestroyedWhileDeliveringKeepsNothing)
{
    finishRecording(OperationMode::Dictation);
    recognise(u"um hello"_s);
    answerCloud(u"Hello."_s);

    endSession();
    deliver();

    EXPECT_TRUE(saved.isEmpty());
    EXPECT_FALSE(preferences.value(keys::lastDeliveryVerified).isValid());
}

TEST_F(RecordingSessionProcessingTest, TheLogTellsHowLongEveryStageTookAndNothingOfTheText)
{
    const testing::CapturedLog log;

    complete(OperationMode::Dictation, u"um hello"_s, u"Hello."_s);

    const QString stages =
        u"stages: start 0.0 ms, recording 10000.0 ms, stop 0.0 ms, "
        "recogniser 1000.0 ms, service 0.0 ms, delivery 780.0 ms, closing 0.0 ms"_s;
    EXPECT_EQ(testing::CapturedLog::lines().filter(u"stages"_s), QStringList{stages});
    EXPECT_TRUE(testing::CapturedLog::lines().filter(u"hello"_s, Qt::CaseInsensitive).isEmpty());
}

TEST_F(RecordingSessionProcessingTest, TheLogTellsHowFarAFailedSessionCame)
{
    const testing::CapturedLog log;

    finishRecording(OperationMode::Translation);
    failRecognition({u"TavrinSpeech"_s, 1, u"no speech"_s});

    const QString stages =
        u"stages: start 0.0 ms, recording 10000.0 ms, stop 0.0 ms, recogniser 0.0 ms"_s;
    EXPECT_EQ(testing::CapturedLog::lines().filter(u"stages"_s), QStringList{stages});
}

} // namespace
} // namespace tavrin
