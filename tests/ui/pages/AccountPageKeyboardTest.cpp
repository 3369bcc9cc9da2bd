#include "ui/pages/AccountPageFixture.h"

#include <functional>
#include <initializer_list>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tavrin {
namespace {

using testing::address;
using testing::languages;

class AccountPageKeyboardTest : public testing::AccountPageFixture { };

// The keyboard.

TEST_F(AccountPageKeyboardTest, AccountsAreOpenedFromTheKeyboardAlone)
{
    open();
    ASSERT_EQ(page->firstControl(), field("authEmailField"));
    page->firstControl()->setFocus();
    for (const QChar letter : address)
        testing::PageWindow::press(0, letter);
    testing::PageWindow::press(Qt::Key_Return);
    EXPECT_EQ(text("accountStepSubtitle"), address);
    EXPECT_EQ(QApplication::focusWidget(), field("authPasswordField"));

    testing::PageWindow::press(0, u"s"_s);
    testing::PageWindow::press(Qt::Key_Return);
    EXPECT_EQ(lastBody().value("password").toString(), "s");
    answer(200, R"({"accessToken": "access", "refreshToken": "refresh"})");
    EXPECT_EQ(text("accountStepTitle"), "Account connected");
}

TEST_F(AccountPageKeyboardTest, AReturnTooManyDoesNotSignOut)
{
    open();
    controller.continueAccountFlow(address, AccountMode::SignIn);
    field("authPasswordField")->setFocus();
    testing::PageWindow::press(Qt::Key_Return);
    answer(200, R"({"accessToken": "access"})");
    const qsizetype sent = http.requests().size();
    testing::PageWindow::press(Qt::Key_Return);
    time.advance(0s);
    EXPECT_EQ(http.requests().size(), sent);
}

TEST_F(AccountPageKeyboardTest, ReturnInAnyFieldPressesTheFirstButton)
{
    open();
    openVerification();
    for (const char* name :
        {"authVerificationCodeField", "authPasswordField", "authPasswordConfirmationField"}) {
        const qsizetype before = http.requests().size();
        field(name)->setFocus();
        testing::PageWindow::press(Qt::Key_Return);
        EXPECT_EQ(http.requests().size(), before + 1) << name;
        answer(400, "{}");
    }
}

TEST_F(AccountPageKeyboardTest, EscapeLeadsBackFromThePasswordAndTheInvite)
{
    open();
    for (const AccountMode mode : {AccountMode::SignIn, AccountMode::Register}) {
        controller.continueAccountFlow(address, mode);
        page->firstControl()->setFocus();
        testing::PageWindow::press(Qt::Key_Escape);
        EXPECT_EQ(text("accountStepTitle"), "Continue with email");
        EXPECT_EQ(QApplication::focusWidget(), field("authEmailField"));
    }
}

TEST_F(AccountPageKeyboardTest, EscapeThrowsNoCodeAwayThatWasMailed)
{
    open();
    openVerification();
    field("authVerificationCodeField")->setFocus();
    testing::PageWindow::press(Qt::Key_Escape);
    EXPECT_EQ(text("accountStepTitle"), "Enter code and create password");
}

TEST_F(AccountPageKeyboardTest, TheTabKeyGoesThroughAStepInReadingOrder)
{
    open();
    openVerification();
    const QList<QWidget*> order{field("authVerificationCodeField"), field("authPasswordField"),
        field("authPasswordConfirmationField"), button("Activate & sign in"), button("Start over")};
    order[0]->setFocus();
    for (QWidget* const expected : order) {
        EXPECT_EQ(QApplication::focusWidget(), expected);
        testing::PageWindow::press(Qt::Key_Tab);
    }
}

TEST_F(AccountPageKeyboardTest, NothingIsLeftWithoutANameOrWithAKeyOfItsOwn)
{
    for (const QString& language : languages) {
        preferences.setValue(keys::interfaceLanguage, language);
        open();
        for (const auto& openStep : std::initializer_list<std::function<void()>>{[] {},
                 [this] { controller.continueAccountFlow(address, AccountMode::SignIn); },
                 [this] { openVerification(); }}) {
            openStep();
            for (const QLineEdit* const each : parts<QLineEdit>())
                EXPECT_FALSE(each->accessibleName().isEmpty());
            for (const QPushButton* const each : parts<QPushButton>()) {
                EXPECT_EQ(each->accessibleName(), each->text());
                EXPECT_TRUE(each->shortcut().isEmpty());
            }
        }
        page.reset();
    }
}

} // namespace
} // namespace tavrin
