#include "devcloud/support/Program.h"

#include "devcloud/store/Accounts.h"
#include "devcloud/store/Database.h"
#include "devcloud/store/Sessions.h"
#include "devcloud/store/Usage.h"
#include "devcloud/support/TestCertificate.h"

#include <ctime>
#include <sstream>

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::MatchesRegex;
using ::testing::Not;

namespace tavrin::devcloud {
namespace {

using testing::Program;
using testing::ProgramTest;

TEST_F(ProgramTest, HelpAndVersionAreAnswered)
{
    Program help({"--help"});
    EXPECT_THAT(help.readAll(), HasSubstr("usage: tavrin-devcloud"));
    EXPECT_EQ(help.exitCode(), 0);
    Program version({"--version"});
    EXPECT_THAT(version.readAll(), MatchesRegex("tavrin-devcloud [0-9.]+\n"));
    EXPECT_EQ(version.exitCode(), 0);
}

TEST_F(ProgramTest, AWrongCommandLineIsSaid)
{
    Program program({"--colour"});
    EXPECT_EQ(program.readAll(), "tavrin-devcloud: unknown option: --colour\n");
    EXPECT_EQ(program.exitCode(), 2);
}

TEST_F(ProgramTest, InvitePrintsACode)
{
    Program program(withData({"invite"}));
    EXPECT_THAT(program.readAll(), MatchesRegex("TAV-[A-Z2-9]{4}-[A-Z2-9]{4}\n"));
    EXPECT_EQ(program.exitCode(), 0);
}

TEST_F(ProgramTest, AnAccountMadeByCommandSignsInUntilSigterm)
{
    Program account(withData({"account", "Ada@Example.org"}));
    account.type("correct horse\n");
    EXPECT_EQ(account.readAll(), "account made: ada@example.org\n");
    EXPECT_EQ(account.exitCode(), 0);

    Program service(withData({"--listen", "127.0.0.1:0"}));
    const std::string line = service.readLine();
    ASSERT_THAT(line, MatchesRegex("tavrin-devcloud: listening on 127.0.0.1:[0-9]+"));
    testing::LoopbackClient client(std::atoi(line.substr(line.rfind(':') + 1).c_str()));
    const std::string body = R"({"email":"ada@example.org","password":"correct horse"})";
    client.send("POST /v1/auth/login HTTP/1.1\r\nContent-Type: application/json\r\nContent-Length: "
        + std::to_string(body.size()) + "\r\n\r\n" + body);
    EXPECT_EQ(testing::statusIn(client.readAnswer()), 200);

    service.send(SIGTERM);
    EXPECT_EQ(service.readAll(), "");
    EXPECT_EQ(service.exitCode(), 0);
    EXPECT_FALSE(std::filesystem::exists(folder + "/devcloud.sqlite-wal"));
}

TEST_F(ProgramTest, TheServiceForgetsOldUsage)
{
    const std::filesystem::path path = folder + "/devcloud.sqlite";
    const auto rows = [&path] {
        Database database(path);
        Transaction transaction(database);
        Statement row = transaction.statement("SELECT COUNT(*) FROM usage");
        row.step();
        return row.number(0);
    };
    {
        Database database(path);
        Transaction transaction(database);
        const std::int64_t account = addAccount(transaction, "a@b.c", "hash", 1);
        addUsage(transaction, account, {.requestId = "old", .source = "client"}, 1);
        addUsage(
            transaction, account, {.requestId = "new", .source = "client"}, std::time(nullptr));
        transaction.commit();
    }
    EXPECT_EQ(rows(), 2);

    Program service(withData({"--listen", "127.0.0.1:0"}));
    ASSERT_THAT(service.readLine(), HasSubstr("listening"));
    service.send(SIGTERM);
    EXPECT_EQ(service.exitCode(), 0);

    EXPECT_EQ(rows(), 1);
}

TEST_F(ProgramTest, AnAccountsPasswordIsReadFromAFileAndReplaced)
{
    const std::string file = folder + "/password";
    const auto run = [&](const std::string& password) {
        std::ofstream(file) << password << "\r\n";
        Program program(withData({"account", "a@b.c", "--password-file", file}));
        std::string printed = program.readAll();
        EXPECT_EQ(program.exitCode(), 0);
        return printed;
    };
    EXPECT_EQ(run("correct horse"), "account made: a@b.c\n");
    EXPECT_EQ(run("another horse"), "new password for a@b.c\n");
    EXPECT_EQ(run("another horse"), "the password of a@b.c stays as it is\n");
}

TEST_F(ProgramTest, SessionsAreListedAndRevoked)
{
    {
        Database database(folder + "/devcloud.sqlite");
        Transaction transaction(database);
        const std::int64_t now = std::time(nullptr);
        const std::int64_t ada = addAccount(transaction, "ada@b.c", "hash", now);
        const std::int64_t bob = addAccount(transaction, "bob@b.c", "hash", now);
        startSession(transaction, ada, {"D", "Ada's desk", "0.8.0"}, {}, 86'400);
        startSession(transaction, ada, {"E", "Ada's lap", "0.8.0"}, {}, now);
        startSession(transaction, ada, {"F", "Ada's tower", "0.8.0"}, {}, now);
        startSession(transaction, bob, {"G", "Bob's desk", "0.8.0"}, {}, now);
        transaction.commit();
    }
    const std::string listed = run({"sessions", "ADA@b.c"});
    EXPECT_THAT(listed, Not(HasSubstr("desk"))); // Its tokens have expired long ago.
    EXPECT_THAT(listed, HasSubstr("2  signed in 2"));
    EXPECT_THAT(listed, HasSubstr("0.8.0  Ada's lap\n3  signed in"));
    EXPECT_EQ(run({"sessions", "nobody@b.c"}, 1), "tavrin-devcloud: no account: nobody@b.c\n");

    EXPECT_EQ(run({"revoke", "ada@b.c", "4"}, 1), "0 sessions ended\n"); // Bob's.
    EXPECT_EQ(run({"revoke", "ada@b.c", "2"}), "1 session ended\n");
    EXPECT_THAT(run({"sessions", "ada@b.c"}), Not(HasSubstr("lap")));
    EXPECT_EQ(run({"revoke", "ada@b.c"}), "2 sessions ended\n");
    EXPECT_EQ(run({"sessions", "ada@b.c"}), "");
    EXPECT_THAT(run({"sessions", "bob@b.c"}), HasSubstr("Bob's desk"));
    EXPECT_EQ(run({"revoke", "--all"}), "1 session ended\n");
    EXPECT_EQ(run({"sessions", "bob@b.c"}), "");
}

TEST_F(ProgramTest, WhatAClientSaysOfItselfSteersNoTerminal)
{
    {
        Database database(folder + "/devcloud.sqlite");
        Transaction transaction(database);
        const std::int64_t now = std::time(nullptr);
        const std::int64_t ada = addAccount(transaction, "ada@b.c", "hash", now);
        for (const char* name :
            {"\x1b[2Jdesk", "line\nbreak\x7f", "\u009b2Jdesk", "\u202eksed", "\u2066desk\u2069",
                "\u200edesk\u200f", "\u061cdesk", "new\u2028line", "broken\xff\xc2"})
            startSession(transaction, ada, {"D", name, "0.8.0\x1b[1m"}, {}, now);
        startSession(
            transaction, ada, {"E", "\u7535\u8111 \u00fc\u00a0\U0001f4bb", "0.8.0"}, {}, now);
        transaction.commit();
    }
    std::vector<std::string> names;
    std::istringstream listed(run({"sessions", "ada@b.c"}));
    for (std::string line; std::getline(listed, line);)
        names.push_back(line.substr(line.find("0.8.0")));
    EXPECT_THAT(names,
        ElementsAre("0.8.0?[1m  ?[2Jdesk", "0.8.0?[1m  line?break?", "0.8.0?[1m  ?2Jdesk",
            "0.8.0?[1m  ?ksed", "0.8.0?[1m  ?desk?", "0.8.0?[1m  ?desk?", "0.8.0?[1m  ?desk",
            "0.8.0?[1m  new?line", "0.8.0?[1m  broken\ufffd\ufffd",
            "0.8.0  \u7535\u8111 \u00fc\u00a0\U0001f4bb"));
}

TEST_F(ProgramTest, ADatabaseOfALaterVersionIsSaidAndLeftAlone)
{
    {
        Database database(folder + "/devcloud.sqlite");
        Transaction transaction(database);
        transaction.statement("PRAGMA user_version=1000").run();
        transaction.commit();
    }
    for (const auto& command : {withData({"--listen", "0"}), withData({"invite"})}) {
        Program program(command);
        EXPECT_THAT(program.readAll(),
            HasSubstr("devcloud.sqlite: a later version of tavrin-devcloud has written it"));
        EXPECT_EQ(program.exitCode(), 1);
    }
}

TEST_F(ProgramTest, BadAccountsAreRefused)
{
    Program noEmail(withData({"account", "nobody"}));
    EXPECT_EQ(noEmail.readAll(), "tavrin-devcloud: not an e-mail address: nobody\n");
    EXPECT_EQ(noEmail.exitCode(), 1);
    Program noPassword(withData({"account", "a@b.c"}));
    noPassword.endInput();
    EXPECT_THAT(noPassword.readAll(), HasSubstr("10 to 1024 characters"));
    EXPECT_EQ(noPassword.exitCode(), 1);
    Program tooShort(withData({"account", "a@b.c"}));
    tooShort.type("123456789\n");
    EXPECT_THAT(tooShort.readAll(), HasSubstr("10 to 1024 characters"));
    EXPECT_EQ(tooShort.exitCode(), 1);
}

TEST_F(ProgramTest, AModelInTheClearElsewhereIsRefused)
{
    Program program(
        withData({"--llm-url", "http://models.example", "--llm-model", "m", "--listen", "0"}));
    EXPECT_THAT(program.readAll(), HasSubstr("must be https, or http on this machine"));
    EXPECT_EQ(program.exitCode(), 1);
}

TEST_F(ProgramTest, ACertificateThatIsOfNoUseEndsTheStart)
{
    constexpr std::int64_t hour = 3600;
    const std::int64_t now = std::time(nullptr);
    const testing::TestCertificate old(1, 2);
    const testing::TestCertificate ours(now - hour, now + hour);
    const testing::TestCertificate other(now - hour, now + hour);
    const std::string certificate = folder + "/certificate.pem";
    const std::string key = folder + "/key.pem";
    const std::string both = certificate + ", " + key + ": ";

    struct Case {
        std::string certificate; ///< Empty: there is no such file.
        std::string key;
        std::string problem;
    };

    for (const Case& each : {Case{old.certificate, old.key,
                                 both + "the certificate has expired on 1970-01-01 00:00 UTC"},
             Case{"", ours.key, "cannot read " + certificate},
             Case{ours.certificate, "", "cannot read " + key},
             Case{ours.certificate, other.key,
                 both + "the key does not belong to the certificate"}}) {
        for (const auto& [file, text] :
            {std::pair(certificate, each.certificate), std::pair(key, each.key)}) {
            std::filesystem::remove(file);
            if (!text.empty())
                std::ofstream(file) << text;
        }
        Program program(
            withData({"--listen", "0", "--tls-certificate", certificate, "--tls-key", key}));
        EXPECT_EQ(program.readAll(), "tavrin-devcloud: " + each.problem + "\n");
        EXPECT_EQ(program.exitCode(), 1);
    }
}

TEST_F(ProgramTest, APortThatIsTakenIsSaid)
{
    Program first(withData({"--listen", "127.0.0.1:0"}));
    const std::string line = first.readLine();
    const std::string address = line.substr(line.rfind(' ') + 1);
    Program second(withData({"--listen", address}));
    EXPECT_EQ(second.readAll(), "tavrin-devcloud: cannot listen on " + address + "\n");
    EXPECT_EQ(second.exitCode(), 1);
}

} // namespace
} // namespace tavrin::devcloud
