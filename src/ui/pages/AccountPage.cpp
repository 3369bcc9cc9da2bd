#include "ui/pages/AccountPage.h"

#include "app/account/AccountController.h"
#include "app/account/AccountTexts.h"
#include "app/settings/Localization.h"
#include "platform/DesktopTexts.h"
#include "ui/controls/Button.h"
#include "ui/controls/Card.h"
#include "ui/controls/Label.h"
#include "ui/controls/Placing.h"
#include "ui/controls/Segments.h"
#include "ui/controls/Symbol.h"
#include "ui/controls/TextField.h"
#include "ui/style/BrandStyle.h"

#include <QAccessible>
#include <QApplication>
#include <QKeyEvent>
#include <QKeySequence>

#include <utility>

using namespace Qt::StringLiterals;

namespace tavrin::ui {
namespace {

// Frames in points from the bottom left: of the page,
constexpr QRect cardFrame(36, 220, 538, 308);
constexpr QRect noteFrame(36, 142, 538, 64);
constexpr QRect hintFrame(90, 94, 462, 36);
// of the card,
constexpr QRect statusFrame(22, 272, 494, 22);
constexpr QRect lineFrame(22, 262, 494, 1);
constexpr QRect artFrame(330, 26, 186, 104);
constexpr QRect containerFrame(22, 46, 494, 208);
// and of the note.
constexpr QRect lockFrame(22, 22, 20, 20);
constexpr QRect noticeFrame(54, 12, 462, 40);

constexpr int noticeLineHeight = 17;
constexpr int fieldWidth = 300;
constexpr int fieldHeight = 32;
constexpr int buttonHeight = 36;

/// Where the parts of a step stand in its container.
struct StepPlaces {
    QRect title{0, 174, 494, 24};
    QRect subtitle{0, 150, 494, 20};
    int buttons = 4;
};

StepPlaces placesOf(AccountStep step)
{
    StepPlaces places;
    if (step == AccountStep::Verification) {
        places.title = {0, 182, 360, 24};
        places.subtitle = {0, 158, 494, 24};
        places.buttons = -26;
    } else if (step == AccountStep::LoggedIn) {
        places.subtitle = {0, 142, 460, 22};
        places.buttons = 58;
    }
    return places;
}

} // namespace

AccountPage::AccountPage(
    QWidget& parent, AccountController& controller, const Localization& localization)
    : Page(parent, localization.LT(texts::accountPage), localization.LT(texts::accountPageSubtitle))
    , m_controller(controller)
    , m_localization(localization)
    , m_left(new QWidget(this))
{
    setObjectName(u"accountPage"_s);
    addCard();
    addNote();
    m_controller.setView(this);
}

AccountPage::~AccountPage()
{
    m_controller.setView(nullptr);
}

void AccountPage::setContent(const AccountContent& content)
{
    showStatus(content);
    if (content.build != m_build)
        buildStep(content);
    showMessage(content);
    m_serviceHint->setFullText(content.serviceHint);
    m_serviceHint->setVisible(!content.serviceHint.isEmpty());
}

void AccountPage::keyPressEvent(QKeyEvent* event)
{
    const bool leadsBack = m_step == AccountStep::Login || m_step == AccountStep::Invite;
    if (event->key() == Qt::Key_Escape && leadsBack)
        m_controller.renderAccountStartStep();
    else
        Page::keyPressEvent(event);
}

void AccountPage::addCard()
{
    auto* const card = new Card(*this, cardFrame);
    m_accountStatusLabel =
        new Label(*card, statusFrame, brand::tavBodyFont(), brand::secondaryLabelColor());
    m_accountStatusLabel->setObjectName(u"accountStatusLabel"_s);
    static_cast<void>(addHairline(*card, lineFrame));
    new Symbol(*card, artFrame, u"brand"_s, brand::tint());
    // It reaches down to the card's edge, where the buttons of a long step stand.
    m_accountAuthContainer = new QWidget(card);
    m_accountAuthContainer->setObjectName(u"accountAuthContainer"_s);
    m_left->hide();
    place(*m_accountAuthContainer, containerFrame.adjusted(0, -containerFrame.y(), 0, 0));
}

void AccountPage::addNote()
{
    auto* const note = new Panel(*this, noteFrame, Card::smallRadius, brand::tint());
    new Symbol(*note, lockFrame, u"lock"_s, brand::deepPurple());
    auto* const notice =
        new Label(*note, noticeFrame, brand::tavCaptionFont(), brand::secondaryLabelColor());
    notice->setSecondLine(Label::SecondLine::Centred, noticeLineHeight);
    notice->setFullText(
        m_localization.desktopText(&DesktopTexts::accountNotice, texts::accountNotice));
    m_serviceHint =
        new Label(*this, hintFrame, brand::tavCaptionFont(), brand::secondaryLabelColor());
    m_serviceHint->setObjectName(u"serviceHint"_s);
    m_serviceHint->setSecondLine(Label::SecondLine::Centred, noticeLineHeight);
}

void AccountPage::showStatus(const AccountContent& content)
{
    m_accountStatusLabel->setFont(
        content.isSignedIn ? brand::tavRowTitleFont() : brand::tavBodyFont());
    m_accountStatusLabel->setColor(
        content.isSignedIn ? brand::deepPurple() : brand::secondaryLabelColor());
    m_accountStatusLabel->setFullText(content.status);
}

void AccountPage::showMessage(const AccountContent& content)
{
    if (!m_accountAuthMessage)
        return;
    const bool isNew =
        !content.message.isEmpty() && content.message != m_accountAuthMessage->fullText();
    m_accountAuthMessage->setColor(
        content.messageIsError ? brand::systemRed() : brand::secondaryLabelColor());
    m_accountAuthMessage->setFullText(content.message);
    if (isNew) {
        QAccessibleEvent announcement(m_accountAuthMessage, QAccessible::Alert);
        QAccessible::updateAccessibility(&announcement);
    }
}

void AccountPage::buildStep(const AccountContent& content)
{
    const QWidgetList before = parts();
    const QWidget* const focused = QApplication::focusWidget();
    const bool hadKeyboard = focused && m_accountAuthContainer->isAncestorOf(focused);
    forgetParts();
    m_step = content.step;
    m_build = content.build;
    addHeading(content);
    addControls(content);
    for (QWidget* const part : parts())
        part->show();
    m_accountAuthContainer->setAccessibleName(content.title);
    // One Return too many must not sign out again.
    const bool isAccount = content.step == AccountStep::LoggedIn;
    if (hadKeyboard)
        (isAccount ? m_accountAuthContainer : m_firstControl)->setFocus();
    // Not earlier: the keyboard would wander through what is left of the step.
    clearAccountAuthContainer(before);
}

void AccountPage::addControls(const AccountContent& content)
{
    switch (content.step) {
    case AccountStep::Start:
        return addStart(content);
    case AccountStep::Login:
        return addLogin();
    case AccountStep::Invite:
        return addInvite();
    case AccountStep::Verification:
        return addVerification();
    case AccountStep::LoggedIn:
        return addLoggedIn();
    }
}

QWidgetList AccountPage::parts() const
{
    return m_accountAuthContainer->findChildren<QWidget*>(Qt::FindDirectChildrenOnly);
}

void AccountPage::forgetParts()
{
    m_accountAuthMessage = nullptr;
    m_authEmailField = nullptr;
    m_authPasswordField = nullptr;
    m_authPasswordConfirmationField = nullptr;
    m_authInviteField = nullptr;
    m_authVerificationCodeField = nullptr;
    m_authModeControl = nullptr;
    m_firstControl = nullptr;
    m_primaryButton = nullptr;
}

void AccountPage::clearAccountAuthContainer(const QWidgetList& left)
{
    for (QWidget* const part : left) {
        // One of them may be the button whose press led here: it goes when that is over.
        part->setObjectName(QString());
        part->setParent(m_left);
        part->deleteLater();
    }
}

void AccountPage::addHeading(const AccountContent& content)
{
    const StepPlaces places = placesOf(content.step);
    auto* const title = new Label(*m_accountAuthContainer, inContainer(places.title),
        brand::tavCardTitleFont(), brand::labelColor(), content.title);
    title->setObjectName(u"accountStepTitle"_s);
    const bool isAccount = content.step == AccountStep::LoggedIn;
    auto* const subtitle = new Label(*m_accountAuthContainer, inContainer(places.subtitle),
        brand::tavBodyFont(), isAccount ? brand::labelColor() : brand::secondaryLabelColor());
    // An address may be of any length, and above and below there is no room.
    constexpr Fitting oneLineThatShrinks{1, 1};
    subtitle->setFitting(oneLineThatShrinks);
    subtitle->setObjectName(u"accountStepSubtitle"_s);
    subtitle->setFullText(content.subtitle);
}

void AccountPage::addStart(const AccountContent& content)
{
    m_authEmailField =
        accountFieldWithPlaceholder("authEmailField", texts::exampleEmail, 105, false);
    m_authEmailField->setAccessibleName(m_localization.LT(texts::emailName));
    m_authEmailField->setText(content.email);
    m_authModeControl =
        new Segments(*m_accountAuthContainer, inContainer({314, 105, 150, fieldHeight}),
            {m_localization.LT(texts::signIn), m_localization.LT(texts::registerAccount)});
    m_authModeControl->setObjectName(u"authModeControl"_s);
    m_authModeControl->setAccessibleName(m_localization.LT(texts::modeName));
    addAccountAuthMessageAtY(42);
    addAccountButton(texts::continueFlow, {0, 112, true}, [this] {
        m_controller.continueAccountFlow(m_authEmailField->text(),
            m_authModeControl->selected() == 0 ? AccountMode::SignIn : AccountMode::Register);
    });
}

void AccountPage::addLogin()
{
    m_authPasswordField =
        accountFieldWithPlaceholder("authPasswordField", texts::password, 105, true);
    addAccountAuthMessageAtY(52);
    addAccountButton(texts::signIn, {0, 112, true},
        [this] { m_controller.performInlineLogin(m_authPasswordField->text()); });
    addAccountButton(
        texts::changeEmail, {122, 112, false}, [this] { m_controller.renderAccountStartStep(); });
}

void AccountPage::addInvite()
{
    m_authInviteField =
        accountFieldWithPlaceholder("authInviteField", texts::inviteCode, 105, false);
    addAccountAuthMessageAtY(52);
    addAccountButton(texts::sendCode, {0, 112, true},
        [this] { m_controller.startInlineRegistration(m_authInviteField->text()); });
    addAccountButton(
        texts::back, {122, 90, false}, [this] { m_controller.renderAccountStartStep(); });
}

void AccountPage::addVerification()
{
    m_authVerificationCodeField =
        accountFieldWithPlaceholder("authVerificationCodeField", texts::emailCode, 128, false);
    m_authPasswordField =
        accountFieldWithPlaceholder("authPasswordField", texts::newPassword, 86, true);
    m_authPasswordConfirmationField = accountFieldWithPlaceholder(
        "authPasswordConfirmationField", texts::confirmPassword, 44, true);
    addAccountAuthMessageAtY(18);
    addAccountButton(texts::activateAndSignIn, {0, 130, true}, [this] {
        m_controller.completeInlineRegistration(m_authVerificationCodeField->text(),
            m_authPasswordField->text(), m_authPasswordConfirmationField->text());
    });
    addAccountButton(
        texts::startOver, {140, 100, false}, [this] { m_controller.renderAccountStartStep(); });
}

void AccountPage::addLoggedIn()
{
    new Label(*m_accountAuthContainer, inContainer({0, 110, 494, 20}), brand::tavBodyFont(),
        brand::secondaryLabelColor(), m_localization.LT(texts::sessionProvides));
    addAccountButton(
        texts::signOut, {0, 112, false}, [this] { m_controller.logoutCloudAccount(); });
}

TextField* AccountPage::accountFieldWithPlaceholder(
    const char* name, const LocalizedText& placeholder, int y, bool secure)
{
    auto* const field = new TextField(*m_accountAuthContainer,
        inContainer({0, y, fieldWidth, fieldHeight}), m_localization.LT(placeholder),
        secure ? TextField::Kind::Secure : TextField::Kind::Plain);
    field->setObjectName(QLatin1StringView(name));
    connect(field, &QLineEdit::returnPressed, this, [this] { m_primaryButton->click(); });
    if (!m_firstControl)
        m_firstControl = field;
    return field;
}

void AccountPage::addAccountAuthMessageAtY(int y)
{
    m_accountAuthMessage = new Label(*m_accountAuthContainer, inContainer({0, y, 470, 20}),
        brand::tavCaptionFont(), brand::secondaryLabelColor());
    m_accountAuthMessage->setFitting(elideAtOnce);
    m_accountAuthMessage->setObjectName(u"accountAuthMessage"_s);
}

Button* AccountPage::addAccountButton(
    const LocalizedText& title, ButtonPlace buttonPlace, std::function<void()> action)
{
    const QString shown = m_localization.LT(title);
    const QRect frame(buttonPlace.x, placesOf(m_step).buttons, buttonPlace.width, buttonHeight);
    auto* const button = new Button(*m_accountAuthContainer, inContainer(frame), shown,
        buttonPlace.primary ? Button::Look::Primary : Button::Look::Secondary);
    // An ampersand of the title is one, and marks no key.
    button->setShortcut(QKeySequence());
    button->setAccessibleName(shown);
    connect(button, &QPushButton::clicked, this, std::move(action));
    if (buttonPlace.primary)
        m_primaryButton = button;
    if (!m_firstControl)
        m_firstControl = button;
    return button;
}

QRect AccountPage::inContainer(const QRect& frame)
{
    return frame.translated(0, containerFrame.y());
}

} // namespace tavrin::ui
