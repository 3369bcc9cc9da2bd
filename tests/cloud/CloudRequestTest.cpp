#include "CloudFixture.h"

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

class CloudRequestTest : public CloudFixture {
protected:
    Received<CloudResponse> received;

    void get(const QString& path = u"/v1/thing"_s)
    {
        api->cloudRequestPath(path, "GET", std::nullopt, {}, received.completion());
    }

    const CloudResponse& answerOf(int status, const QByteArray& answer)
    {
        transport.willAnswer(status, answer);
        get();
        run();
        return received.value();
    }
};

TEST_F(CloudRequestTest, AGetCarriesTheContentTypeAndNothingElse)
{
    transport.willAnswer(200);
    get();
    run();

    EXPECT_EQ(request(0),
        (HttpRequest{QUrl(u"https://cloud.test/v1/thing"_s), "GET",
            {{"Content-Type", "application/json"}}, std::nullopt}));
}

TEST_F(CloudRequestTest, APayloadIsOneCompactJsonObject)
{
    transport.willAnswer(200);
    api->cloudRequestPath(u"/v1/thing"_s, "POST", QJsonObject{{u"名"_s, u"a/b\n"_s}, {u"n"_s, 3}},
        {}, received.completion());
    run();

    EXPECT_EQ(request(0).method, "POST");
    EXPECT_EQ(request(0).body, QByteArray(R"({"n":3,"名":"a/b\n"})"));
}

TEST_F(CloudRequestTest, AnEmptyPayloadIsAnEmptyObject)
{
    transport.willAnswer(200);
    api->cloudRequestPath(u"/v1/thing"_s, "POST", QJsonObject{}, {}, received.completion());
    run();

    EXPECT_EQ(request(0).body, QByteArray("{}"));
}

TEST_F(CloudRequestTest, ATokenIsSentAsBearer)
{
    transport.willAnswer(200);
    api->cloudRequestPath(u"/v1/thing"_s, "GET", std::nullopt, u"abc"_s, received.completion());
    run();

    EXPECT_EQ(header(0, "Authorization"), "Bearer abc");
}

TEST_F(CloudRequestTest, ATokenWithALineBreakSendsNothing)
{
    api->cloudRequestPath(
        u"/v1/thing"_s, "GET", std::nullopt, u"abc\r\nX-Admin: 1"_s, received.completion());
    EXPECT_FALSE(received.arrived());
    run();

    EXPECT_EQ(received.value().error->domain, u"TavrinHttp"_s);
    EXPECT_EQ(received.value().error->code, static_cast<int>(HttpFailure::Refused));
    EXPECT_TRUE(transport.requests().isEmpty());
}

TEST_F(CloudRequestTest, SlashesAroundTheBaseUrlAreDropped)
{
    for (const QString& base : {u"https://cloud.test///"_s, u"//https://cloud.test/"_s}) {
        connectTo(base);
        Received<CloudResponse> answer;
        transport.willAnswer(200);
        api->cloudRequestPath(u"/v1/thing"_s, "GET", std::nullopt, {}, answer.completion());
        run();

        EXPECT_EQ(transport.requests().last().url, QUrl(u"https://cloud.test/v1/thing"_s));
    }
}

TEST_F(CloudRequestTest, HttpsAndThisMachineAreAsked)
{
    for (const QString& base : {u"https://cloud.test"_s, u"http://localhost"_s,
             u"http://localhost:8787"_s, u"http://127.0.0.1:8787"_s, u"https://localhost"_s,
             u"ftp://localhost"_s, u"test://127.0.0.1:8787"_s}) {
        connectTo(base);
        Received<CloudResponse> answer;
        transport.willAnswer(200);
        api->cloudRequestPath(u"/v1/thing"_s, "GET", std::nullopt, {}, answer.completion());
        run();

        EXPECT_EQ(answer.value().error, std::nullopt) << base.toStdString();
        EXPECT_EQ(transport.requests().last().url, QUrl(base + u"/v1/thing"_s));
    }
}

TEST_F(CloudRequestTest, AnythingElseIsRefusedBeforeItIsSent)
{
    for (const QString& base : {u"http://cloud.test"_s, u"http://127.0.0.2"_s,
             u"http://localhost.cloud.test"_s, u"http://[::1]:8787"_s, u"ftp://cloud.test"_s,
             u"cloud.test"_s, u""_s, u"https://bad host"_s, u"http://localhost@cloud.test"_s}) {
        connectTo(base);
        Received<CloudResponse> answer;
        api->cloudRequestPath(u"/v1/thing"_s, "GET", std::nullopt, {}, answer.completion());

        EXPECT_EQ(answer.value(),
            (CloudResponse{
                std::nullopt, 0, clientError(1, u"云端服务地址无效；正式服务必须使用 HTTPS。"_s)}))
            << base.toStdString();
    }
    run();
    EXPECT_TRUE(transport.requests().isEmpty());
}

TEST_F(CloudRequestTest, ASuccessfulAnswerIsItsObject)
{
    EXPECT_EQ(
        answerOf(200, R"({"a": 1})"), (CloudResponse{QJsonObject{{u"a"_s, 1}}, 200, std::nullopt}));
}

TEST_F(CloudRequestTest, AnEmptySuccessfulAnswerIsTheEmptyObject)
{
    EXPECT_EQ(answerOf(204, {}), (CloudResponse{QJsonObject{}, 204, std::nullopt}));
}

TEST_F(CloudRequestTest, AnArrayIsTheEmptyObject)
{
    EXPECT_EQ(answerOf(200, R"([{"a": 1}])"), (CloudResponse{QJsonObject{}, 200, std::nullopt}));
}

TEST_F(CloudRequestTest, AnUnreadableBodyIsTheEmptyObject)
{
    for (const QByteArray& body :
        {QByteArray("<html>"), QByteArray("\"text\""), QByteArray("12"), QByteArray("null"),
            QByteArray("true"), QByteArray("{"), QByteArray("{\"a\":1}}"), QByteArray("\xff\xfe"),
            QByteArray("{\"text\":\"\xc3\x28\"}"), QByteArray("{\"a\":\0}", 7), QByteArray("[[["),
            QByteArray("{\"a\":1,}"), QByteArray(10'000, '[') + QByteArray(10'000, ']'),
            QByteArray("{\"a\":").repeated(10'000) + "1" + QByteArray(10'000, '}'),
            QByteArray(" \r\n\t ")}) {
        Received<CloudResponse> answer;
        transport.willAnswer(200, body);
        api->cloudRequestPath(u"/v1/thing"_s, "GET", std::nullopt, {}, answer.completion());
        run();

        EXPECT_EQ(answer.value(), (CloudResponse{QJsonObject{}, 200, std::nullopt}))
            << body.left(40).toStdString();
    }
}

TEST_F(CloudRequestTest, AnAnswerMayNestAThousandAndTwentyFourLevels)
{
    for (const qsizetype levels : {1024, 1025}) {
        Received<CloudResponse> answer;
        transport.willAnswer(
            200, R"({"a":)" + QByteArray(levels - 1, '[') + QByteArray(levels - 1, ']') + '}');
        api->cloudRequestPath(u"/v1/thing"_s, "GET", std::nullopt, {}, answer.completion());
        run();

        EXPECT_EQ(answer.value().status, 200);
        EXPECT_EQ(answer.value().object.value()[u"a"_s].isArray(), levels == 1024) << levels;
    }
}

TEST_F(CloudRequestTest, AnAnswerOfNineMebibytesIsTheTransportsError)
{
    const CloudResponse& response = answerOf(200, QByteArray(9LL * 1024 * 1024, ' '));

    EXPECT_EQ(response.error->code, static_cast<int>(HttpFailure::TooLarge));
    EXPECT_EQ(response.status, 0);
}

TEST_F(CloudRequestTest, AnErrorCarriesTheServicesMessageAndTheObject)
{
    const CloudResponse& response =
        answerOf(422, R"({"error": {"message": "邀请码无效"}, "hint": "x"})");

    EXPECT_EQ(response.error, serviceError(422, u"邀请码无效"_s));
    EXPECT_EQ(response.object->value("hint"_L1).toString(), u"x"_s);
    EXPECT_EQ(response.status, 422);
}

TEST_F(CloudRequestTest, ATransportErrorIsPassedOnWithAnEmptyObject)
{
    transport.willFail(HttpFailure::TimedOut);
    get();
    run();

    EXPECT_EQ(received.value(),
        (CloudResponse{
            QJsonObject{}, 0, testing::InMemoryHttpTransport::error(HttpFailure::TimedOut)}));
}

TEST_F(CloudRequestTest, NothingCompletesBeforeTheAnswerIsThere)
{
    get();
    run();
    EXPECT_FALSE(received.arrived());

    transport.answer(200);
    EXPECT_TRUE(received.arrived());
}

TEST_F(CloudRequestTest, ARequestOutlivesItsClient)
{
    get();
    api.reset();
    transport.answer(200, R"({"a": 1})");

    EXPECT_EQ(received.value().object, (QJsonObject{{u"a"_s, 1}}));
}

// errorFromResponse

std::optional<Error> errorOf(int status, const QByteArray& body)
{
    return TavrinAPI::errorFromResponse(HttpResponse{status, body});
}

TEST(ErrorFromResponseTest, OnlyTheTwoHundredsAreSuccess)
{
    for (int status = 100; status <= 599; ++status) {
        const bool success = status >= 200 && status <= 299;
        const std::optional<Error> error = errorOf(status, {});
        EXPECT_EQ(error.has_value(), !success) << status;
        EXPECT_TRUE(success || error->code == status) << status;
    }
}

void expectMessage(const QByteArray& body, const QString& message)
{
    EXPECT_EQ(errorOf(500, body), (Error{u"TavrinAPI"_s, 500, message}))
        << body.left(40).toStdString();
}

TEST(ErrorFromResponseTest, TheMessageIsTheMemberOfTheError)
{
    expectMessage(R"({"error":{"message":"no"}})", u"no"_s);
    expectMessage(R"({"error":{"message":""}})", u""_s);
    expectMessage(R"({"error":{"message":"a\nb"}})", u"a\nb"_s);
}

TEST(ErrorFromResponseTest, AMessageThatIsNoStringIsItsJsonText)
{
    expectMessage(R"({"error":{"message":12}})", u"12"_s);
    expectMessage(R"({"error":{"message":true}})", u"true"_s);
    expectMessage(R"({"error":{"message":null}})", u"null"_s);
    expectMessage(R"({"error":{"message":["a",1]}})", uR"(["a",1])"_s);
    expectMessage(R"({"error":{"message":{"zh":"不"}}})", uR"({"zh":"不"})"_s);
}

TEST(ErrorFromResponseTest, WithoutTheMemberTheMessageIsTheWholeBody)
{
    expectMessage({}, u""_s);
    expectMessage("Bad Gateway\n", u"Bad Gateway\n"_s);
    expectMessage("服务不可用", u"服务不可用"_s);
    for (const char* json : {R"({"error": "no"})", R"({"error": {"code": 3}})",
             R"({"message": "no"})", R"([{"error":{"message":"no"}}])",
             R"({"error":{"message":"no"})", R"({"error": ["message"]})"})
        expectMessage(json, QString::fromUtf8(json));
    expectMessage(QByteArray(10'000, '['), QString(10'000, u'['));
}

TEST(ErrorFromResponseTest, ABodyThatIsNotUtf8IsNamedByItsStatus)
{
    for (const char* body : {"\xff", "caf\xe9", "\xe4\xb8", "\xc0\xaf", "\xed\xa0\x80",
             "{\"error\":{\"message\":\"\xc3\x28\"}}"})
        expectMessage(body, u"HTTP 500"_s);
    EXPECT_EQ(errorOf(404, "\xff")->message, u"HTTP 404"_s);
}

} // namespace
} // namespace tavrin
