#pragma once

#include "app/account/AccountContent.h"
#include "app/windows/AccountPanel.h"
#include "app/windows/View.h"
#include "base/CallbackGuard.h"

#include <functional>

namespace tavrin {

class Localization;
class MainQueue;
class Preferences;
class TavrinAPI;
struct CloudResponse;
struct Error;
struct LocalizedText;

/// The account page: signing in, registering, signing out. Its state goes on while there is no
/// view, so that a session that ends then still closes the pages that need one.
///
/// Each answer of the service belongs to the step that asked. When that step was left meanwhile, a
/// message or the next step is dropped; a sign-in counts all the same. Main thread only.
class AccountController final : public AccountPanel {
public:
    struct Neighbours {
        TavrinAPI& api;
        const Localization& localization;
        MainQueue& mainQueue;
        Preferences& preferences;
        std::function<bool()> isAccountPageShown;
        std::function<void()> refreshDashboardUsage;
        std::function<void()> refreshHealthStatus;
        std::function<void()> selectAccountPage;
        std::function<void()> showMainWindow; ///< And brings the program forward.
        /// Shows or hides what only those see who are signed in (`authenticatedSidebarViews`), and
        /// puts `accountSidebarButton` in its place.
        std::function<void(bool isSignedIn)> showSignedIn;
    };

    /// @param neighbours must outlive the controller.
    explicit AccountController(Neighbours neighbours);

    /// The page; null while there is none. Shows it the content of the moment.
    void setView(View<AccountContent>* view);

    [[nodiscard]] const AccountContent& content() const { return m_content; }

    void refreshAccountUI() override;
    void showLoginDialog() override;

    /// The health page's button of the same name.
    void configureActiveService() { showLoginDialog(); }

    // The steps. Each begins afresh.
    void renderAccountStartStep();
    void renderAccountLoginStep();
    void renderAccountInviteStep();
    void renderAccountVerificationStep();
    void renderAccountLoggedInState();

    // The buttons, with what stands in the fields.
    void continueAccountFlow(const QString& email, AccountMode mode);
    void performInlineLogin(const QString& password);
    void startInlineRegistration(const QString& inviteCode);
    void completeInlineRegistration(
        const QString& code, const QString& password, const QString& confirmation);
    void logoutCloudAccount();

private:
    void renderStep(AccountStep step, const LocalizedText& title, const QString& subtitle);
    void setAccountAuthMessage(const QString& text, bool error);
    void setAccountAuthMessage(const LocalizedText& text, bool error);
    void showFailure(const Error& error);
    void completeRegistration(
        const QString& email, const QString& password, const CloudResponse& verified);
    void finishSignIn(const LocalizedText& message);
    void show();

    using Answer = std::function<void(const CloudResponse&, bool isStepLeft)>;

    /// @p answer on the main queue, while this object lives, and told whether the step of the
    /// moment was left meanwhile.
    [[nodiscard]] std::function<void(const CloudResponse&)> onAnswer(Answer answer) const;

    Neighbours m_neighbours;
    View<AccountContent>* m_view = nullptr;
    AccountContent m_content;
    QString m_pendingRegistrationEmail; ///< `pendingRegistrationEmail`: of the start step, for all
                                        ///< later ones.
    CallbackGuard m_guard;
};

} // namespace tavrin
