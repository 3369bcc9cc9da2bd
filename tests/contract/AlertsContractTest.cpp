#include "contract/Subject.h"
#include "support/QtPrinters.h"
#include "support/ports/ScriptedAlerts.h"
#include "ui/alerts/DrawnAlerts.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QKeyEvent>
#include <QLineEdit>
#include <QScreen>
#include <QTextEdit>

namespace tavrin::testing {
namespace {

/// Alerts together with the hand that answers them.
class AlertsSubject {
public:
    virtual ~AlertsSubject() = default;
    [[nodiscard]] virtual Alerts& alerts() = 0;
    /// The title of the alert that can be answered now; empty when there is none.
    [[nodiscard]] virtual QString openTitle() = 0;
    virtual void press(const QString& button, const QStringList& fields) = 0;
    virtual void destroy() = 0;
};

class ScriptedSubject final : public AlertsSubject {
public:
    [[nodiscard]] Alerts& alerts() override { return *m_alerts; }

    [[nodiscard]] QString openTitle() override
    {
        const qsizetype answered = m_alerts->shown().size() - m_alerts->open();
        return m_alerts->open() == 0 ? QString() : m_alerts->shown().at(answered).messageText;
    }

    void press(const QString& button, const QStringList& fields) override
    {
        const qsizetype answered = m_alerts->shown().size() - m_alerts->open();
        const qsizetype index = m_alerts->shown().at(answered).buttons.indexOf(button);
        m_alerts->answer(static_cast<int>(index), fields);
    }

    void destroy() override { m_alerts.reset(); }

private:
    std::unique_ptr<ScriptedAlerts> m_alerts = std::make_unique<ScriptedAlerts>();
};

QDialog* openDialog()
{
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (widget->isVisible() && widget->objectName() == u"alert")
            return qobject_cast<QDialog*>(widget);
    }
    return nullptr;
}

class DrawnSubject final : public AlertsSubject {
public:
    ~DrawnSubject() override { destroy(); }

    DrawnSubject() = default;
    DrawnSubject(const DrawnSubject&) = delete;
    DrawnSubject& operator=(const DrawnSubject&) = delete;

    [[nodiscard]] Alerts& alerts() override { return *m_alerts; }

    [[nodiscard]] QString openTitle() override
    {
        return openDialog() ? openDialog()->accessibleName() : QString();
    }

    void press(const QString& button, const QStringList& fields) override
    {
        const auto inputs = openDialog()->findChildren<QLineEdit*>();
        for (qsizetype i = 0; i < fields.size(); ++i)
            inputs[i]->setText(fields[i]);
        QString shown = button;
        shown.replace(u'&', QStringLiteral("&&"));
        for (QAbstractButton* candidate : openDialog()->findChildren<QAbstractButton*>()) {
            if (candidate->text() == shown)
                return candidate->click();
        }
        FAIL() << "no button " << button.toStdString();
    }

    void destroy() override
    {
        m_alerts.reset();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

private:
    std::unique_ptr<ui::DrawnAlerts> m_alerts = std::make_unique<ui::DrawnAlerts>();
};

class AlertsContractTest : public ContractTest<AlertsSubject> {
protected:
    void show(const Alert& alert)
    {
        subject().alerts().show(
            alert, [this](const AlertAnswer& answer) { m_answers.append(answer); });
    }

    static Alert named(const QString& title)
    {
        return {Alert::Style::Informational, title, QStringLiteral("Details"),
            {QStringLiteral("Yes & go"), QStringLiteral("Help"), QStringLiteral("No")}, {}};
    }

    QList<AlertAnswer> m_answers;
};

INSTANTIATE_TEST_SUITE_P(Implementations, AlertsContractTest,
    ::testing::Values(
        Implementation<AlertsSubject>{"Scripted", makeSubject<AlertsSubject, ScriptedSubject>},
        Implementation<AlertsSubject>{"Drawn", makeSubject<AlertsSubject, DrawnSubject>}),
    implementationName);

TEST_P(AlertsContractTest, EveryButtonAnswersWithItsPlace)
{
    for (const auto& button :
        {QStringLiteral("Yes & go"), QStringLiteral("Help"), QStringLiteral("No")}) {
        show(named(QStringLiteral("Title")));
        EXPECT_EQ(subject().openTitle(), QStringLiteral("Title"));
        subject().press(button, {});
    }
    EXPECT_EQ(m_answers, (QList<AlertAnswer>{{0, {}}, {1, {}}, {2, {}}}));
    EXPECT_EQ(subject().openTitle(), QString());
}

TEST_P(AlertsContractTest, ShowingReturnsBeforeTheAnswer)
{
    show(named(QStringLiteral("Title")));
    EXPECT_TRUE(m_answers.isEmpty());
    subject().press(QStringLiteral("No"), {});
}

TEST_P(AlertsContractTest, AlertsWaitTheirTurn)
{
    show(named(QStringLiteral("First")));
    show(named(QStringLiteral("Second")));
    EXPECT_EQ(subject().openTitle(), QStringLiteral("First"));
    subject().press(QStringLiteral("No"), {});
    EXPECT_EQ(subject().openTitle(), QStringLiteral("Second"));
    EXPECT_EQ(m_answers.size(), 1);
    subject().press(QStringLiteral("Help"), {});
    EXPECT_EQ(m_answers.size(), 2);
}

TEST_P(AlertsContractTest, AnAnswerMayShowTheNextAlert)
{
    subject().alerts().show(named(QStringLiteral("First")),
        [this](const AlertAnswer& /*answer*/) { show(named(QStringLiteral("Next"))); });
    subject().press(QStringLiteral("No"), {});
    EXPECT_EQ(subject().openTitle(), QStringLiteral("Next"));
    subject().press(QStringLiteral("No"), {});
}

TEST_P(AlertsContractTest, TheFieldsComeWithTheAnswerInTheirOrder)
{
    Alert alert = named(QStringLiteral("Sign in"));
    alert.fields = {
        {QStringLiteral("E-mail"), QString(), QStringLiteral("name@example.com"), false},
        {QString(), QString(), QStringLiteral("Password"), true}};
    show(alert);
    subject().press(QStringLiteral("No"), {QStringLiteral("a@b.c"), QStringLiteral("密码 1")});
    ASSERT_EQ(m_answers.size(), 1);
    EXPECT_EQ(
        m_answers[0].fields, QStringList({QStringLiteral("a@b.c"), QStringLiteral("密码 1")}));
}

TEST_P(AlertsContractTest, WhatIsOpenWhenTheProgramEndsIsAnsweredWithTheLastButton)
{
    show(named(QStringLiteral("First")));
    show(named(QStringLiteral("Second")));
    subject().destroy();
    ASSERT_EQ(m_answers.size(), 2);
    EXPECT_EQ(m_answers[0].button, 2);
    EXPECT_EQ(m_answers[1].button, 2);
}

TEST_P(AlertsContractTest, WhatIsOpenAtTheEndIsAnsweredAsByEscape)
{
    Alert alert = named(QStringLiteral("First"));
    alert.escapeButton = 0;
    show(alert);
    subject().destroy();
    EXPECT_EQ(m_answers, (QList<AlertAnswer>{{0, {}}}));
}

class DrawnAlertsTest : public ::testing::Test {
protected:
    void show(const Alert& alert)
    {
        m_alerts.show(alert, [this](const AlertAnswer& answer) { m_answers.append(answer); });
    }

    static void press(Qt::Key key)
    {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
        QWidget* receiver = openDialog()->focusWidget();
        QCoreApplication::sendEvent(receiver ? receiver : openDialog(), &event);
    }

    ui::DrawnAlerts m_alerts;
    QList<AlertAnswer> m_answers;
};

const Alert question{Alert::Style::Warning, QStringLiteral("<b>Title</b>"),
    QStringLiteral("<i>a</i> & b"), {QStringLiteral("Yes"), QStringLiteral("No")}, {}};

TEST_F(DrawnAlertsTest, EscapeAndClosingPressTheLastButton)
{
    show(question);
    press(Qt::Key_Escape);
    show(question);
    openDialog()->close();
    EXPECT_EQ(m_answers, (QList<AlertAnswer>{{1, {}}, {1, {}}}));
}

TEST_F(DrawnAlertsTest, EscapeAndClosingPressTheButtonThatTheAlertNames)
{
    Alert alert = question;
    alert.escapeButton = 0;
    show(alert);
    press(Qt::Key_Escape);
    show(alert);
    openDialog()->close();
    EXPECT_EQ(m_answers, (QList<AlertAnswer>{{0, {}}, {0, {}}}));
}

TEST_F(DrawnAlertsTest, ReturnPressesTheFirstButtonAlsoFromAField)
{
    show(question);
    press(Qt::Key_Return);
    Alert withField = question;
    withField.fields = {{QStringLiteral("Name"), QStringLiteral("old"), QString(), false}};
    show(withField);
    press(Qt::Key_Return);
    ASSERT_EQ(m_answers.size(), 2);
    EXPECT_EQ(m_answers[0].button, 0);
    EXPECT_EQ(m_answers[1], (AlertAnswer{0, {QStringLiteral("old")}}));
}

TEST_F(DrawnAlertsTest, AnAlertIsAnsweredBeforeAnythingElseOfTheProgramIsUsed)
{
    QWidget other;
    other.show();
    EXPECT_FALSE(QApplication::activeModalWidget());
    show(question);
    EXPECT_EQ(openDialog()->windowModality(), Qt::ApplicationModal);
    EXPECT_EQ(QApplication::activeModalWidget(), openDialog());
    press(Qt::Key_Escape);
    EXPECT_FALSE(QApplication::activeModalWidget());
}

TEST_F(DrawnAlertsTest, TextsAreShownAsTheyAre)
{
    show(question);
    QStringList shown;
    for (const QTextEdit* text : openDialog()->findChildren<QTextEdit*>())
        shown.append(text->toPlainText());
    EXPECT_EQ(shown, QStringList({question.messageText, question.informativeText}));
    press(Qt::Key_Escape);
}

TEST_F(DrawnAlertsTest, ASecureFieldHidesWhatIsTyped)
{
    Alert alert = question;
    alert.fields = {{QStringLiteral("Password"), QString(), QString(), true}};
    show(alert);
    EXPECT_EQ(openDialog()->findChild<QLineEdit*>()->echoMode(), QLineEdit::Password);
    press(Qt::Key_Escape);
}

TEST_F(DrawnAlertsTest, AFieldHasItsSizeAndIsTallEnoughForItsFont)
{
    Alert alert = question;
    alert.fields = {{.label = {}, .text = {}, .placeholder = {}, .size = QSize(320, 40)},
        {.label = {}, .text = {}, .placeholder = {}, .size = QSize(300, 2)}};
    show(alert);
    const auto fields = openDialog()->findChildren<QLineEdit*>();
    EXPECT_EQ(fields[0]->size(), QSize(320, 40));
    EXPECT_EQ(fields[1]->size(), QSize(300, fields[1]->sizeHint().height()));
    press(Qt::Key_Escape);
}

TEST_F(DrawnAlertsTest, AFieldTakesATextOfAnyLength)
{
    const QString longText = QStringLiteral("term ").repeated(20'000);
    Alert alert = question;
    alert.fields = {{.label = {}, .text = longText, .placeholder = {}}};
    show(alert);
    press(Qt::Key_End);
    openDialog()->findChild<QLineEdit*>()->insert(QStringLiteral("end"));
    press(Qt::Key_Return);
    ASSERT_EQ(m_answers.size(), 1);
    EXPECT_TRUE(m_answers[0].fields.first() == longText + QStringLiteral("end"));
}

TEST_F(DrawnAlertsTest, EveryFieldHasANameForAScreenReader)
{
    Alert alert = question;
    alert.fields = {{.label = QStringLiteral("Name"), .text = {}, .placeholder = {}},
        {.label = {}, .text = {}, .placeholder = QStringLiteral("Key")},
        {.label = {}, .text = QStringLiteral("Anna"), .placeholder = {}}};
    show(alert);
    QStringList names;
    for (const QLineEdit* field : openDialog()->findChildren<QLineEdit*>())
        names.append(field->accessibleName());
    EXPECT_EQ(
        names, QStringList({QStringLiteral("Name"), QStringLiteral("Key"), question.messageText}));
    press(Qt::Key_Escape);
}

TEST_F(DrawnAlertsTest, TextsOfAnySizeFitTheScreen)
{
    Alert huge = question;
    huge.messageText = QStringLiteral("标题").repeated(5000);
    huge.informativeText = QStringLiteral("word\n").repeated(2'000'000);
    show(huge);
    const QSize screen = openDialog()->screen()->availableSize();
    EXPECT_LE(openDialog()->height(), screen.height());
    EXPECT_LE(openDialog()->width(), screen.width());
    press(Qt::Key_Escape);

    Alert longWord = question;
    longWord.informativeText = QStringLiteral("x").repeated(3000);
    show(longWord);
    EXPECT_LE(openDialog()->width(), screen.width());
    press(Qt::Key_Escape);
}

} // namespace
} // namespace tavrin::testing
