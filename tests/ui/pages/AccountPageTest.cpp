#include "ui/pages/AccountPageFixture.h"

#include <QRadioButton>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

using testing::address;
using testing::languages;

class AccountPageTest : public testing::AccountPageFixture { };

TEST_F(AccountPageTest, TheStartHasAddressModeAndOneButtonInTheirPlaces)
{
    open();
    ASSERT_TRUE(field("authEmailField"));
    EXPECT_EQ(frameOf(field("authEmailField")), QRect(0, 105, 300, 32));
    EXPECT_EQ(field("authEmailField")->echoMode(), QLineEdit::Normal);
    const auto* const mode = testing::PageWindow::find<ui::Segments>(*page, "authModeControl");
    EXPECT_EQ(frameOf(mode), QRect(314, 105, 150, 32));
    EXPECT_EQ(mode->selected(), 0);
    EXPECT_EQ(mode->buttons()[0]->text(), "Sign in");
    EXPECT_EQ(mode->buttons()[1]->text(), "Register");
    EXPECT_EQ(frameOf(button("Continue")), QRect(0, 4, 112, 36));
    EXPECT_EQ(text("accountStepTitle"), "Continue with email");
    EXPECT_EQ(text("accountStatusLabel"), "Sign in or register to use Tavrin input and settings.");
}

TEST_F(AccountPageTest, TheSignInHasPasswordAndTwoButtons)
{
    open();
    controller.continueAccountFlow(address, AccountMode::SignIn);
    ASSERT_TRUE(field("authPasswordField"));
    EXPECT_FALSE(field("authEmailField"));
    EXPECT_EQ(frameOf(field("authPasswordField")), QRect(0, 105, 300, 32));
    EXPECT_EQ(field("authPasswordField")->echoMode(), QLineEdit::Password);
    EXPECT_EQ(field("authPasswordField")->placeholderText(), "Password");
    EXPECT_EQ(frameOf(button("Sign in")), QRect(0, 4, 112, 36));
    EXPECT_EQ(frameOf(button("Change email")), QRect(122, 4, 112, 36));
    EXPECT_EQ(text("accountStepSubtitle"), address);
}

TEST_F(AccountPageTest, TheInviteHasItsCodeAndTwoButtons)
{
    open();
    controller.continueAccountFlow(address, AccountMode::Register);
    ASSERT_TRUE(field("authInviteField"));
    EXPECT_EQ(frameOf(field("authInviteField")), QRect(0, 105, 300, 32));
    EXPECT_EQ(frameOf(button("Send code")), QRect(0, 4, 112, 36));
    EXPECT_EQ(frameOf(button("Back")), QRect(122, 4, 90, 36));
}

TEST_F(AccountPageTest, TheVerificationHasThreeFieldsAndTwoButtons)
{
    open();
    openVerification();
    ASSERT_TRUE(field("authVerificationCodeField"));
    EXPECT_EQ(frameOf(field("authVerificationCodeField")), QRect(0, 128, 300, 32));
    EXPECT_EQ(frameOf(field("authPasswordField")), QRect(0, 86, 300, 32));
    EXPECT_EQ(frameOf(field("authPasswordConfirmationField")), QRect(0, 44, 300, 32));
    EXPECT_EQ(field("authVerificationCodeField")->echoMode(), QLineEdit::Normal);
    EXPECT_EQ(field("authPasswordField")->echoMode(), QLineEdit::Password);
    EXPECT_EQ(field("authPasswordConfirmationField")->echoMode(), QLineEdit::Password);
    EXPECT_EQ(field("authPasswordField")->placeholderText(), "Password (at least 10 characters)");
    EXPECT_EQ(frameOf(button("Activate & sign in")), QRect(0, -26, 130, 36));
    EXPECT_EQ(frameOf(button("Start over")), QRect(140, -26, 100, 36));
    // Buttons below the container are not cut off by it.
    EXPECT_EQ(button("Start over")->visibleRegion().boundingRect().size(), QSize(100, 36));
}

TEST_F(AccountPageTest, TheAccountHasItsAddressAndOneButton)
{
    storeSession();
    open();
    EXPECT_EQ(text("accountStepTitle"), "Account connected");
    EXPECT_EQ(text("accountStepSubtitle"), address);
    EXPECT_EQ(frameOf(button("Sign out")), QRect(0, 58, 112, 36));
    EXPECT_TRUE(parts<QLineEdit>().isEmpty());
    EXPECT_TRUE(testing::PageWindow::labels(*page).contains(
        u"Your session provides access to cloud editing and anonymous usage totals."_s));
}

TEST_F(AccountPageTest, MessagesStandWhereEachStepHasThem)
{
    open();
    const auto message = [this] {
        return frameOf(testing::PageWindow::find<ui::Label>(*page, "accountAuthMessage"));
    };
    EXPECT_EQ(message(), QRect(0, 42, 470, 20));
    controller.continueAccountFlow(address, AccountMode::SignIn);
    EXPECT_EQ(message(), QRect(0, 52, 470, 20));
    controller.continueAccountFlow(address, AccountMode::Register);
    EXPECT_EQ(message(), QRect(0, 52, 470, 20));
    openVerification();
    EXPECT_EQ(message(), QRect(0, 18, 470, 20));
}

// What is pressed.

TEST_F(AccountPageTest, TheSegmentsDecideWhereTheButtonLeads)
{
    open();
    field("authEmailField")->setText(address);
    button("Continue")->click();
    EXPECT_EQ(text("accountStepTitle"), "Welcome back");
    button("Change email")->click();

    field("authEmailField")->setText(address);
    testing::PageWindow::find<ui::Segments>(*page, "authModeControl")->buttons()[1]->click();
    button("Continue")->click();
    EXPECT_EQ(text("accountStepTitle"), "Activate beta account");
    button("Back")->click();
    EXPECT_EQ(text("accountStepTitle"), "Continue with email");
}

TEST_F(AccountPageTest, WhatIsTypedIsSentAsItIs)
{
    open();
    controller.continueAccountFlow(address, AccountMode::SignIn);
    field("authPasswordField")->setText(u" pass word "_s);
    button("Sign in")->click();
    EXPECT_EQ(lastBody().value("password").toString(), " pass word ");
    EXPECT_EQ(text("accountAuthMessage"), u"Signing in…"_s);
    answer(401, R"({"error": {"message": "No."}})");
    EXPECT_EQ(text("accountAuthMessage"), "No.");
    EXPECT_EQ(field("authPasswordField")->text(), " pass word "); // For another try.

    openVerification();
    field("authVerificationCodeField")->setText(u"123456"_s);
    field("authPasswordField")->setText(u"one password"_s);
    field("authPasswordConfirmationField")->setText(u"another password"_s);
    button("Activate & sign in")->click();
    EXPECT_EQ(text("accountAuthMessage"), "The passwords do not match.");
    field("authPasswordConfirmationField")->setText(u"one password"_s);
    button("Activate & sign in")->click();
    EXPECT_EQ(lastBody().value("code").toString(), "123456");
    answer(400, R"({"error": {"message": "Wrong code."}})");
    button("Start over")->click();
    EXPECT_EQ(text("accountStepTitle"), "Continue with email");
}

TEST_F(AccountPageTest, ErrorsAreRedAndProgressIsQuiet)
{
    open();
    const auto color = [this] {
        return testing::PageWindow::find<ui::Label>(*page, "accountAuthMessage")
            ->palette()
            .color(QPalette::WindowText)
            .name();
    };
    button("Continue")->click();
    EXPECT_EQ(text("accountAuthMessage"), "Enter a valid email address.");
    EXPECT_EQ(color(), "#c0342b");
    controller.continueAccountFlow(address, AccountMode::SignIn);
    button("Sign in")->click();
    EXPECT_EQ(color(), "#6a675e");
    answer(500, {});
}

TEST_F(AccountPageTest, TheStatusIsPurpleOnceSignedIn)
{
    open();
    const auto* const status = testing::PageWindow::find<ui::Label>(*page, "accountStatusLabel");
    EXPECT_EQ(status->palette().color(QPalette::WindowText).name(), "#6a675e");
    storeSession();
    controller.refreshAccountUI();
    EXPECT_EQ(status->fullText(), u"✓ Signed in"_s);
    EXPECT_EQ(status->palette().color(QPalette::WindowText).name(), "#4a30b8");
    button("Sign out")->click();
    answer(200, "{}");
    EXPECT_EQ(text("accountStepTitle"), "Continue with email");
}

// Anything may come.

TEST_F(AccountPageTest, AMessageOfAnyLengthIsOneLineOfPlainText)
{
    open();
    controller.continueAccountFlow(address, AccountMode::SignIn);
    button("Sign in")->click();
    const QByteArray endless(102'400, 'x');
    answer(500, R"({"error": {"message": "<b>no</b> )" + endless + R"("}})");

    const auto* const message = testing::PageWindow::find<ui::Label>(*page, "accountAuthMessage");
    EXPECT_EQ(message->textFormat(), Qt::PlainText);
    EXPECT_EQ(message->lineCount(), 1);
    EXPECT_EQ(frameOf(message), QRect(0, 52, 470, 20));
    EXPECT_TRUE(message->fullText().startsWith(u"<b>no</b> xxx"_s));
    EXPECT_TRUE(message->toolTip().contains(u"&lt;b&gt;"_s)); // As text there too.
}

TEST_F(AccountPageTest, AnAddressOfAnyLengthStaysInItsLine)
{
    open();
    controller.continueAccountFlow(QString(10'000, u'W') + u"@x"_s, AccountMode::Register);
    const auto* const subtitle = testing::PageWindow::find<ui::Label>(*page, "accountStepSubtitle");
    EXPECT_EQ(subtitle->lineCount(), 1);
    EXPECT_EQ(frameOf(subtitle), QRect(0, 150, 494, 20));
}

TEST_F(AccountPageTest, APageThatGoesWhileItAsksLeavesNothingBehind)
{
    open();
    controller.continueAccountFlow(address, AccountMode::SignIn);
    button("Sign in")->click();
    page.reset();
    answer(200, R"({"accessToken": "access"})");
    EXPECT_TRUE(controller.content().isSignedIn);
}

TEST_F(AccountPageTest, EverythingFitsInEachLanguage)
{
    for (const QString& language : languages) {
        preferences.setValue(keys::interfaceLanguage, language);
        open();
        testing::PageWindow::expectEverythingFits(*page);
        controller.continueAccountFlow(address, AccountMode::SignIn);
        testing::PageWindow::expectEverythingFits(*page);
        controller.continueAccountFlow(address, AccountMode::Register);
        testing::PageWindow::expectEverythingFits(*page);
        openVerification();
        testing::PageWindow::expectEverythingFits(*page);
        storeSession();
        controller.refreshAccountUI();
        testing::PageWindow::expectEverythingFits(*page);
        preferences.remove(keys::cloudAccessToken);
        page.reset();
    }
}

TEST_F(AccountPageTest, PlaceholdersAreTranslated)
{
    const QList<QStringList> placeholders{
        {u"6 位邮箱验证码"_s, u"密码（至少 10 个字符）"_s, u"确认密码"_s},
        {u"6 位電子郵件驗證碼"_s, u"密碼（至少 10 個字元）"_s, u"確認密碼"_s},
        {u"6-digit email code"_s, u"Password (at least 10 characters)"_s, u"Confirm password"_s},
    };
    for (qsizetype i = 0; i < languages.size(); ++i) {
        preferences.setValue(keys::interfaceLanguage, languages[i]);
        open();
        openVerification();
        QStringList shown;
        for (const QLineEdit* const each : parts<QLineEdit>())
            shown.append(each->placeholderText());
        EXPECT_EQ(shown, placeholders[i]);
        page.reset();
    }
}

TEST_F(AccountPageTest, TheButtonsOfEveryStepAreTranslated)
{
    const QList<QStringList> titles{
        {u"下一步"_s, u"登录"_s, u"更换邮箱"_s, u"发送验证码"_s, u"返回"_s, u"激活并登录"_s,
            u"重新开始"_s, u"退出登录"_s},
        {u"下一步"_s, u"登入"_s, u"更換電子郵件"_s, u"傳送驗證碼"_s, u"返回"_s, u"啟用並登入"_s,
            u"重新開始"_s, u"登出"_s},
        {u"Continue"_s, u"Sign in"_s, u"Change email"_s, u"Send code"_s, u"Back"_s,
            u"Activate & sign in"_s, u"Start over"_s, u"Sign out"_s},
    };
    for (qsizetype i = 0; i < languages.size(); ++i) {
        preferences.setValue(keys::interfaceLanguage, languages[i]);
        QStringList shown;
        const auto note = [this, &shown] {
            for (const QPushButton* const each : parts<QPushButton>())
                shown.append(each->accessibleName());
        };
        open();
        note();
        controller.continueAccountFlow(address, AccountMode::SignIn);
        note();
        controller.continueAccountFlow(address, AccountMode::Register);
        note();
        openVerification();
        note();
        storeSession();
        controller.refreshAccountUI();
        note();
        EXPECT_EQ(shown, titles[i]);
        preferences.remove(keys::cloudAccessToken);
        page.reset();
    }
}

TEST_F(AccountPageTest, WhoHasNoServiceIsToldWhereToGetOne)
{
    open();
    EXPECT_TRUE(text("serviceHint").contains("scripts/run"));
    EXPECT_TRUE(text("serviceHint").contains("docs/self-hosting.md"));
    storeSession();
    controller.refreshAccountUI();
    EXPECT_EQ(text("serviceHint"), QString());
}

} // namespace
} // namespace tavrin
