#include "speech/SystemTranscriber.h"

#include "base/LocalizedText.h"
#include "support/QtPrinters.h"
#include "support/ports/InMemoryPermissions.h"
#include "support/ports/VirtualTime.h"
#include "support/sound/InMemorySpeechRecognizers.h"

#include <gtest/gtest.h>

#include <thread>

using namespace std::chrono_literals;

namespace tavrin {
namespace {

class SystemTranscriberTest : public ::testing::Test {
protected:
    testing::VirtualTime time;
    testing::InMemoryFileSpeechRecognizer recognizer;
    testing::InMemoryPermissions permissions;
    QStringList terms{"Tavrin", "Anna"};
    SystemTranscriber transcriber{recognizer, permissions, time, [this] { return terms; }};
    QList<Result<QString>> reports;

    void transcribe(const QString& path = "recording.m4a")
    {
        requestTranscript(path);
        time.advance(0s);
    }

    void requestTranscript(const QString& path)
    {
        transcriber.transcribe(
            path, [this](const Result<QString>& report) { reports.append(report); });
    }

    Error onlyError() const
    {
        return reports.size() == 1 && !reports.first() ? reports.first().error() : Error{};
    }

    QString onlyTranscript() const
    {
        return reports.size() == 1 ? reports.first().value_or(QString{}) : QString{};
    }
};

/// A status that is no permission, and the code of its error.
struct StatusCode {
    AuthorizationStatus status;
    int code;
};

class SystemTranscriberStatusTest : public SystemTranscriberTest,
                                    public ::testing::WithParamInterface<StatusCode> { };

TEST_P(SystemTranscriberStatusTest, WithoutPermissionTheStatusIsTheCodeAndNothingIsRequested)
{
    permissions.speech = GetParam().status;

    transcribe();

    EXPECT_EQ(onlyError(),
        (Error{"TavrinSpeech", GetParam().code,
            QStringLiteral("请在“系统设置 → 隐私与安全性 → 语音识别”中允许 Tavrin。")}));
    EXPECT_TRUE(recognizer.calls.empty());
}

INSTANTIATE_TEST_SUITE_P(NotAuthorized, SystemTranscriberStatusTest,
    ::testing::Values(StatusCode{AuthorizationStatus::NotDetermined, 0},
        StatusCode{AuthorizationStatus::Denied, 1}, StatusCode{AuthorizationStatus::Restricted, 2}),
    [](const auto& given) { return "Code" + std::to_string(given.param.code); });

TEST_F(SystemTranscriberTest, AnUnavailableRecognizerIsCodeTen)
{
    recognizer.available = false;

    transcribe();

    EXPECT_EQ(onlyError(),
        (Error{
            "TavrinSpeech", 10, QStringLiteral("macOS 语音识别当前不可用，请检查网络后重试。")}));
    EXPECT_TRUE(recognizer.calls.empty());
}

TEST_F(SystemTranscriberTest, AnUnavailableRecognizerThatKnowsWhatItLacksSaysIt)
{
    recognizer.available = false;
    recognizer.availabilityText = LocalizedText{u"语音模型无法加载：%1", u"語音模型無法載入：%1"};
    recognizer.availabilityArgument = "/models/100%2";

    transcribe();

    EXPECT_EQ(onlyError(),
        (Error{"TavrinSpeech", 10, QStringLiteral("语音模型无法加载：/models/100%2")}));
}

TEST_F(SystemTranscriberTest, ARefusedPermissionIsToldBeforeAnUnavailableRecognizer)
{
    recognizer.available = false;
    permissions.speech = AuthorizationStatus::Denied;

    transcribe();

    EXPECT_EQ(permissions.speechRequests, 1);
    EXPECT_EQ(onlyError().code, 1);
}

TEST_F(SystemTranscriberTest, TheErrorsSayWhatTheyAreGiven)
{
    SystemTranscriber worded{recognizer, permissions, time, [this] { return terms; },
        {.speechNotAllowed = [] { return QStringLiteral("no engine"); },
            .speechUnavailable = [] { return QStringLiteral("no server"); }}};
    QStringList messages;
    const auto heard = [&](const Result<QString>& report) {
        messages.append(report ? QString() : report.error().message);
    };
    recognizer.available = false;
    worded.transcribe("recording.m4a", heard);
    time.advance(0s);
    permissions.speech = AuthorizationStatus::Denied;
    worded.transcribe("recording.m4a", heard);
    time.advance(0s);

    EXPECT_EQ(messages, QStringList({"no server", "no engine"}));
}

TEST_F(SystemTranscriberTest, TheRecordingIsRecognizedAsPunctuatedDictationWithTheTermsOfTheMoment)
{
    terms.append("Boris");
    transcribe("/tmp/recording.m4a");

    ASSERT_EQ(recognizer.calls.size(), 1);
    EXPECT_EQ(recognizer.calls[0].path, "/tmp/recording.m4a");
    EXPECT_EQ(recognizer.calls[0].request,
        (SpeechRequest{.shouldReportPartialResults = false,
            .taskHint = SpeechTaskHint::Dictation,
            .contextualStrings = {"Tavrin", "Anna", "Boris"},
            .addsPunctuation = true}));

    recognizer.calls[0].answer("done");
}

TEST_F(SystemTranscriberTest, PermissionIsAskedForEveryRecording)
{
    transcribe();
    recognizer.calls[0].answer("one");
    transcribe();
    recognizer.calls[1].answer("two");

    EXPECT_EQ(permissions.speechRequests, 2);
}

TEST_F(SystemTranscriberTest, TheFinalTextIsTrimmed)
{
    transcribe();
    recognizer.calls[0].answer(QStringLiteral(" \n\u3000今天 天气很好。\t\n"));

    EXPECT_EQ(onlyTranscript(), QStringLiteral("今天 天气很好。"));
}

TEST_F(SystemTranscriberTest, ASilentRecordingIsCodeEleven)
{
    transcribe();
    recognizer.calls[0].answer(" \n ");

    EXPECT_EQ(onlyError(),
        (Error{"TavrinSpeech", 11, QStringLiteral("没有识别到有效语音，请再试一次。")}));
}

TEST_F(SystemTranscriberTest, TheRecognizersOwnErrorPassesUnchanged)
{
    transcribe();
    recognizer.calls[0].fail({"SomeEngine", 1700, "No speech server"});

    EXPECT_EQ(onlyError(), (Error{"SomeEngine", 1700, "No speech server"}));
}

TEST_F(SystemTranscriberTest, PartialResultsAreIgnored)
{
    transcribe();
    recognizer.calls[0].answer("half a", false);
    EXPECT_TRUE(reports.isEmpty());

    recognizer.calls[0].answer("half a sentence");
    EXPECT_EQ(onlyTranscript(), "half a sentence");
}

TEST_F(SystemTranscriberTest, NothingIsReportedAfterTheFinalResult)
{
    transcribe();
    recognizer.calls[0].answer("first");
    recognizer.calls[0].answer("second");
    recognizer.calls[0].fail({"SomeEngine", 1, "late"});

    EXPECT_EQ(onlyTranscript(), "first");
}

TEST_F(SystemTranscriberTest, NothingIsReportedAfterAnError)
{
    transcribe();
    recognizer.calls[0].fail({"SomeEngine", 1, "gone"});
    recognizer.calls[0].answer("late");

    EXPECT_EQ(onlyError().code, 1);
}

TEST_F(SystemTranscriberTest, OverlappingRecordingsReportForThemselves)
{
    transcribe("first.m4a");
    transcribe("second.m4a");
    EXPECT_TRUE(recognizer.calls[0].isRunning());

    recognizer.calls[1].answer("second");
    recognizer.calls[0].answer("first");

    ASSERT_EQ(reports.size(), 2);
    EXPECT_EQ(reports[0].value(), "second");
    EXPECT_EQ(reports[1].value(), "first");
}

TEST_F(SystemTranscriberTest, ARecognitionThatHasReportedIsReleasedWithTheNextOne)
{
    transcribe();
    recognizer.calls[0].answer("first");
    transcribe();
    recognizer.calls[1].answer("second");

    EXPECT_FALSE(recognizer.calls[0].isRunning());
    EXPECT_TRUE(recognizer.calls[1].isRunning());
}

TEST_F(SystemTranscriberTest, APermissionAnsweredOnAnotherThreadStartsOnTheMainThread)
{
    permissions.holdsRequests = true;
    requestTranscript("recording.m4a");

    std::thread([&] { permissions.takeRequest()(AuthorizationStatus::Authorized); }).join();
    EXPECT_TRUE(recognizer.calls.empty());

    time.advance(0s);
    ASSERT_EQ(recognizer.calls.size(), 1);
    recognizer.calls[0].answer("text");
}

TEST_F(SystemTranscriberTest, ARefusalOnAnotherThreadIsReportedThere)
{
    permissions.holdsRequests = true;
    std::thread::id reportedOn;
    transcriber.transcribe(
        "recording.m4a", [&](const Result<QString>&) { reportedOn = std::this_thread::get_id(); });

    std::thread userThread([&] { permissions.takeRequest()(AuthorizationStatus::Denied); });
    const std::thread::id answeredOn = userThread.get_id();
    userThread.join();

    EXPECT_EQ(reportedOn, answeredOn);
    EXPECT_EQ(time.pending(), 0U);
}

TEST_F(SystemTranscriberTest, AResultOnAnotherThreadIsReportedThere)
{
    std::thread::id reportedOn;
    transcriber.transcribe(
        "recording.m4a", [&](const Result<QString>&) { reportedOn = std::this_thread::get_id(); });
    time.advance(0s);

    std::thread recognizerThread([&] { recognizer.calls[0].answer("text"); });
    const std::thread::id answeredOn = recognizerThread.get_id();
    recognizerThread.join();

    EXPECT_EQ(reportedOn, answeredOn);
}

} // namespace
} // namespace tavrin
