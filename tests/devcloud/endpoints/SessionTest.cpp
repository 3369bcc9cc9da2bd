#include "devcloud/api/Messages.h"
#include "devcloud/support/HeldPasswords.h"
#include "devcloud/support/ServiceTest.h"

#include <ctime>
#include <thread>

namespace tavrin::devcloud {
namespace {

class SessionTest : public testing::ServiceTest {
protected:
    Outcome refresh(const Json& token)
    {
        return call(Endpoint::Refresh, {{"refreshToken", token}});
    }

    int meStatus(const Json& token) { return statusOf(call(Endpoint::Me, {}, token)); }

    Outcome loginWith(const std::string& typedPassword)
    {
        Json body = loginBody();
        body["password"] = typedPassword;
        return call(Endpoint::Login, body);
    }
};

TEST_F(SessionTest, SignInAnswersBothTokensAndTheEmail)
{
    const Json session = signIn();

    EXPECT_EQ(session["user"]["email"], email);
    EXPECT_GE(session["accessToken"].get<std::string>().size(), 43U);
    EXPECT_GE(session["refreshToken"].get<std::string>().size(), 43U);
    EXPECT_EQ(session["expiresIn"], 3600);
    EXPECT_EQ(meStatus(session["accessToken"]), 200);
}

TEST_F(SessionTest, EmailIsComparedWithoutCaseAndSurroundingSpace)
{
    addTestAccount();
    Json body = loginBody();
    body["email"] = " Ada@Example.ORG ";

    EXPECT_EQ(call(Endpoint::Login, body).value()["user"]["email"], email);
}

TEST_F(SessionTest, WrongPasswordAndUnknownAccountAreAnsweredAlike)
{
    addTestAccount();
    const Outcome wrong = loginWith("wrong password");
    Json stranger = loginBody();
    stranger["email"] = "nobody@example.org";
    const Outcome unknown = call(Endpoint::Login, stranger);

    EXPECT_EQ(statusOf(wrong), 401);
    EXPECT_EQ(wrong.error().message, messages::credentialsWrong);
    EXPECT_EQ(statusOf(unknown), 401);
    EXPECT_EQ(unknown.error().message, wrong.error().message);
}

TEST_F(SessionTest, TenWrongPasswordsCloseTheAccountToTheirAddressForFifteenMinutes)
{
    addTestAccount();
    for (int guess = 0; guess < 10; ++guess)
        EXPECT_EQ(statusOf(loginWith("guess " + std::to_string(guess))), 401);

    const Outcome closed = loginWith(password);
    EXPECT_EQ(statusOf(closed), 429);
    EXPECT_EQ(closed.error().retryAfter, std::chrono::minutes(15));

    now += 899;
    EXPECT_EQ(statusOf(loginWith(password)), 429);
    now += 1;
    EXPECT_EQ(statusOf(loginWith(password)), 200);
}

TEST_F(SessionTest, TheRightPasswordForgivesTheWrongOnesBefore)
{
    addTestAccount();
    for (int round = 0; round < 3; ++round) {
        for (int guess = 0; guess < 9; ++guess)
            loginWith("a wrong guess");
        EXPECT_EQ(statusOf(loginWith(password)), 200);
    }
}

TEST_F(SessionTest, FiftyWrongPasswordsFromOneAddressCloseItToAllAccounts)
{
    addTestAccount();
    for (int guess = 0; guess < 50; ++guess) {
        Json body = loginBody();
        body["email"] = std::to_string(guess) + "@example.org";
        EXPECT_EQ(statusOf(call(Endpoint::Login, body)), 401);
    }
    EXPECT_EQ(statusOf(loginWith(password)), 429);

    address = "127.0.0.2";
    EXPECT_EQ(statusOf(loginWith(password)), 200);
}

TEST_F(SessionTest, RightPasswordsNeverCloseAnAddress)
{
    addTestAccount();
    for (int signIn = 0; signIn < 60; ++signIn)
        ASSERT_EQ(statusOf(loginWith(password)), 200) << signIn;
}

TEST_F(SessionTest, AnUnknownAccountCostsAsMuchTimeAsAWrongPassword)
{
    Passwords slow(PasswordCost{3, std::size_t{16} * 1024 * 1024});
    {
        Transaction transaction(*database);
        addAccount(transaction, email, *slow.hash(password), now);
        transaction.commit();
    }
    service.emplace(ServiceParts{*database, slow, [](const Mail&) { return true; }, nullptr, lives,
        {}, [this] { return now.load(); }});
    // Of this thread, so that it does not matter what else the machine does.
    const auto secondsFor = [this](const std::string& who) {
        Json body = loginBody();
        body["email"] = who;
        body["password"] = "a wrong guess";
        timespec before{};
        timespec after{};
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &before);
        EXPECT_EQ(statusOf(call(Endpoint::Login, body)), 401);
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &after);
        return static_cast<double>(after.tv_sec - before.tv_sec)
            + static_cast<double>(after.tv_nsec - before.tv_nsec) / 1e9;
    };

    const double wrong = secondsFor(email);
    const double unknown = secondsFor("nobody@example.org");

    EXPECT_GT(unknown, wrong / 2);
    EXPECT_LT(unknown, wrong * 2);
}

TEST_F(SessionTest, AccessTokenExpires)
{
    const Json session = signIn();
    now += 3599;
    EXPECT_EQ(meStatus(session["accessToken"]), 200);
    now += 1;

    const Outcome expired = call(Endpoint::Me, {}, session["accessToken"]);

    EXPECT_EQ(statusOf(expired), 401);
    EXPECT_EQ(expired.error().message, messages::accessTokenInvalid);
}

TEST_F(SessionTest, RefreshGivesANewPairForTheSameAccount)
{
    const Json session = signIn();

    const Json fresh = refresh(session["refreshToken"]).value();

    EXPECT_NE(fresh["accessToken"], session["accessToken"]);
    EXPECT_NE(fresh["refreshToken"], session["refreshToken"]);
    EXPECT_EQ(fresh["user"]["email"], email);
    EXPECT_EQ(meStatus(fresh["accessToken"]), 200);
}

TEST_F(SessionTest, UnknownRefreshTokenIsRefusedWith401)
{
    EXPECT_EQ(statusOf(refresh("guessed")), 401);
    EXPECT_EQ(statusOf(refresh("")), 401);
}

TEST_F(SessionTest, RefreshTokenExpires)
{
    const Json session = signIn();
    now += lives.refresh.count();

    EXPECT_EQ(statusOf(refresh(session["refreshToken"])), 401);
}

TEST_F(SessionTest, TwoRefreshesAtOnceBothSucceed)
{
    const Json session = signIn();
    refresh(session["refreshToken"]);
    now += 10;

    const Json second = refresh(session["refreshToken"]).value();

    EXPECT_EQ(meStatus(second["accessToken"]), 200);
}

TEST_F(SessionTest, ARefreshWhoseAnswerWasLostCostsNobodyTheSession)
{
    // 91 s: no data came; 121 s: the client's patience is over; a day: the machine slept.
    addTestAccount();
    for (const std::int64_t later : {11, 91, 121, 151, 86'400}) {
        const Json session = call(Endpoint::Login, loginBody()).value();
        ASSERT_EQ(statusOf(refresh(session["refreshToken"])), 200);
        now += later;

        const Outcome again = refresh(session["refreshToken"]);

        ASSERT_EQ(statusOf(again), 200) << later;
        EXPECT_EQ(meStatus(again.value()["accessToken"]), 200);
        EXPECT_EQ(statusOf(refresh(again.value()["refreshToken"])), 200);
    }
}

TEST_F(SessionTest, AnAnswerThatComesLateIsStillGood)
{
    const Json session = signIn();
    const Json late = refresh(session["refreshToken"]).value();
    now += 100;
    const Json other = refresh(session["refreshToken"]).value();
    EXPECT_EQ(meStatus(other["accessToken"]), 200);

    EXPECT_EQ(meStatus(late["accessToken"]), 200);
    EXPECT_EQ(statusOf(refresh(late["refreshToken"])), 200);
}

TEST_F(SessionTest, APairThatNeverArrivedEndsWhenNobodyWaitsForIt)
{
    const Json session = signIn();
    const Json lost = refresh(session["refreshToken"]).value();
    now += 151;
    const Json fresh = refresh(session["refreshToken"]).value();

    EXPECT_EQ(meStatus(lost["accessToken"]), 401);
    EXPECT_EQ(meStatus(fresh["accessToken"]), 200);

    // Somebody has it after all: one of the two is a thief.
    EXPECT_EQ(statusOf(refresh(lost["refreshToken"])), 401);
    EXPECT_EQ(meStatus(fresh["accessToken"]), 401);
}

TEST_F(SessionTest, AnOldRefreshTokenShownAfterItsSuccessorWasUsedEndsTheWholeFamily)
{
    const Json session = signIn();
    const Json fresh = refresh(session["refreshToken"]).value();
    EXPECT_EQ(meStatus(fresh["accessToken"]), 200);
    now += 11;

    EXPECT_EQ(statusOf(refresh(session["refreshToken"])), 401);

    EXPECT_EQ(meStatus(fresh["accessToken"]), 401);
    EXPECT_EQ(statusOf(refresh(fresh["refreshToken"])), 401);
}

TEST_F(SessionTest, AnOldRefreshTokenShownAfterItsSuccessorWasRefreshedEndsTheWholeFamily)
{
    const Json session = signIn();
    const Json second = refresh(session["refreshToken"]).value();
    const Json third = refresh(second["refreshToken"]).value();
    now += 11;

    EXPECT_EQ(statusOf(refresh(session["refreshToken"])), 401);

    EXPECT_EQ(meStatus(third["accessToken"]), 401);
}

TEST_F(SessionTest, RefreshingOftenDoesNotHideATheft)
{
    addTestAccount();
    for (const bool isOfTheSignIn : {true, false}) {
        const Json session = call(Endpoint::Login, loginBody()).value();
        const Json second = refresh(session["refreshToken"]).value();
        Json last = second;
        for (int round = 0; round < 20; ++round)
            last = refresh(last["refreshToken"]).value();
        EXPECT_EQ(meStatus(last["accessToken"]), 200);
        now += 11;

        const Json& old = isOfTheSignIn ? session : second;
        EXPECT_EQ(statusOf(refresh(old["refreshToken"])), 401);

        EXPECT_EQ(meStatus(last["accessToken"]), 401);
        EXPECT_EQ(statusOf(refresh(last["refreshToken"])), 401);
    }
}

TEST_F(SessionTest, RepeatsDoNotHideThatASuccessorIsUsed)
{
    const Json session = signIn();
    const Json owners = refresh(session["refreshToken"]).value();
    EXPECT_EQ(meStatus(owners["accessToken"]), 200);
    Json thiefs;
    for (int round = 0; round < 20; ++round)
        thiefs = refresh(session["refreshToken"]).value();

    EXPECT_EQ(statusOf(refresh(owners["refreshToken"])), 401);
    EXPECT_EQ(meStatus(thiefs["accessToken"]), 401);
}

TEST_F(SessionTest, NobodyEndsASessionWithoutATokenOfIt)
{
    const Json session = signIn();
    const std::string access = session["accessToken"];
    const std::string token = session["refreshToken"];
    const std::string key = token.substr(0, token.find('.'));
    const std::string own = token.substr(key.size());
    for (const std::string& guessed :
        {access, access + own, own, std::string("."), "1" + own, digest(key) + own})
        EXPECT_EQ(statusOf(refresh(guessed)), 401) << guessed;

    EXPECT_EQ(meStatus(session["accessToken"]), 200);
    EXPECT_EQ(statusOf(refresh(token)), 200);
}

TEST_F(SessionTest, RepeatsBesideAUsedSuccessorComeToAnEnd)
{
    const Json session = signIn();
    EXPECT_EQ(meStatus(refresh(session["refreshToken"]).value()["accessToken"]), 200);
    now += 9;
    EXPECT_EQ(statusOf(refresh(session["refreshToken"])), 200);
    now += 9;
    EXPECT_EQ(statusOf(refresh(session["refreshToken"])), 401);
}

TEST_F(SessionTest, TwoBranchesOfOneTokenEndTheWholeFamily)
{
    const Json session = signIn();
    const Json first = refresh(session["refreshToken"]).value();
    const Json second = refresh(session["refreshToken"]).value();
    const Json goesOn = refresh(first["refreshToken"]).value();

    EXPECT_EQ(statusOf(refresh(second["refreshToken"])), 401);
    EXPECT_EQ(meStatus(goesOn["accessToken"]), 401);
}

TEST_F(SessionTest, AFamilyKeepsFewTokensHoweverOftenItRefreshes)
{
    const auto rows = [this](const std::string& table) {
        Transaction transaction(*database);
        Statement row = transaction.statement("SELECT COUNT(*) FROM " + table);
        row.step();
        return row.number(0);
    };
    Json session = signIn();
    for (int round = 0; round < 200; ++round)
        session = refresh(session["refreshToken"]).value();
    EXPECT_LE(rows("refresh_tokens"), 17);
    EXPECT_LE(rows("access_tokens"), 17);
    EXPECT_EQ(meStatus(session["accessToken"]), 200);

    for (int round = 0; round < 50; ++round)
        refresh(session["refreshToken"]);
    EXPECT_LE(rows("refresh_tokens"), 17);
    EXPECT_EQ(statusOf(refresh(session["refreshToken"])), 200);
}

TEST_F(SessionTest, ANewPasswordEndsTheSessionsOfItsAccountAlone)
{
    const Json session = signIn();
    Json other = loginBody();
    other["email"] = "other@example.org";
    {
        Transaction transaction(*database);
        addAccount(transaction, "other@example.org", *passwords.hash(password), now);
        transaction.commit();
    }
    const Json others = call(Endpoint::Login, other).value();
    {
        Transaction transaction(*database);
        setPassword(
            transaction, findAccount(transaction, email)->id, *passwords.hash("new password"));
        transaction.commit();
    }
    EXPECT_EQ(meStatus(session["accessToken"]), 401);
    EXPECT_EQ(statusOf(refresh(session["refreshToken"])), 401);
    EXPECT_EQ(meStatus(others["accessToken"]), 200);
}

TEST_F(SessionTest, APasswordThatIsReplacedWhileItIsComparedSignsNobodyIn)
{
    addTestAccount();
    testing::HeldPasswords held;
    service.emplace(ServiceParts{*database, held, [](const Mail&) { return true; }, nullptr, lives,
        {}, [this] { return now.load(); }});
    Outcome outcome = refusal(0, "");
    std::thread signingIn([&] { outcome = loginWith(password); });
    held.awaitQuestions(1);
    {
        Transaction transaction(*database);
        setPassword(
            transaction, findAccount(transaction, email)->id, *passwords.hash("new password"));
        transaction.commit();
    }
    held.release();
    signingIn.join();

    EXPECT_EQ(statusOf(outcome), 401);
    EXPECT_EQ(statusOf(loginWith("new password")), 200);
}

TEST_F(SessionTest, WrongPasswordsFromElsewhereCloseTheAccountToNobodyElse)
{
    addTestAccount();
    for (const char* guesser : {"192.0.2.1", "192.0.2.2", "2001:db8::1"}) {
        address = guesser;
        for (int guess = 0; guess < 10; ++guess)
            EXPECT_EQ(statusOf(loginWith("a wrong guess")), 401);
        EXPECT_EQ(statusOf(loginWith(password)), 429);
    }
    address = "2001:db8::2"; // The same network.
    EXPECT_EQ(statusOf(loginWith(password)), 429);
    address = "127.0.0.1";
    EXPECT_EQ(statusOf(loginWith(password)), 200);
}

TEST_F(SessionTest, AnotherSignInOfTheAccountOutlivesTheEndedFamily)
{
    const Json session = signIn();
    const Json other = call(Endpoint::Login, loginBody()).value();
    meStatus(refresh(session["refreshToken"]).value()["accessToken"]);
    now += 11;
    EXPECT_EQ(statusOf(refresh(session["refreshToken"])), 401);

    EXPECT_EQ(meStatus(other["accessToken"]), 200);
}

TEST_F(SessionTest, SignOutEndsBothTokens)
{
    const Json session = signIn();

    EXPECT_EQ(statusOf(callRaw(Endpoint::Logout, "", session["accessToken"])), 200);

    EXPECT_EQ(meStatus(session["accessToken"]), 401);
    EXPECT_EQ(statusOf(refresh(session["refreshToken"])), 401);
    EXPECT_EQ(statusOf(callRaw(Endpoint::Logout, "", session["accessToken"])), 401);
}

TEST_F(SessionTest, AnExpiredTokenStillSignsOut)
{
    const Json session = signIn();
    now += 3600;

    EXPECT_EQ(statusOf(callRaw(Endpoint::Logout, "", session["accessToken"])), 200);
    EXPECT_EQ(statusOf(refresh(session["refreshToken"])), 401);
}

TEST_F(SessionTest, NoTokenStandsInTheDatabaseItself)
{
    const Json session = signIn();
    Transaction transaction(*database);
    for (const char* sql : {"SELECT COUNT(*) FROM access_tokens WHERE hash = ?",
             "SELECT COUNT(*) FROM refresh_tokens WHERE hash = ?"}) {
        for (const char* name : {"accessToken", "refreshToken"}) {
            const auto token = session[name].get<std::string>();
            Statement row = transaction.statement(sql);
            ASSERT_TRUE(row.bind(token).step());
            EXPECT_EQ(row.number(0), 0);
        }
    }
}

TEST_F(SessionTest, AuthorizationOfAnotherSchemeCountsAsNone)
{
    const Json session = signIn();
    const std::string token = session["accessToken"];

    EXPECT_EQ(statusOf(service->answer({Endpoint::Me, "Basic " + token, "", address})), 401);
    EXPECT_EQ(statusOf(service->answer({Endpoint::Me, token, "", address})), 401);
    EXPECT_EQ(statusOf(service->answer({Endpoint::Me, "bearer " + token, "", address})), 200);
    EXPECT_EQ(statusOf(service->answer({Endpoint::Me, "", "", address})), 401);
}

} // namespace
} // namespace tavrin::devcloud
