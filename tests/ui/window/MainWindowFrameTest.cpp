#include "ui/MainWindowFrame.h"

#include "app/menu/StatusMenu.h"
#include "app/settings/Localization.h"
#include "app/settings/Settings.h"
#include "platform/PreferenceKeys.h"
#include "platform/linux/LinuxTexts.h"
#include "support/InMemoryPreferences.h"
#include "support/InMemoryStatusItem.h"
#include "support/InMemoryWorkspace.h"
#include "support/QtPrinters.h"
#include "support/VirtualTime.h"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QLabel>
#include <QScreen>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

class MainWindowFrameTest : public ::testing::Test {
protected:
    testing::VirtualTime time;
    testing::InMemoryPreferences preferences;
    testing::InMemoryWorkspace workspace;
    testing::InMemoryStatusItem statusItem;
    Localization localization{preferences, workspace, KeyNames()};
    Localization linux{preferences, workspace, KeyNames(), linuxTexts()};
    Settings settings{preferences, localization};
    StatusMenu statusMenu{{localization, settings, statusItem}, StatusMenu::Actions()};
    int forwarded = 0;
    MainWindowFrame frame{
        {time, localization, time, settings, statusMenu, workspace, [this] { ++forwarded; }}};

    MainWindowFrameTest() { preferences.setValue(keys::interfaceLanguage, "en"); }

    bool shows(const QString& text) { return shows(*frame.widget(), text); }

    static bool shows(const QWidget& window, const QString& text)
    {
        const auto labels = window.findChildren<QLabel*>();
        return std::ranges::any_of(
            labels, [&](const QLabel* label) { return label->text() == text; });
    }
};

TEST_F(MainWindowFrameTest, TheWindowHasItsFixedSizeAndTitleInTheMiddleOfTheScreen)
{
    frame.configureMainWindow();

    const QWidget& window = *frame.widget();
    EXPECT_EQ(window.windowTitle(), "Tavrin");
    EXPECT_EQ(window.size(), QSize(820, 640));
    EXPECT_EQ(window.minimumSize(), window.maximumSize());
    const QPoint middle = QGuiApplication::primaryScreen()->availableGeometry().center();
    EXPECT_LE((window.geometry().center() - middle).manhattanLength(), 2);
    EXPECT_FALSE(frame.isVisible());
}

TEST_F(MainWindowFrameTest, TheWindowCanBeClosedAndMinimisedButNotMaximised)
{
    frame.configureMainWindow();

    const Qt::WindowFlags flags = frame.widget()->windowFlags();
    EXPECT_TRUE(flags.testFlag(Qt::WindowCloseButtonHint));
    EXPECT_TRUE(flags.testFlag(Qt::WindowMinimizeButtonHint));
    EXPECT_FALSE(flags.testFlag(Qt::WindowMaximizeButtonHint));
}

TEST_F(MainWindowFrameTest, ClosingOnlyHidesTheWindow)
{
    frame.configureMainWindow();
    frame.show();
    EXPECT_TRUE(frame.isVisible());

    frame.widget()->close();
    EXPECT_FALSE(frame.isVisible());

    frame.show();
    EXPECT_TRUE(frame.isVisible());
    frame.hide();
    EXPECT_FALSE(frame.isVisible());
}

TEST_F(MainWindowFrameTest, AMinimisedWindowComesBack)
{
    frame.configureMainWindow();
    frame.show();
    frame.widget()->setWindowState(Qt::WindowMinimized);
    frame.show();

    EXPECT_FALSE(frame.widget()->isMinimized());
}

TEST_F(MainWindowFrameTest, NameAndShortcutsAreShownInTheInterfaceLanguage)
{
    frame.configureMainWindow();
    for (const auto& [language, summary] :
        {std::pair(u"en"_s, u"Dictation Right Option  ·  Translation ⌥ Space  ·  Chat ⇧⌘ Space"_s),
            std::pair(u"zh-Hans"_s, u"语音 右 Option  ·  翻译 ⌥ Space  ·  畅聊 ⇧⌘ Space"_s),
            std::pair(u"zh-Hant"_s, u"語音 右 Option  ·  翻譯 ⌥ Space  ·  暢聊 ⇧⌘ Space"_s)}) {
        preferences.setValue(keys::interfaceLanguage, language);
        frame.show();
        EXPECT_TRUE(shows("Tavrin"));
        EXPECT_TRUE(shows(summary)) << summary.toStdString();
    }
}

TEST_F(MainWindowFrameTest, WhatTheSessionKeepsOutOfReachIsSaidInTheInterfaceLanguage)
{
    const LocalizedText notice = *linuxTexts().limitedReach;
    for (const auto& [language, text] : {std::pair(u"en"_s, notice.en),
             std::pair(u"zh-Hans"_s, notice.zhHans), std::pair(u"zh-Hant"_s, notice.zhHant)}) {
        preferences.setValue(keys::interfaceLanguage, language);
        for (const bool everyProgram : {false, true}) {
            workspace.everyProgramReached = everyProgram;
            MainWindowFrame window{{time, linux, time, settings, statusMenu, workspace, [] {}}};
            window.configureMainWindow();
            window.show();
            EXPECT_EQ(shows(*window.widget(), text.toString()), !everyProgram);
        }
    }
}

TEST_F(MainWindowFrameTest, ShortcutsThatChangeAreShownAtOnce)
{
    frame.configureMainWindow();
    frame.refreshShortcuts();
    frame.show();
    preferences.setValue(keys::dictationShortcutIdentifiers, QVariantList());
    frame.refreshShortcuts();

    EXPECT_TRUE(shows(u"Dictation Not set  ·  Translation ⌥ Space  ·  Chat ⇧⌘ Space"_s));
}

TEST_F(MainWindowFrameTest, ShortcutsThatChangedAreShownTheNextTime)
{
    frame.configureMainWindow();
    preferences.setValue(keys::dictationShortcutIdentifiers, QVariantList());
    frame.show();

    EXPECT_TRUE(shows(u"Dictation Not set  ·  Translation ⌥ Space  ·  Chat ⇧⌘ Space"_s));
}

TEST_F(MainWindowFrameTest, ConfiguringShowsTheTargetInTheStatusItem)
{
    statusMenu.configureMenu();
    frame.configureMainWindow();

    EXPECT_EQ(statusItem.toolTip,
        u"Dictation Right Option · Translation ⌥ Space → English · Chat ⇧⌘ Space"_s);
}

TEST_F(MainWindowFrameTest, WhoeverAsksForAPageGetsTheWindow)
{
    frame.configureMainWindow();
    frame.selectSettingsPage(SettingsPage::Account);
    frame.showLoginDialog();
    frame.showHistoryWindow();
    frame.showPersonalizationWindow();

    EXPECT_EQ(forwarded, 4);
}

TEST_F(MainWindowFrameTest, BeforeItIsConfiguredTheWindowIsNotVisible)
{
    EXPECT_FALSE(frame.isVisible());
}

} // namespace
} // namespace tavrin
