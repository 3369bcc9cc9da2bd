#include "devcloud/http/HttpServer.h"
#include "devcloud/support/LoopbackClient.h"
#include "devcloud/support/ServiceTest.h"
#include "devcloud/support/TestCertificate.h"

#include <gmock/gmock.h>

#include <ctime>
#include <filesystem>
#include <fstream>
#include <httplib.h>

using ::testing::HasSubstr;

namespace tavrin::devcloud {
namespace {

constexpr std::int64_t begin = 1'700'000'000;
constexpr std::int64_t end = begin + 1'000'000;

std::string problemOf(const tl::expected<TlsIdentity, std::string>& identity)
{
    return identity ? "none" : identity.error();
}

class TlsIdentityTest : public ::testing::Test {
protected:
    const testing::TestCertificate ours{begin, end};
};

TEST_F(TlsIdentityTest, IsGoodWhileTheCertificateIsValid)
{
    EXPECT_EQ(problemOf(checkedIdentity(ours.certificate, ours.key, begin)), "none");
    EXPECT_EQ(problemOf(checkedIdentity(ours.certificate, ours.key, end)), "none");
}

TEST_F(TlsIdentityTest, AnExpiredCertificateIsSaidWithItsDay)
{
    EXPECT_EQ(problemOf(checkedIdentity(ours.certificate, ours.key, end + 1)),
        "the certificate has expired on 2023-11-26 12:00 UTC");
}

TEST_F(TlsIdentityTest, ACertificateOfTheFutureIsSaidWithItsDay)
{
    EXPECT_EQ(problemOf(checkedIdentity(ours.certificate, ours.key, begin - 1)),
        "the certificate is not valid before 2023-11-14 22:13 UTC");
}

TEST_F(TlsIdentityTest, AnExpiredCertificateAnywhereInTheChainIsSaid)
{
    const testing::TestCertificate older(begin - 10, begin - 1);
    EXPECT_THAT(problemOf(checkedIdentity(ours.certificate + older.certificate, ours.key, begin)),
        HasSubstr("has expired"));
}

TEST_F(TlsIdentityTest, AKeyOfAnotherCertificateIsSaid)
{
    const testing::TestCertificate other(begin, end);
    EXPECT_EQ(problemOf(checkedIdentity(ours.certificate, other.key, begin)),
        "the key does not belong to the certificate");
}

TEST_F(TlsIdentityTest, WhatIsNoCertificateOrNoOpenKeyIsSaid)
{
    for (const std::string& text : {std::string(), std::string("text"), ours.key,
             ours.certificate.substr(0, ours.certificate.size() / 2)})
        EXPECT_EQ(problemOf(checkedIdentity(text, ours.key, begin)),
            "the certificate is no PEM certificate");
    for (const std::string& text : {std::string(), std::string("text"), ours.certificate,
             ours.lockedKey, ours.key.substr(0, ours.key.size() / 2)})
        EXPECT_EQ(problemOf(checkedIdentity(ours.certificate, text, begin)),
            "the key is no PEM key, or a password protects it");
}

TEST_F(TlsIdentityTest, AFileThatCannotBeReadIsNamed)
{
    EXPECT_EQ(problemOf(readIdentity("/nowhere/c.pem", "/nowhere/k.pem", begin)),
        "cannot read /nowhere/c.pem");
    const std::string file = ::testing::TempDir() + "certificate.pem";
    std::ofstream(file) << ours.certificate;
    EXPECT_EQ(problemOf(readIdentity(file, "/nowhere/k.pem", begin)), "cannot read /nowhere/k.pem");
    EXPECT_EQ(problemOf(readIdentity(file, ::testing::TempDir(), begin)),
        "cannot read " + ::testing::TempDir());
    EXPECT_THAT(problemOf(readIdentity(file, file, begin)), HasSubstr(file));
    std::filesystem::remove(file);
}

class TlsServerTest : public testing::ServiceTest {
protected:
    TlsServerTest()
    {
        settings.port = 0;
        settings.tls = TlsIdentity{ours.certificate, ours.key};
    }

    const testing::TestCertificate ours{std::time(nullptr) - 60, std::time(nullptr) + 3600};
    HttpServerSettings settings;
};

TEST_F(TlsServerTest, SpeaksHttpsAsWhomItsCertificateSays)
{
    const std::string file = ::testing::TempDir() + "authority.pem";
    std::ofstream(file) << ours.certificate;
    addTestAccount();
    HttpServer server(*service, settings);
    ASSERT_TRUE(server.start());
    httplib::SSLClient client("localhost", server.port());
    client.set_ca_cert_path(file);
    client.set_keep_alive(true);
    for (int round = 0; round < 3; ++round) {
        const auto answer = client.Post("/v1/auth/login", loginBody().dump(), "application/json");
        ASSERT_TRUE(answer) << httplib::to_string(answer.error());
        EXPECT_EQ(answer->status, 200);
    }
    // A body in several records.
    const auto large = client.Post(
        "/v1/auth/login", std::string(std::size_t{200} * 1024, ' ') + "[]", "application/json");
    ASSERT_TRUE(large) << httplib::to_string(large.error());
    EXPECT_EQ(large->status, 400);
    std::filesystem::remove(file);
}

TEST_F(TlsServerTest, SendsTheCertificatesThatVouchForItsOwn)
{
    const std::int64_t today = std::time(nullptr);
    const testing::TestChain chain(today - 60, today + 3600);
    const std::string file = ::testing::TempDir() + "root.pem";
    std::ofstream(file) << chain.root;
    const auto isTrusted = [&](const std::string& certificate) {
        const auto identity = checkedIdentity(certificate, chain.key, today);
        EXPECT_EQ(problemOf(identity), "none");
        settings.tls = *identity;
        HttpServer server(*service, settings);
        EXPECT_TRUE(server.start());
        httplib::SSLClient client("localhost", server.port());
        client.set_ca_cert_path(file);
        return static_cast<bool>(client.Get("/v1/client/update"));
    };
    EXPECT_TRUE(isTrusted(chain.certificate + chain.authority));
    EXPECT_FALSE(isTrusted(chain.certificate));
    std::filesystem::remove(file);
}

TEST_F(TlsServerTest, PlainHttpGetsNoAnswer)
{
    HttpServer server(*service, settings);
    ASSERT_TRUE(server.start());
    httplib::Client client("127.0.0.1", server.port());
    const auto answer = client.Get("/v1/client/update");
    EXPECT_FALSE(answer);
}

TEST_F(TlsServerTest, AHandshakeThatNeverEndsIsCutOff)
{
    settings.limits.wholeRequest = std::chrono::milliseconds(250);
    HttpServer server(*service, settings);
    ASSERT_TRUE(server.start());
    const testing::LoopbackClient silent(server.port());
    silent.send("\x16\x03\x01");
    EXPECT_TRUE(silent.isClosedByServer());
}

} // namespace
} // namespace tavrin::devcloud
