#include "app/account/AccountController.h"

#include "app/FakePanels.h"
#include "app/settings/Localization.h"
#include "cloud/TavrinAPI.h"
#include "platform/DesktopTexts.h"
#include "platform/PreferenceKeys.h"
#include "support/InMemoryHttpTransport.h"
#include "support/InMemoryPreferences.h"
#include "support/InMemorySystemInfo.h"
#include "support/InMemoryWorkspace.h"
#include "support/QtPrinters.h"
#include "support/VirtualTime.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <optional>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tavrin {
namespace {

const QString address = u"mira@example.org"_s;

QByteArray errorAnswer(const QString& message)
{
    return QJsonDocument(QJsonObject{{u"error"_s, QJsonObject{{u"message"_s, message}}}})
        .toJson(QJsonDocument::Compact);
}

QByteArray sessionAnswer()
{
    return R"({"accessToken": "access", "refreshToken": "refresh",
        "user": {"email": "mira@example.org"}})";
}

/// The account page before a network that the test answers. `trace` holds what the controller asked
/// of the rest of the program.
class AccountControllerTest : public ::testing::Test {
protected:
    testing::VirtualTime time;
    testing::InMemoryPreferences preferences;
    testing::InMemorySystemInfo systemInfo;
    testing::InMemoryWorkspace workspace;
    testing::InMemoryHttpTransport http{time};
    Localization localization{preferences, workspace, KeyNames()};
    TavrinAPI api{http, preferences, systemInfo,
        {.localize = localization.localize(), .translationTarget = [] { return QString(); }}};
    QStringList trace;
    bool isPageShown = true;
    std::optional<AccountController> controller{std::in_place, neighbours(localization)};
    testing::FakeView<AccountContent> view;

    AccountControllerTest()
    {
        preferences.setValue(keys::interfaceLanguage, u"en"_s);
        controller->setView(&view);
    }

    void TearDown() override { EXPECT_EQ(time.pending(), 0U); }

    AccountController::Neighbours neighbours(const Localization& language)
    {
        return {
            .api = api,
            .localization = language,
            .mainQueue = time,
            .preferences = preferences,
            .isAccountPageShown = [this] { return isPageShown; },
            .refreshDashboardUsage = [this] { trace.append(u"dashboard"_s); },
            .refreshHealthStatus = [this] { trace.append(u"health"_s); },
            .selectAccountPage =
                [this] {
                    trace.append(u"select account page"_s);
                    isPageShown = true;
                },
            .showMainWindow = [this] { trace.append(u"show window"_s); },
            .showSignedIn =
                [this](bool isSignedIn) {
                    trace.append(isSignedIn ? u"signed in"_s : u"signed out"_s);
                },
        };
    }

    [[nodiscard]] const AccountContent& shown() const { return *view.shown; }

    void storeSession()
    {
        preferences.setValue(keys::cloudAccessToken, u"access"_s);
        preferences.setValue(keys::cloudRefreshToken, u"refresh"_s);
        preferences.setValue(keys::cloudAccountEmail, address);
    }

    /// The page where it asks for the password of `address`.
    void openLogin() { controller->continueAccountFlow(address, AccountMode::SignIn); }

    void openInvite() { controller->continueAccountFlow(address, AccountMode::Register); }

    void openVerification()
    {
        openInvite();
        controller->startInlineRegistration(u"TAV-1"_s);
        answer(200, "{}");
        ASSERT_EQ(shown().step, AccountStep::Verification);
    }

    /// The answer to the oldest request that waits, and what follows from it.
    void answer(int status, const QByteArray& body)
    {
        time.advance(0s);
        ASSERT_GT(http.open(), 0);
        http.answer(status, body);
        time.advance(0s);
    }

    void failNetwork()
    {
        time.advance(0s);
        ASSERT_GT(http.open(), 0);
        http.fail(HttpFailure::Unreachable);
        time.advance(0s);
    }

    [[nodiscard]] QString lastPath() const { return http.requests().constLast().url.path(); }

    [[nodiscard]] QJsonObject lastBody() const
    {
        return QJsonDocument::fromJson(http.requests().constLast().body.value_or(QByteArray()))
            .object();
    }
};

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
    answer(500, errorAnswer(written + QString(100 * 1024, u'字')));

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

// Steps that were left.

TEST_F(AccountControllerTest, ARefusalThatComesAfterTheStepWasLeftIsNotShown)
{
    openLogin();
    controller->performInlineLogin(u"wrong"_s);
    controller->renderAccountStartStep();
    answer(401, errorAnswer(u"Wrong password."_s));

    EXPECT_EQ(shown().step, AccountStep::Start);
    EXPECT_EQ(shown().message, "");
}

TEST_F(AccountControllerTest, ASignInThatSucceedsAfterTheStepWasLeftCounts)
{
    openLogin();
    controller->performInlineLogin(u"right"_s);
    controller->renderAccountStartStep();
    answer(200, sessionAnswer());

    EXPECT_EQ(shown().step, AccountStep::LoggedIn);
    EXPECT_EQ(trace, (QStringList{"signed in", "health", "dashboard"}));
}

TEST_F(AccountControllerTest, ARegistrationForAnAddressThatWasGivenUpGoesNoFurther)
{
    openInvite();
    controller->startInlineRegistration(u"TAV-1"_s);
    controller->renderAccountStartStep();
    controller->continueAccountFlow(u"other@example.org"_s, AccountMode::Register);
    answer(200, "{}");

    EXPECT_EQ(shown().step, AccountStep::Invite);
    EXPECT_TRUE(shown().subtitle.startsWith("other@example.org"));
}

TEST_F(AccountControllerTest, WhoeverStartsOverWhileTheCodeIsCheckedGetsNoAccount)
{
    openVerification();
    controller->completeInlineRegistration(u"123456"_s, u"long password"_s, u"long password"_s);
    controller->renderAccountStartStep();
    answer(200, R"({"registrationToken": "token"})");

    EXPECT_EQ(http.open(), 0);
    EXPECT_EQ(shown().step, AccountStep::Start);
    EXPECT_EQ(lastPath(), "/v1/auth/registration/verify");
}

TEST_F(AccountControllerTest, AnAnswerAfterTheControllerHasGoneDoesNothing)
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

TEST_F(AccountControllerTest, TheInviteIsSentAsTypedAndLeadsToTheCode)
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

TEST_F(AccountControllerTest, AnAccountThatExistsIsSentToTheSignIn)
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

TEST_F(AccountControllerTest, AnyOtherRefusalOfTheInviteIsShown)
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

TEST_F(AccountControllerTest, PasswordsThatDifferSendNothing)
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

TEST_F(AccountControllerTest, CodeAndPasswordMakeTheAccountInTwoCalls)
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

TEST_F(AccountControllerTest, ShortPasswordsAndOddCodesAreTheServicesToRefuse)
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

TEST_F(AccountControllerTest, AnAnswerWithoutATokenOrWithAnotherThingIsPassedOnEmpty)
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

TEST_F(AccountControllerTest, TheWaysBackLeadToTheStart)
{
    preferences.setValue(keys::cloudAccountEmail, u"stored@example.org"_s);
    openVerification();
    controller->renderAccountStartStep();
    EXPECT_EQ(shown().step, AccountStep::Start);
    EXPECT_EQ(shown().email, "stored@example.org");
    EXPECT_EQ(shown().message, "");
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

// Languages.

/// One text of the page as it reads in one language, after `reach` has led there.
struct Wording {
    const char* name;
    std::array<QString, 3> forms; ///< "zh-Hans", "zh-Hant", "en".
    std::function<void(AccountController&)> reach;
    std::function<QString(const AccountContent&)> text;
};

QString message(const AccountContent& content)
{
    return content.message;
}

QString title(const AccountContent& content)
{
    return content.title;
}

QString status(const AccountContent& content)
{
    return content.status;
}

const std::array wordings{
    Wording{"invalidAddress",
        {u"请输入有效的邮箱地址。"_s, u"請輸入有效的電子郵件地址。"_s,
            u"Enter a valid email address."_s},
        [](AccountController& page) { page.continueAccountFlow({}, AccountMode::SignIn); },
        message},
    Wording{"signingIn", {u"正在登录…"_s, u"正在登入…"_s, u"Signing in…"_s},
        [](AccountController& page) { page.performInlineLogin({}); }, message},
    Wording{"checkingInvite",
        {u"正在校验邀请码并发送验证码…"_s, u"正在驗證邀請碼並傳送驗證碼…"_s,
            u"Checking invite and sending code…"_s},
        [](AccountController& page) { page.startInlineRegistration({}); }, message},
    Wording{"passwordsDiffer",
        {u"两次输入的密码不一致。"_s, u"兩次輸入的密碼不一致。"_s,
            u"The passwords do not match."_s},
        [](AccountController& page) { page.completeInlineRegistration({}, u"a"_s, u"b"_s); },
        message},
    Wording{"verifying",
        {u"正在验证并创建账户…"_s, u"正在驗證並建立帳戶…"_s, u"Verifying and creating account…"_s},
        [](AccountController& page) { page.completeInlineRegistration({}, {}, {}); }, message},
    Wording{"signedOutStatus",
        {u"登录或注册后，才能使用 Tavrin 的输入与设置功能。"_s,
            u"登入或註冊後，才能使用 Tavrin 的輸入與設定功能。"_s,
            u"Sign in or register to use Tavrin input and settings."_s},
        [](AccountController& page) { page.refreshAccountUI(); }, status},
    Wording{"startTitle", {u"使用邮箱继续"_s, u"使用電子郵件繼續"_s, u"Continue with email"_s},
        [](AccountController& page) { page.renderAccountStartStep(); }, title},
};

class AccountWordingTest : public AccountControllerTest,
                           public ::testing::WithParamInterface<Wording> { };

INSTANTIATE_TEST_SUITE_P(Wordings, AccountWordingTest, ::testing::ValuesIn(wordings),
    [](const auto& given) { return given.param.name; });

TEST_P(AccountWordingTest, ReadsAsItShouldInEachLanguage)
{
    const QStringList languages{u"zh-Hans"_s, u"zh-Hant"_s, u"en"_s};
    for (std::size_t i = 0; i < 3; ++i) {
        preferences.setValue(keys::interfaceLanguage, languages[static_cast<qsizetype>(i)]);
        controller->renderAccountVerificationStep();
        GetParam().reach(*controller);
        EXPECT_EQ(GetParam().text(shown()), GetParam().forms.at(i));
        while (http.open() > 0)
            answer(500, {});
    }
}

TEST_F(AccountControllerTest, TheSignedInStatusIsTranslated)
{
    storeSession();
    preferences.setValue(keys::interfaceLanguage, u"zh-Hans"_s);
    controller->refreshAccountUI();
    EXPECT_EQ(shown().status, u"✓ 登录状态正常"_s);
    preferences.setValue(keys::interfaceLanguage, u"zh-Hant"_s);
    controller->refreshAccountUI();
    EXPECT_EQ(shown().status, u"✓ 登入狀態正常"_s);
}

} // namespace
} // namespace tavrin
