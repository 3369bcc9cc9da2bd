#include "ui/window/MainWindowFrame.h"

#include "platform/linux/LinuxTexts.h"
#include "platform/preferences/PreferenceKeys.h"
#include "support/QtPrinters.h"
#include "support/ScreenReader.h"
#include "ui/ProgramStage.h"
#include "ui/controls/Label.h"
#include "ui/controls/Page.h"
#include "ui/window/PageTransition.h"

#include <QApplication>
#include <QGuiApplication>
#include <QScreen>
#include <QTest>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tavrin {
namespace {

class MainWindowFrameTest : public ::testing::Test {
protected:
    testing::ProgramStage stage;

    [[nodiscard]] ui::Page* page() const { return stage.visibleChild<ui::Page>(); }

    [[nodiscard]] bool shows(const QString& text) const
    {
        const auto labels = stage.children<ui::Label>();
        return std::ranges::any_of(labels, [&](const ui::Label* label) {
            return label->isVisible() && label->fullText() == text;
        });
    }

    [[nodiscard]] QStringList visibleButtons() const
    {
        QStringList names;
        for (const SettingsPage page : sidebarButtons) {
            if (stage.sidebarButton(page)->isVisible())
                names.append(stage.sidebarButton(page)->text());
        }
        return names;
    }

    void signOut() const { stage.preferences->remove(keys::cloudAccessToken); }
};

TEST_F(MainWindowFrameTest, TheWindowHasItsFixedSizeAndTitleInTheMiddleOfTheScreen)
{
    stage.launch();

    const QWidget& window = *stage.window();
    EXPECT_EQ(window.windowTitle(), "Tavrin");
    EXPECT_EQ(window.size(), QSize(820, 640));
    EXPECT_EQ(window.minimumSize(), window.maximumSize());
    const QPoint middle = QGuiApplication::primaryScreen()->availableGeometry().center();
    constexpr int frame = 4; // That the window system puts around it.
    EXPECT_LE((window.geometry().center() - middle).manhattanLength(), frame);
}

TEST_F(MainWindowFrameTest, TheWindowCanBeClosedAndMinimisedButNotMaximised)
{
    stage.launch();

    const Qt::WindowFlags flags = stage.window()->windowFlags();
    EXPECT_TRUE(flags.testFlag(Qt::WindowCloseButtonHint));
    EXPECT_TRUE(flags.testFlag(Qt::WindowMinimizeButtonHint));
    EXPECT_FALSE(flags.testFlag(Qt::WindowMaximizeButtonHint));
}

TEST_F(MainWindowFrameTest, ClosingOnlyHidesTheWindow)
{
    stage.launch();
    stage.select(SettingsPage::Dictionary);
    const ui::Page* const before = page();
    stage.window()->close();
    EXPECT_FALSE(stage.window()->isVisible());

    stage.program->showMainWindow();
    EXPECT_TRUE(stage.window()->isVisible());
    EXPECT_EQ(page(), before);
    stage.program->hideMainWindow();
    EXPECT_FALSE(stage.window()->isVisible());
}

TEST_F(MainWindowFrameTest, AMinimisedWindowComesBack)
{
    stage.launch();
    stage.window()->setWindowState(Qt::WindowMinimized);
    stage.program->showMainWindow();

    EXPECT_FALSE(stage.window()->isMinimized());
}

TEST_F(MainWindowFrameTest, TheSidebarHasTheSevenPagesInOrderAtTheirPlaces)
{
    stage.launch();

    EXPECT_EQ(visibleButtons(),
        QStringList({u"  Overview"_s, u"  History"_s, u"  Dictionary"_s, u"  General"_s,
            u"  Input & Output"_s, u"  Permissions"_s, u"  Account"_s}));
    std::size_t i = 0;
    for (const int y : {490, 446, 402, 314, 270, 226, 182}) {
        const QWidget* const button = stage.sidebarButton(sidebarButtons.at(i++));
        EXPECT_EQ(button->geometry(), QRect(14, 640 - y - 40, 142, 40));
    }
    EXPECT_TRUE(shows(u"USE"_s));
    EXPECT_TRUE(shows(u"SETTINGS"_s));
}

TEST_F(MainWindowFrameTest, TheSidebarIsInTheInterfaceLanguage)
{
    for (const auto& [language, titles] : {
             std::pair(u"zh-Hans"_s,
                 QStringList({u"  概览"_s, u"  历史记录"_s, u"  词典"_s, u"  通用"_s,
                     u"  输入与输出"_s, u"  权限与健康"_s, u"  账户"_s})),
             std::pair(u"zh-Hant"_s,
                 QStringList({u"  概覽"_s, u"  歷史記錄"_s, u"  詞典"_s, u"  一般"_s,
                     u"  輸入與輸出"_s, u"  權限與健康"_s, u"  帳戶"_s})),
         }) {
        stage.preferences->setValue(keys::interfaceLanguage, language);
        stage.launch();
        EXPECT_EQ(visibleButtons(), titles);
        EXPECT_TRUE(shows(u"使用"_s));
        EXPECT_TRUE(shows(language == "zh-Hans"_L1 ? u"设置"_s : u"設定"_s));
        stage.program.reset();
    }
}

TEST_F(MainWindowFrameTest, WithoutASessionThereIsTheAccountButtonAlone)
{
    signOut();
    stage.launch();

    EXPECT_EQ(visibleButtons(), QStringList({u"  Account"_s}));
    EXPECT_EQ(stage.sidebarButton(SettingsPage::Account)->geometry(), QRect(14, 110, 142, 40));
    EXPECT_FALSE(shows(u"USE"_s));
    EXPECT_EQ(page()->accessibleName(), u"Account"_s);
}

TEST_F(MainWindowFrameTest, PressingAnyButtonWithoutASessionShowsTheAccountPage)
{
    stage.launch();
    signOut();
    for (const SettingsPage pressed : sidebarButtons) {
        stage.select(pressed);
        EXPECT_EQ(page()->accessibleName(), u"Account"_s);
        EXPECT_TRUE(stage.sidebarButton(SettingsPage::Account)->isChecked());
        EXPECT_EQ(stage.sidebarButton(pressed)->isChecked(), pressed == SettingsPage::Account);
    }
}

TEST_F(MainWindowFrameTest, OnlyTheSelectedPageIsSeenAndItsButtonIsHighlighted)
{
    stage.launch();
    for (const SettingsPage pressed : sidebarButtons) {
        stage.select(pressed);
        int visible = 0;
        for (const auto* const shown : stage.children<ui::Page>())
            visible += shown->isVisible() ? 1 : 0;
        EXPECT_EQ(visible, 1);
        for (const SettingsPage other : sidebarButtons)
            EXPECT_EQ(stage.sidebarButton(other)->isChecked(), other == pressed);
    }
}

TEST_F(MainWindowFrameTest, AScreenReaderPressesTheButtonsToo)
{
    stage.launch();
    for (const SettingsPage pressed :
        {SettingsPage::History, SettingsPage::History, SettingsPage::Overview}) {
        ASSERT_TRUE(testing::pressByScreenReader(*stage.sidebarButton(pressed)));
        stage.settle(500ms);
        EXPECT_TRUE(stage.sidebarButton(pressed)->isChecked());
        EXPECT_EQ(page()->accessibleName(), stage.sidebarButton(pressed)->text().trimmed());
    }
}

TEST_F(MainWindowFrameTest, APageThatWasLeftIsTheSameWhenItIsShownAgain)
{
    stage.launch();
    stage.select(SettingsPage::General);
    const ui::Page* const before = page();
    stage.select(SettingsPage::Overview);
    EXPECT_NE(page(), before);
    stage.select(SettingsPage::General);

    EXPECT_EQ(page(), before);
}

TEST_F(MainWindowFrameTest, TheSelectedButtonIsWhiteWithABarInTheAccent)
{
    stage.launch();
    stage.select(SettingsPage::History);

    const QImage selected = stage.sidebarButton(SettingsPage::History)->grab().toImage();
    EXPECT_EQ(selected.pixelColor(70, 4), QColor(Qt::white));
    EXPECT_EQ(selected.pixelColor(4, 20), QColor(0x6F, 0x55, 0xF6));
    const QImage window = stage.window()->grab().toImage();
    EXPECT_EQ(window.pixelColor(18, 640 - 402 - 20), QColor(0xF8, 0xF5, 0xE6));
}

TEST_F(MainWindowFrameTest, APageComesInWithAnAnimationOfASixthOfASecond)
{
    stage.workspace->reducedMotion = false;
    stage.launch();
    stage.sidebarButton(SettingsPage::History)->click();
    const auto* const transition = stage.visibleChild<ui::PageTransition>();
    ASSERT_TRUE(transition);
    EXPECT_TRUE(transition->isRunning());
    EXPECT_TRUE(transition->isVisible());
    EXPECT_EQ(transition->geometry(), QRect(190, 0, 610, 640));
    EXPECT_EQ(transition->milliseconds(), 160);

    EXPECT_TRUE(QTest::qWaitFor([&] { return !transition->isRunning(); }, 5000));
    EXPECT_FALSE(transition->isVisible());
}

TEST_F(MainWindowFrameTest, EveryPageComesInWithTheAnimation)
{
    stage.workspace->reducedMotion = false;
    stage.launch();
    for (const SettingsPage selected : {SettingsPage::Account, SettingsPage::History,
             SettingsPage::Dictionary, SettingsPage::General, SettingsPage::InputAndOutput,
             SettingsPage::Permissions, SettingsPage::Overview, SettingsPage::Account}) {
        stage.sidebarButton(selected)->click();
        const auto* const transition = stage.visibleChild<ui::PageTransition>();
        ASSERT_TRUE(transition) << static_cast<int>(selected);
        EXPECT_TRUE(QTest::qWaitFor([&] { return !transition->isRunning(); }, 5000));
    }
}

TEST_F(MainWindowFrameTest, NewsOfTheSessionDoesNotCutTheAnimation)
{
    stage.workspace->reducedMotion = false;
    stage.launch();
    stage.sidebarButton(SettingsPage::Account)->click();
    const auto* const transition = stage.visibleChild<ui::PageTransition>();
    ASSERT_TRUE(transition);
    ASSERT_GT(stage.http->open(), 0);
    while (stage.http->open() > 0)
        stage.http->answer(200, R"({"user": {"email": "mira.lindqvist@example.com"}})");
    stage.settle(0s);

    EXPECT_TRUE(transition->isRunning());
}

TEST_F(MainWindowFrameTest, AnAnimationEndsWithThePageThatItBelongsTo)
{
    stage.workspace->reducedMotion = false;
    stage.launch();
    stage.sidebarButton(SettingsPage::History)->click();
    stage.workspace->reducedMotion = true;
    stage.sidebarButton(SettingsPage::General)->click();

    EXPECT_FALSE(stage.visibleChild<ui::PageTransition>());
}

TEST_F(MainWindowFrameTest, APageThatIsOpenedLaterHasTheLanguageOfTheOthers)
{
    stage.launch();
    stage.preferences->setValue(keys::interfaceLanguage, u"zh-Hans"_s);
    stage.select(SettingsPage::Dictionary);
    EXPECT_EQ(page()->accessibleName(), u"Dictionary"_s);

    stage.program.reset();
    stage.launch();
    stage.select(SettingsPage::Dictionary);
    EXPECT_EQ(page()->accessibleName(), u"词典"_s);
}

TEST_F(MainWindowFrameTest, WithReducedMotionAPageIsThereAtOnce)
{
    stage.launch();
    stage.sidebarButton(SettingsPage::History)->click();

    EXPECT_FALSE(stage.visibleChild<ui::PageTransition>());
    EXPECT_EQ(page()->accessibleName(), u"History"_s);
}

TEST_F(MainWindowFrameTest, TheArrowKeysGoThroughTheSidebarAndReturnPresses)
{
    stage.launch();
    QApplication::setActiveWindow(stage.window());
    QAbstractButton* const first = stage.sidebarButton(SettingsPage::Overview);
    first->setFocus();
    QTest::keyClick(first, Qt::Key_Up);
    EXPECT_EQ(QApplication::focusWidget(), first);
    QTest::keyClick(first, Qt::Key_Down);
    QAbstractButton* const second = stage.sidebarButton(SettingsPage::History);
    EXPECT_EQ(QApplication::focusWidget(), second);
    EXPECT_EQ(page()->accessibleName(), u"Overview"_s);
    QTest::keyClick(second, Qt::Key_Return);

    EXPECT_EQ(page()->accessibleName(), u"History"_s);
    QTest::keyClick(second, Qt::Key_Up);
    EXPECT_EQ(QApplication::focusWidget(), first);
}

TEST_F(MainWindowFrameTest, WhatTheSessionKeepsOutOfReachIsSaidInTheInterfaceLanguage)
{
    const LocalizedText notice = *linuxTexts().limitedReach;
    for (const auto& [language, text] : {std::pair(u"en"_s, notice.en),
             std::pair(u"zh-Hans"_s, notice.zhHans), std::pair(u"zh-Hant"_s, notice.zhHant)}) {
        stage.preferences->setValue(keys::interfaceLanguage, language);
        for (const bool everyProgram : {false, true}) {
            stage.workspace->everyProgramReached = everyProgram;
            stage.launch();
            EXPECT_EQ(shows(text.toString()), !everyProgram);
            stage.program.reset();
        }
    }
}

TEST_F(MainWindowFrameTest, APageIsMadeWhenItIsFirstSelected)
{
    stage.launch();
    EXPECT_EQ(stage.children<ui::Page>().size(), 1);

    stage.select(SettingsPage::Permissions);
    EXPECT_EQ(stage.children<ui::Page>().size(), 2);
}

TEST_F(MainWindowFrameTest, TheSummaryOfShortcutsFollowsWhatIsStored)
{
    stage.launch();
    stage.select(SettingsPage::InputAndOutput);
    stage.preferences->setValue(keys::dictationShortcutIdentifiers, QVariantList());
    stage.select(SettingsPage::Overview);

    EXPECT_TRUE(shows(u"Dictation Not set  ·  Translation Alt+Space  ·  Chat Shift+Super+Space"_s));
}

} // namespace
} // namespace tavrin
