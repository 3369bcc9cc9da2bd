#include "devcloud/api/Messages.h"
#include "devcloud/support/ServiceTest.h"

#include <gmock/gmock.h>

#include <regex>

using ::testing::HasSubstr;

namespace tavrin::devcloud {
namespace {

class RegistrationTest : public testing::ServiceTest {
protected:
    Outcome start(const std::string& invite)
    {
        return call(Endpoint::RegistrationStart, {{"email", email}, {"inviteCode", invite}});
    }

    Outcome verify(const std::string& code)
    {
        return call(Endpoint::RegistrationVerify, {{"email", email}, {"code", code}});
    }

    Outcome complete(const Json& token, const std::string& newPassword)
    {
        Json body = loginBody();
        body["password"] = newPassword;
        body["registrationToken"] = token;
        return call(Endpoint::RegistrationComplete, body);
    }

    Outcome registerAtOnce(const std::string& invite)
    {
        Json body = loginBody();
        body["inviteCode"] = invite;
        return call(Endpoint::Register, body);
    }

    /// The code in the newest mail.
    std::string mailedCode() const
    {
        std::smatch match;
        const std::string& body = mails.back().body;
        return std::regex_search(body, match, std::regex("[0-9]{6}")) ? match.str() : "";
    }

    std::string wrongCode() const { return mailedCode() == "000000" ? "000001" : "000000"; }
};

TEST_F(RegistrationTest, InviteCodeAndPasswordMakeAnAccountThatIsSignedIn)
{
    const std::string invite = addTestInvite();
    ASSERT_EQ(statusOf(start(invite)), 200);
    ASSERT_EQ(mails.size(), 1U);
    EXPECT_EQ(mails.front().to, email);
    const Json verified = verify(mailedCode()).value();

    const Json session = complete(verified["registrationToken"], password).value();

    EXPECT_EQ(session["user"]["email"], email);
    EXPECT_EQ(statusOf(call(Endpoint::Me, {}, session["accessToken"])), 200);
    EXPECT_EQ(statusOf(call(Endpoint::Login, loginBody())), 200);
}

TEST_F(RegistrationTest, UnknownInviteIsRefusedAndNothingIsMailed)
{
    const Outcome outcome = start("TAV-AAAA-AAAA");

    EXPECT_EQ(statusOf(outcome), 403);
    EXPECT_EQ(outcome.error().message, messages::inviteInvalid);
    EXPECT_TRUE(mails.empty());
}

TEST_F(RegistrationTest, InviteIsReadWithoutCaseAndSurroundingSpace)
{
    std::string invite = addTestInvite();
    std::ranges::transform(invite, invite.begin(), [](unsigned char c) { return std::tolower(c); });

    EXPECT_EQ(statusOf(start("  " + invite + "\n")), 200);
}

TEST_F(RegistrationTest, RegisteredEmailIsSaidInTheWordsTheAccountPanelLooksFor)
{
    addTestAccount();

    const Outcome inSteps = start(addTestInvite());
    const Outcome atOnce = registerAtOnce(addTestInvite());

    EXPECT_EQ(statusOf(inSteps), 409);
    EXPECT_THAT(inSteps.error().message, HasSubstr("已经注册"));
    EXPECT_EQ(statusOf(atOnce), 409);
    EXPECT_THAT(atOnce.error().message, HasSubstr("已经注册"));
}

TEST_F(RegistrationTest, WithoutAnInviteNobodyLearnsWhoHasAnAccount)
{
    const std::string used = addTestInvite();
    Json other = loginBody();
    other["email"] = "other@example.org";
    other["inviteCode"] = used;
    EXPECT_EQ(statusOf(call(Endpoint::Register, other)), 200);
    addTestAccount();

    for (const std::string& invite : {std::string("TAV-AAAA-AAAA"), std::string(), used}) {
        const Outcome known = start(invite);
        const Outcome unknown = call(
            Endpoint::RegistrationStart, {{"email", "new@example.org"}, {"inviteCode", invite}});
        EXPECT_EQ(statusOf(known), 403) << invite;
        EXPECT_EQ(statusOf(unknown), 403) << invite;
        EXPECT_EQ(known.error().message, unknown.error().message);
    }
    EXPECT_EQ(statusOf(registerAtOnce("TAV-AAAA-AAAA")), 403);
    EXPECT_EQ(statusOf(registerAtOnce(used)), 403);
}

TEST_F(RegistrationTest, TheInviteOfAnAccountIsToldThatItExists)
{
    const std::string invite = addTestInvite();
    EXPECT_EQ(statusOf(registerAtOnce(invite)), 200);

    EXPECT_EQ(statusOf(start(invite)), 409);
    EXPECT_EQ(statusOf(registerAtOnce(invite)), 409);
}

TEST_F(RegistrationTest, ARegistrationThatSucceedsDoesNotCountAsAnAttempt)
{
    for (int person = 0; person < 35; ++person) {
        Json body = loginBody();
        body["email"] = std::to_string(person) + "@example.org";
        body["inviteCode"] = addTestInvite();
        ASSERT_EQ(statusOf(call(Endpoint::Register, body)), 200) << person;
    }
}

TEST_F(RegistrationTest, ARegistrationInStepsThatSucceedsDoesNotCountAsAnAttempt)
{
    const auto startFor = [this](int person) {
        return call(Endpoint::RegistrationStart,
            {{"email", std::to_string(person) + "@example.org"}, {"inviteCode", addTestInvite()}});
    };
    for (int person = 0; person < 35; ++person) {
        const std::string newEmail = std::to_string(person) + "@example.org";
        ASSERT_EQ(statusOf(startFor(person)), 200) << person;
        const Outcome verified =
            call(Endpoint::RegistrationVerify, {{"email", newEmail}, {"code", mailedCode()}});
        Json body = loginBody();
        body["email"] = newEmail;
        body["registrationToken"] = verified.value()["registrationToken"];
        ASSERT_EQ(statusOf(call(Endpoint::RegistrationComplete, body)), 200) << person;
        EXPECT_EQ(statusOf(call(Endpoint::RegistrationComplete, body)), 409) << person;
    }
    // What was refused gave nothing back either.
    for (int person = 100; person < 130; ++person)
        ASSERT_EQ(statusOf(startFor(person)), 200) << person;
    EXPECT_EQ(statusOf(startFor(130)), 429);
}

TEST_F(RegistrationTest, ARegistrationThatTookLongGivesNoNewerAttemptBack)
{
    start(addTestInvite());
    now += 599;
    const Json token = verify(mailedCode()).value()["registrationToken"];
    now += 1;
    const auto startFor = [this](int person) {
        return statusOf(call(Endpoint::RegistrationStart,
            {{"email", std::to_string(person) + "@example.org"}, {"inviteCode", addTestInvite()}}));
    };
    for (int person = 0; person < 30; ++person)
        ASSERT_EQ(startFor(person), 200) << person;

    EXPECT_EQ(statusOf(complete(token, password)), 200);

    EXPECT_EQ(startFor(30), 429);
}

TEST_F(RegistrationTest, AnAttemptForAClosedEmailIsNotCountedAgainstTheAddress)
{
    for (int attempt = 0; attempt < 40; ++attempt)
        start("TAV-AAAA-AAAA"); // Closed after the fifth.
    EXPECT_EQ(statusOf(call(Endpoint::RegistrationStart,
                  {{"email", "new@example.org"}, {"inviteCode", addTestInvite()}})),
        200);
}

TEST_F(RegistrationTest, AnInviteMakesOneAccount)
{
    const std::string invite = addTestInvite();
    EXPECT_EQ(statusOf(registerAtOnce(invite)), 200);

    Json second = loginBody();
    second["email"] = "second@example.org";
    second["inviteCode"] = invite;
    EXPECT_EQ(statusOf(call(Endpoint::Register, second)), 403);
}

TEST_F(RegistrationTest, OfTwoRegistrationsWithOneInviteTheFirstToFinishWins)
{
    const std::string invite = addTestInvite();
    start(invite);
    const Json verified = verify(mailedCode()).value();
    Json faster = loginBody();
    faster["email"] = "faster@example.org";
    faster["inviteCode"] = invite;
    EXPECT_EQ(statusOf(call(Endpoint::Register, faster)), 200);

    EXPECT_EQ(statusOf(complete(verified["registrationToken"], password)), 403);
}

TEST_F(RegistrationTest, CodeHasSixDigitsAndIsNotStored)
{
    start(addTestInvite());
    EXPECT_THAT(mailedCode(), ::testing::MatchesRegex("[0-9][0-9][0-9][0-9][0-9][0-9]"));

    Transaction transaction(*database);
    Statement row = transaction.statement("SELECT code FROM registrations");
    ASSERT_TRUE(row.step());
    EXPECT_EQ(row.text(0).find(mailedCode()), std::string::npos);
}

TEST_F(RegistrationTest, CodeIsValidForTenMinutes)
{
    start(addTestInvite());
    now += 599;
    EXPECT_EQ(statusOf(verify(mailedCode())), 200);
    now += 1;

    const Outcome late = verify(mailedCode());

    EXPECT_EQ(statusOf(late), 422);
    EXPECT_EQ(late.error().message, messages::codeExpired);
}

TEST_F(RegistrationTest, FiveWrongCodesUseUpTheRightOne)
{
    const std::string invite = addTestInvite();
    start(invite);
    for (int guess = 0; guess < 5; ++guess) {
        const Outcome wrong = verify(wrongCode());
        EXPECT_EQ(statusOf(wrong), 422);
        EXPECT_EQ(wrong.error().message, messages::codeWrong);
    }
    const Outcome exhausted = verify(mailedCode());
    EXPECT_EQ(statusOf(exhausted), 429);
    EXPECT_EQ(exhausted.error().message, messages::codeTriesExhausted);

    start(invite);
    EXPECT_EQ(statusOf(verify(mailedCode())), 200);
}

TEST_F(RegistrationTest, TheRightCodeMayBeShownAgainAfterARefusedPassword)
{
    start(addTestInvite());
    const Json first = verify(mailedCode()).value();
    const Outcome tooShort = complete(first["registrationToken"], "123456789");
    EXPECT_EQ(statusOf(tooShort), 422);
    EXPECT_EQ(tooShort.error().message, messages::passwordTooShort);

    const Json second = verify(mailedCode()).value();

    EXPECT_EQ(statusOf(complete(second["registrationToken"], "1234567890")), 200);
}

TEST_F(RegistrationTest, PasswordLengthCountsCharactersNotBytes)
{
    start(addTestInvite());
    const Json token = verify(mailedCode()).value()["registrationToken"];

    EXPECT_EQ(statusOf(complete(token, "四个汉字")), 422);
    EXPECT_EQ(statusOf(complete(token, "一二三四五六七八九十")), 200);
}

TEST_F(RegistrationTest, RegistrationTokenBelongsToItsEmailAndExpires)
{
    start(addTestInvite());
    const Json token = verify(mailedCode()).value()["registrationToken"];
    EXPECT_EQ(statusOf(complete("guessed", password)), 403);
    Json other = loginBody();
    other["email"] = "other@example.org";
    other["registrationToken"] = token;
    EXPECT_EQ(statusOf(call(Endpoint::RegistrationComplete, other)), 403);

    now += 600;
    EXPECT_EQ(statusOf(complete(token, password)), 403);
}

TEST_F(RegistrationTest, CompletingTwiceSaysThatTheAccountExists)
{
    start(addTestInvite());
    const Json token = verify(mailedCode()).value()["registrationToken"];
    EXPECT_EQ(statusOf(complete(token, password)), 200);

    const Outcome again = complete(token, password);

    EXPECT_EQ(statusOf(again), 409);
    EXPECT_THAT(again.error().message, HasSubstr("已经注册"));
}

TEST_F(RegistrationTest, MailsToOneAddressAreLimited)
{
    const std::string invite = addTestInvite();
    for (int mail = 0; mail < 5; ++mail)
        EXPECT_EQ(statusOf(start(invite)), 200);

    EXPECT_EQ(statusOf(start(invite)), 429);
    EXPECT_EQ(mails.size(), 5U);
    now += 600;
    EXPECT_EQ(statusOf(start(invite)), 200);
}

TEST_F(RegistrationTest, MailsThatOnePlaceAsksForAreLimited)
{
    const std::string invite = addTestInvite();
    const auto startFor = [&](int person) {
        return statusOf(call(Endpoint::RegistrationStart,
            {{"email", std::to_string(person) + "@example.org"}, {"inviteCode", invite}}));
    };
    for (int person = 0; person < 30; ++person)
        EXPECT_EQ(startFor(person), 200);

    EXPECT_EQ(startFor(30), 429);
    EXPECT_EQ(mails.size(), 30U);
    address = "127.0.0.2";
    EXPECT_EQ(startFor(30), 200);
    address = "127.0.0.1";
    now += 600;
    EXPECT_EQ(startFor(31), 200);
}

TEST_F(RegistrationTest, MailThatCannotBeSentIsSaid)
{
    const std::string invite = addTestInvite();
    mailWorks = false;
    const Outcome outcome = start(invite);
    EXPECT_EQ(statusOf(outcome), 500);
    EXPECT_EQ(outcome.error().message, messages::mailFailed);

    EXPECT_EQ(statusOf(verify(mailedCode())), 422);
}

TEST_F(RegistrationTest, EmailNeedsBothSidesOfTheAtSign)
{
    const std::string invite = addTestInvite();
    for (const char* typed : {"", "@", "a@", "@b", "a b@c", "a@b@c", "a@b\r\nBcc: c@d", "plain"}) {
        const Outcome outcome =
            call(Endpoint::RegistrationStart, {{"email", typed}, {"inviteCode", invite}});
        EXPECT_EQ(statusOf(outcome), 422) << typed;
    }
    EXPECT_TRUE(mails.empty());
}

} // namespace
} // namespace tavrin::devcloud
