#include "devcloud/endpoints/Outbox.h"
#include "devcloud/security/Passwords.h"
#include "devcloud/security/Secrets.h"
#include "devcloud/security/Throttle.h"
#include "devcloud/store/Accounts.h"
#include "devcloud/store/Database.h"
#include "devcloud/store/Registrations.h"
#include "devcloud/store/Sessions.h"
#include "devcloud/store/Usage.h"

#include <gmock/gmock.h>

#include <csignal>
#include <fstream>
#include <set>
#include <sstream>
#include <sys/resource.h>

namespace tavrin::devcloud {
namespace {

using std::filesystem::perms;

constexpr std::int64_t ninetyDays = std::int64_t{90} * 24 * 3600;
constexpr perms ownerFile = perms::owner_read | perms::owner_write;

class StoreTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(initializeSecrets());
        std::string name = ::testing::TempDir() + "devcloudXXXXXX";
        ASSERT_NE(mkdtemp(name.data()), nullptr);
        folder = name;
    }

    void TearDown() override { std::filesystem::remove_all(folder); }

    static perms modeOf(const std::filesystem::path& path)
    {
        return std::filesystem::status(path).permissions();
    }

    std::filesystem::path folder;
};

TEST_F(StoreTest, TheDatabaseIsPrivate)
{
    const auto file = folder / "made" / "data.sqlite";
    Database database(file);
    Transaction transaction(database);
    addAccount(transaction, "a@b", "hash", 1);
    transaction.commit();

    EXPECT_EQ(modeOf(folder / "made"), perms::owner_all);
    for (const auto& entry : std::filesystem::directory_iterator(folder / "made"))
        EXPECT_EQ(modeOf(entry), ownerFile) << entry;
}

TEST_F(StoreTest, ADatabaseThatWasReadableIsMadePrivate)
{
    const auto file = folder / "data.sqlite";
    std::ofstream(file).close();
    std::filesystem::permissions(file, perms::all);

    const Database database(file);

    EXPECT_EQ(modeOf(file), ownerFile);
}

TEST_F(StoreTest, AccountsOutliveTheProgram)
{
    const auto file = folder / "data.sqlite";
    {
        Database database(file);
        Transaction transaction(database);
        addAccount(transaction, "a@b", "hash", 1);
        transaction.commit();
    }
    Database database(file);
    Transaction transaction(database);
    EXPECT_EQ(findAccount(transaction, "a@b").value().passwordHash, "hash");
    Statement mode = transaction.statement("PRAGMA journal_mode");
    ASSERT_TRUE(mode.step());
    EXPECT_EQ(mode.text(0), "wal");
}

TEST_F(StoreTest, WhatIsNotCommittedIsUndone)
{
    const auto database = Database::inMemory();
    {
        Transaction transaction(*database);
        addAccount(transaction, "a@b", "hash", 1);
    }
    Transaction transaction(*database);
    EXPECT_FALSE(findAccount(transaction, "a@b"));
}

TEST_F(StoreTest, AFileThatIsNoDatabaseIsSaid)
{
    const auto file = folder / "data.sqlite";
    std::ofstream(file) << std::string(4096, 'x');

    EXPECT_THROW(Database database(file), DatabaseError);
    EXPECT_THROW(Database database(folder / "data.sqlite" / "below"), DatabaseError);
}

TEST_F(StoreTest, TextsWithQuotesAndZerosAreKeptWhole)
{
    const auto database = Database::inMemory();
    Transaction transaction(*database);
    const std::string email("'); DROP TABLE accounts; --\0tail", 31);
    addAccount(transaction, email, "", 1);
    EXPECT_EQ(findAccount(transaction, email).value().email, email);
}

TEST_F(StoreTest, DeadRowsAreRemoved)
{
    const auto database = Database::inMemory();
    Transaction transaction(*database);
    const std::int64_t account = addAccount(transaction, "a@b", "hash", 1);
    const TokenLives lives;
    const TokenPair pair = startSession(transaction, account, {}, lives, 0);
    beginRegistration(transaction, "c@d", "invite", "code", 600);
    addUsage(transaction, account, {.requestId = "r", .source = "client"}, 0);
    const auto rows = [&transaction](const std::string& table) {
        Statement row = transaction.statement("SELECT COUNT(*) FROM " + table);
        row.step();
        return row.number(0);
    };

    removeDeadSessions(transaction, lives.refresh.count() - 1);
    removeDeadRegistrations(transaction, 599);
    removeOldUsage(transaction, ninetyDays - 1);
    EXPECT_EQ(rows("families") + rows("access_tokens") + rows("refresh_tokens"), 3);
    EXPECT_EQ(rows("registrations") + rows("usage"), 2);

    removeDeadSessions(transaction, lives.refresh.count());
    removeDeadRegistrations(transaction, 600);
    removeOldUsage(transaction, ninetyDays);
    EXPECT_EQ(rows("families") + rows("access_tokens") + rows("refresh_tokens"), 0);
    EXPECT_EQ(rows("registrations") + rows("usage"), 0);
}

TEST_F(StoreTest, ARegistrationLivesAsLongAsItsToken)
{
    const auto database = Database::inMemory();
    Transaction transaction(*database);
    beginRegistration(transaction, "c@d", "invite", "code", 600);
    setRegistrationToken(transaction, "c@d", "token", 1100);

    removeDeadRegistrations(transaction, 1099);
    EXPECT_TRUE(findRegistration(transaction, "c@d"));
    removeDeadRegistrations(transaction, 1100);
    EXPECT_FALSE(findRegistration(transaction, "c@d"));
}

TEST_F(StoreTest, MailBecomesAPrivateFileAndIsPrinted)
{
    const Outbox outbox(folder / "outbox");
    ::testing::internal::CaptureStdout();
    EXPECT_TRUE(outbox({"ada@example.org", "Subject", "验证码：123456"}));
    EXPECT_TRUE(outbox({"ada@example.org", "Subject", "验证码：654321"}));
    const std::string printed = ::testing::internal::GetCapturedStdout();

    EXPECT_THAT(printed, ::testing::HasSubstr("验证码：123456"));
    EXPECT_EQ(modeOf(folder / "outbox"), perms::owner_all);
    std::set<std::string> mails;
    for (const auto& entry : std::filesystem::directory_iterator(folder / "outbox")) {
        EXPECT_EQ(modeOf(entry), ownerFile);
        std::stringstream text;
        text << std::ifstream(entry.path()).rdbuf();
        mails.insert(text.str());
    }
    EXPECT_EQ(mails,
        (std::set<std::string>{"To: ada@example.org\nSubject: Subject\n\n验证码：123456\n",
            "To: ada@example.org\nSubject: Subject\n\n验证码：654321\n"}));
}

TEST_F(StoreTest, MailThatCannotBeWrittenIsSaid)
{
    std::ofstream(folder / "file").close();
    EXPECT_FALSE(Outbox(folder / "file" / "outbox")({"a@b", "", ""}));
}

/// Files may grow so far and no further, as on a full disk, while this lives.
class SmallFiles {
public:
    explicit SmallFiles(rlim_t bytes)
        : m_handler(std::signal(SIGXFSZ, SIG_IGN))
    {
        EXPECT_EQ(getrlimit(RLIMIT_FSIZE, &m_before), 0);
        const rlimit small{bytes, m_before.rlim_max};
        EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
    }

    ~SmallFiles()
    {
        setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_handler);
    }

    SmallFiles(const SmallFiles&) = delete;
    SmallFiles& operator=(const SmallFiles&) = delete;

private:
    rlimit m_before{};
    void (*m_handler)(int);
};

TEST_F(StoreTest, MailThatTheDiskHasNoRoomForLeavesNoHalfOfItself)
{
    const Outbox outbox(folder / "outbox");
    {
        const SmallFiles full(10);
        EXPECT_FALSE(outbox({"ada@example.org", "Subject", "123456"}));
    }
    EXPECT_TRUE(std::filesystem::is_empty(folder / "outbox"));

    EXPECT_TRUE(outbox({"ada@example.org", "Subject", "123456"}));
    EXPECT_FALSE(std::filesystem::is_empty(folder / "outbox"));
}

TEST_F(StoreTest, PasswordsAreHashedWithArgon2idAndSalt)
{
    Passwords passwords(PasswordCost::least());
    const std::string first = passwords.hash("correct horse").value();
    const std::string second = passwords.hash("correct horse").value();

    EXPECT_TRUE(first.starts_with("$argon2id$"));
    EXPECT_NE(first, second);
    EXPECT_TRUE(passwords.matches(first, "correct horse"));
    EXPECT_FALSE(passwords.matches(first, "correct horse "));
    EXPECT_FALSE(passwords.matches(first, ""));
    EXPECT_FALSE(passwords.matches(std::nullopt, "correct horse"));
    EXPECT_FALSE(passwords.matches("no hash", "correct horse"));
}

TEST_F(StoreTest, SecretsAreRandomAndWellFormed)
{
    std::set<std::string> tokens;
    for (int round = 0; round < 100; ++round) {
        tokens.insert(newToken());
        EXPECT_THAT(newVerificationCode(), ::testing::MatchesRegex("[0-9]{6}"));
        EXPECT_THAT(
            newInviteCode(), ::testing::MatchesRegex("TAV-[A-HJ-NP-Z2-9]{4}-[A-HJ-NP-Z2-9]{4}"));
    }
    EXPECT_EQ(tokens.size(), 100U);
    EXPECT_EQ(digest("a").size(), 64U);
    EXPECT_NE(digest("a"), digest("b"));
}

TEST(ThrottleTest, EventsLeaveTheWindowOneByOne)
{
    Throttle throttle(2, std::chrono::seconds(10));
    EXPECT_FALSE(throttle.take("key", 100));
    EXPECT_FALSE(throttle.take("key", 105));
    EXPECT_EQ(throttle.take("key", 106), std::chrono::seconds(4));
    EXPECT_FALSE(throttle.take("other", 106));
    EXPECT_FALSE(throttle.take("key", 110));
    EXPECT_EQ(throttle.take("key", 111), std::chrono::seconds(4));
}

TEST(ThrottleTest, EventsCanBeTakenBackOrForgotten)
{
    Throttle throttle(1, std::chrono::seconds(10));
    EXPECT_FALSE(throttle.take("key", 100));
    throttle.giveBack("key");
    EXPECT_FALSE(throttle.take("key", 100));
    EXPECT_TRUE(throttle.take("key", 100));
    throttle.forget("key");
    EXPECT_FALSE(throttle.take("key", 100));
    throttle.giveBack("unknown");
}

TEST(ThrottleTest, RemembersALimitedNumberOfKeys)
{
    Throttle throttle(1, std::chrono::seconds(10));
    EXPECT_FALSE(throttle.take("first", 0));
    for (int key = 0; key < 9998; ++key)
        EXPECT_FALSE(throttle.take(std::to_string(key), 5));
    EXPECT_TRUE(throttle.take("first", 5)); // Room for one more: nobody was forgotten.
    EXPECT_FALSE(throttle.take("last", 5));
    EXPECT_FALSE(throttle.take("one too many", 11)); // "first" has left the window, the rest not.
    EXPECT_TRUE(throttle.take("5", 11));
}

TEST(ThrottleTest, ForgetsAllKeysWhenTooManyAreWithinTheWindow)
{
    Throttle throttle(1, std::chrono::seconds(10));
    for (int key = 0; key < 10'000; ++key)
        EXPECT_FALSE(throttle.take(std::to_string(key), 5));
    EXPECT_TRUE(throttle.take("0", 5));
    EXPECT_TRUE(throttle.take("9999", 5));

    EXPECT_FALSE(throttle.take("one too many", 5));

    EXPECT_TRUE(throttle.take("one too many", 5));
    EXPECT_FALSE(throttle.take("0", 5));
    EXPECT_FALSE(throttle.take("9999", 5));
}

} // namespace
} // namespace tavrin::devcloud
