#include "platform/qt/QtHttpTransport.h"
#include "support/QtPrinters.h"
#include "support/WaitUntil.h"
#include "support/ports/InMemoryHttpTransport.h"
#include "support/ports/VirtualTime.h"
#include "support/servers/LoopbackServer.h"

#include <gtest/gtest.h>

#include <functional>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

/// A transport together with the network behind it.
class Network {
public:
    virtual ~Network() = default;

    [[nodiscard]] virtual HttpTransport& transport() = 0;
    [[nodiscard]] virtual QUrl url() const = 0;

    /// What the next requests are answered with; without, they wait.
    virtual void willAnswer(int status, const QByteArray& body) = 0;
    virtual void willBeUnreachable() = 0;

    /// Method and body of every request that reached the server.
    [[nodiscard]] virtual QList<std::pair<QByteArray, QByteArray>> arrived() const = 0;
    [[nodiscard]] virtual QByteArray arrivedHeader(const QByteArray& name) const = 0;

    virtual void destroyTransport() = 0;

    /// Lets time pass until @p condition holds.
    [[nodiscard]] virtual bool settle(const std::function<bool()>& condition) = 0;
};

class InMemoryNetwork final : public Network {
public:
    HttpTransport& transport() override { return *m_transport; }

    QUrl url() const override { return QUrl(u"https://cloud.test/v1"_s); }

    void willAnswer(int status, const QByteArray& body) override
    {
        m_transport->willAnswer(status, body);
    }

    void willBeUnreachable() override { m_transport->willFail(HttpFailure::Unreachable); }

    QList<std::pair<QByteArray, QByteArray>> arrived() const override
    {
        QList<std::pair<QByteArray, QByteArray>> all;
        for (const HttpRequest& request : m_transport->requests())
            all.append({request.method, request.body.value_or(QByteArray())});
        return all;
    }

    QByteArray arrivedHeader(const QByteArray& name) const override
    {
        for (const auto& [headerName, value] : m_transport->requests().last().headers) {
            if (headerName == name)
                return value;
        }
        return {};
    }

    void destroyTransport() override { m_transport.reset(); }

    bool settle(const std::function<bool()>& condition) override
    {
        m_time.advance(Seconds{1});
        return condition();
    }

private:
    testing::VirtualTime m_time;
    std::optional<testing::InMemoryHttpTransport> m_transport{m_time};
};

class LoopbackNetwork final : public Network {
public:
    LoopbackNetwork()
    {
        m_server.handler = [this](const testing::ServedRequest&, QTcpSocket& socket) {
            if (!m_answers.isEmpty())
                socket.write(m_answers.takeFirst());
        };
    }

    HttpTransport& transport() override { return *m_transport; }

    QUrl url() const override { return m_server.url(u"/v1"_s); }

    void willAnswer(int status, const QByteArray& body) override
    {
        const bool bodiless = status == 204 || status == 304;
        m_answers.append(testing::LoopbackServer::answer(status, bodiless ? QByteArray() : body));
    }

    void willBeUnreachable() override { m_server.close(); }

    QList<std::pair<QByteArray, QByteArray>> arrived() const override
    {
        QList<std::pair<QByteArray, QByteArray>> all;
        for (const testing::ServedRequest& request : m_server.requests())
            all.append({request.method, request.body});
        return all;
    }

    QByteArray arrivedHeader(const QByteArray& name) const override
    {
        return m_server.requests().last().headers.value(name.toLower());
    }

    void destroyTransport() override { m_transport.reset(); }

    bool settle(const std::function<bool()>& condition) override
    {
        return testing::waitUntil(condition);
    }

private:
    testing::LoopbackServer m_server;
    QList<QByteArray> m_answers;
    std::optional<QtHttpTransport> m_transport{std::in_place};
};

struct NetworkKind {
    const char* name;
    std::unique_ptr<Network> (*make)();
};

void PrintTo(const NetworkKind& kind, std::ostream* out)
{
    *out << kind.name;
}

class HttpTransportContractTest : public ::testing::TestWithParam<NetworkKind> {
protected:
    std::unique_ptr<Network> network = GetParam().make();
    QList<Result<HttpResponse>> answers;

    HttpTransport::ResponseCompletion keep()
    {
        return [this](const Result<HttpResponse>& answer) { answers.append(answer); };
    }

    HttpRequest get() const { return {network->url(), "GET", {}, std::nullopt}; }

    HttpRequest post(const QByteArray& body) const
    {
        return {network->url(), "POST", {{"Content-Type", "application/json"}}, body};
    }

    void send(const HttpRequest& request) { network->transport().send(request, keep()); }

    [[nodiscard]] bool settled(qsizetype count = 1)
    {
        return network->settle([&] { return answers.size() >= count; });
    }

    [[nodiscard]] HttpFailure failureOf(qsizetype index) const
    {
        EXPECT_EQ(answers.at(index).error().domain, u"TavrinHttp"_s);
        EXPECT_FALSE(answers.at(index).error().message.isEmpty());
        return static_cast<HttpFailure>(answers.at(index).error().code);
    }
};

INSTANTIATE_TEST_SUITE_P(Transports, HttpTransportContractTest,
    ::testing::Values(
        NetworkKind{"InMemory",
            []() -> std::unique_ptr<Network> { return std::make_unique<InMemoryNetwork>(); }},
        NetworkKind{"Qt",
            []() -> std::unique_ptr<Network> { return std::make_unique<LoopbackNetwork>(); }}));

TEST_P(HttpTransportContractTest, ARequestArrivesAsItWasGivenAndItsAnswerComesBack)
{
    network->willAnswer(200, "{\"text\": \"你好\"}");
    HttpRequest request = post("{\"n\":1}");
    request.headers.emplaceBack("Authorization", "Bearer token");
    send(request);
    ASSERT_TRUE(settled());

    EXPECT_EQ(
        network->arrived(), (QList<std::pair<QByteArray, QByteArray>>{{"POST", "{\"n\":1}"}}));
    EXPECT_EQ(network->arrivedHeader("Content-Type"), "application/json");
    EXPECT_EQ(network->arrivedHeader("Authorization"), "Bearer token");
    EXPECT_EQ(answers.first().value(), (HttpResponse{200, "{\"text\": \"你好\"}"}));
}

TEST_P(HttpTransportContractTest, AGetHasNoBody)
{
    network->willAnswer(200, {});
    send(get());
    ASSERT_TRUE(settled());

    EXPECT_EQ(network->arrived(), (QList<std::pair<QByteArray, QByteArray>>{{"GET", {}}}));
    EXPECT_EQ(answers.first().value(), (HttpResponse{200, {}}));
}

TEST_P(HttpTransportContractTest, EveryFinalStatusIsAnAnswer)
{
    for (int status = 200; status <= 599; ++status) {
        const QByteArray body = status == 204 || status == 304 ? "" : "said";
        network->willAnswer(status, body);
        send(status % 2 ? get() : post("{}"));
        ASSERT_TRUE(settled(status - 199)) << status;

        ASSERT_TRUE(answers.last().has_value()) << status;
        EXPECT_EQ(answers.last().value(), (HttpResponse{status, body}));
    }
    EXPECT_EQ(network->arrived().size(), 400);
}

TEST_P(HttpTransportContractTest, NothingCompletesInsideSend)
{
    network->willAnswer(200, {});
    HttpRequest refused = get();
    refused.headers.emplaceBack("X", "a\nb");
    send(get());
    send(refused);

    EXPECT_TRUE(answers.isEmpty());
    EXPECT_TRUE(settled(2));
}

TEST_P(HttpTransportContractTest, HeadersThatBreakTheLineAreRefused)
{
    for (const auto& header :
        {std::pair<QByteArray, QByteArray>{"Authorization", "a\r\nX: 1"}, {"Authorization", "a\nb"},
            {"Authorization", "a\rb"}, {"Authorization", QByteArray("a\0b", 3)}, {"X\r\nY", "1"}}) {
        answers.clear();
        HttpRequest request = get();
        request.headers.append(header);
        send(request);
        ASSERT_TRUE(settled());

        EXPECT_EQ(failureOf(0), HttpFailure::Refused);
    }
    EXPECT_TRUE(network->arrived().isEmpty());
}

TEST_P(HttpTransportContractTest, AnAddressWithoutAHostIsRefused)
{
    for (const QUrl& url : {QUrl(), QUrl(u"https://"_s), QUrl(u"/v1"_s)}) {
        answers.clear();
        HttpRequest request = get();
        request.url = url;
        send(request);
        ASSERT_TRUE(settled());

        EXPECT_EQ(failureOf(0), HttpFailure::Refused);
    }
}

TEST_P(HttpTransportContractTest, EightMebibytesAreAccepted)
{
    network->willAnswer(200, QByteArray(8LL * 1024 * 1024, 'x'));
    send(get());
    ASSERT_TRUE(settled());

    EXPECT_EQ(answers.first()->body.size(), 8LL * 1024 * 1024);
}

TEST_P(HttpTransportContractTest, OneByteMoreIsRefused)
{
    network->willAnswer(200, QByteArray(8LL * 1024 * 1024 + 1, 'x'));
    send(get());
    ASSERT_TRUE(settled());

    EXPECT_EQ(failureOf(0), HttpFailure::TooLarge);
}

TEST_P(HttpTransportContractTest, WithoutAServerItIsUnreachable)
{
    network->willBeUnreachable();
    send(post("{}"));
    ASSERT_TRUE(settled());

    EXPECT_EQ(failureOf(0), HttpFailure::Unreachable);
}

TEST_P(HttpTransportContractTest, RequestsRunSideBySide)
{
    network->willAnswer(200, "1");
    network->willAnswer(200, "2");
    network->willAnswer(200, "3");
    for (int i = 0; i < 3; ++i)
        send(get());
    ASSERT_TRUE(settled(3));

    for (const Result<HttpResponse>& answer : answers)
        EXPECT_EQ(answer->status, 200);
}

TEST_P(HttpTransportContractTest, ACompletionMaySendAgain)
{
    network->willAnswer(401, {});
    network->willAnswer(200, {});
    network->transport().send(get(), [&](const Result<HttpResponse>& answer) {
        answers.append(answer);
        send(get());
    });
    ASSERT_TRUE(settled(2));

    EXPECT_EQ(answers[0]->status, 401);
    EXPECT_EQ(answers[1]->status, 200);
}

TEST_P(HttpTransportContractTest, ItsEndCancelsWhatStillRuns)
{
    send(get());
    send(post("{}"));
    network->destroyTransport();

    ASSERT_EQ(answers.size(), 2);
    EXPECT_EQ(failureOf(0), HttpFailure::Cancelled);
    EXPECT_EQ(failureOf(1), HttpFailure::Cancelled);
}

TEST_P(HttpTransportContractTest, ItsEndCancelsWhatWasRefusedButNotYetSaid)
{
    HttpRequest refused = get();
    refused.headers.emplaceBack("X", "a\nb");
    send(refused);
    network->destroyTransport();

    ASSERT_EQ(answers.size(), 1);
    EXPECT_EQ(failureOf(0), HttpFailure::Cancelled);
}

TEST_P(HttpTransportContractTest, ItsEndCancelsWhatIsSentMeanwhile)
{
    HttpTransport& transport = network->transport();
    const HttpRequest second = get();
    transport.send(get(), [&](const Result<HttpResponse>& answer) {
        answers.append(answer);
        transport.send(second, keep());
    });
    network->destroyTransport();

    ASSERT_EQ(answers.size(), 2);
    EXPECT_EQ(failureOf(1), HttpFailure::Cancelled);
}

} // namespace
} // namespace tavrin
