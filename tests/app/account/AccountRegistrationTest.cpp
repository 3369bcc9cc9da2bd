#include "app/account/AccountFixture.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tavrin {
namespace {

using testing::address;
using testing::errorAnswer;
using testing::sessionAnswer;

class AccountRegistrationTest : public testing::AccountFixture { };

// Steps that were left.

TEST_F(AccountRegistrationTest, ARefusalThatComesAfterTheStepWasLeftIsNotShown)
{
    openLogin();
    controller->performInlineLogin(u"wrong"_s);
    controller->renderAccountStartStep();
    answer(401, errorAnswer(u"Wrong password."_s));

    EXPECT_EQ(shown().step, AccountStep::Start);
    EXPECT_EQ(shown().message, "");
}

TEST_F(AccountRegistrationTest, ASignInThatSucceedsAfterTheStepWasLeftCounts)
{
    openLogin();
    controller->performInlineLogin(u"right"_s);
    controller->renderAccountStartStep();
    answer(200, sessionAnswer());

    EXPECT_EQ(shown().step, AccountStep::LoggedIn);
    EXPECT_EQ(trace, (QStringList{"signed in", "health", "dashboard"}));
}

TEST_F(AccountRegistrationTest, ARegistrationForAnAddressThatWasGivenUpGoesNoFurther)
{
    openInvite();
    controller->startInlineRegistration(u"TAV-1"_s);
    controller->renderAccountStartStep();
    controller->continueAccountFlow(u"other@example.org"_s, AccountMode::Register);
    answer(200, "{}");

    EXPECT_EQ(shown().step, AccountStep::Invite);
    EXPECT_TRUE(shown().subtitle.startsWith("other@example.org"));
}

TEST_F(AccountRegistrationTest, WhoeverStartsOverWhileTheCodeIsCheckedGetsNoAccount)
{
    openVerification();
    controller->completeInlineRegistration(u"123456"_s, u"long password"_s, u"long password"_s);
    controller->renderAccountStartStep();
    answer(200, R"({"registrationToken": "token"})");

    EXPECT_EQ(http.open(), 0);
    EXPECT_EQ(shown().step, AccountStep::Start);
    EXPECT_EQ(lastPath(), "/v1/auth/registration/verify");
}

TEST_F(AccountRegistrationTest, AnAnswerAfterTheControllerHasGoneDoesNothing)
{
    openLogin();
    controller->performInlineLogin(u"secret"_s);
    time.advance(0s);
    controller.reset();
    http.answer(200, sessionAnswer());
    time.advance(0s);

    EXPECT_EQ(trace, QStringList());
}

// Registering.

TEST_F(AccountRegistrationTest, TheInviteIsSentAsTypedAndLeadsToTheCode)
{
    openInvite();
    controller->startInlineRegistration(u" TAV-7K2M "_s);
    EXPECT_EQ(shown().message, u"Checking invite and sending code…"_s);
    EXPECT_FALSE(shown().messageIsError);
    EXPECT_EQ(lastPath(), "/v1/auth/registration/start");
    EXPECT_EQ(lastBody().value("email").toString(), address);
    EXPECT_EQ(lastBody().value("inviteCode").toString(), " TAV-7K2M ");
    answer(200, "{}");

    EXPECT_EQ(shown().step, AccountStep::Verification);
    EXPECT_EQ(shown().title, "Enter code and create password");
    EXPECT_EQ(shown().subtitle,
        "The code is valid for 10 minutes. You will be signed in after creating a password.");
    EXPECT_EQ(shown().message, "");
}

TEST_F(AccountRegistrationTest, AnAccountThatExistsIsSentToTheSignIn)
{
    openInvite();
    controller->startInlineRegistration(u"TAV-1"_s);
    answer(409, errorAnswer(u"该邮箱已经注册，请直接登录。"_s));

    EXPECT_EQ(shown().step, AccountStep::Login);
    EXPECT_EQ(shown().subtitle, address);
    EXPECT_EQ(shown().message, "");
    controller->performInlineLogin(u"secret"_s);
    EXPECT_EQ(lastBody().value("email").toString(), address);
    answer(200, sessionAnswer());
}

TEST_F(AccountRegistrationTest, AnyOtherRefusalOfTheInviteIsShown)
{
    for (const QString& message : {u"邀请码无效。"_s, u"This address is registered already."_s}) {
        openInvite();
        controller->startInlineRegistration(u"TAV-1"_s);
        answer(400, errorAnswer(message));

        EXPECT_EQ(shown().step, AccountStep::Invite);
        EXPECT_EQ(shown().message, message);
        EXPECT_TRUE(shown().messageIsError);
    }
}

TEST_F(AccountRegistrationTest, PasswordsThatDifferSendNothing)
{
    openVerification();
    const qsizetype before = http.requests().size();
    for (const QString& other : {u"Long password"_s, u"long password "_s, QString()}) {
        controller->completeInlineRegistration(u"123456"_s, u"long password"_s, other);
        EXPECT_EQ(shown().message, "The passwords do not match.");
        EXPECT_TRUE(shown().messageIsError);
    }
    EXPECT_EQ(http.requests().size(), before);
}

TEST_F(AccountRegistrationTest, CodeAndPasswordMakeTheAccountInTwoCalls)
{
    openVerification();
    controller->completeInlineRegistration(u" 123456"_s, u"long password"_s, u"long password"_s);
    EXPECT_EQ(shown().message, u"Verifying and creating account…"_s);
    EXPECT_FALSE(shown().messageIsError);
    EXPECT_EQ(lastPath(), "/v1/auth/registration/verify");
    EXPECT_EQ(lastBody().value("email").toString(), address);
    EXPECT_EQ(lastBody().value("code").toString(), " 123456");
    EXPECT_FALSE(lastBody().contains("password"));

    answer(200, R"({"registrationToken": "proof"})");
    EXPECT_EQ(lastPath(), "/v1/auth/registration/complete");
    EXPECT_EQ(lastBody().value("email").toString(), address);
    EXPECT_EQ(lastBody().value("password").toString(), "long password");
    EXPECT_EQ(lastBody().value("registrationToken").toString(), "proof");
    EXPECT_EQ(trace, QStringList());

    answer(200, sessionAnswer());
    EXPECT_EQ(trace, (QStringList{"signed in", "health", "dashboard"}));
    EXPECT_EQ(shown().step, AccountStep::LoggedIn);
    EXPECT_EQ(preferences.value(keys::serviceMode), "cloud");
}

TEST_F(AccountRegistrationTest, ShortPasswordsAndOddCodesAreTheServicesToRefuse)
{
    openVerification();
    controller->completeInlineRegistration(u"12"_s, u"short"_s, u"short"_s);
    answer(400, errorAnswer(u"The code is wrong."_s));
    EXPECT_EQ(shown().step, AccountStep::Verification);
    EXPECT_EQ(shown().message, "The code is wrong.");
    EXPECT_TRUE(shown().messageIsError);

    controller->completeInlineRegistration(u"123456"_s, {}, {});
    answer(200, R"({"registrationToken": "proof"})");
    answer(400, errorAnswer(u"The password is too short."_s));
    EXPECT_EQ(shown().message, "The password is too short.");
    EXPECT_TRUE(shown().messageIsError);
    EXPECT_EQ(trace, QStringList());
}

TEST_F(AccountRegistrationTest, AnAnswerWithoutATokenOrWithAnotherThingIsPassedOnEmpty)
{
    for (const char* body : {"{}", R"({"registrationToken": 7})", "no json", ""}) {
        openVerification();
        controller->completeInlineRegistration(u"123456"_s, u"password"_s, u"password"_s);
        answer(200, body);
        EXPECT_EQ(lastPath(), "/v1/auth/registration/complete");
        EXPECT_EQ(lastBody().value("registrationToken").toString(u"none"_s), "");
        answer(400, errorAnswer(u"Start over."_s));
        EXPECT_EQ(shown().message, "Start over.");
    }
}

TEST_F(AccountRegistrationTest, TheWaysBackLeadToTheStart)
{
    preferences.setValue(keys::cloudAccountEmail, u"stored@example.org"_s);
    openVerification();
    controller->renderAccountStartStep();
    EXPECT_EQ(shown().step, AccountStep::Start);
    EXPECT_EQ(shown().email, "stored@example.org");
    EXPECT_EQ(shown().message, "");
}

} // namespace
} // namespace tavrin
