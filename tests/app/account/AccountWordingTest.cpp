#include "app/account/AccountFixture.h"
#include "app/account/AccountTexts.h"
#include "app/pages/Captions.h"

#include <array>
#include <functional>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tavrin {
namespace {

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

class AccountWordingTest : public testing::AccountFixture,
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

class AccountStatusTest : public testing::AccountFixture { };

TEST_F(AccountStatusTest, TheSignedInStatusIsTranslated)
{
    storeSession();
    preferences.setValue(keys::interfaceLanguage, u"zh-Hans"_s);
    controller->refreshAccountUI();
    EXPECT_EQ(shown().status, u"✓ 登录状态正常"_s);
    preferences.setValue(keys::interfaceLanguage, u"zh-Hant"_s);
    controller->refreshAccountUI();
    EXPECT_EQ(shown().status, u"✓ 登入狀態正常"_s);
}

TEST(AccountTextsTest, ThePageIsThereInThreeLanguages)
{
    testing::expectCaptions({
        {texts::accountPage, u"账户", u"帳戶", u"Account"},
        {texts::accountPageSubtitle, u"无需离开此面板即可登录或激活邀请码。",
            u"無需離開此面板即可登入或啟用邀請碼。",
            u"Sign in or activate an invite without leaving this panel."},
        {texts::accountNotice, u"服务地址与模型连接由服务端统一管理，不会显示或保存在本机。",
            u"服務位址與模型連線由服務端統一管理，不會顯示或儲存在本機。",
            u"The service endpoint and model connection are managed centrally and are never shown "
            u"or stored on your Mac."},
        {texts::signInToUse, u"登录或注册后，才能使用 Tavrin 的输入与设置功能。",
            u"登入或註冊後，才能使用 Tavrin 的輸入與設定功能。",
            u"Sign in or register to use Tavrin input and settings."},
        {texts::isSignedIn, u"✓ 登录状态正常", u"✓ 登入狀態正常", u"✓ Signed in"},
    });
}

TEST(AccountTextsTest, TheStartAndTheSignInAreThereInThreeLanguages)
{
    testing::expectCaptions({
        {texts::continueWithEmail, u"使用邮箱继续", u"使用電子郵件繼續", u"Continue with email"},
        {texts::chooseSignInOrRegister, u"选择登录或注册。新用户需要邀请码和邮箱验证码。",
            u"選擇登入或註冊。新使用者需要邀請碼和電子郵件驗證碼。",
            u"Choose sign in or register. New users need an invite and email code."},
        {texts::emailName, u"邮箱", u"電子郵件", u"Email"},
        {texts::modeName, u"登录或注册", u"登入或註冊", u"Sign in or register"},
        {texts::signIn, u"登录", u"登入", u"Sign in"},
        {texts::registerAccount, u"注册", u"註冊", u"Register"},
        {texts::continueFlow, u"下一步", u"下一步", u"Continue"},
        {texts::welcomeBack, u"欢迎回来", u"歡迎回來", u"Welcome back"},
        {texts::password, u"密码", u"密碼", u"Password"},
        {texts::changeEmail, u"更换邮箱", u"更換電子郵件", u"Change email"},
    });
}

TEST(AccountTextsTest, TheRegistrationIsThereInThreeLanguages)
{
    testing::expectCaptions({
        {texts::activateBetaAccount, u"激活内测账号", u"啟用內測帳戶", u"Activate beta account"},
        {texts::willBeActivated, u"将通过邮箱验证码激活 %1。", u"將透過電子郵件驗證碼啟用 %1。",
            u"%1 will be activated with an email verification code."},
        {texts::inviteCode, u"邀请码，例如 TAV-7K2M-Q9XD", u"邀請碼，例如 TAV-7K2M-Q9XD",
            u"Invite code, for example TAV-7K2M-Q9XD"},
        {texts::sendCode, u"发送验证码", u"傳送驗證碼", u"Send code"},
        {texts::back, u"返回", u"返回", u"Back"},
        {texts::enterCodeAndPassword, u"输入验证码并创建密码", u"輸入驗證碼並建立密碼",
            u"Enter code and create password"},
        {texts::codeIsValidFor, u"验证码 10 分钟内有效。创建密码后将自动登录。",
            u"驗證碼 10 分鐘內有效。建立密碼後將自動登入。",
            u"The code is valid for 10 minutes. You will be signed in after creating a password."},
        {texts::emailCode, u"6 位邮箱验证码", u"6 位電子郵件驗證碼", u"6-digit email code"},
        {texts::newPassword, u"密码（至少 10 个字符）", u"密碼（至少 10 個字元）",
            u"Password (at least 10 characters)"},
        {texts::confirmPassword, u"确认密码", u"確認密碼", u"Confirm password"},
        {texts::activateAndSignIn, u"激活并登录", u"啟用並登入", u"Activate & sign in"},
        {texts::startOver, u"重新开始", u"重新開始", u"Start over"},
    });
}

TEST(AccountTextsTest, TheAccountAndTheMessagesAreThereInThreeLanguages)
{
    testing::expectCaptions({
        {texts::accountConnected, u"账号已连接", u"帳戶已連線", u"Account connected"},
        {texts::signedInAccount, u"已登录账号", u"已登入帳戶", u"Signed-in account"},
        {texts::sessionProvides, u"登录后可使用云端整理和匿名用量统计。",
            u"登入後可使用雲端整理和匿名用量統計。",
            u"Your session provides access to cloud editing and anonymous usage totals."},
        {texts::signOut, u"退出登录", u"登出", u"Sign out"},
        {texts::enterValidEmail, u"请输入有效的邮箱地址。", u"請輸入有效的電子郵件地址。",
            u"Enter a valid email address."},
        {texts::signingIn, u"正在登录…", u"正在登入…", u"Signing in…"},
        {texts::signedIn, u"登录成功。", u"登入成功。", u"Signed in."},
        {texts::checkingInvite, u"正在校验邀请码并发送验证码…", u"正在驗證邀請碼並傳送驗證碼…",
            u"Checking invite and sending code…"},
        {texts::passwordsDoNotMatch, u"两次输入的密码不一致。", u"兩次輸入的密碼不一致。",
            u"The passwords do not match."},
        {texts::verifyingAndCreating, u"正在验证并创建账户…", u"正在驗證並建立帳戶…",
            u"Verifying and creating account…"},
        {texts::accountActivated, u"账号已激活，已自动登录。", u"帳戶已啟用並自動登入。",
            u"Account activated and signed in."},
    });
    EXPECT_EQ(texts::alreadyRegistered.zhHans, u"已经注册"_s);
}

} // namespace
} // namespace tavrin
