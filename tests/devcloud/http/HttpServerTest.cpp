#include "devcloud/http/HttpServer.h"

#include "devcloud/support/HeldModel.h"
#include "devcloud/support/HeldPasswords.h"
#include "devcloud/support/LoopbackClient.h"
#include "devcloud/support/ServiceTest.h"

#include <gmock/gmock.h>

#include <chrono>
#include <thread>

using namespace std::chrono_literals;
using namespace nlohmann::literals;
using ::testing::HasSubstr;

namespace tavrin::devcloud {
namespace {

using testing::bodyIn;
using testing::HeldModel;
using testing::HeldPasswords;
using testing::LoopbackClient;
using testing::statusIn;

class HttpServerTest : public testing::ServiceTest {
protected:
    HttpServerTest()
    {
        settings.port = 0;
        settings.limits.idle = 5s;
        settings.limits.wholeRequest = 5s;
    }

    void start()
    {
        server.emplace(*service, settings);
        ASSERT_TRUE(server->start());
    }

    static std::string post(
        const std::string& path, const std::string& body, const std::string& headers = {})
    {
        return "POST " + path + " HTTP/1.1\r\nHost: localhost\r\nContent-Type: application/json\r\n"
            + headers + "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
    }

    /// The status answered to @p request on a connection of its own. Every answer with a body must
    /// be a JSON object, every refusal one with a message.
    int statusFor(const std::string& request) const
    {
        LoopbackClient client(server->port());
        client.send(request);
        const std::string answer = client.readAnswer();
        const int status = statusIn(answer);
        const Json body = Json::parse(bodyIn(answer), nullptr, false);
        EXPECT_TRUE(body.is_object()) << answer;
        const bool saysWhy =
            status == 200 || (body.is_object() && body.contains("/error/message"_json_pointer));
        EXPECT_TRUE(saysWhy) << answer;
        return status;
    }

    HttpServerSettings settings;
    std::optional<HttpServer> server;
};

TEST_F(HttpServerTest, AnswersManyRequestsOnOneConnection)
{
    addTestAccount();
    start();
    LoopbackClient client(server->port());
    client.send(post("/v1/auth/login", loginBody().dump()));
    const std::string answer = client.readAnswer();
    ASSERT_EQ(statusIn(answer), 200);
    EXPECT_THAT(answer, HasSubstr("Content-Type: application/json; charset=utf-8"));
    EXPECT_THAT(answer, HasSubstr("Cache-Control: no-store"));
    const std::string token = Json::parse(bodyIn(answer))["accessToken"];

    for (int round = 0; round < 20; ++round) {
        client.send("GET /v1/auth/me HTTP/1.1\r\nAuthorization: Bearer " + token + "\r\n\r\n");
        EXPECT_EQ(bodyIn(client.readAnswer()), R"({"user":{"email":"ada@example.org"}})");
    }
}

TEST_F(HttpServerTest, RequestsSentAheadAreAnsweredInOrder)
{
    start();
    LoopbackClient client(server->port());
    client.send(post("/v1/auth/login", "[]") + "GET /v1/client/update HTTP/1.1\r\n\r\n"
        + post("/v1/auth/login", "{}"));

    EXPECT_EQ(statusIn(client.readAnswer()), 400);
    EXPECT_EQ(statusIn(client.readAnswer()), 200);
    EXPECT_EQ(statusIn(client.readAnswer()), 400);
}

TEST_F(HttpServerTest, BadBodiesAreRefusedAndTheConnectionGoesOn)
{
    start();
    LoopbackClient client(server->port());
    for (const std::string& body : {std::string("[]"), std::string("nonsense"),
             std::string(10'000, '['), std::string("\xff\xfe"),
             std::string(R"({"email":1,"password":2})"), std::string("{\0}", 3), std::string()}) {
        client.send(post("/v1/auth/login", body));
        EXPECT_EQ(statusIn(client.readAnswer()), 400) << body;
    }
    client.send("GET /v1/client/update HTTP/1.1\r\n\r\n");
    EXPECT_EQ(statusIn(client.readAnswer()), 200);
}

TEST_F(HttpServerTest, ABodyTooLargeIsRefusedAndItsSenderGetsToKnow)
{
    start();
    const std::string body(std::size_t{9} * 1024 * 1024, 'x');
    EXPECT_EQ(statusFor(post("/v1/auth/login", body)), 413);
    LoopbackClient sendsAllFirst(server->port());
    EXPECT_TRUE(sendsAllFirst.send(post("/v1/auth/login", body)));
    EXPECT_EQ(statusIn(sendsAllFirst.readAnswer()), 413);

    LoopbackClient onlyAnnounces(server->port());
    onlyAnnounces.send("POST /v1/auth/login HTTP/1.1\r\nContent-Type: application/json\r\n"
                       "Content-Length: 9437184\r\n\r\n");
    EXPECT_EQ(statusIn(onlyAnnounces.readAnswer()), 413);
}

TEST_F(HttpServerTest, WhatCannotBeReadIsRefusedAndTheConnectionClosed)
{
    start();

    struct Case {
        std::string request;
        int status;
    };

    const std::string json = "Content-Type: application/json\r\n";
    const std::string login = "POST /v1/auth/login HTTP/1.1\r\n";
    for (const auto& [request, status] :
        {Case{"GET /nowhere HTTP/1.1\r\n\r\n", 404}, Case{"PUT /v1/auth/me HTTP/1.1\r\n\r\n", 405},
            Case{login + json + "Transfer-Encoding: chunked\r\n\r\n2\r\n{}\r\n0\r\n\r\n", 411},
            Case{login + json + "Content-Length: 2\r\nContent-Length: 3\r\n\r\n{}", 400},
            Case{login + json + "Content-Length: 2\r\nContent-Encoding: gzip\r\n\r\n{}", 415},
            Case{login + "Content-Type: text/plain\r\nContent-Length: 2\r\n\r\n{}", 415},
            Case{login
                    + "Content-Type: multipart/form-data; boundary=x\r\nContent-Length: "
                      "2\r\n\r\n{}",
                415},
            Case{"GET /v1/client/update HTTP/1.1\r\nContent-Length: 2\r\n\r\n{}", 400}}) {
        EXPECT_EQ(statusFor(request), status) << request;
        LoopbackClient client(server->port());
        client.send(request);
        EXPECT_TRUE(client.isClosedByServer()) << request;
    }
}

TEST_F(HttpServerTest, MalformedHeadsAreRefusedOrCutOffAndTheServiceGoesOn)
{
    settings.limits.wholeRequest = 250ms;
    start();

    struct Case {
        std::string request;
        int status; ///< 0: none, the connection just ends.
    };

    const std::string update = "GET /v1/client/update HTTP/1.1\r\n";
    for (const auto& [request, status] : {Case{"nonsense\r\n\r\n", 0}, Case{"GET\r\n\r\n", 0},
             Case{"\r\n\r\n", 0}, Case{"GET /v1/client/update HTTP/9.9\r\n\r\n", 505},
             Case{std::string("\0\0\0\0\r\n\r\n", 8), 0}, Case{update + "no colon\r\n\r\n", 400},
             Case{update + "Content-Length: x\r\n\r\n", 400},
             Case{"POST /v1/auth/login HTTP/1.1\r\nContent-Type: application/json\r\n"
                  "Content-Length: -2\r\n\r\n{}",
                 400},
             Case{update + "X-Filling: " + std::string(40'000, 'a') + "\r\n\r\n", 431},
             Case{"GET /" + std::string(9000, 'a') + " HTTP/1.1\r\n\r\n", 404}}) {
        LoopbackClient client(server->port());
        client.send(request);
        client.finishSending();
        EXPECT_EQ(statusIn(client.readAnswer()), status) << request;
        EXPECT_TRUE(client.isClosedByServer()) << request;
    }
    EXPECT_EQ(statusFor(update + "\r\n"), 200);
}

TEST_F(HttpServerTest, AHeadWithoutEndIsCutOff)
{
    start();
    LoopbackClient client(server->port());
    client.send("GET /v1/client/update HTTP/1.1\r\n");
    for (int line = 0; line < 2000 && client.send("X-Filling: 0123456789012345\r\n"); ++line) { }

    EXPECT_TRUE(client.isClosedByServer());
}

TEST_F(HttpServerTest, ASlowRequestHasOneDeadlineForAll)
{
    settings.limits.wholeRequest = 250ms;
    start();
    LoopbackClient client(server->port());
    const auto begin = std::chrono::steady_clock::now();
    // Never idle for long, never done: each byte alone would please a time-out on inactivity.
    while (!client.isClosedByServer(20ms) && std::chrono::steady_clock::now() - begin < 5s)
        client.send("G");

    EXPECT_LT(std::chrono::steady_clock::now() - begin, 4s);
}

TEST_F(HttpServerTest, ABodyThatDripsHasTheSameDeadline)
{
    settings.limits.wholeRequest = 250ms;
    start();
    LoopbackClient client(server->port());
    client.send("POST /v1/auth/login HTTP/1.1\r\nContent-Type: application/json\r\n"
                "Content-Length: 1000\r\n\r\n");
    const auto begin = std::chrono::steady_clock::now();
    while (!client.isClosedByServer(20ms) && std::chrono::steady_clock::now() - begin < 5s)
        client.send("{");

    EXPECT_LT(std::chrono::steady_clock::now() - begin, 4s);
}

TEST_F(HttpServerTest, TheOldestIdleConnectionGivesWayToANewOne)
{
    settings.limits.connections = 8;
    start();
    std::vector<std::unique_ptr<LoopbackClient>> idle;
    idle.reserve(2 * settings.limits.connections);
    for (std::size_t client = 0; client < 2 * settings.limits.connections; ++client) {
        idle.push_back(std::make_unique<LoopbackClient>(server->port()));
        idle.back()->send("GET /v1/client/update HTTP/1.1\r\n\r\n");
        EXPECT_EQ(statusIn(idle.back()->readAnswer()), 200);
    }
    EXPECT_TRUE(idle.front()->isClosedByServer());
    idle.back()->send("GET /v1/client/update HTTP/1.1\r\n\r\n");
    EXPECT_EQ(statusIn(idle.back()->readAnswer()), 200);
}

TEST_F(HttpServerTest, SilentConnectionsKeepNobodyWaiting)
{
    start();
    std::vector<std::unique_ptr<LoopbackClient>> silent;
    silent.reserve(200);
    for (int client = 0; client < 200; ++client)
        silent.push_back(std::make_unique<LoopbackClient>(server->port()));

    EXPECT_EQ(statusFor("GET /v1/client/update HTTP/1.1\r\n\r\n"), 200);
    EXPECT_FALSE(silent.front()->isClosedByServer(0ms));
    silent.front()->send("GET /v1/client/update HTTP/1.1\r\n\r\n");
    EXPECT_EQ(statusIn(silent.front()->readAnswer()), 200);
}

TEST_F(HttpServerTest, AConnectionThatNeverBeginsIsClosed)
{
    settings.limits.wholeRequest = 250ms;
    start();
    const LoopbackClient silent(server->port());

    EXPECT_TRUE(silent.isClosedByServer());
}

TEST_F(HttpServerTest, AConnectionThatAsksNothingMoreIsClosed)
{
    settings.limits.idle = 250ms;
    settings.limits.wholeRequest = 20s;
    start();
    LoopbackClient client(server->port());
    client.send("GET /v1/client/update HTTP/1.1\r\n\r\n");
    EXPECT_EQ(statusIn(client.readAnswer()), 200);

    EXPECT_TRUE(client.isClosedByServer());
}

TEST_F(HttpServerTest, AClientThatNeverTakesItsAnswerIsCutOff)
{
    const std::string token = signIn()["accessToken"];
    testing::ScriptedModel model;
    model.nextAnswer = std::string(std::size_t{1024} * 1024, 'x');
    restart(&model);
    settings.limits.wholeAnswer = 250ms;
    settings.limits.wholeRequest = 20s;
    start();
    // More than the buffers between the two hold.
    std::string requests;
    for (int request = 0; request < 16; ++request)
        requests += post("/v1/text/polish", R"({"transcript":"hello"})",
            "Authorization: Bearer " + token + "\r\n");
    const LoopbackClient client(server->port(), 4096);
    client.send(requests);

    const auto begin = std::chrono::steady_clock::now();
    while (client.send("x") && std::chrono::steady_clock::now() - begin < 5s)
        std::this_thread::sleep_for(10ms);

    EXPECT_LT(std::chrono::steady_clock::now() - begin, 5s);
    EXPECT_EQ(statusFor("GET /v1/client/update HTTP/1.1\r\n\r\n"), 200);
    server->stop(); // The model ends before the server does.
}

TEST_F(HttpServerTest, PasswordsThatAreComparedHoldUpNoOtherRequest)
{
    addTestAccount();
    HeldPasswords held;
    service.emplace(ServiceParts{*database, held, [](const Mail&) { return true; }, nullptr, lives,
        {}, [this] { return now.load(); }});
    settings.workers.quick = 1;
    settings.workers.passwords = 2;
    start();
    std::vector<std::unique_ptr<LoopbackClient>> clients;
    clients.reserve(4);
    for (int client = 0; client < 4; ++client) {
        clients.push_back(std::make_unique<LoopbackClient>(server->port()));
        clients.back()->send(post("/v1/auth/login", loginBody().dump()));
    }
    held.awaitQuestions(2);

    EXPECT_EQ(statusFor("GET /v1/client/update HTTP/1.1\r\n\r\n"), 200);
    EXPECT_EQ(statusFor("GET /v1/auth/me HTTP/1.1\r\n\r\n"), 401);

    held.release();
    for (const auto& client : clients)
        EXPECT_EQ(statusIn(client->readAnswer()), 200);
    server->stop(); // The passwords end before the server does.
}

TEST_F(HttpServerTest, AModelThatThinksHoldsUpNoOtherRequest)
{
    const std::string token = signIn()["accessToken"];
    HeldModel model;
    restart(&model);
    settings.workers.quick = 1;
    start();
    LoopbackClient polished(server->port());
    polished.send(post(
        "/v1/text/polish", R"({"transcript":"hello"})", "Authorization: Bearer " + token + "\r\n"));
    model.awaitQuestion();

    EXPECT_EQ(statusFor("GET /v1/client/update HTTP/1.1\r\n\r\n"), 200);
    model.release();
    EXPECT_EQ(statusIn(polished.readAnswer()), 200);
    server->stop(); // The model ends before the server does.
}

TEST_F(HttpServerTest, ConnectionsCutAtEveryStageHarmNobody)
{
    addTestAccount();
    start();
    const std::string request = post("/v1/auth/login", loginBody().dump());
    for (std::size_t length = 0; length < request.size(); length += 7) {
        const LoopbackClient client(server->port());
        client.send(std::string_view(request).substr(0, length));
    }
    EXPECT_EQ(statusFor(request), 200);
}

TEST_F(HttpServerTest, HeaderOdditiesAreTolerated)
{
    start();
    for (const std::string header :
        {"Range: bytes=0-3\r\n", "Accept-Encoding: br, gzip\r\n", "Host: elsewhere.example\r\n",
            "Authorization: Bearer a\r\nAuthorization: Bearer b\r\n", "X-Empty:\r\n",
            "Cookie: a=b\r\n", "Expect: 200-ok\r\n"}) {
        LoopbackClient client(server->port());
        client.send("GET /v1/client/update HTTP/1.1\r\n" + header + "\r\n");
        EXPECT_EQ(statusIn(client.readAnswer()), 200) << header;
    }
    LoopbackClient client(server->port());
    client.send("GET /v1/client/update HTTP/1.1\r\nRange: bytes=0-3\r\n\r\n");
    EXPECT_TRUE(Json::accept(bodyIn(client.readAnswer())));
}

TEST_F(HttpServerTest, APostWithoutLengthHasNoBody)
{
    const std::string token = signIn()["accessToken"];
    start();
    EXPECT_EQ(statusFor("POST /v1/auth/logout HTTP/1.1\r\nContent-Type: application/json\r\n"
                        "Authorization: Bearer "
                  + token + "\r\n\r\n"),
        200);
}

TEST_F(HttpServerTest, OneAddressCannotTakeTheConnectionsOfAll)
{
    settings.limits.connectionsPerAddress = 4;
    start();
    std::vector<std::unique_ptr<LoopbackClient>> silent;
    silent.reserve(6);
    for (int client = 0; client < 6; ++client)
        silent.push_back(std::make_unique<LoopbackClient>(server->port()));

    EXPECT_TRUE(silent.at(0)->isClosedByServer());
    EXPECT_TRUE(silent.at(1)->isClosedByServer());
    EXPECT_FALSE(silent.at(2)->isClosedByServer(50ms));
}

TEST_F(HttpServerTest, ATrustedProxyMayTakeAllConnections)
{
    settings.limits.connectionsPerAddress = 4;
    settings.trustedProxies = {"127.0.0.1"};
    start();
    std::vector<std::unique_ptr<LoopbackClient>> connections;
    connections.reserve(20);
    for (int client = 0; client < 20; ++client)
        connections.push_back(std::make_unique<LoopbackClient>(server->port()));
    for (const auto& connection : connections) {
        connection->send("GET /v1/client/update HTTP/1.1\r\n\r\n");
        EXPECT_EQ(statusIn(connection->readAnswer()), 200);
    }
}

TEST_F(HttpServerTest, BodiesThatWouldTakeTooMuchMemoryTogetherAreRefused)
{
    settings.limits.bodyBytes = 4096;
    start();
    const std::string large = post("/v1/auth/login", std::string(4000, ' '));
    LoopbackClient first(server->port());
    first.send(std::string_view(large).substr(0, large.size() - 1));
    EXPECT_EQ(statusFor(large), 503);

    first.send(" ");
    EXPECT_EQ(statusIn(first.readAnswer()), 400);
    EXPECT_EQ(statusFor(large), 400);
}

TEST_F(HttpServerTest, WorkThatWouldWaitTooLongIsRefused)
{
    const std::string token = signIn()["accessToken"];
    HeldModel model;
    restart(&model);
    settings.workers.models = 1;
    settings.workers.mostWaiting = 1;
    start();
    const std::string polish = post(
        "/v1/text/polish", R"({"transcript":"hello"})", "Authorization: Bearer " + token + "\r\n");
    LoopbackClient worked(server->port());
    worked.send(polish);
    model.awaitQuestion();
    LoopbackClient waiting(server->port());
    waiting.send(polish);
    LoopbackClient refused(server->port());
    // Which of the two comes first is not known; one waits, the other is refused at once.
    refused.send(polish);
    const bool isFirstRefused = &LoopbackClient::firstAnswered(waiting, refused) == &waiting;
    LoopbackClient& outside = isFirstRefused ? waiting : refused;
    LoopbackClient& inside = isFirstRefused ? refused : waiting;
    const std::string answer = outside.readAnswer();
    EXPECT_EQ(statusIn(answer), 503);
    EXPECT_THAT(answer, HasSubstr("Retry-After: 1\r\n"));
    EXPECT_EQ(statusFor("GET /v1/client/update HTTP/1.1\r\n\r\n"), 200);

    model.release();
    EXPECT_EQ(statusIn(worked.readAnswer()), 200);
    EXPECT_EQ(statusIn(inside.readAnswer()), 200);
    server->stop(); // The model ends before the server does.
}

TEST_F(HttpServerTest, StopFinishesTheRequestUnderWay)
{
    const std::string token = signIn()["accessToken"];
    HeldModel model;
    restart(&model);
    start();
    LoopbackClient client(server->port());
    client.send(post(
        "/v1/text/polish", R"({"transcript":"hello"})", "Authorization: Bearer " + token + "\r\n"));
    model.awaitQuestion();
    std::thread stopping([this] { server->stop(); });
    model.release();
    stopping.join();

    EXPECT_EQ(bodyIn(client.readAnswer()), R"({"text":"the model's answer"})");
}

TEST_F(HttpServerTest, AClientThatGoesAwayWhileItsRequestIsWorkedOnHarmsNobody)
{
    const std::string token = signIn()["accessToken"];
    HeldModel model;
    restart(&model);
    start();
    {
        const LoopbackClient client(server->port());
        client.send(post("/v1/text/polish", R"({"transcript":"hello"})",
            "Authorization: Bearer " + token + "\r\n"));
        model.awaitQuestion();
    }
    EXPECT_EQ(statusFor("GET /v1/client/update HTTP/1.1\r\n\r\n"), 200);
    model.release();
    EXPECT_EQ(statusFor("GET /v1/client/update HTTP/1.1\r\n\r\n"), 200);
    server->stop(); // The model ends before the server does.
}

TEST_F(HttpServerTest, ThrottlingSaysHowLongToWait)
{
    addTestAccount();
    start();
    Json wrong = loginBody();
    wrong["password"] = "a wrong guess";
    for (int guess = 0; guess < 10; ++guess)
        EXPECT_EQ(statusFor(post("/v1/auth/login", wrong.dump())), 401);

    LoopbackClient client(server->port());
    client.send(post("/v1/auth/login", wrong.dump()));
    const std::string answer = client.readAnswer();
    EXPECT_EQ(statusIn(answer), 429);
    EXPECT_THAT(answer, HasSubstr("Retry-After: 900\r\n"));
}

TEST_F(HttpServerTest, AnswersAtOnceFromManyThreads)
{
    const std::string token = signIn()["accessToken"];
    start();
    const std::string request = post("/v1/text/polish", R"({"transcript":"um hello"})",
        "Authorization: Bearer " + token + "\r\n");
    std::atomic<int> good = 0;
    std::vector<std::thread> clients(8);
    for (std::thread& client : clients) {
        client = std::thread([&] {
            for (int round = 0; round < 10; ++round) {
                LoopbackClient connection(server->port());
                connection.send(request);
                good += bodyIn(connection.readAnswer()) == R"({"text":"Hello."})" ? 1 : 0;
            }
        });
    }
    for (std::thread& client : clients)
        client.join();
    EXPECT_EQ(good, 80);
}

TEST_F(HttpServerTest, StopEndsIdleConnectionsSoon)
{
    start();
    LoopbackClient client(server->port());
    client.send("GET /v1/client/update HTTP/1.1\r\n\r\n");
    client.readAnswer();
    const auto begin = std::chrono::steady_clock::now();

    server->stop();

    EXPECT_LT(std::chrono::steady_clock::now() - begin, 4s);
    EXPECT_TRUE(client.isClosedByServer());
}

TEST_F(HttpServerTest, APortThatIsTakenIsSaid)
{
    start();
    HttpServerSettings same = settings;
    same.port = server->port();
    HttpServer second(*service, same);

    EXPECT_FALSE(second.start());
}

} // namespace
} // namespace tavrin::devcloud
