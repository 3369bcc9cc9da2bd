#include "app/account/AccountFixture.h"
#include "platform/DesktopTexts.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tavrin {
namespace {

using testing::address;
using testing::errorAnswer;
using testing::sessionAnswer;

class AccountControllerTest : public testing::AccountFixture { };

// Redrawing.

TEST_F(AccountControllerTest, SignedOutThePageAsksForAnEmailAddress)
{
    controller->refreshAccountUI();

    EXPECT_FALSE(shown().isSignedIn);
    EXPECT_EQ(shown().status, "Sign in or register to use Tavrin input and settings.");
    EXPECT_EQ(shown().step, AccountStep::Start);
    EXPECT_EQ(shown().title, "Continue with email");
    EXPECT_EQ(
        shown().subtitle, "Choose sign in or register. New users need an invite and email code.");
    EXPECT_EQ(shown().message, "");
    EXPECT_EQ(trace, QStringList{"signed out"});
}

TEST_F(AccountControllerTest, SignedOutElsewhereInTheWindowThePageIsSelected)
{
    isPageShown = false;
    controller->refreshAccountUI();

    EXPECT_EQ(trace, (QStringList{"signed out", "select account page"}));
}

TEST_F(AccountControllerTest, EitherTokenAloneIsASession)
{
    for (const QString& key : {keys::cloudAccessToken.key, keys::cloudRefreshToken.key}) {
        preferences.setValue(key, u"token"_s);
        isPageShown = false;
        controller->refreshAccountUI();

        EXPECT_TRUE(shown().isSignedIn);
        EXPECT_EQ(shown().status, u"✓ Signed in"_s);
        EXPECT_EQ(shown().step, AccountStep::LoggedIn);
        EXPECT_EQ(trace, QStringList{"signed in"}); // Nobody is brought to another page.
        preferences.remove(key);
        trace.clear();
    }
}

TEST_F(AccountControllerTest, ATokenOfAnotherTypeOrAnEmptyOneIsNoSession)
{
    preferences.setValue(keys::cloudAccessToken, 7);
    preferences.setValue(keys::cloudRefreshToken, QString());
    controller->refreshAccountUI();

    EXPECT_FALSE(shown().isSignedIn);
}

TEST_F(AccountControllerTest, SignedInThePageNamesTheAccount)
{
    storeSession();
    controller->refreshAccountUI();

    EXPECT_EQ(shown().title, "Account connected");
    EXPECT_EQ(shown().subtitle, address);

    preferences.setValue(keys::cloudAccountEmail, QString());
    controller->refreshAccountUI();
    EXPECT_EQ(shown().subtitle, "Signed-in account");
}

TEST_F(AccountControllerTest, TheStartBeginsWithTheStoredAddress)
{
    preferences.setValue(keys::cloudAccountEmail, address);
    controller->refreshAccountUI();
    EXPECT_EQ(shown().email, address);

    preferences.setValue(keys::cloudAccountEmail, 12);
    controller->refreshAccountUI();
    EXPECT_EQ(shown().email, "");
}

TEST_F(AccountControllerTest, WithoutAPageTheRestOfTheWindowStillFollowsTheSession)
{
    controller->setView(nullptr);
    isPageShown = false;
    controller->refreshAccountUI();

    EXPECT_EQ(trace, (QStringList{"signed out", "select account page"}));
}

TEST_F(AccountControllerTest, APageThatIsBuiltLaterShowsWhatIsGoingOn)
{
    controller->setView(nullptr);
    openLogin();
    controller->performInlineLogin(u"wrong"_s);
    testing::FakeView<AccountContent> later;
    controller->setView(&later);

    ASSERT_TRUE(later.shown);
    EXPECT_EQ(later.shown->step, AccountStep::Login);
    EXPECT_EQ(later.shown->message, u"Signing in…"_s);
    answer(401, errorAnswer(u"Wrong password."_s));
    EXPECT_EQ(later.shown->message, "Wrong password.");
}

TEST_F(AccountControllerTest, AskedToSignInItComesForwardOnItsStartStep)
{
    openLogin();
    controller->showLoginDialog();
    EXPECT_EQ(trace, (QStringList{"show window", "select account page"}));
    EXPECT_EQ(shown().step, AccountStep::Start);

    trace.clear();
    openLogin();
    controller->configureActiveService();
    EXPECT_EQ(trace, (QStringList{"show window", "select account page"}));
    EXPECT_EQ(shown().step, AccountStep::Start);
}

TEST_F(AccountControllerTest, EveryStepBeginsAfreshAlsoOnItsOwn)
{
    controller->refreshAccountUI();
    const int first = shown().build;
    controller->renderAccountStartStep();
    EXPECT_NE(shown().build, first);

    const int start = shown().build;
    controller->continueAccountFlow(u"nobody"_s, AccountMode::SignIn);
    EXPECT_EQ(shown().build, start); // What was typed stays for another try.
}

// The start step.

TEST_F(AccountControllerTest, AnythingWithAnAtSignIsAnAddress)
{
    for (const QString& accepted : {u"a@b.example"_s, u"@"_s, u"mira@"_s, u" x @ y "_s}) {
        controller->renderAccountStartStep();
        controller->continueAccountFlow(accepted, AccountMode::SignIn);
        EXPECT_EQ(shown().step, AccountStep::Login) << accepted.toStdString();
    }
}

TEST_F(AccountControllerTest, AnythingElseIsRefusedAndTheStepStays)
{
    for (const QString& refused : {QString(), u""_s, u"mira"_s, u"mira＠example.org"_s}) {
        controller->renderAccountStartStep();
        controller->continueAccountFlow(refused, AccountMode::Register);
        EXPECT_EQ(shown().step, AccountStep::Start) << refused.toStdString();
        EXPECT_EQ(shown().message, "Enter a valid email address.");
        EXPECT_TRUE(shown().messageIsError);
    }
    EXPECT_TRUE(http.requests().isEmpty());
}

TEST_F(AccountControllerTest, TheSegmentsLeadToSignInAndToTheInvite)
{
    openLogin();
    EXPECT_EQ(shown().step, AccountStep::Login);
    EXPECT_EQ(shown().title, "Welcome back");
    EXPECT_EQ(shown().subtitle, address);

    openInvite();
    EXPECT_EQ(shown().step, AccountStep::Invite);
    EXPECT_EQ(shown().title, "Activate beta account");
    EXPECT_EQ(
        shown().subtitle, "mira@example.org will be activated with an email verification code.");
}

TEST_F(AccountControllerTest, AnAddressWithPlaceholdersIsShownAsItIs)
{
    controller->continueAccountFlow(u"%1%2@x"_s, AccountMode::Register);
    EXPECT_EQ(shown().subtitle, "%1%2@x will be activated with an email verification code.");
}

TEST_F(AccountControllerTest, AnAddressOfAnyLengthIsShownInOneLineAndSentWhole)
{
    const QString endless = QString(10'000, u'x') + u"@example.org\nnext line"_s;
    controller->continueAccountFlow(endless, AccountMode::SignIn);
    EXPECT_LE(shown().subtitle.size(), 500);
    EXPECT_TRUE(shown().subtitle.endsWith(u'…'));

    controller->performInlineLogin(u"secret"_s);
    EXPECT_EQ(lastBody().value("email").toString(), endless);
    answer(400, errorAnswer(u"Too long."_s));
}

// Signing in.

TEST_F(AccountControllerTest, SigningInSendsAddressAndPasswordAsTyped)
{
    openLogin();
    controller->performInlineLogin(u"  a secret "_s);

    EXPECT_EQ(shown().message, u"Signing in…"_s);
    EXPECT_FALSE(shown().messageIsError);
    EXPECT_EQ(lastPath(), "/v1/auth/login");
    EXPECT_EQ(lastBody().value("email").toString(), address);
    EXPECT_EQ(lastBody().value("password").toString(), "  a secret ");
    answer(200, sessionAnswer());
}

TEST_F(AccountControllerTest, AnEmptyPasswordIsTheServicesToRefuse)
{
    openLogin();
    controller->performInlineLogin({});
    ASSERT_EQ(http.requests().size(), 1);
    answer(401, errorAnswer(u"Wrong password."_s));
    EXPECT_EQ(shown().message, "Wrong password.");
}

TEST_F(AccountControllerTest, SignedInTheWholeWindowFollows)
{
    openLogin();
    controller->performInlineLogin(u"secret"_s);
    EXPECT_EQ(trace, QStringList());
    answer(200, sessionAnswer());

    EXPECT_EQ(trace, (QStringList{"signed in", "health", "dashboard"}));
    EXPECT_EQ(shown().step, AccountStep::LoggedIn);
    EXPECT_EQ(shown().subtitle, address);
    EXPECT_EQ(shown().message, ""); // This step has no place for one.
    EXPECT_EQ(preferences.value(keys::serviceMode), "cloud");
}

TEST_F(AccountControllerTest, AWrongPasswordIsSaidInRedAndMayBeTriedAgain)
{
    openLogin();
    const int build = shown().build;
    controller->performInlineLogin(u"wrong"_s);
    answer(401, errorAnswer(u"邮箱或密码错误。"_s));

    EXPECT_EQ(shown().step, AccountStep::Login);
    EXPECT_EQ(shown().build, build);
    EXPECT_EQ(shown().message, u"邮箱或密码错误。"_s);
    EXPECT_TRUE(shown().messageIsError);
    EXPECT_FALSE(preferences.value(keys::serviceMode).isValid());
    EXPECT_EQ(trace, QStringList());

    controller->performInlineLogin(u"right"_s);
    EXPECT_FALSE(shown().messageIsError);
    answer(200, sessionAnswer());
    EXPECT_EQ(shown().step, AccountStep::LoggedIn);
}

TEST_F(AccountControllerTest, WithoutANetworkTheStepStaysOpen)
{
    openLogin();
    controller->performInlineLogin(u"secret"_s);
    failNetwork();

    EXPECT_EQ(shown().step, AccountStep::Login);
    EXPECT_EQ(shown().message, "The network failed.");
    EXPECT_TRUE(shown().messageIsError);
}

TEST_F(AccountControllerTest, ASecondPressSendsASecondRequest)
{
    openLogin();
    controller->performInlineLogin(u"first"_s);
    controller->performInlineLogin(u"second"_s);
    EXPECT_EQ(http.requests().size(), 2);
    answer(200, sessionAnswer());
    EXPECT_EQ(shown().step, AccountStep::LoggedIn);

    answer(401, errorAnswer(u"Wrong password."_s));
    EXPECT_EQ(shown().step, AccountStep::LoggedIn);
    EXPECT_EQ(shown().message, "");
}

TEST_F(AccountControllerTest, AnEndlessMessageIsCutToOneLineOfPlainText)
{
    const QString written = u"<b>No</b>\n\n<img src=x>\u202E\u2067 \u0007%1 "_s;
    openLogin();
    controller->performInlineLogin(u"secret"_s);
    answer(500, errorAnswer(written + QString(102'400, u'字')));

    EXPECT_TRUE(shown().message.startsWith(u"<b>No</b> <img src=x> %1 字字"_s));
    EXPECT_EQ(shown().message.size(), 500);
    EXPECT_TRUE(shown().message.endsWith(u'…'));
}

TEST_F(AccountControllerTest, AMessageIsNotCutWithinACharacter)
{
    QString pairs;
    for (int i = 0; i < 1000; ++i)
        pairs += u"😀"_s;
    openLogin();
    controller->performInlineLogin(u"secret"_s);
    answer(500, errorAnswer(pairs));

    EXPECT_TRUE(shown().message.endsWith(u"😀…"_s));
}

TEST_F(AccountControllerTest, AnAnswerThatIsNoJsonIsShownAsText)
{
    openLogin();
    controller->performInlineLogin(u"secret"_s);
    answer(502, "<html>Bad gateway</html>");

    EXPECT_EQ(shown().message, "<html>Bad gateway</html>");
}

// Signing out.

TEST_F(AccountControllerTest, SigningOutReturnsToTheStart)
{
    storeSession();
    controller->refreshAccountUI();
    trace.clear();
    controller->logoutCloudAccount();
    EXPECT_EQ(lastPath(), "/v1/auth/logout");
    EXPECT_EQ(shown().step, AccountStep::LoggedIn);
    answer(200, "{}");

    EXPECT_EQ(shown().step, AccountStep::Start);
    EXPECT_FALSE(shown().isSignedIn);
    EXPECT_EQ(shown().message, "");
    EXPECT_EQ(trace, (QStringList{"signed out", "health"}));
}

TEST_F(AccountControllerTest, SigningOutOfflineClosesTheOtherPagesToo)
{
    storeSession();
    controller->refreshAccountUI();
    trace.clear();
    isPageShown = false;
    controller->logoutCloudAccount();
    failNetwork();

    EXPECT_EQ(shown().step, AccountStep::Start);
    EXPECT_EQ(shown().message, "");
    EXPECT_EQ(trace, (QStringList{"signed out", "select account page", "health"}));
    EXPECT_FALSE(preferences.value(keys::cloudAccessToken).isValid());
}

TEST_F(AccountControllerTest, ASessionThatExpiredWhileThePageWasOpenIsSignedOutOfLikeAnyOther)
{
    storeSession();
    controller->refreshAccountUI();
    controller->logoutCloudAccount();
    answer(401, errorAnswer(u"登录已过期，请重新登录。"_s));

    EXPECT_EQ(shown().step, AccountStep::Start);
    EXPECT_EQ(shown().message, "");
    EXPECT_FALSE(preferences.value(keys::cloudRefreshToken).isValid());
}

TEST_F(AccountControllerTest, ASessionThatEndedElsewhereLeavesThePage)
{
    storeSession();
    controller->refreshAccountUI();
    preferences.remove(keys::cloudAccessToken);
    preferences.remove(keys::cloudRefreshToken);
    controller->refreshAccountUI();

    EXPECT_EQ(shown().step, AccountStep::Start);
    EXPECT_FALSE(shown().isSignedIn);
}

TEST_F(AccountControllerTest, WithARefreshTokenAloneSigningOutAsksNobody)
{
    preferences.setValue(keys::cloudRefreshToken, u"refresh"_s);
    controller->refreshAccountUI();
    controller->logoutCloudAccount();
    time.advance(0s);

    EXPECT_TRUE(http.requests().isEmpty());
    EXPECT_EQ(shown().step, AccountStep::Start);
}

// Where to get a service.

TEST_F(AccountControllerTest, ADesktopMayTellWhoHasNoServiceWhereToGetOne)
{
    DesktopTexts desktop;
    desktop.serviceHint = LocalizedText{u"在这里。", u"在這裡。", u"Here."};
    const Localization own{preferences, workspace, KeyNames(), desktop};
    AccountController hinting(neighbours(own));
    hinting.refreshAccountUI();
    EXPECT_EQ(hinting.content().serviceHint, "Here.");
    hinting.continueAccountFlow(address, AccountMode::SignIn);
    EXPECT_EQ(hinting.content().serviceHint, "Here.");

    storeSession();
    hinting.refreshAccountUI();
    EXPECT_EQ(hinting.content().serviceHint, "");
    controller->renderAccountStartStep();
    EXPECT_EQ(shown().serviceHint, ""); // A desktop that says nothing.
}

} // namespace
} // namespace tavrin
