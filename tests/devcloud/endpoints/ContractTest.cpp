#include "devcloud/endpoints/ApiDocument.h"
#include "devcloud/http/HttpServer.h"
#include "devcloud/support/HeldModel.h"
#include "devcloud/support/LoopbackClient.h"
#include "devcloud/support/ServiceTest.h"

#include <gmock/gmock.h>

#include <fstream>
#include <functional>
#include <map>
#include <sstream>
#include <thread>

namespace tavrin::devcloud {
namespace {

using testing::DocumentedEndpoint;
using testing::DocumentedField;

std::string document()
{
    std::stringstream text;
    text << std::ifstream(TAVRIN_CLOUD_API_DOCUMENT).rdbuf();
    return text.str();
}

bool hasType(const Json& value, const std::string& type)
{
    return (type == "string" && value.is_string())
        || (type == "integer" && value.is_number_integer())
        || (type == "object" && value.is_object());
}

/// Holds docs/cloud-api.md against what the service really answers.
class ContractTest : public testing::ServiceTest {
protected:
    ContractTest()
    {
        restart(&model);
        model.nextAnswer = "text";
    }

    static Endpoint endpointOf(const DocumentedEndpoint& documented)
    {
        return endpointFor(documented.method, documented.path).value();
    }

    /// A body that the service accepts, made of exactly the documented fields.
    Json goodBody(const DocumentedEndpoint& documented)
    {
        const bool makesAccount = documented.path == "/v1/auth/register"
            || documented.path.starts_with("/v1/auth/registration");
        Json body = Json::object();
        for (const DocumentedField& field : documented.request)
            body[field.name] = goodValue(field.name);
        if (makesAccount)
            body["email"] = newcomer;
        if (documented.path == "/v1/auth/registration/verify")
            body["code"] = startRegistration();
        if (documented.path == "/v1/auth/registration/complete")
            body["registrationToken"] = registrationToken();
        return body;
    }

    Json goodValue(const std::string& name)
    {
        static const Json values = Json::parse(R"({"deviceId":"D","deviceName":"Mac",
            "clientVersion":"0.8.0","transcript":"你好","application":{},"style":"professional",
            "translation":"none","context":"","requestId":"r","operation":"translation",
            "provider":"p","model":"m","inputCharacters":1,"outputCharacters":1,"audioSeconds":0,
            "latencyMs":300000,"status":"success","errorCode":"e","code":"","registrationToken":""})");
        if (name == "email")
            return email;
        if (name == "password")
            return password;
        if (name == "inviteCode")
            return addTestInvite();
        if (name == "refreshToken")
            return session["refreshToken"];
        EXPECT_TRUE(values.contains(name)) << "no sample for the documented field " << name;
        return values.value(name, Json());
    }

    /// Starts a registration of the newcomer and reads the code in the mail.
    std::string startRegistration()
    {
        call(Endpoint::RegistrationStart, {{"email", newcomer}, {"inviteCode", addTestInvite()}});
        const std::string& body = mails.back().body;
        return body.substr(body.find_first_of("0123456789"), 6);
    }

    Json registrationToken()
    {
        const Json verification{{"email", newcomer}, {"code", startRegistration()}};
        return call(Endpoint::RegistrationVerify, verification).value()["registrationToken"];
    }

    Outcome callDocumented(const DocumentedEndpoint& documented, const Json& body)
    {
        return call(endpointOf(documented), body,
            documented.needsToken ? session["accessToken"].get<std::string>() : std::string());
    }

    /// A service, an account and a session that no other call has touched.
    void beginAnew()
    {
        database = Database::inMemory();
        mails.clear();
        restart(&model);
        model.nextAnswer = "text";
        session = signIn();
    }

    const std::string page = document();
    const std::vector<DocumentedEndpoint> endpoints = testing::readApiDocument(page);
    const std::string newcomer = "grace@example.org";
    testing::ScriptedModel model;
    Json session;
};

TEST_F(ContractTest, ThePageNamesEveryEndpointAndNoOther)
{
    std::set<std::string> served;
    for (const Route& route : routes())
        served.insert(std::string(route.method) + " " + std::string(route.path));
    std::set<std::string> documented;
    for (const DocumentedEndpoint& endpoint : endpoints)
        documented.insert(endpoint.method + " " + endpoint.path);

    EXPECT_EQ(documented, served);
    EXPECT_EQ(endpoints.size(), served.size());
}

TEST_F(ContractTest, DocumentedRequestsGetTheDocumentedAnswer)
{
    for (const DocumentedEndpoint& endpoint : endpoints) {
        beginAnew();
        const Outcome outcome = callDocumented(endpoint, goodBody(endpoint));
        ASSERT_TRUE(outcome) << endpoint.path << ": " << outcome.error().message;
        for (const DocumentedField& field : endpoint.answer) {
            ASSERT_TRUE(outcome->contains(field.name)) << endpoint.path << " " << field.name;
            EXPECT_TRUE(hasType(outcome->at(field.name), field.type)) << endpoint.path << *outcome;
        }
    }
}

TEST_F(ContractTest, SessionsHaveTheDocumentedFields)
{
    const std::vector<DocumentedField> fields = testing::readSessionFields(page);
    ASSERT_EQ(fields.size(), 4U);
    int sessions = 0;
    for (const DocumentedEndpoint& endpoint : endpoints) {
        if (!endpoint.answersSession)
            continue;
        ++sessions;
        beginAnew();
        const Json answer = callDocumented(endpoint, goodBody(endpoint)).value();
        for (DocumentedField field : fields) {
            std::ranges::replace(field.name, '.', '/');
            const Json::json_pointer pointer("/" + field.name);
            ASSERT_TRUE(answer.contains(pointer)) << endpoint.path << " " << field.name;
            EXPECT_TRUE(hasType(answer.at(pointer), field.type))
                << endpoint.path << " " << field.name;
        }
    }
    EXPECT_EQ(sessions, 4);
}

TEST_F(ContractTest, EveryDocumentedFieldIsReadWithItsType)
{
    for (const DocumentedEndpoint& endpoint : endpoints) {
        for (const DocumentedField& field : endpoint.request) {
            beginAnew();
            Json body = goodBody(endpoint);
            ASSERT_TRUE(hasType(body[field.name], field.type))
                << endpoint.path << " " << field.name;
            body[field.name] = true;
            EXPECT_EQ(statusOf(callDocumented(endpoint, body)), 400)
                << endpoint.path << " " << field.name;
        }
    }
}

TEST_F(ContractTest, OptionalFieldsMayBeMissing)
{
    for (const DocumentedEndpoint& endpoint : endpoints) {
        beginAnew();
        Json body = goodBody(endpoint);
        for (const DocumentedField& field : endpoint.request) {
            if (field.isOptional)
                body.erase(field.name);
        }
        EXPECT_EQ(statusOf(callDocumented(endpoint, body)), 200) << endpoint.path;
    }
}

TEST_F(ContractTest, BearerEndpointsAnswerStrangersWith401)
{
    for (const DocumentedEndpoint& endpoint : endpoints) {
        beginAnew();
        const Outcome outcome = call(endpointOf(endpoint), goodBody(endpoint));
        EXPECT_EQ(statusOf(outcome), endpoint.needsToken ? 401 : 200) << endpoint.path;
    }
}

/// How each documented error comes about.
class ContractErrorTest : public ContractTest {
protected:
    using Provoke = std::function<Outcome(const DocumentedEndpoint&)>;

    Outcome with(const DocumentedEndpoint& endpoint, const std::string& field, const Json& value)
    {
        Json body = goodBody(endpoint);
        body[field] = value;
        return callDocumented(endpoint, body);
    }

    static Outcome repeated(int times, const std::function<Outcome()>& once)
    {
        for (int round = 0; round < times; ++round)
            once();
        return once();
    }

    /// By path and status.
    std::map<std::pair<std::string, int>, Provoke> provocations()
    {
        const auto stranger = [this](const DocumentedEndpoint& endpoint) {
            return call(endpointOf(endpoint), goodBody(endpoint), "guessed");
        };
        const auto wrong = [this](const char* field, const Json& value) {
            return [this, field, value](
                       const DocumentedEndpoint& endpoint) { return with(endpoint, field, value); };
        };
        const auto noModel = [this](const char* field, const char* value) {
            return [this, field, value](const DocumentedEndpoint& endpoint) {
                restart(nullptr);
                return with(endpoint, field, value);
            };
        };
        const auto failingModel = [this](const char* field, const char* value) {
            return [this, field, value](const DocumentedEndpoint& endpoint) {
                model.nextAnswer.reset();
                return with(endpoint, field, value);
            };
        };
        const auto tooMuchAtOnce = [this](const char* field, const char* value) {
            return [this, field, value](const DocumentedEndpoint& endpoint) {
                testing::HeldModel held;
                restart(&held);
                std::vector<std::thread> others;
                others.reserve(4);
                for (int other = 0; other < 4; ++other)
                    others.emplace_back([&] { with(endpoint, field, value); });
                held.awaitQuestions(4);
                Outcome outcome = with(endpoint, field, value);
                held.release();
                for (std::thread& other : others)
                    other.join();
                return outcome;
            };
        };
        const auto manyTimes = [this](int times, const char* field, const Json& value) {
            return [this, times, field, value](const DocumentedEndpoint& endpoint) {
                Json body = goodBody(endpoint);
                body[field] = value;
                return repeated(times, [&] { return callDocumented(endpoint, body); });
            };
        };
        return {
            {{"/v1/auth/login", 401}, wrong("password", "a wrong guess")},
            {{"/v1/auth/login", 429}, manyTimes(10, "password", "a wrong guess")},
            {{"/v1/auth/registration/start", 403}, wrong("inviteCode", "guessed")},
            {{"/v1/auth/registration/start", 409}, wrong("email", email)},
            {{"/v1/auth/registration/start", 422}, wrong("email", "nobody")},
            {{"/v1/auth/registration/start", 429}, manyTimes(5, "email", newcomer)},
            {{"/v1/auth/registration/verify", 422}, wrong("code", "none")},
            {{"/v1/auth/registration/verify", 429}, manyTimes(5, "code", "none")},
            {{"/v1/auth/registration/complete", 403}, wrong("registrationToken", "guessed")},
            {{"/v1/auth/registration/complete", 409},
                [this](const DocumentedEndpoint& endpoint) {
                    Json body = goodBody(endpoint);
                    Json faster = body;
                    faster["inviteCode"] = addTestInvite();
                    call(Endpoint::Register, faster);
                    return callDocumented(endpoint, body);
                }},
            {{"/v1/auth/registration/complete", 422}, wrong("password", "short")},
            {{"/v1/auth/register", 403}, wrong("inviteCode", "guessed")},
            {{"/v1/auth/register", 409}, wrong("email", email)},
            {{"/v1/auth/register", 422},
                [this](const DocumentedEndpoint& endpoint) {
                    EXPECT_EQ(statusOf(with(endpoint, "email", "nobody")), 422);
                    return with(endpoint, "password", "short");
                }},
            {{"/v1/auth/register", 429},
                [this](const DocumentedEndpoint& endpoint) {
                    Json body = goodBody(endpoint);
                    body["inviteCode"] = "guessed";
                    return repeated(5, [&] { return callDocumented(endpoint, body); });
                }},
            {{"/v1/auth/refresh", 401}, wrong("refreshToken", "guessed")},
            {{"/v1/auth/me", 401}, stranger},
            {{"/v1/auth/logout", 401}, stranger},
            {{"/v1/text/polish", 401}, stranger},
            {{"/v1/text/polish", 422}, wrong("translation", "unknown")},
            {{"/v1/text/polish", 429}, tooMuchAtOnce("translation", "english")},
            {{"/v1/text/polish", 502}, failingModel("translation", "english")},
            {{"/v1/text/polish", 503}, noModel("translation", "english")},
            {{"/v1/text/chat", 401}, stranger},
            {{"/v1/text/chat", 422}, wrong("transcript", " ")},
            {{"/v1/text/chat", 429}, tooMuchAtOnce("context", "Notes")},
            {{"/v1/text/chat", 502}, failingModel("context", "Notes")},
            {{"/v1/text/chat", 503}, noModel("context", "Notes")},
            {{"/v1/usage/summary", 401}, stranger},
            {{"/v1/usage/report", 401}, stranger},
            {{"/v1/usage/report", 422}, wrong("latencyMs", 300001)},
        };
    }
};

TEST_F(ContractErrorTest, EveryDocumentedErrorComesAboutAsDocumentedAndNoOtherIsKnown)
{
    auto remaining = provocations();
    for (const DocumentedEndpoint& endpoint : endpoints) {
        for (const testing::DocumentedError& error : endpoint.errors) {
            const auto provocation = remaining.extract({endpoint.path, error.status});
            ASSERT_TRUE(provocation) << endpoint.path << " " << error.status;
            beginAnew();
            const Outcome outcome = provocation.mapped()(endpoint);
            ASSERT_EQ(statusOf(outcome), error.status) << endpoint.path;
            EXPECT_FALSE(outcome.error().message.empty());
            const bool promisesWords = error.when.find("已经注册") != std::string::npos;
            EXPECT_EQ(outcome.error().message.find("已经注册") != std::string::npos, promisesWords)
                << endpoint.path << " " << error.status;
        }
    }
    for (const auto& [key, provocation] : remaining)
        ADD_FAILURE() << "not documented: " << key.first << " " << key.second;
}

TEST_F(ContractErrorTest, ErrorsThatEveryEndpointSharesComeAboutAsDocumented)
{
    const std::string post = "POST /v1/auth/login HTTP/1.1\r\n";
    const std::string json = post + "Content-Type: application/json\r\n";
    const std::string good = json + "Content-Length: " + std::to_string(loginBody().dump().size())
        + "\r\n\r\n" + loginBody().dump();
    std::map<int, std::string> requests{{400, json + "Content-Length: 2\r\n\r\n[]"},
        {404, "GET /v1/nowhere HTTP/1.1\r\n\r\n"}, {405, "GET /v1/auth/login HTTP/1.1\r\n\r\n"},
        {411, json + "Transfer-Encoding: chunked\r\n\r\n2\r\n{}\r\n0\r\n\r\n"},
        {413, json + "Content-Length: 100000000\r\n\r\n"},
        {415, post + "Content-Type: text/plain\r\nContent-Length: 2\r\n\r\n{}"}, {500, good},
        {503, good}};
    for (const int status : testing::readSharedErrors(page)) {
        const auto request = requests.extract(status);
        ASSERT_TRUE(request) << status;
        beginAnew();
        if (status == 500) {
            Transaction transaction(*database);
            transaction.statement("ALTER TABLE accounts RENAME TO lost").run();
            transaction.commit();
        }
        HttpServerSettings settings;
        settings.port = 0;
        settings.workers.mostWaiting = status == 503 ? 0 : 1;
        HttpServer server(*service, settings);
        ASSERT_TRUE(server.start());
        testing::LoopbackClient client(server.port());
        client.send(request.mapped());
        const std::string answer = client.readAnswer();
        EXPECT_EQ(testing::statusIn(answer), status);
        const Json body = Json::parse(testing::bodyIn(answer), nullptr, false);
        ASSERT_TRUE(body.is_object()) << answer;
        EXPECT_FALSE(body.at("error").at("message").get<std::string>().empty());
        EXPECT_EQ(answer.find("Retry-After: ") != std::string::npos, status == 503);
    }
    for (const auto& [status, request] : requests)
        ADD_FAILURE() << "not documented: " << status;
}

} // namespace
} // namespace tavrin::devcloud
