#include "platform/linux/speech/servers/VoskSpeechEngine.h"

#include "platform/linux/speech/engine/EngineLiveRecognizer.h"
#include "platform/linux/speech/servers/ServerFixture.h"
#include "support/QtPrinters.h"
#include "support/servers/StandInSpeechServers.h"

using namespace std::chrono_literals;

namespace tavrin {
namespace {

using Fault = testing::StandInStreamingServer::Fault;

class VoskSpeechEngineTest : public testing::ServerFixture {
protected:
    testing::StandInStreamingServer server;
    SpeechServer settings = serverAt(server.url());

    QString recognized(double seconds = 1)
    {
        return ServerFixture::recognized(
            std::make_unique<VoskSpeechEngine>(settings), recording(seconds));
    }

    static QString errorText(int code) { return QStringLiteral("TavrinSpeechEngine %1").arg(code); }
};

TEST_F(VoskSpeechEngineTest, ARecordingIsStreamedAndItsPhrasesArePutTogether)
{
    EXPECT_EQ(recognized(3), "word1 word2 word3 word4 word5 word6");

    EXPECT_EQ(
        server.messages(), (QStringList{R"({"config": {"sample_rate": 16000}})", R"({"eof": 1})"}));
    const auto sound = testing::tone(3);
    EXPECT_EQ(server.sound(),
        QByteArray(reinterpret_cast<const char*>(sound.data()),
            static_cast<qsizetype>(sound.size() * sizeof(qint16))));
    EXPECT_EQ(server.connections(), 1);
}

TEST_F(VoskSpeechEngineTest, TenMinutesAreHeardCompletely)
{
    const QString text = recognized(600);

    EXPECT_TRUE(text.endsWith(" word1199 word1200"));
    EXPECT_EQ(text.count(u' '), 1'199);
}

TEST_F(VoskSpeechEngineTest, ASilentServerIsGivenUp)
{
    server.fault = Fault::Silent;
    settings.patience = 50ms;

    EXPECT_EQ(recognized(), errorText(4));
}

TEST_F(VoskSpeechEngineTest, AServerThatDoesNotAnswerTheEndIsGivenUp)
{
    server.fault = Fault::SilentAtTheEnd;
    settings.patience = 50ms;

    EXPECT_EQ(recognized(), errorText(4));
}

TEST_F(VoskSpeechEngineTest, AConnectionThatBreaksOffIsAnError)
{
    server.fault = Fault::CutOff;
    EXPECT_EQ(recognized(3), errorText(3));
}

TEST_F(VoskSpeechEngineTest, AnAnswerThatIsNoTextIsAnError)
{
    server.fault = Fault::Garbage;
    EXPECT_EQ(recognized(), errorText(6));
}

TEST_F(VoskSpeechEngineTest, AnAnswerOfManyMegabytesIsAnError)
{
    server.fault = Fault::Oversized;
    EXPECT_EQ(recognized(), errorText(6));
}

TEST_F(VoskSpeechEngineTest, AServerThatIsNotThereIsAnError)
{
    server.close();
    EXPECT_EQ(recognized(), errorText(3));
}

TEST_F(VoskSpeechEngineTest, CancellingDoesNotWaitForTheServer)
{
    server.fault = Fault::Silent;
    EngineFileRecognizer recognizer(
        std::make_shared<SpeechEngineThread>(std::make_unique<VoskSpeechEngine>(settings)));
    auto task = recognizer.recognize(recording(1), {}, heard.handler());
    ASSERT_TRUE(testing::waitUntil([this] { return server.connections() == 1; }));
    task.reset();

    EXPECT_EQ(heard.text(), errorText(2));
}

TEST_F(VoskSpeechEngineTest, LiveSpeechGivesTextsWhileItGoesOn)
{
    class Capture final : public SpeechCapture { };

    std::function<void(std::span<const qint16>)> microphone;
    EngineLiveRecognizer recognizer(
        std::make_shared<SpeechEngineThread>(std::make_unique<VoskSpeechEngine>(settings)),
        [&](auto handler) -> Result<std::unique_ptr<SpeechCapture>> {
            microphone = handler;
            return std::make_unique<Capture>();
        });
    auto task =
        recognizer.start({.shouldReportPartialResults = true, .contextualStrings = {}}, handler());
    ASSERT_TRUE(task);

    const auto lastText = [this] {
        return heard.partialTexts().isEmpty() ? QString{} : heard.partialTexts().last();
    };
    microphone(testing::tone(0.6));
    // Every further block lets the engine look at what has come from the server.
    ASSERT_TRUE(testing::waitUntil([&] {
        microphone(testing::tone(0.001));
        return lastText().startsWith("word1");
    }));
    microphone(testing::tone(2));
    ASSERT_TRUE(testing::waitUntil([&] {
        microphone(testing::tone(0.001));
        return lastText().startsWith("word1 word2 word3 word4 word5");
    }));

    task->reset();
    EXPECT_TRUE(testing::waitUntil([this] { return server.ended() == 1; }));
}

} // namespace
} // namespace tavrin
