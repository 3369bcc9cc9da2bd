#include "devcloud/Housekeeping.h"
#include "devcloud/store/Registrations.h"
#include "devcloud/support/ServiceTest.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <thread>

using namespace std::chrono_literals;
using ::testing::HasSubstr;

namespace tavrin::devcloud {
namespace {

std::int64_t asked(Database& database, const std::string& sql)
{
    Transaction transaction(database, Transaction::Access::Read);
    Statement row = transaction.statement(sql);
    row.step();
    return row.number(0);
}

/// A service on a database in a file, which can be spoiled.
class DatabaseTest : public testing::ServiceTest {
protected:
    void SetUp() override
    {
        std::string name = ::testing::TempDir() + "devcloudXXXXXX";
        ASSERT_NE(mkdtemp(name.data()), nullptr);
        folder = name;
        file = folder / "data.sqlite";
        reopen();
    }

    void TearDown() override
    {
        service.reset();
        database.reset();
        std::filesystem::remove_all(folder);
    }

    void reopen()
    {
        service.reset();
        database.reset();
        database = std::make_unique<Database>(file, 20ms);
        restart(nullptr);
    }

    void run(const std::vector<std::string>& statements)
    {
        Transaction transaction(*database);
        for (const std::string& sql : statements)
            transaction.statement(sql).run();
        transaction.commit();
    }

    Outcome polish(const Json& session)
    {
        return call(Endpoint::Polish, {{"transcript", "hello"}}, session["accessToken"]);
    }

    std::string problemOfOpening()
    {
        try {
            const Database other(file, 20ms);
        } catch (const DatabaseError& error) {
            return error.what();
        }
        return "none";
    }

    std::filesystem::path folder;
    std::filesystem::path file;
};

TEST_F(DatabaseTest, OneOfALaterVersionIsLeftAsItIs)
{
    signIn();
    run({"PRAGMA user_version=4"});

    EXPECT_THAT(problemOfOpening(), HasSubstr("a later version of tavrin-devcloud has written it"));
    EXPECT_THAT(problemOfOpening(), HasSubstr(file.string()));
    EXPECT_EQ(asked(*database, "PRAGMA user_version"), 4);
    EXPECT_EQ(asked(*database, "SELECT COUNT(*) FROM families"), 1);
}

TEST_F(DatabaseTest, OneOfTheFirstVersionGoesOnWithItsSessions)
{
    const std::string invite = addTestInvite();
    const Json session = signIn();
    run({"DROP INDEX families_by_key", "ALTER TABLE families DROP COLUMN key",
        "ALTER TABLE invites DROP COLUMN account", "ALTER TABLE families DROP COLUMN refreshed",
        "ALTER TABLE access_tokens DROP COLUMN pair",
        "ALTER TABLE refresh_tokens DROP COLUMN parent",
        "ALTER TABLE refresh_tokens DROP COLUMN used",
        "ALTER TABLE refresh_tokens DROP COLUMN ended", "PRAGMA user_version=0"});

    reopen();

    EXPECT_EQ(asked(*database, "PRAGMA user_version"), 3);
    EXPECT_EQ(statusOf(polish(session)), 200);
    EXPECT_EQ(statusOf(call(Endpoint::Refresh, {{"refreshToken", session["refreshToken"]}})), 200);
    Json body = loginBody();
    body["email"] = "new@example.org";
    body["inviteCode"] = invite;
    EXPECT_EQ(statusOf(call(Endpoint::Register, body)), 200);
    reopen();
    EXPECT_EQ(asked(*database, "SELECT COUNT(*) FROM families"), 2);
}

TEST_F(DatabaseTest, TokensOfTheSecondVersionAreGoodAndItsSessionsNoticeTheftFromThenOn)
{
    const Json session = signIn();
    const std::string token = session["refreshToken"];
    // As that version made them: without the family's part in front.
    const std::string old = token.substr(token.find('.') + 1);
    run({"UPDATE refresh_tokens SET hash = '" + digest(old) + "'",
        "UPDATE access_tokens SET pair = '" + digest(old) + "'", "DROP INDEX families_by_key",
        "ALTER TABLE families DROP COLUMN key", "PRAGMA user_version=2"});
    reopen();
    const auto refresh = [this](const Json& shown) {
        return call(Endpoint::Refresh, {{"refreshToken", shown}});
    };
    EXPECT_EQ(statusOf(call(Endpoint::Me, {}, session["accessToken"])), 200);

    const Json fresh = refresh(old).value();
    EXPECT_EQ(asked(*database, "PRAGMA user_version"), 3);
    Json last = fresh;
    for (int round = 0; round < 20; ++round)
        last = refresh(last["refreshToken"]).value();

    EXPECT_EQ(statusOf(refresh(fresh["refreshToken"])), 401);
    EXPECT_EQ(statusOf(refresh(last["refreshToken"])), 401);
}

TEST_F(DatabaseTest, WhileAnotherProgramWritesTextsAreAnsweredAndTheRestIsRefused)
{
    const Json session = signIn();
    Database other(file);
    {
        const Transaction writing(other);
        const Outcome text = polish(session);
        ASSERT_EQ(statusOf(text), 200);
        EXPECT_EQ(text.value()["text"], "Hello.");
        EXPECT_EQ(statusOf(call(Endpoint::Login, loginBody())), 500);
        EXPECT_THAT(problemOfOpening(), HasSubstr("database is locked"));
    }
    EXPECT_EQ(statusOf(call(Endpoint::Login, loginBody())), 200);
    EXPECT_EQ(statusOf(polish(session)), 200);
}

TEST_F(DatabaseTest, WhenTheDiskIsFullTextsAreAnsweredAndNothingIsLost)
{
    const Json session = signIn();
    const std::string pages = std::to_string(asked(*database, "PRAGMA page_count"));
    run({"PRAGMA max_page_count=" + pages});
    int refused = 0;
    for (int round = 0; round < 200; ++round) {
        refused += statusOf(call(Endpoint::Login, loginBody())) == 500 ? 1 : 0;
        ASSERT_EQ(statusOf(polish(session)), 200);
    }
    EXPECT_GT(refused, 0);
    EXPECT_EQ(asked(*database, "SELECT COUNT(*) FROM accounts"), 1);

    run({"PRAGMA max_page_count=1000000"});
    EXPECT_EQ(statusOf(call(Endpoint::Login, loginBody())), 200);
    EXPECT_EQ(statusOf(polish(session)), 200);
}

TEST_F(DatabaseTest, DeadRowsGoWhileTheServiceRuns)
{
    signIn();
    {
        Transaction transaction(*database);
        for (int person = 0; person < 2500; ++person)
            beginRegistration(transaction, std::to_string(person), "invite", "code", now);
        transaction.commit();
    }
    now += lives.refresh.count();
    const std::string left =
        "SELECT (SELECT COUNT(*) FROM families) + (SELECT COUNT(*) FROM registrations)";
    ASSERT_EQ(asked(*database, left), 2501);

    const Housekeeping housekeeping(
        *database, [this] { return now.load(); }, 1ms);

    const auto deadline = std::chrono::steady_clock::now() + 5s;
    while (asked(*database, left) > 0 && std::chrono::steady_clock::now() < deadline)
        std::this_thread::yield();
    EXPECT_EQ(asked(*database, left), 0);
}

TEST_F(DatabaseTest, AFewDeadRowsAreRemovedAtATime)
{
    Transaction transaction(*database);
    for (int person = 0; person < 5; ++person)
        beginRegistration(transaction, std::to_string(person), "invite", "code", 100);
    EXPECT_EQ(removeDeadRegistrations(transaction, 100, 3), 3);
    EXPECT_EQ(removeDeadRegistrations(transaction, 100, 3), 2);
    EXPECT_EQ(removeDeadRegistrations(transaction, 100, 3), 0);
}

} // namespace
} // namespace tavrin::devcloud
