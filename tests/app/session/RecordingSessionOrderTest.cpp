#include "app/session/SessionFixture.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

// The exact order of everything that a session does, one test for each path through it.
namespace tavrin {
namespace {

class RecordingSessionOrderTest : public testing::SessionFixture {
protected:
    RecordingSessionOrderTest()
    {
        // Makes visible when the audio environment is changed and when it is restored.
        preferHeadset();
        muteDuringRecording();
    }

    /// One line each, so that a difference is easy to read.
    static std::string lines(const QStringList& trace) { return trace.join(u'\n').toStdString(); }

    void expectTrace(const QStringList& expected)
    {
        EXPECT_EQ(lines(takeTrace()), lines(expected));
    }
};

const QStringList finishedCapture{
    u"stop live text"_s,
    u"stop recorder"_s,
    u"drop recorder"_s,
    u"mute 3 0"_s,
    u"input 1"_s,
};

QStringList startOf(const QString& operation, const QString& shortcut, const QString& status)
{
    return {
        u"finish learning and analyze"_s,
        u"capture target"_s,
        u"input 2"_s,
        u"create recorder"_s,
        u"meter on"_s,
        u"prepare recorder"_s,
        u"record"_s,
        u"status "_s + status,
        u"panel operation "_s + operation,
        u"panel shortcut "_s + shortcut,
        u"panel recording"_s,
        u"start live text"_s,
        u"sound start"_s,
        u"mute 3 1"_s,
    };
}

QStringList finishUpToTheRequest(const QString& request)
{
    return finishedCapture
        + QStringList{
            u"status …"_s,
            u"panel processing"_s,
            u"sound stop"_s,
            u"transcribe"_s,
            u"POST "_s + request,
        };
}

QStringList deliveryOf(const QString& text)
{
    return {
        u"pasteboard: "_s + text,
        u"activate Notes"_s,
        u"paste"_s,
    };
}

const QStringList closing{
    u"store processingTimingSamples"_s,
    u"status icon"_s,
    u"store lastDeliveryVerified"_s,
    u"store lastDeliveryReason"_s,
    u"synchronize"_s,
    u"refresh health"_s,
    u"save history"_s,
};

QStringList failureWith(const QString& title, const QString& detail)
{
    return {
        u"status icon"_s,
        u"panel hide"_s,
        u"alert: %1 | %2"_s.arg(title, detail),
    };
}

TEST_F(RecordingSessionOrderTest, ADictationThatArrives)
{
    complete(OperationMode::Dictation, u"um hello"_s, u"Hello."_s);

    expectTrace(startOf(u"dictation"_s, u"Right Option"_s, u"●"_s)
        + finishUpToTheRequest(u"/v1/text/polish"_s) + deliveryOf(u"Hello."_s) + closing
        + QStringList{u"begin learning: Hello."_s, u"panel success"_s, u"sound success"_s});
    EXPECT_EQ(time.pending(), 0U);
}

TEST_F(RecordingSessionOrderTest, ATranslationThatArrives)
{
    complete(OperationMode::Translation, u"你好"_s, u"Hello."_s);

    expectTrace(startOf(u"translation"_s, u"⌥ Space"_s, u"译"_s)
        + finishUpToTheRequest(u"/v1/text/polish"_s) + deliveryOf(u"Hello."_s) + closing
        + QStringList{u"begin learning: Hello."_s, u"panel success"_s, u"sound success"_s});
}

TEST_F(RecordingSessionOrderTest, AChatAnswerThatArrivesIsNotLearnedFrom)
{
    complete(OperationMode::Chat, u"why"_s, u"Because."_s);

    expectTrace(startOf(u"chat"_s, u"⇧⌘ Space"_s, u"聊"_s)
        + finishUpToTheRequest(u"/v1/text/chat"_s) + deliveryOf(u"Because."_s) + closing
        + QStringList{u"panel success"_s, u"sound success"_s});
}

TEST_F(RecordingSessionOrderTest, ATextThatStaysOnThePasteboard)
{
    workspace.activationSucceeds = false;

    complete(OperationMode::Dictation, u"um hello"_s, u"Hello."_s);

    expectTrace(startOf(u"dictation"_s, u"Right Option"_s, u"●"_s)
        + finishUpToTheRequest(u"/v1/text/polish"_s)
        + QStringList{u"pasteboard: Hello."_s, u"activate Notes"_s} + closing
        + QStringList{u"panel clipboard: 无法重新激活目标应用；请按 ⌘V"_s, u"sound error"_s});
}

TEST_F(RecordingSessionOrderTest, ADictationWhoseServiceFailsDeliversWhatWasSaid)
{
    record(OperationMode::Dictation, 10s);
    press(OperationMode::Dictation);
    recognise(u"um hello"_s);
    failCloud(500, u"broken"_s);
    deliver();

    expectTrace(startOf(u"dictation"_s, u"Right Option"_s, u"●"_s)
        + finishUpToTheRequest(u"/v1/text/polish"_s) + deliveryOf(u"um hello"_s) + closing
        + QStringList{u"begin learning: um hello"_s, u"panel success"_s, u"sound success"_s});
}

TEST_F(RecordingSessionOrderTest, ATranslationWhoseServiceFails)
{
    record(OperationMode::Translation, 10s);
    press(OperationMode::Translation);
    recognise(u"你好"_s);
    failCloud(500, u"broken"_s);

    expectTrace(startOf(u"translation"_s, u"⌥ Space"_s, u"译"_s)
        + finishUpToTheRequest(u"/v1/text/polish"_s) + failureWith(u"语音处理失败"_s, u"broken"_s));
    EXPECT_EQ(time.pending(), 0U);
}

TEST_F(RecordingSessionOrderTest, AChatWhoseServiceFails)
{
    record(OperationMode::Chat, 10s);
    press(OperationMode::Chat);
    recognise(u"why"_s);
    failCloud(500, u"broken"_s);

    expectTrace(startOf(u"chat"_s, u"⇧⌘ Space"_s, u"聊"_s)
        + finishUpToTheRequest(u"/v1/text/chat"_s) + failureWith(u"语音处理失败"_s, u"broken"_s));
}

TEST_F(RecordingSessionOrderTest, ARecordingThatCannotBeUnderstood)
{
    record(OperationMode::Dictation, 10s);
    press(OperationMode::Dictation);
    failRecognition({u"Engine"_s, 5, u"no model"_s});

    expectTrace(startOf(u"dictation"_s, u"Right Option"_s, u"●"_s) + finishedCapture
        + QStringList{u"status …"_s, u"panel processing"_s, u"sound stop"_s, u"transcribe"_s}
        + failureWith(u"语音处理失败"_s, u"no model"_s));
    EXPECT_EQ(time.pending(), 0U);
}

TEST_F(RecordingSessionOrderTest, AStartWithoutAccount)
{
    preferences.remove(keys::cloudAccessToken);

    press(OperationMode::Dictation);

    expectTrace({u"show login"_s});
    EXPECT_EQ(time.pending(), 0U);
}

TEST_F(RecordingSessionOrderTest, AStartWithoutRecorder)
{
    recorders.creationError = Error{u"Recorder"_s, 4, u"no microphone"_s};

    press(OperationMode::Dictation);

    expectTrace({u"finish learning and analyze"_s, u"capture target"_s, u"input 2"_s,
        u"create recorder"_s, u"input 1"_s, u"alert: 无法开始录音 | no microphone"_s});
    EXPECT_EQ(time.pending(), 0U);
}

TEST_F(RecordingSessionOrderTest, AStartWhoseRecorderCannotPrepare)
{
    recorders.preparationSucceeds = false;

    press(OperationMode::Dictation);

    expectTrace({u"finish learning and analyze"_s, u"capture target"_s, u"input 2"_s,
        u"create recorder"_s, u"meter on"_s, u"prepare recorder"_s, u"drop recorder"_s,
        u"input 1"_s, u"alert: 无法开始录音 | 请检查麦克风权限。"_s});
}

TEST_F(RecordingSessionOrderTest, AStartWhoseRecorderCannotRecord)
{
    recorders.recordingSucceeds = false;

    press(OperationMode::Dictation);

    expectTrace({u"finish learning and analyze"_s, u"capture target"_s, u"input 2"_s,
        u"create recorder"_s, u"meter on"_s, u"prepare recorder"_s, u"record"_s, u"drop recorder"_s,
        u"input 1"_s, u"alert: 无法开始录音 | 请检查麦克风权限。"_s});
}

TEST_F(RecordingSessionOrderTest, AStartWhoseRecorderTellsWhatItLacks)
{
    recorders.refusal = {u"TavrinAudio"_s, 11, u"没有可用的麦克风。"_s};
    for (bool* const step : {&recorders.preparationSucceeds, &recorders.recordingSucceeds}) {
        *step = false;
        press(OperationMode::Dictation);

        EXPECT_EQ(trace.last(), u"alert: 无法开始录音 | 没有可用的麦克风。"_s);
        EXPECT_EQ(session->state(), SessionState::Idle);
        *step = true;
    }
}

TEST_F(RecordingSessionOrderTest, ARecordingThatIsCancelledAfterTheQuestion)
{
    record(OperationMode::Dictation, 1s);
    trace.clear();

    session->handleEscape();
    expectTrace({u"pause recorder"_s, u"stop live text"_s, u"panel cancel?"_s});

    session->handleEscape();
    expectTrace({u"stop recorder"_s, u"drop recorder"_s, u"mute 3 0"_s, u"input 1"_s,
        u"status icon"_s, u"panel hide"_s, u"sound cancel"_s});
}

TEST_F(RecordingSessionOrderTest, ARecordingThatIsCancelledAtOnce)
{
    record(OperationMode::Dictation, 1s);
    trace.clear();

    session->cancelCurrentRecording();

    expectTrace(
        finishedCapture + QStringList{u"status icon"_s, u"panel hide"_s, u"sound cancel"_s});
}

TEST_F(RecordingSessionOrderTest, ARecordingThatGoesOnAfterTheQuestion)
{
    record(OperationMode::Dictation, 1s);
    session->handleEscape();
    trace.clear();

    session->continueCurrentRecording();

    expectTrace({u"record"_s, u"panel recording"_s, u"start live text"_s});
}

} // namespace
} // namespace tavrin
