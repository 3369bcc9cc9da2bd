#include "platform/qt/QtHttpTransport.h"
#include "support/QtPrinters.h"
#include "support/WaitUntil.h"
#include "support/servers/LoopbackServer.h"
#include "support/servers/TestAuthority.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <iterator>
#include <thread>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

using testing::LoopbackServer;
using testing::ServedRequest;

class QtHttpTransportTlsTest : public ::testing::Test {
protected:
    testing::TestAuthority authority;

    static std::ptrdiff_t threads()
    {
        return std::distance(std::filesystem::directory_iterator("/proc/self/task"), {});
    }

    void SetUp() override
    {
        // With the first thread of a process the thread sanitizer starts one of its own.
        std::thread([] {}).join();
        m_threadsBefore = threads();
    }

    // Qt takes the network's thread for ended a moment before the system does. OpenSSL frees what
    // it keeps for a thread when the system ends it, but not when the process is ending already.
    void TearDown() override
    {
        EXPECT_TRUE(testing::waitUntil([&] { return threads() == m_threadsBefore; }));
    }

    static Result<HttpResponse> get(QtHttpTransport& transport, const QUrl& url)
    {
        std::optional<Result<HttpResponse>> received;
        transport.send({url, "GET", {{"Authorization", "Bearer token"}}, std::nullopt},
            [&](const Result<HttpResponse>& answer) { received = answer; });
        EXPECT_TRUE(testing::waitUntil([&] { return received.has_value(); }));
        return received.value_or(HttpResponse{});
    }

    static void expectRefused(
        const QSslConfiguration& serverTls, const QSslConfiguration& clientTls)
    {
        LoopbackServer server(serverTls);
        QtHttpTransport transport({}, clientTls);
        const Result<HttpResponse> answer = get(transport, server.url());

        ASSERT_FALSE(answer.has_value());
        EXPECT_EQ(answer.error().code, static_cast<int>(HttpFailure::Insecure));
        EXPECT_TRUE(server.requests().isEmpty());
    }

private:
    std::ptrdiff_t m_threadsBefore = 0;
};

TEST_F(QtHttpTransportTlsTest, ACertificateThatHoldsIsAcceptedAndItsConnectionReused)
{
    LoopbackServer server(authority.server(u"IP:127.0.0.1"_s));
    QtHttpTransport transport({}, authority.client());

    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(get(transport, server.url()).value(), (HttpResponse{200, {}}));
    EXPECT_EQ(server.connections(), 1);
}

TEST_F(QtHttpTransportTlsTest, AnotherHostsCertificateIsRefused)
{
    expectRefused(authority.server(u"DNS:other.test"_s), authority.client());
}

TEST_F(QtHttpTransportTlsTest, AnExpiredCertificateIsRefused)
{
    expectRefused(authority.server(u"IP:127.0.0.1"_s, -1), authority.client());
}

TEST_F(QtHttpTransportTlsTest, ASelfSignedCertificateIsRefused)
{
    expectRefused(authority.selfSigned(u"IP:127.0.0.1"_s), authority.client());
}

TEST_F(QtHttpTransportTlsTest, AnUnknownAuthorityIsRefused)
{
    expectRefused(authority.server(u"IP:127.0.0.1"_s), QSslConfiguration::defaultConfiguration());
}

TEST_F(QtHttpTransportTlsTest, AServerThatSpeaksNoTlsIsNoSecureConnection)
{
    LoopbackServer server;
    server.onFirstBytes = [](QTcpSocket& socket) {
        socket.write("HTTP/1.1 400 Bad Request\r\n\r\n");
        socket.disconnectFromHost();
    };
    QtHttpTransport transport({}, authority.client());
    QUrl url = server.url();
    url.setScheme(u"https"_s);

    EXPECT_FALSE(get(transport, url).has_value());
}

TEST_F(QtHttpTransportTlsTest, ARedirectToPlainHttpIsRefused)
{
    LoopbackServer plain;
    LoopbackServer server(authority.server(u"IP:127.0.0.1"_s));
    const auto redirectTo = [&](const QByteArray& location) {
        server.handler = [location](const ServedRequest&, QTcpSocket& socket) {
            socket.write(LoopbackServer::answer(307, {}, "Location: " + location + "\r\n"));
        };
    };
    QtHttpTransport transport({}, authority.client());
    QByteArray samePort = server.url().toEncoded();
    samePort.replace("https:", "http:");
    for (const QByteArray& location : {plain.url().toEncoded(), samePort}) {
        redirectTo(location);
        EXPECT_EQ(
            get(transport, server.url()).error().code, static_cast<int>(HttpFailure::Redirected));
    }
    EXPECT_TRUE(plain.requests().isEmpty());
}

} // namespace
} // namespace tavrin
