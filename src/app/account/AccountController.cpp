#include "app/account/AccountController.h"

#include "app/account/AccountTexts.h"
#include "app/settings/Localization.h"
#include "app/windows/SingleLine.h"
#include "cloud/StoredSession.h"
#include "cloud/TavrinAPI.h"
#include "platform/DesktopTexts.h"
#include "platform/MainQueue.h"
#include "platform/preferences/PreferenceKeys.h"
#include "platform/preferences/PreferenceValues.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace tavrin {

AccountController::AccountController(Neighbours neighbours)
    : m_neighbours(std::move(neighbours))
{
}

void AccountController::setView(View<AccountContent>* view)
{
    m_view = view;
    show();
}

void AccountController::refreshAccountUI()
{
    m_content.isSignedIn = hasCloudSession(m_neighbours.preferences);
    m_content.status =
        m_neighbours.localization.LT(m_content.isSignedIn ? texts::isSignedIn : texts::signInToUse);
    m_neighbours.showSignedIn(m_content.isSignedIn);
    if (m_content.isSignedIn) {
        renderAccountLoggedInState();
        return;
    }
    renderAccountStartStep();
    if (!m_neighbours.isAccountPageShown())
        m_neighbours.selectAccountPage();
}

void AccountController::showLoginDialog()
{
    m_neighbours.showMainWindow();
    m_neighbours.selectAccountPage();
    renderAccountStartStep();
}

void AccountController::renderAccountStartStep()
{
    m_content.email = valueOf(m_neighbours.preferences, keys::cloudAccountEmail);
    renderStep(AccountStep::Start, texts::continueWithEmail,
        m_neighbours.localization.LT(texts::chooseSignInOrRegister));
}

void AccountController::renderAccountLoginStep()
{
    renderStep(AccountStep::Login, texts::welcomeBack, singleLine(m_pendingRegistrationEmail));
}

void AccountController::renderAccountInviteStep()
{
    renderStep(AccountStep::Invite, texts::activateBetaAccount,
        m_neighbours.localization.LT(
            texts::willBeActivated, singleLine(m_pendingRegistrationEmail)));
}

void AccountController::renderAccountVerificationStep()
{
    renderStep(AccountStep::Verification, texts::enterCodeAndPassword,
        m_neighbours.localization.LT(texts::codeIsValidFor));
}

void AccountController::renderAccountLoggedInState()
{
    const QString email = singleLine(valueOf(m_neighbours.preferences, keys::cloudAccountEmail));
    renderStep(AccountStep::LoggedIn, texts::accountConnected,
        email.isEmpty() ? m_neighbours.localization.LT(texts::signedInAccount) : email);
}

void AccountController::continueAccountFlow(const QString& email, AccountMode mode)
{
    if (!email.contains(u'@')) {
        setAccountAuthMessage(texts::enterValidEmail, true);
        return;
    }
    m_pendingRegistrationEmail = email;
    if (mode == AccountMode::SignIn)
        renderAccountLoginStep();
    else
        renderAccountInviteStep();
}

void AccountController::performInlineLogin(const QString& password)
{
    setAccountAuthMessage(texts::signingIn, false);
    m_neighbours.api.loginEmail(m_pendingRegistrationEmail, password,
        onAnswer([this](const CloudResponse& response, bool isStepLeft) {
            if (!response.error)
                finishSignIn(texts::signedIn);
            else if (!isStepLeft)
                showFailure(*response.error);
        }));
}

void AccountController::startInlineRegistration(const QString& inviteCode)
{
    setAccountAuthMessage(texts::checkingInvite, false);
    m_neighbours.api.startRegistrationEmail(m_pendingRegistrationEmail, inviteCode,
        onAnswer([this](const CloudResponse& response, bool isStepLeft) {
            if (isStepLeft)
                return;
            if (!response.error)
                renderAccountVerificationStep();
            else if (response.error->message.contains(texts::alreadyRegistered.zhHans))
                renderAccountLoginStep();
            else
                showFailure(*response.error);
        }));
}

void AccountController::completeInlineRegistration(
    const QString& code, const QString& password, const QString& confirmation)
{
    if (password != confirmation) {
        setAccountAuthMessage(texts::passwordsDoNotMatch, true);
        return;
    }
    setAccountAuthMessage(texts::verifyingAndCreating, false);
    const QString email = m_pendingRegistrationEmail;
    m_neighbours.api.verifyRegistrationEmail(email, code,
        onAnswer([this, email, password](const CloudResponse& response, bool isStepLeft) {
            // Whoever starts over no longer wants the account.
            if (isStepLeft)
                return;
            if (response.error)
                showFailure(*response.error);
            else
                completeRegistration(email, password, response);
        }));
}

void AccountController::completeRegistration(
    const QString& email, const QString& password, const CloudResponse& verified)
{
    const QString registrationToken =
        verified.object.value_or(QJsonObject()).value("registrationToken"_L1).toString();
    m_neighbours.api.completeRegistrationEmail(email, password, registrationToken,
        onAnswer([this](const CloudResponse& response, bool isStepLeft) {
            if (!response.error)
                finishSignIn(texts::accountActivated);
            else if (!isStepLeft)
                showFailure(*response.error);
        }));
}

void AccountController::logoutCloudAccount()
{
    m_neighbours.api.logoutWithCompletion(
        onMainQueue(m_neighbours.mainQueue, m_guard.bind([this](const std::optional<Error>&) {
            refreshAccountUI();
            m_neighbours.refreshHealthStatus();
        })));
}

void AccountController::renderStep(
    AccountStep step, const LocalizedText& title, const QString& subtitle)
{
    const Localization& localization = m_neighbours.localization;
    constexpr LocalizedText nothing{u""};
    m_content.step = step;
    ++m_content.build;
    m_content.title = localization.LT(title);
    m_content.subtitle = subtitle;
    m_content.message.clear();
    m_content.messageIsError = false;
    m_content.serviceHint = step == AccountStep::LoggedIn
        ? QString()
        : localization.desktopText(&DesktopTexts::serviceHint, nothing);
    show();
}

void AccountController::setAccountAuthMessage(const QString& text, bool error)
{
    if (m_content.step == AccountStep::LoggedIn)
        return; // It has no line for messages.
    m_content.message = text;
    m_content.messageIsError = error;
    show();
}

void AccountController::setAccountAuthMessage(const LocalizedText& text, bool error)
{
    setAccountAuthMessage(m_neighbours.localization.LT(text), error);
}

void AccountController::showFailure(const Error& error)
{
    setAccountAuthMessage(singleLine(error.message), true);
}

void AccountController::finishSignIn(const LocalizedText& message)
{
    m_neighbours.preferences.setValue(keys::serviceMode, u"cloud"_s);
    refreshAccountUI();
    m_neighbours.refreshHealthStatus();
    m_neighbours.refreshDashboardUsage();
    setAccountAuthMessage(message, false);
}

void AccountController::show()
{
    if (m_view)
        m_view->setContent(m_content);
}

std::function<void(const CloudResponse&)> AccountController::onAnswer(Answer answer) const
{
    return onMainQueue(m_neighbours.mainQueue,
        m_guard.bind(
            [this, answer = std::move(answer), asked = m_content.build](
                const CloudResponse& response) { answer(response, asked != m_content.build); }));
}

} // namespace tavrin
