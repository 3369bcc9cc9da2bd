#include "devcloud/model/ChatCompletions.h"

#include "devcloud/api/Json.h"
#include "devcloud/api/RequestBody.h"
#include "devcloud/security/Secrets.h"

#include <gtest/gtest.h>

#include <future>
#include <httplib.h>
#include <mutex>
#include <thread>

using namespace std::chrono_literals;

namespace tavrin::devcloud {
namespace {

/// A model server in this process, answering what the test says.
class StubModelServer {
public:
    StubModelServer()
    {
        m_server.Post("/v1/chat/completions", [this](const auto& request, auto& response) {
            std::unique_lock lock(m_mutex);
            requests.push_back(request);
            m_released.wait_for(lock, 5s, [this] { return !m_held; });
            response.status = status;
            if (!location.empty())
                response.set_header("Location", location);
            response.set_content(body, "application/json");
        });
        const auto elsewhere = [this](const auto& request, auto& response) {
            const std::lock_guard lock(m_mutex);
            requests.push_back(request);
            response.set_content(body, "application/json");
        };
        m_server.Post("/elsewhere", elsewhere);
        m_server.Get("/elsewhere", elsewhere);
        m_port = m_server.bind_to_any_port("127.0.0.1");
        m_thread = std::thread([this] { m_server.listen_after_bind(); });
        while (!m_server.is_running())
            std::this_thread::yield();
    }

    ~StubModelServer()
    {
        release();
        m_server.stop();
        m_thread.join();
    }

    StubModelServer(const StubModelServer&) = delete;
    StubModelServer& operator=(const StubModelServer&) = delete;

    [[nodiscard]] std::string url() const { return "http://127.0.0.1:" + std::to_string(m_port); }

    void answer(const std::string& text)
    {
        body =
            Json{{"choices", {{{"message", {{"role", "assistant"}, {"content", text}}}}}}}.dump();
    }

    /// Answers wait until release().
    void hold()
    {
        const std::lock_guard lock(m_mutex);
        m_held = true;
    }

    void release()
    {
        {
            const std::lock_guard lock(m_mutex);
            m_held = false;
        }
        m_released.notify_all();
    }

    int status = 200;
    std::string location; ///< Sent along when it is not empty.
    std::string body;
    std::vector<httplib::Request> requests;

private:
    httplib::Server m_server;
    std::thread m_thread;
    std::mutex m_mutex;
    std::condition_variable m_released;
    bool m_held = false;
    int m_port = 0;
};

class ChatCompletionsTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(initializeSecrets()); }

    std::optional<std::string> ask(std::chrono::milliseconds timeout = 5s)
    {
        ChatCompletions model({*parseModelUrl(stub.url()), "a-model", "a-key", timeout});
        return model.answer({"the instructions", "the request"});
    }

    StubModelServer stub;
};

TEST_F(ChatCompletionsTest, AsksInTheCommonForm)
{
    stub.answer("  the answer\n");

    EXPECT_EQ(ask(), "the answer");
    ASSERT_EQ(stub.requests.size(), 1U);
    const httplib::Request& request = stub.requests.front();
    EXPECT_EQ(request.get_header_value("Authorization"), "Bearer a-key");
    EXPECT_EQ(request.get_header_value("Content-Type"), "application/json");
    EXPECT_EQ(
        Json::parse(request.body), Json::parse(R"({"model":"a-model","stream":false,"messages":[
            {"role":"system","content":"the instructions"},
            {"role":"user","content":"the request"}]})"));
}

TEST_F(ChatCompletionsTest, FailuresGiveNoAnswer)
{
    stub.answer("text");
    for (const int status : {201, 302, 400, 401, 404, 429, 500, 503}) {
        stub.status = status;
        EXPECT_FALSE(ask()) << status;
    }
}

TEST_F(ChatCompletionsTest, WhatWasSaidFollowsNoRedirection)
{
    stub.answer("text");
    stub.location = "/elsewhere";
    for (const int status : {301, 302, 303, 307, 308}) {
        stub.requests.clear();
        stub.status = status;
        EXPECT_FALSE(ask()) << status;
        EXPECT_EQ(stub.requests.size(), 1U) << status;
    }
}

TEST_F(ChatCompletionsTest, AnswersWithoutTextGiveNone)
{
    for (const char* body : {"", "text", "[]", "{}", R"({"choices":[]})", R"({"choices":{}})",
             R"({"choices":[{}]})", R"({"choices":[1]})", R"({"choices":[{"message":{}}]})",
             R"({"choices":[{"message":1}]})", R"({"choices":[{"message":{"content":null}}]})",
             R"({"choices":[{"message":{"content":["a"]}}]})",
             R"({"choices":[{"message":{"content":" \n"}}]})",
             R"({"choices":[{"message":{"content":"<think>only thoughts</think>"}}]})",
             R"({"choices":[{"message":{"content":"<think>cut off"}}]})"}) {
        stub.body = body;
        EXPECT_FALSE(ask()) << body;
    }
}

TEST_F(ChatCompletionsTest, ThoughtsBeforeTheAnswerAreLeftOut)
{
    stub.answer("<think>so I should…</think>\n\nthe answer");
    EXPECT_EQ(ask(), "the answer");
}

TEST_F(ChatCompletionsTest, AnAnswerThatIsTooLargeGivesNone)
{
    stub.answer(std::string(2 * maxBodyBytes, 'a'));
    EXPECT_FALSE(ask());
}

TEST_F(ChatCompletionsTest, AnAnswerThatTakesTooLongGivesNone)
{
    stub.answer("text");
    stub.hold();
    const auto begin = std::chrono::steady_clock::now();

    EXPECT_FALSE(ask(200ms));

    EXPECT_LT(std::chrono::steady_clock::now() - begin, 3s);
}

TEST(ModelUrlTest, NobodyListeningGivesNoAnswer)
{
    httplib::Server closed;
    const int port = closed.bind_to_any_port("127.0.0.1");
    const auto address = parseModelUrl("http://127.0.0.1:" + std::to_string(port));
    closed.stop();
    ChatCompletions model({*address, "a-model", "", 300ms});

    EXPECT_FALSE(model.answer({"", ""}));
}

TEST(ModelUrlTest, TheCompletionsStandBelowTheBase)
{
    const std::string origin = "https://models.example";
    const ModelAddress common{origin, "/v1/chat/completions"};
    EXPECT_EQ(parseModelUrl(origin), common);
    EXPECT_EQ(parseModelUrl(origin + "/"), common);
    EXPECT_EQ(parseModelUrl(origin + "/v1"), common);
    EXPECT_EQ(parseModelUrl(origin + "/v1/"), common);
    EXPECT_EQ(parseModelUrl(origin + "/api"), (ModelAddress{origin, "/api/v1/chat/completions"}));
    EXPECT_EQ(parseModelUrl("HTTPS://models.example:8443")->origin, "https://models.example:8443");
}

TEST(ModelUrlTest, PlainHttpIsForThisMachineOnly)
{
    for (const char* url : {"http://127.0.0.1:8080", "http://localhost", "http://[::1]:8080/v1"})
        EXPECT_TRUE(parseModelUrl(url)) << url;
    for (const char* url : {"http://models.example", "http://127.0.0.1.example",
             "http://localhost.example", "http://127.0.0.2", "ftp://127.0.0.1", "127.0.0.1:8080",
             "https://", "https:///v1", "", "http://127.0.0.1@models.example", "https://a b",
             "https://models.example?x=1", "http://[::1", "http://localhost:80@models.example"})
        EXPECT_FALSE(parseModelUrl(url)) << url;
}

} // namespace
} // namespace tavrin::devcloud
