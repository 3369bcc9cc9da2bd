#pragma once

#include "app/account/AccountContent.h"
#include "app/windows/View.h"
#include "ui/controls/Page.h"

#include <functional>

namespace tavrin {

class AccountController;
class Localization;
struct LocalizedText;

} // namespace tavrin

namespace tavrin::ui {

class Button;
class Segments;
class TextField;

/// The account page: one step at a time of signing in and registering, or the account. Return in a
/// field presses the step's first button; Escape returns from the password and from the invite.
class AccountPage final : public Page, public View<AccountContent> {
    Q_OBJECT

public:
    /// @param controller shows the page its content; it and @p localization outlive the page.
    AccountPage(QWidget& parent, AccountController& controller, const Localization& localization);
    ~AccountPage() override;

    AccountPage(const AccountPage&) = delete;
    AccountPage& operator=(const AccountPage&) = delete;

    void setContent(const AccountContent& content) override;

    [[nodiscard]] QWidget* firstControl() const override { return m_firstControl; }

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    /// A button's place in the row of buttons, and what it is.
    struct ButtonPlace {
        int x;
        int width;
        bool primary;
    };

    void addCard();
    void addNote();
    void showStatus(const AccountContent& content);
    void showMessage(const AccountContent& content);
    void buildStep(const AccountContent& content);
    void addControls(const AccountContent& content);
    [[nodiscard]] QWidgetList parts() const; ///< What stands in the container.
    void forgetParts();
    void clearAccountAuthContainer(const QWidgetList& left);
    void addHeading(const AccountContent& content);
    void addStart(const AccountContent& content);
    void addLogin();
    void addInvite();
    void addVerification();
    void addLoggedIn();
    TextField* accountFieldWithPlaceholder(
        const char* name, const LocalizedText& placeholder, int y, bool secure);
    void addAccountAuthMessageAtY(int y);
    Button* addAccountButton(
        const LocalizedText& title, ButtonPlace buttonPlace, std::function<void()> action);
    /// @p frame from the bottom left of the container, as a frame of the widget that stands for it.
    [[nodiscard]] static QRect inContainer(const QRect& frame);

    AccountController& m_controller;
    const Localization& m_localization;
    QWidget* m_left; ///< Never seen: has what steps left behind, until that is deleted.
    Label* m_accountStatusLabel = nullptr;
    QWidget* m_accountAuthContainer = nullptr;
    Label* m_accountAuthMessage = nullptr; ///< Of the step; null where it has none.
    Label* m_serviceHint = nullptr;
    TextField* m_authEmailField = nullptr; ///< Of the step, like the next; else null.
    TextField* m_authPasswordField = nullptr;
    TextField* m_authPasswordConfirmationField = nullptr;
    TextField* m_authInviteField = nullptr;
    TextField* m_authVerificationCodeField = nullptr;
    Segments* m_authModeControl = nullptr;
    QWidget* m_firstControl = nullptr;
    Button* m_primaryButton = nullptr;
    AccountStep m_step = AccountStep::Start;
    int m_build = -1; ///< Of the step that is shown.
};

} // namespace tavrin::ui
