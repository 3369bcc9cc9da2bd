#include "app/pages/MainWindowController.h"

#include "app/FakePanels.h"
#include "platform/preferences/PreferenceKeys.h"
#include "support/ports/InMemoryPreferences.h"
#include "support/ports/InMemoryWorkspace.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

class MainWindowControllerTest : public ::testing::Test {
protected:
    testing::InMemoryPreferences preferences;
    testing::InMemoryWorkspace workspace;
    testing::FakeView<MainWindowContent> view;
    QList<SettingsPage> refreshed;
    MainWindowController controller{
        {preferences, workspace, [this](SettingsPage page) { refreshed.append(page); }}};

    MainWindowControllerTest() { controller.setView(&view); }

    void signIn() { preferences.setValue(keys::cloudAccessToken, u"token"_s); }
};

TEST_F(MainWindowControllerTest, WhoeverIsSignedInBeginsWithTheOverview)
{
    signIn();
    controller.selectFirstPage();

    EXPECT_EQ(view.shown->page, SettingsPage::Overview);
    EXPECT_TRUE(view.shown->isSignedIn);
    EXPECT_EQ(view.shown->accountSidebarButtonY, 182);
    EXPECT_EQ(refreshed, QList({SettingsPage::Overview}));
}

TEST_F(MainWindowControllerTest, ARefreshTokenAloneIsASession)
{
    preferences.setValue(keys::cloudRefreshToken, u"token"_s);
    controller.selectFirstPage();

    EXPECT_EQ(view.shown->page, SettingsPage::Overview);
}

TEST_F(MainWindowControllerTest, WhoeverIsNotBeginsWithTheAccountPage)
{
    controller.selectFirstPage();

    EXPECT_EQ(view.shown->page, SettingsPage::Account);
    EXPECT_FALSE(view.shown->isSignedIn);
    EXPECT_EQ(view.shown->accountSidebarButtonY, 490);
}

TEST_F(MainWindowControllerTest, WithoutASessionEveryButtonShowsTheAccountPage)
{
    for (const SettingsPage page : sidebarButtons) {
        controller.selectSettingsPage(page);
        EXPECT_EQ(view.shown->page, SettingsPage::Account);
        EXPECT_EQ(refreshed.last(), SettingsPage::Account);
    }
}

TEST_F(MainWindowControllerTest, EveryPageIsShownAndReadsItsStateOnce)
{
    signIn();
    for (const int tag : {0, 1, 2, 3, 4, 5, 6}) {
        refreshed.clear();
        controller.selectSettingsPage(static_cast<SettingsPage>(tag));
        EXPECT_EQ(static_cast<int>(view.shown->page), tag);
        ASSERT_EQ(refreshed.size(), 1);
        EXPECT_EQ(static_cast<int>(refreshed.first()), tag);
    }
}

TEST_F(MainWindowControllerTest, APageComesInWithAnAnimationUnlessTheUserWantsLessMotion)
{
    signIn();
    controller.selectSettingsPage(SettingsPage::History);
    EXPECT_TRUE(view.shown->animates);

    workspace.reducedMotion = true;
    controller.selectSettingsPage(SettingsPage::Dictionary);
    EXPECT_FALSE(view.shown->animates);
}

TEST_F(MainWindowControllerTest, WhatComesInIsThePageWithItsPresentState)
{
    signIn();
    std::optional<MainWindowContent> whenRead;
    MainWindowController other{
        {preferences, workspace, [&](SettingsPage) { whenRead = view.shown; }}};
    other.setView(&view);
    other.selectSettingsPage(SettingsPage::History);

    EXPECT_EQ(whenRead->page, SettingsPage::History);
    EXPECT_FALSE(whenRead->animates);
    EXPECT_TRUE(view.shown->animates);
}

TEST_F(MainWindowControllerTest, ASessionThatComesOrGoesChangesTheSidebarAndNotThePage)
{
    controller.selectFirstPage();
    signIn();
    controller.refreshSidebar();
    EXPECT_EQ(*view.shown, (MainWindowContent{SettingsPage::Account, true, 182, false}));

    controller.selectSettingsPage(SettingsPage::General);
    preferences.remove(keys::cloudAccessToken);
    controller.refreshSidebar();
    EXPECT_EQ(*view.shown, (MainWindowContent{SettingsPage::General, false, 490, false}));
}

TEST_F(MainWindowControllerTest, AWindowThatIsGoneIsToldNothing)
{
    controller.setView(nullptr);
    signIn();
    controller.selectSettingsPage(SettingsPage::History);

    EXPECT_FALSE(view.shown);
    EXPECT_EQ(controller.content().page, SettingsPage::History);
}

} // namespace
} // namespace tavrin
