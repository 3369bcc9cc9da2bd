// What the pages of the main window have to do with each other.

#include "app/Pages.h"

#include "platform/PreferenceKeys.h"
#include "support/QtPrinters.h"
#include "ui/Page.h"
#include "ui/ProgramStage.h"
#include "ui/controls/Label.h"

#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLineEdit>
#include <QTest>
#include <gtest/gtest.h>

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

} // namespace
} // namespace tavrin
