#include "app/notices/FirstRunNotice.h"

#include "app/FakePanels.h"
#include "app/settings/Localization.h"
#include "platform/linux/LinuxTexts.h"
#include "platform/preferences/PreferenceKeys.h"
#include "support/QtPrinters.h"
#include "support/ports/InMemoryPreferences.h"
#include "support/ports/InMemoryWorkspace.h"
#include "support/ports/ScriptedAlerts.h"
#include "support/ports/VirtualTime.h"

#include <gtest/gtest.h>

#include <optional>

using namespace std::chrono_literals;

namespace tavrin {
namespace {

const Alert welcome{Alert::Style::Informational, QStringLiteral(u"欢迎使用 Tavrin 内测版"),
    QStringLiteral(
        u"当前版本是早期熟人内测版，尚未完成 Apple 公证，因此安装时可能需要通过右键打开。\n\n"
        u"Tavrin 只会在你主动按下快捷键时开始听写，不会后台监听，也不会保存你的语音录音。"),
    {QStringLiteral(u"我知道了，继续"), QStringLiteral(u"查看安装说明")}, {}, 0};

const Alert guide{Alert::Style::Informational, QStringLiteral(u"Tavrin 内测版安装与权限说明"),
    QStringLiteral(
        u"首次安装请将 Tavrin 拖入“应用程序”。不要直接双击：按住 Control 点击 Tavrin，选择“打开”，"
        u"再在系统弹窗中选择“打开”。\n\n"
        u"若无法打开，请前往“系统设置 → 隐私与安全”，点击关于 Tavrin 的“仍要打开”。\n\n"
        u"麦克风仅用于主动语音输入；辅助功能仅用于把结果写回当前光标；语音识别用于转写。"
        u"所有权限均可在“权限与健康”页面重新开启。"),
    {QStringLiteral(u"好")}, {}};

class FirstRunNoticeTest : public ::testing::Test {
protected:
    static constexpr int continueButton = 0;
    static constexpr int guideButton = 1;

    testing::VirtualTime time;
    testing::InMemoryPreferences preferences;
    testing::ScriptedAlerts alerts;
    testing::FakeMainWindow window;
    testing::FakeAccountPanel account;
    testing::InMemoryWorkspace workspace;
    Localization localization{preferences, workspace, KeyNames()};
    std::optional<FirstRunNotice> notice{std::in_place,
        FirstRunNotice::Neighbours{account, alerts, localization, time, window, preferences}};

    void TearDown() override { EXPECT_EQ(time.pending(), 0U); }

    bool seen() const { return preferences.value(keys::tavrinBetaOnboardingSeen).toBool(); }

    void signIn() { preferences.setValue(keys::cloudRefreshToken, "token"); }
};

TEST_F(FirstRunNoticeTest, TheFirstRunIsWelcomed)
{
    signIn();
    notice->showBetaOnboardingIfNeeded();

    EXPECT_EQ(alerts.shown(), QList<Alert>{welcome});
}

TEST_F(FirstRunNoticeTest, TheTextsAreTheSameInEveryLanguage)
{
    signIn();
    preferences.setValue(keys::interfaceLanguage, "en");
    notice->showBetaOnboardingIfNeeded();
    alerts.answer(guideButton);

    EXPECT_EQ(alerts.shown(), (QList<Alert>{welcome, guide}));
}

TEST_F(FirstRunNoticeTest, LinuxIsWelcomedInItsOwnWords)
{
    signIn();
    preferences.setValue(keys::interfaceLanguage, "en");
    const Localization linux{preferences, workspace, KeyNames(), linuxTexts()};
    FirstRunNotice linuxNotice({account, alerts, linux, time, window, preferences});
    linuxNotice.showBetaOnboardingIfNeeded();
    alerts.answer(guideButton);

    ASSERT_EQ(alerts.shown().size(), 2);
    EXPECT_EQ(alerts.shown()[0].informativeText, linuxTexts().betaNotice->en.toString());
    EXPECT_EQ(alerts.shown()[1].messageText, linuxTexts().installationGuide->en.toString());
    EXPECT_EQ(alerts.shown()[1].informativeText, linuxTexts().installationSteps->en.toString());
    alerts.answer(0);
}

TEST_F(FirstRunNoticeTest, ClosingTheWelcomeGoesOnWithoutTheGuide)
{
    signIn();
    notice->showBetaOnboardingIfNeeded();
    alerts.answer(alerts.shown().first().unanswered());

    EXPECT_TRUE(seen());
    EXPECT_EQ(alerts.shown(), QList<Alert>{welcome});
}

TEST_F(FirstRunNoticeTest, TheWelcomeCountsAsSeenOnceItIsAnswered)
{
    signIn();
    notice->showBetaOnboardingIfNeeded();
    EXPECT_FALSE(seen());

    alerts.answer(continueButton);
    EXPECT_TRUE(seen());
    EXPECT_EQ(alerts.shown().size(), 1);
}

TEST_F(FirstRunNoticeTest, TheWelcomeCountsAsSeenAlsoByWayOfTheGuide)
{
    signIn();
    notice->showBetaOnboardingIfNeeded();
    alerts.answer(guideButton);

    EXPECT_TRUE(seen());
    EXPECT_EQ(alerts.shown().last(), guide);
}

TEST_F(FirstRunNoticeTest, TheWelcomeIsShownOnce)
{
    signIn();
    preferences.setValue(keys::tavrinBetaOnboardingSeen, true);
    notice->showBetaOnboardingIfNeeded();

    EXPECT_TRUE(alerts.shown().isEmpty());
}

TEST_F(FirstRunNoticeTest, WhoeverIsNotSignedInIsLedToTheAccountPage)
{
    preferences.setValue(keys::tavrinBetaOnboardingSeen, true);
    notice->showBetaOnboardingIfNeeded();

    EXPECT_EQ(window.selectedPages, QList<SettingsPage>{SettingsPage::Account});
    time.advance(119ms);
    EXPECT_EQ(account.loginDialogs, 0);
    time.advance(1ms);
    EXPECT_EQ(account.loginDialogs, 1);
}

TEST_F(FirstRunNoticeTest, TheSignInWaitsForTheWelcome)
{
    notice->showBetaOnboardingIfNeeded();
    EXPECT_TRUE(window.selectedPages.isEmpty());

    alerts.answer(continueButton);
    EXPECT_EQ(window.selectedPages, QList<SettingsPage>{SettingsPage::Account});
    time.advance(120ms);
    EXPECT_EQ(account.loginDialogs, 1);
}

TEST_F(FirstRunNoticeTest, TheSignInWaitsForTheGuideToo)
{
    notice->showBetaOnboardingIfNeeded();
    alerts.answer(guideButton);
    EXPECT_TRUE(window.selectedPages.isEmpty());

    alerts.answer(0);
    time.advance(120ms);
    EXPECT_EQ(account.loginDialogs, 1);
}

TEST_F(FirstRunNoticeTest, EitherTokenCountsAsSignedIn)
{
    preferences.setValue(keys::tavrinBetaOnboardingSeen, true);
    for (const QString& key : {keys::cloudAccessToken, keys::cloudRefreshToken}) {
        preferences.setValue(key, "token");
        notice->showBetaOnboardingIfNeeded();
        preferences.remove(key);
    }

    EXPECT_TRUE(window.selectedPages.isEmpty());
}

TEST_F(FirstRunNoticeTest, EmptyTokensAndTokensOfOtherTypesAreNoSession)
{
    preferences.setValue(keys::tavrinBetaOnboardingSeen, true);
    preferences.setValue(keys::cloudAccessToken, "");
    preferences.setValue(keys::cloudRefreshToken, 7);
    notice->showBetaOnboardingIfNeeded();
    time.advance(120ms);

    EXPECT_EQ(account.loginDialogs, 1);
}

TEST_F(FirstRunNoticeTest, NothingHappensAfterTheNoticesEnd)
{
    notice->showBetaOnboardingIfNeeded();
    notice.reset();
    alerts.answer(continueButton);

    EXPECT_FALSE(seen());
    EXPECT_TRUE(window.selectedPages.isEmpty());
}

} // namespace
} // namespace tavrin
