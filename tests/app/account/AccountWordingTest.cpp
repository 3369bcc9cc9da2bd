#include "app/account/AccountFixture.h"

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

} // namespace
} // namespace tavrin
