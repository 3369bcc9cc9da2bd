#include "app/session/SessionFixture.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

// From the press of a shortcut to the end of the recording.
namespace tavrin {
namespace {

const QList<OperationMode> allModes{
    OperationMode::Dictation, OperationMode::Translation, OperationMode::Chat};

class RecordingSessionTest : public testing::SessionFixture { };

TEST_F(RecordingSessionTest, ASessionGoesFromIdleToRecordingToProcessingToIdle)
{
    EXPECT_EQ(session->state(), SessionState::Idle);

    press(OperationMode::Translation);
    EXPECT_EQ(session->state(), SessionState::Recording);
    EXPECT_EQ(session->activeOperationMode(), OperationMode::Translation);

    time.advance(5s);
    press(OperationMode::Translation);
    EXPECT_EQ(session->state(), SessionState::Processing);

    recognise(u"你好"_s);
    answerCloud(u"Hello."_s);
    EXPECT_EQ(session->state(), SessionState::Processing);

    deliver();
    EXPECT_EQ(session->state(), SessionState::Idle);
    EXPECT_EQ(session->activeOperationMode(), OperationMode::Translation);
}

TEST_F(RecordingSessionTest, OnlyItsOwnOperationFinishesARecording)
{
    for (const OperationMode mode : allModes) {
        press(mode);
        for (const OperationMode other : allModes) {
            if (other == mode)
                continue;
            trace.clear();
            press(other);
            EXPECT_EQ(trace, QStringList{u"beep"_s});
            EXPECT_EQ(session->state(), SessionState::Recording);
            EXPECT_EQ(session->activeOperationMode(), mode);
        }
        session->cancelCurrentRecording();
    }
}

TEST_F(RecordingSessionTest, APressWhileProcessingBeeps)
{
    record(OperationMode::Dictation, 1s);
    press(OperationMode::Dictation);

    for (const OperationMode mode : allModes) {
        trace.clear();
        press(mode);
        EXPECT_EQ(trace, QStringList{u"beep"_s});
        EXPECT_EQ(session->state(), SessionState::Processing);
        EXPECT_EQ(session->activeOperationMode(), OperationMode::Dictation);
    }
    failRecognition({});
}

TEST_F(RecordingSessionTest, APressWhileTheCancellationIsAskedForBeeps)
{
    record(OperationMode::Dictation, 1s);
    session->handleEscape();

    for (const OperationMode mode : allModes) {
        trace.clear();
        press(mode);
        EXPECT_EQ(trace, QStringList{u"beep"_s});
    }
    EXPECT_EQ(session->state(), SessionState::Recording);
}

TEST_F(RecordingSessionTest, EitherTokenIsEnoughToStart)
{
    preferences.remove(keys::cloudAccessToken);
    preferences.arrange(keys::cloudRefreshToken, u"refresh"_s);
    press(OperationMode::Dictation);
    EXPECT_EQ(session->state(), SessionState::Recording);
}

TEST_F(RecordingSessionTest, WithoutAnAccountNothingIsRecorded)
{
    preferences.arrange(keys::cloudAccessToken, u""_s);
    preferences.arrange(keys::cloudRefreshToken, 17);

    press(OperationMode::Dictation);

    EXPECT_EQ(trace, QStringList{u"show login"_s});
    EXPECT_EQ(session->state(), SessionState::Idle);
    EXPECT_TRUE(recorders.recordings.isEmpty());
}

TEST_F(RecordingSessionTest, ARecordingGoesIntoAFileOfItsOwnWithTheAgreedSettings)
{
    press(OperationMode::Dictation);
    const auto& first = recorders.last();
    EXPECT_TRUE(first.path.startsWith(folder.path() + u"/tavrin-"_s));
    EXPECT_TRUE(first.path.endsWith(u".m4a"_s));
    EXPECT_EQ(first.settings, (AudioRecorderSettings{1633772320, 16000, 1, 96}));
    EXPECT_TRUE(first.metering);
    EXPECT_TRUE(first.recording);
    session->cancelCurrentRecording();

    press(OperationMode::Dictation);
    EXPECT_NE(recorders.recordings.first()->path, recorders.last().path);
}

TEST_F(RecordingSessionTest, AStartThatFailsLeavesNothingBehind)
{
    recorders.recordingSucceeds = false;

    press(OperationMode::Dictation);

    EXPECT_EQ(session->state(), SessionState::Idle);
    EXPECT_FALSE(recordingExists());
    recorders.recordingSucceeds = true;
    press(OperationMode::Chat);
    EXPECT_EQ(session->state(), SessionState::Recording);
}

TEST_F(RecordingSessionTest, AnErrorWithoutWordsAsksToCheckThePermission)
{
    recorders.creationError = Error{u"Recorder"_s, 4, {}};

    press(OperationMode::Dictation);

    EXPECT_EQ(trace.last(), u"alert: 无法开始录音 | 请检查麦克风权限。"_s);
}

TEST_F(RecordingSessionTest, TheTargetIsWhatIsInFrontWhenTheRecordingStarts)
{
    press(OperationMode::Dictation);
    workspace.frontmost = RunningApplication{8, u"Mail"_s, u"org.example.mail"_s, 0};

    EXPECT_EQ(target.targetApplication()->processIdentifier, editorProcess);
    EXPECT_NE(target.targetFocusedElement(), nullptr);
    EXPECT_NE(target.targetFocusedWindow(), nullptr);
}

TEST_F(RecordingSessionTest, WithoutTrustTheTargetHasNoElements)
{
    accessibility.trusted = false;

    press(OperationMode::Dictation);

    EXPECT_EQ(target.targetApplication()->processIdentifier, editorProcess);
    EXPECT_EQ(target.targetFocusedElement(), nullptr);
    EXPECT_EQ(target.targetFocusedWindow(), nullptr);
}

TEST_F(RecordingSessionTest, ThePanelIsToldTheOperationAndTheShortcutThatFinishesIt)
{
    const QList<std::tuple<OperationMode, QString, QString>> expected{
        {OperationMode::Dictation, u"dictation"_s, u"Right Option"_s},
        {OperationMode::Translation, u"translation"_s, u"⌥ Space"_s},
        {OperationMode::Chat, u"chat"_s, u"⇧⌘ Space"_s},
    };
    for (const auto& [mode, operation, shortcut] : expected) {
        press(mode);
        EXPECT_EQ(hud.operation, operation);
        EXPECT_EQ(hud.shortcut, shortcut);
        session->cancelCurrentRecording();
    }
}

TEST_F(RecordingSessionTest, AnOperationWithoutShortcutIsShownAsNotSet)
{
    for (const QString& key : {keys::dictationShortcutIdentifiers,
             keys::translationShortcutIdentifiers, keys::chatShortcutIdentifiers})
        preferences.arrange(key, QStringList());

    for (const OperationMode mode : allModes) {
        press(mode);
        EXPECT_EQ(hud.shortcut, u"Not set"_s);
        session->cancelCurrentRecording();
    }
}

TEST_F(RecordingSessionTest, ThePanelWatchesTheRecorderUntilItIsDropped)
{
    press(OperationMode::Dictation);
    EXPECT_FALSE(hud.recorder.expired());

    press(OperationMode::Dictation);
    EXPECT_TRUE(hud.recorder.expired());
    failRecognition({});
}

TEST_F(RecordingSessionTest, LiveTextIsShownWhileRecording)
{
    press(OperationMode::Dictation);
    const auto& live = liveRecognizer.calls.back();

    live.answer(u"hel"_s, false);
    live.answer(u"hello"_s, false);
    time.advance(0s);
    EXPECT_EQ(hud.transcripts, (QStringList{u"hel"_s, u"hello"_s}));

    live.answer(u"hello you"_s, false);
    press(OperationMode::Dictation);
    time.advance(0s);
    EXPECT_EQ(hud.transcripts.size(), 2); // What was under way is dropped.
    failRecognition({});
}

TEST_F(RecordingSessionTest, ARecordingGoesOnWithoutLiveText)
{
    liveRecognizer.startFailure = Error{u"Device"_s, 1, u"busy"_s};
    press(OperationMode::Dictation);
    EXPECT_EQ(session->state(), SessionState::Recording);
    EXPECT_EQ(trace.last(), u"sound start"_s);
    session->cancelCurrentRecording();

    liveRecognizer.startFailure.reset();
    liveRecognizer.available = false;
    press(OperationMode::Dictation);
    EXPECT_EQ(session->state(), SessionState::Recording);
    EXPECT_EQ(trace.last(), u"sound start"_s);
}

TEST_F(RecordingSessionTest, OtherSoundIsMutedAfter220Milliseconds)
{
    muteDuringRecording();

    press(OperationMode::Dictation);
    time.advance(219ms);
    EXPECT_TRUE(devices.writes.isEmpty());

    time.advance(1ms);
    EXPECT_EQ(devices.writes, QStringList{u"mute 3 1"_s});
    EXPECT_EQ(time.pending(), 0U);
}

TEST_F(RecordingSessionTest, OtherSoundIsLeftAloneUnlessTheUserAskedForIt)
{
    record(OperationMode::Dictation, 1s);

    EXPECT_TRUE(devices.writes.isEmpty());
}

TEST_F(RecordingSessionTest, ARecordingThatIsOverByThenMutesNothing)
{
    muteDuringRecording();

    record(OperationMode::Dictation, 100ms);
    press(OperationMode::Dictation);
    time.advance(1s);

    EXPECT_TRUE(devices.writes.isEmpty());
    failRecognition({});
}

TEST_F(RecordingSessionTest, TheNextRecordingIsMutedAfterItsOwnStartSound)
{
    muteDuringRecording();

    record(OperationMode::Dictation, 100ms);
    session->cancelCurrentRecording();
    press(OperationMode::Dictation);
    time.advance(219ms);
    EXPECT_TRUE(devices.writes.isEmpty());

    time.advance(1ms);
    EXPECT_EQ(devices.writes, QStringList{u"mute 3 1"_s});
}

TEST_F(RecordingSessionTest, EscapeMeansNothingUnlessRecording)
{
    session->handleEscape();
    session->cancelCurrentRecording();
    session->continueCurrentRecording();
    EXPECT_TRUE(trace.isEmpty());

    record(OperationMode::Dictation, 1s);
    press(OperationMode::Dictation);
    time.advance(0s);
    trace.clear();
    session->handleEscape();
    session->cancelCurrentRecording();
    session->continueCurrentRecording();
    EXPECT_TRUE(trace.isEmpty());
    EXPECT_EQ(session->state(), SessionState::Processing);
    failRecognition({});
}

TEST_F(RecordingSessionTest, EscapePausesAndAsks)
{
    record(OperationMode::Dictation, 2s);

    session->handleEscape();

    EXPECT_EQ(session->state(), SessionState::Recording);
    EXPECT_FALSE(recorders.last().recording);
    EXPECT_FALSE(recorders.last().stopped);
    EXPECT_FALSE(liveRecognizer.calls.back().isRunning());
    EXPECT_TRUE(recordingExists());
}

TEST_F(RecordingSessionTest, EscapeTwiceCancels)
{
    record(OperationMode::Dictation, 2s);

    session->handleEscape();
    session->handleEscape();

    EXPECT_EQ(session->state(), SessionState::Idle);
    EXPECT_FALSE(recordingExists());
    EXPECT_FALSE(target.targetApplication().has_value());
    EXPECT_EQ(accessibility.liveReferences, 0);
    EXPECT_TRUE(fileRecognizer.calls.empty());
    EXPECT_TRUE(saved.isEmpty());
}

TEST_F(RecordingSessionTest, TheRecordingIsGoneBeforeTheCancelSound)
{
    record(OperationMode::Dictation, 2s);
    bool existed = true;
    onNote = [&](const QString& line) {
        if (line == "sound cancel"_L1)
            existed = recordingExists();
    };

    session->cancelCurrentRecording();

    EXPECT_FALSE(existed);
}

TEST_F(RecordingSessionTest, ThePanelsButtonsCancelAndContinue)
{
    record(OperationMode::Dictation, 2s);
    session->handleEscape();
    hud.continueRecording();
    EXPECT_EQ(session->state(), SessionState::Recording);
    EXPECT_TRUE(recorders.last().recording);

    session->handleEscape();
    hud.confirm();
    EXPECT_EQ(session->state(), SessionState::Idle);
}

TEST_F(RecordingSessionTest, ThePanelsButtonsDoNothingOnceTheSessionIsGone)
{
    record(OperationMode::Dictation, 2s);
    session->handleEscape();
    endSession();
    trace.clear();

    hud.confirm();
    hud.continueRecording();

    EXPECT_TRUE(trace.isEmpty());
}

TEST_F(RecordingSessionTest, AContinuedRecordingUsesTheSameFileAndFreshLiveText)
{
    record(OperationMode::Dictation, 2s);
    session->handleEscape();
    time.advance(30s);
    session->continueCurrentRecording();

    EXPECT_EQ(recorders.recordings.size(), 1);
    ASSERT_EQ(liveRecognizer.calls.size(), 2U);
    liveRecognizer.calls.front().answer(u"old"_s, false);
    liveRecognizer.calls.back().answer(u"new"_s, false);
    time.advance(0s);
    EXPECT_EQ(hud.transcripts, QStringList{u"new"_s});

    time.advance(3s);
    press(OperationMode::Dictation);
    EXPECT_EQ(session->state(), SessionState::Processing);
    failRecognition({});
}

TEST_F(RecordingSessionTest, ARecordingThatCannotGoOnKeepsWhatWasSaidAndTellsWhy)
{
    const Error lost{u"TavrinAudio"_s, 12, u"麦克风已断开。"_s};
    record(OperationMode::Dictation, 2s);
    session->handleEscape();
    recorders.recordingSucceeds = false;
    recorders.refusal = lost;

    session->continueCurrentRecording();

    EXPECT_EQ(session->state(), SessionState::Recording);
    EXPECT_EQ(hud.recorder.lock()->failure(), lost); // The panel shows it.
    press(OperationMode::Dictation);
    failRecognition({u"TavrinSpeech"_s, 11, u"没有识别到有效语音，请再试一次。"_s});
    EXPECT_EQ(trace.last(), u"alert: 语音处理失败 | 麦克风已断开。"_s);
}

TEST_F(RecordingSessionTest, AfterContinuingEscapeAsksAgain)
{
    record(OperationMode::Dictation, 2s);
    session->handleEscape();
    session->continueCurrentRecording();

    session->handleEscape();

    EXPECT_EQ(session->state(), SessionState::Recording);
}

TEST_F(RecordingSessionTest, ACancelledQuestionIsForgottenByTheNextRecording)
{
    record(OperationMode::Dictation, 2s);
    session->handleEscape();
    session->handleEscape();

    record(OperationMode::Dictation, 2s);
    session->handleEscape();

    EXPECT_EQ(session->state(), SessionState::Recording);
}

TEST_F(RecordingSessionTest, ASessionThatIsDestroyedWhileRecordingDeletesItsFile)
{
    muteDuringRecording();
    press(OperationMode::Dictation);
    liveRecognizer.calls.back().answer(u"hello"_s, false);

    endSession();
    time.advance(1s);

    EXPECT_FALSE(recordingExists());
    EXPECT_TRUE(hud.transcripts.isEmpty());
    EXPECT_TRUE(devices.writes.isEmpty());
}

} // namespace
} // namespace tavrin
