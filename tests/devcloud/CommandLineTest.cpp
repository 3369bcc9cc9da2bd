#include "devcloud/CommandLine.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tavrin::devcloud {
namespace {

tl::expected<Options, std::string> parse(std::vector<std::string> arguments)
{
    arguments.insert(arguments.end(), {"--data", "folder"});
    return parseCommandLine(arguments);
}

TEST(CommandLineTest, ServesOnThisMachineUnlessToldOtherwise)
{
    const Options options = parse({}).value();

    EXPECT_EQ(options.command, Command::Serve);
    EXPECT_EQ(options.host, "127.0.0.1");
    EXPECT_EQ(options.port, 8787);
    EXPECT_EQ(options.accessTokenLife, std::chrono::hours(1));
    EXPECT_EQ(options.data, "folder");
    EXPECT_TRUE(options.modelUrl.empty());
}

TEST(CommandLineTest, ListenTakesHostAndPort)
{
    EXPECT_EQ(parse({"--listen", "0.0.0.0:80"})->host, "0.0.0.0");
    EXPECT_EQ(parse({"--listen", "0.0.0.0:80"})->port, 80);
    EXPECT_EQ(parse({"--listen", "[::1]:9000"})->host, "::1");
    EXPECT_EQ(parse({"--listen", "9000"})->host, "127.0.0.1");
    EXPECT_EQ(parse({"--listen", "9000"})->port, 9000);
    EXPECT_EQ(parse({"--listen", "127.0.0.1:0"})->port, 0);
    for (const char* value : {"", ":", "host:", ":80", "host:65536", "host:-1", "host:80x"})
        EXPECT_FALSE(parse({"--listen", value})) << value;
}

TEST(CommandLineTest, CommandsAreRead)
{
    EXPECT_EQ(parse({"invite"})->command, Command::Invite);
    const Options account = parse({"account", "a@b.c", "--password-file", "file"}).value();
    EXPECT_EQ(account.command, Command::Account);
    EXPECT_EQ(account.email, "a@b.c");
    EXPECT_EQ(account.passwordFile, "file");
    EXPECT_EQ(parse({"--help"})->command, Command::Help);
    EXPECT_EQ(parse({"--version"})->command, Command::Version);
    EXPECT_FALSE(parse({"account"}));
    EXPECT_FALSE(parse({"account", "a@b.c", "second"}));
    EXPECT_FALSE(parse({"invite", "word"}));
    EXPECT_FALSE(parse({"unknown"}));
}

TEST(CommandLineTest, SessionsAreNamedByAccountAndNumber)
{
    const Options listed = parse({"sessions", "a@b.c"}).value();
    EXPECT_EQ(listed.command, Command::Sessions);
    EXPECT_EQ(listed.email, "a@b.c");
    const Options revoked = parse({"revoke", "a@b.c", "3", "14"}).value();
    EXPECT_EQ(revoked.command, Command::Revoke);
    EXPECT_EQ(revoked.email, "a@b.c");
    EXPECT_EQ(revoked.sessions, (std::vector<std::int64_t>{3, 14}));
    EXPECT_TRUE(parse({"revoke", "a@b.c"})->sessions.empty());
    EXPECT_FALSE(parse({"revoke", "a@b.c"})->allAccounts);
    EXPECT_TRUE(parse({"revoke", "--all"})->allAccounts);

    EXPECT_EQ(parse({"sessions"}).error(), "sessions needs an e-mail address");
    EXPECT_EQ(parse({"revoke"}).error(), "revoke needs an e-mail address");
    EXPECT_FALSE(parse({"sessions", "a@b.c", "3"}));
    EXPECT_FALSE(parse({"sessions", "--all"}));
    EXPECT_FALSE(parse({"--all"}));
    for (const char* number : {"x", "0", "-1", "1x", ""})
        EXPECT_FALSE(parse({"revoke", "a@b.c", number})) << number;
    EXPECT_FALSE(parse({"revoke", "a@b.c", "--all"}));
    EXPECT_FALSE(parse({"revoke", "--all", "a@b.c"}));
}

TEST(CommandLineTest, LivesAndTimeoutsAreBounded)
{
    EXPECT_EQ(parse({"--access-ttl", "5"})->accessTokenLife, std::chrono::seconds(5));
    EXPECT_EQ(parse({"--refresh-ttl", "60"})->refreshTokenLife, std::chrono::seconds(60));
    EXPECT_EQ(parse({"--llm-timeout", "85"})->modelTimeout, std::chrono::seconds(85));
    for (const char* value : {"0", "-1", "", "1h", "99999999999999999999"})
        EXPECT_FALSE(parse({"--access-ttl", value})) << value;
    EXPECT_FALSE(parse({"--llm-timeout", "86"}));
}

TEST(CommandLineTest, ModelUrlAndNameBelongTogether)
{
    const Options options =
        parse({"--llm-url", "http://127.0.0.1:1", "--llm-model", "name"}).value();
    EXPECT_EQ(options.modelUrl, "http://127.0.0.1:1");
    EXPECT_EQ(options.modelName, "name");
    EXPECT_FALSE(parse({"--llm-url", "http://127.0.0.1:1"}));
    EXPECT_FALSE(parse({"--llm-model", "name"}));
}

TEST(CommandLineTest, CertificateAndKeyBelongTogether)
{
    const Options options = parse({"--tls-certificate", "c.pem", "--tls-key", "k.pem"}).value();
    EXPECT_EQ(options.tlsCertificate, "c.pem");
    EXPECT_EQ(options.tlsKey, "k.pem");
    EXPECT_FALSE(parse({"--tls-certificate", "c.pem"}));
    EXPECT_EQ(
        parse({"--tls-key", "k.pem"}).error(), "--tls-certificate and --tls-key belong together");
}

TEST(CommandLineTest, SeveralProxiesMayBeTrustedByTheirNumericAddresses)
{
    EXPECT_TRUE(parse({})->trustedProxies.empty());
    EXPECT_EQ(parse({"--trusted-proxy", "127.0.0.1", "--trusted-proxy", "0:0::1"})->trustedProxies,
        (std::set<std::string>{"127.0.0.1", "::1"}));
    for (const char* value : {"", "localhost", "10.0.0.0/8", "*", "127.0.0.1:80"})
        EXPECT_FALSE(parse({"--trusted-proxy", value})) << value;
}

TEST(CommandLineTest, WhatIsWrongIsNamed)
{
    EXPECT_EQ(parse({"--colour"}).error(), "unknown option: --colour");
    const std::vector<std::string> cut{"--listen"};
    EXPECT_EQ(parseCommandLine(cut).error(), "--listen needs a value");
    EXPECT_EQ(parse({"--access-ttl", "x"}).error(), "--access-ttl has an invalid value: x");
}

TEST(CommandLineTest, HelpNamesEveryOption)
{
    for (const char* option : {"--data", "--listen", "--access-ttl", "--refresh-ttl", "--llm-url",
             "--llm-model", "--llm-key-file", "--llm-timeout", "--update-file", "--password-file",
             "--tls-certificate", "--tls-key", "--trusted-proxy", "--help", "--version", "invite",
             "account EMAIL", "sessions EMAIL", "revoke EMAIL", "revoke --all"})
        EXPECT_NE(helpText().find(option), std::string_view::npos) << option;
}

} // namespace
} // namespace tavrin::devcloud
