// What the pages of the main window have to do with each other.

#include "app/Pages.h"

#include "platform/preferences/PreferenceKeys.h"
#include "support/QtPrinters.h"
#include "ui/ProgramStage.h"
#include "ui/controls/Label.h"
#include "ui/controls/Page.h"
#include "ui/pages/PersonalizationWindow.h"
#include "ui/pages/TermRow.h"

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLineEdit>
#include <QTest>
#include <gtest/gtest.h>

#include <memory>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tavrin {
namespace {

class PagesTest : public ::testing::Test {
protected:
    testing::ProgramStage stage;

    [[nodiscard]] QString shownPage() const
    {
        const auto* const page = stage.visibleChild<ui::Page>();
        return page ? page->accessibleName() : QString();
    }

    [[nodiscard]] QString label(const QString& name) const
    {
        const auto* const label = stage.visibleChild<ui::Label>(name);
        return label ? label->fullText() : QString();
    }

    /// One session from the menu.
    void dictate(const QString& text)
    {
        while (stage.http->open() > 0)
            stage.http->fail(HttpFailure::Unreachable);
        stage.statusItem->press("Start dictation (Right Alt)");
        stage.settle(3s);
        stage.statusItem->press("Finish and insert (Right Alt)");
        stage.settle(0s);
        ASSERT_FALSE(stage.recognizer->calls.empty());
        stage.recognizer->calls.back().answer(text);
        stage.settle(0s);
        stage.http->answer(200, R"({"text": ")" + text.toUtf8() + R"("})");
        stage.settle(10s);
    }

    /// A field of another program in front, which takes what is pasted.
    std::shared_ptr<testing::FakeElement> openEditor()
    {
        constexpr qint64 editor = 7;
        auto field = std::make_shared<testing::FakeElement>();
        field->processIdentifier = editor;
        stage.accessibility->focusedElements[editor] = field;
        stage.workspace->frontmost = RunningApplication{editor, u"Notes"_s, u"notes"_s, 0};
        stage.keyboard->onPaste = [this, field] { field->insert(stage.pasteboard->string()); };
        return field;
    }

    [[nodiscard]] QStringList shownTerms() const
    {
        QStringList terms;
        for (const auto* const row : stage.children<ui::TermRow>()) {
            if (row->isVisible())
                terms.append(row->accessibleName());
        }
        return terms;
    }

    [[nodiscard]] static QList<QWidget*> personalizationWindows()
    {
        QList<QWidget*> windows;
        for (QWidget* const window : QApplication::topLevelWidgets()) {
            if (dynamic_cast<ui::PersonalizationWindow*>(window))
                windows.append(window);
        }
        return windows;
    }

    /// The history holds @p text alone, spoken now.
    void writeHistory(const QString& text) const
    {
        const QString path = stage.folder.path() + u"/Tavrin/TranscriptionHistory.json"_s;
        QDir().mkpath(stage.folder.path() + u"/Tavrin"_s);
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(QJsonDocument(
            QJsonArray{QJsonObject{{u"id"_s, u"A"_s},
                {u"timestamp"_s, stage.time.sinceEpoch().count()}, {u"transcript"_s, text},
                {u"finalText"_s, text}, {u"inputCharacters"_s, text.size()}}})
                       .toJson());
    }
};

TEST_F(PagesTest, TheOverviewHasTheFiguresOfTheHistory)
{
    writeHistory(u"forty-two characters are what this text has"_s.left(42));
    stage.launch();

    EXPECT_EQ(shownPage(), u"Overview"_s);
    EXPECT_EQ(label(u"todayUsageLabel"_s), u"42"_s);
}

TEST_F(PagesTest, ARecordThatIsDeletedIsGoneFromTheOverviewToo)
{
    writeHistory(u"seven 7"_s);
    stage.launch();
    EXPECT_EQ(label(u"todayUsageLabel"_s), u"7"_s);
    stage.preferences->setValue(keys::historyRetention, u"none"_s);
    stage.select(SettingsPage::History);
    stage.select(SettingsPage::Overview);

    EXPECT_EQ(label(u"todayUsageLabel"_s), u"0"_s);
}

TEST_F(PagesTest, SigningInOpensTheOtherPagesAndSigningOutClosesThem)
{
    stage.preferences->remove(keys::cloudAccessToken);
    stage.launch();
    EXPECT_EQ(shownPage(), u"Account"_s);
    auto* const address = stage.visibleChild<QLineEdit>(u"authEmailField"_s);
    ASSERT_TRUE(address);
    address->setText(u"ann@example.com"_s);
    QTest::keyClick(address, Qt::Key_Return);
    stage.settle(100ms);
    auto* const password = stage.visibleChild<QLineEdit>(u"authPasswordField"_s);
    ASSERT_TRUE(password);
    password->setText(u"correct horse"_s);
    while (stage.http->open() > 0)
        stage.http->fail(HttpFailure::Unreachable);
    stage.http->willAnswer(
        200, R"({"accessToken": "a", "refreshToken": "r", "user": {"email": "ann@example.com"}})");
    QTest::keyClick(password, Qt::Key_Return);
    stage.settle(100ms);

    EXPECT_TRUE(stage.sidebarButton(SettingsPage::History)->isVisible());
    stage.select(SettingsPage::History);
    EXPECT_EQ(shownPage(), u"History"_s);

    stage.preferences->remove(keys::cloudAccessToken);
    stage.preferences->remove(keys::cloudRefreshToken);
    stage.select(SettingsPage::Dictionary);
    EXPECT_EQ(shownPage(), u"Account"_s);
    EXPECT_FALSE(stage.sidebarButton(SettingsPage::History)->isVisible());
}

TEST_F(PagesTest, TheStatusMenuAndThePageChooseTheSameStyle)
{
    stage.launch();
    stage.select(SettingsPage::InputAndOutput);
    auto* const popup = stage.visibleChild<QComboBox>(u"outputStylePopup"_s);
    ASSERT_TRUE(popup);
    popup->setCurrentIndex(1);
    Q_EMIT popup->activated(1);
    const QString chosen = stage.preferences->value(keys::outputStyle.key).toString();
    EXPECT_FALSE(chosen.isEmpty());
    EXPECT_NE(chosen, u"professional"_s);
    stage.statusItem->press("Writing style", "Professional (Default)");
    EXPECT_EQ(popup->currentText(), u"Professional (Default)"_s);
}

TEST_F(PagesTest, ARecordThatIsSavedIsShownAtOnce)
{
    writeHistory(u"old"_s);
    stage.launch();
    stage.select(SettingsPage::History);
    EXPECT_TRUE(label(u"historyStorageLabel"_s).startsWith(u"1 records"_s));

    dictate(u"new text"_s);
    EXPECT_TRUE(label(u"historyStorageLabel"_s).startsWith(u"2 records"_s));
    stage.select(SettingsPage::Overview);
    EXPECT_EQ(label(u"todayUsageLabel"_s), u"11"_s);
}

TEST_F(PagesTest, TheDictionaryAndTheMenuOpenTheSameStyleWindow)
{
    stage.launch();
    EXPECT_TRUE(personalizationWindows().isEmpty());
    stage.select(SettingsPage::Dictionary);
    auto* const button = stage.visibleChild<QAbstractButton>(u"writingStyleButton"_s);
    ASSERT_TRUE(button);
    button->click();
    const QList<QWidget*> opened = personalizationWindows();
    ASSERT_EQ(opened.size(), 1);
    EXPECT_TRUE(opened.first()->isVisible());

    opened.first()->close();
    stage.statusItem->press("Writing style settings…");
    EXPECT_EQ(personalizationWindows(), opened);
    EXPECT_TRUE(opened.first()->isVisible());
}

TEST_F(PagesTest, TheMenuOpensTheHistory)
{
    stage.launch();
    stage.program->hideMainWindow();
    stage.statusItem->press("History…");

    EXPECT_TRUE(stage.window()->isVisible());
    EXPECT_EQ(shownPage(), u"History"_s);
}

TEST_F(PagesTest, TheRowOfDeliveryOpensTheHistory)
{
    stage.preferences->setValue(keys::lastDeliveryVerified.key, false);
    stage.launch();
    stage.select(SettingsPage::Permissions);
    auto* const button = stage.visibleChild<QAbstractButton>(u"healthButton.delivery"_s);
    ASSERT_TRUE(button);
    button->click();

    EXPECT_EQ(shownPage(), u"History"_s);
}

TEST_F(PagesTest, TheNoteOnShortcutsLeadsToWhereTheyAreChanged)
{
    stage.probe->heldByOthers = {{key_codes::space, KeyModifier::Option}};
    stage.launch();
    stage.select(SettingsPage::Permissions);
    QAbstractButton* change = nullptr;
    for (auto* const button : stage.children<QAbstractButton>()) {
        if (button->isVisible() && button->accessibleName().endsWith(u": Change"_s))
            change = button;
    }
    ASSERT_TRUE(change);
    change->click();

    EXPECT_EQ(shownPage(), u"Input & Output"_s);
}

TEST_F(PagesTest, ATermThatIsLearnedAppearsOnTheOpenDictionary)
{
    const auto field = openEditor();
    stage.launch();
    stage.select(SettingsPage::Dictionary);
    EXPECT_EQ(shownTerms(), QStringList());
    dictate(u"We use open ai daily"_s);
    ASSERT_EQ(field->text, u"We use open ai daily"_s);
    field->text = u"We use OpenAI daily"_s;
    stage.settle(5s);

    EXPECT_EQ(shownTerms(), QStringList(u"OpenAI"_s));
}

TEST_F(PagesTest, SwitchingLearningOffForgetsTheCorrectionUnderWay)
{
    const auto field = openEditor();
    stage.launch();
    stage.select(SettingsPage::Dictionary);
    dictate(u"We use open ai daily"_s);
    field->text = u"We use OpenAI daily"_s;
    stage.settle(1s);
    auto* const learns = stage.visibleChild<QAbstractButton>(u"learnCorrectionsBox"_s);
    ASSERT_TRUE(learns);
    learns->click();
    learns->click();
    EXPECT_TRUE(learns->isChecked());
    stage.settle(20s);

    EXPECT_EQ(shownTerms(), QStringList());
}

} // namespace
} // namespace tavrin
