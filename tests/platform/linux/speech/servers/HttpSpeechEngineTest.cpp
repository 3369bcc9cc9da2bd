#include "platform/linux/speech/servers/HttpSpeechEngine.h"

#include "platform/linux/speech/servers/ServerFixture.h"
#include "support/QtPrinters.h"
#include "support/servers/StandInSpeechServers.h"

using namespace std::chrono_literals;

namespace tavrin {
namespace {

using Fault = testing::StandInTranscriptionServer::Fault;

class HttpSpeechEngineTest : public testing::ServerFixture {
protected:
    testing::StandInTranscriptionServer server;
    SpeechServer settings = serverAt(server.url());

    QString recognized(double seconds = 1, const SpeechRequest& request = {})
    {
        return ServerFixture::recognized(
            std::make_unique<HttpSpeechEngine>(settings), recording(seconds), request);
    }

    QByteArray sentField(const QByteArray& name) const
    {
        return server.field(server.requests().value(0), name);
    }

    static QString errorText(int code) { return QStringLiteral("TavrinSpeechEngine %1").arg(code); }
};

TEST_F(HttpSpeechEngineTest, ARecordingIsSentAsAFormAndItsTextComesBack)
{
    server.texts = QStringList{QStringLiteral(" 今天天气很好。 ")};

    EXPECT_EQ(recognized(), QStringLiteral("今天天气很好。"));

    ASSERT_EQ(server.requests().size(), 1);
    EXPECT_EQ(server.requests()[0].method, "POST");
    EXPECT_EQ(server.requests()[0].target, "/v1/audio/transcriptions");
    EXPECT_EQ(sentField("file"), testing::wavFile(testing::tone(1)));
    EXPECT_EQ(sentField("language"), "zh");
    EXPECT_EQ(sentField("model"), "whisper-1");
    EXPECT_EQ(sentField("response_format"), "json");
    EXPECT_FALSE(server.requests()[0].headers.contains("authorization"));
}

TEST_F(HttpSpeechEngineTest, ModelLanguageAndKeyAreTheOnesThatWereSet)
{
    settings.model = "large-v3";
    settings.language = "en-US";
    settings.key = "secret";
    recognized();

    EXPECT_EQ(sentField("model"), "large-v3");
    EXPECT_EQ(sentField("language"), "en");
    EXPECT_EQ(server.requests()[0].headers.value("authorization"), "Bearer secret");
}

TEST_F(HttpSpeechEngineTest, ThePromptCarriesTheTermsWithTheMostImportantLast)
{
    recognized(1, {.contextualStrings = {"Tavrin", "Slack", " a\tb\r\n--x", "Slack", "\x01\n"}});

    EXPECT_EQ(sentField("prompt"), "a b --x, Slack, Tavrin");
}

TEST_F(HttpSpeechEngineTest, WithoutTermsThereIsNoPrompt)
{
    recognized();

    EXPECT_FALSE(server.requests()[0].body.contains("\"prompt\""));
}

TEST_F(HttpSpeechEngineTest, ALongRecordingIsSentInStretchesAndPutTogether)
{
    server.texts = QStringList{"first", "second"};

    EXPECT_EQ(recognized(130), "first second");
    EXPECT_EQ(server.requests().size(), 2);
}

TEST_F(HttpSpeechEngineTest, ASilentServerIsGivenUp)
{
    server.fault = Fault::Silent;
    settings.patience = 50ms;

    EXPECT_EQ(recognized(0.5), errorText(4));
}

TEST_F(HttpSpeechEngineTest, AnAnswerThatBreaksOffIsAnError)
{
    server.fault = Fault::CutOff;
    EXPECT_EQ(recognized(), errorText(3));
}

TEST_F(HttpSpeechEngineTest, AnAnswerThatIsNoTextIsAnError)
{
    server.fault = Fault::Garbage;
    EXPECT_EQ(recognized(), errorText(6));
}

TEST_F(HttpSpeechEngineTest, AnAnswerWithoutATextIsAnError)
{
    server.fault = Fault::NoText;
    EXPECT_EQ(recognized(), errorText(6));
}

TEST_F(HttpSpeechEngineTest, AnAnswerWithoutEndIsCutShort)
{
    server.fault = Fault::Oversized;
    EXPECT_EQ(recognized(), errorText(6));
}

TEST_F(HttpSpeechEngineTest, AFailingServerIsAnError)
{
    server.fault = Fault::Failing;
    EXPECT_EQ(recognized(), errorText(5));
}

TEST_F(HttpSpeechEngineTest, SoundFollowsNoRedirection)
{
    server.fault = Fault::Redirecting;

    EXPECT_EQ(recognized(), errorText(5));
    EXPECT_EQ(server.requests().size(), 1);
}

TEST_F(HttpSpeechEngineTest, AServerThatIsNotThereIsAnError)
{
    server.close();
    EXPECT_EQ(recognized(), errorText(3));
}

TEST_F(HttpSpeechEngineTest, CancellingDoesNotWaitForTheServer)
{
    server.fault = Fault::Silent;
    EngineFileRecognizer recognizer(
        std::make_shared<SpeechEngineThread>(std::make_unique<HttpSpeechEngine>(settings)));
    auto task = recognizer.recognize(recording(1), {}, heard.handler());
    ASSERT_TRUE(testing::waitUntil([this] { return server.requests().size() == 1; }));
    task.reset();

    EXPECT_EQ(heard.text(), errorText(2));
}

} // namespace
} // namespace tavrin
