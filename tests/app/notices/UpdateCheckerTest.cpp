#include "app/notices/UpdateChecker.h"

#include "app/notices/ErrorAlert.h"
#include "app/settings/Localization.h"
#include "platform/preferences/PreferenceKeys.h"
#include "support/QtPrinters.h"
#include "support/ports/InMemoryPreferences.h"
#include "support/ports/InMemorySystemInfo.h"
#include "support/ports/InMemoryWorkspace.h"
#include "support/ports/ScriptedAlerts.h"
#include "support/ports/VirtualTime.h"

#include <gtest/gtest.h>

#include <optional>

using namespace std::chrono_literals;

namespace tavrin {
namespace {

class UpdateCheckerTest : public ::testing::Test {
protected:
    testing::VirtualTime time;
    testing::InMemoryPreferences preferences;
    testing::InMemorySystemInfo systemInfo;
    testing::InMemoryWorkspace workspace;
    testing::ScriptedAlerts alerts;
    Localization localization{preferences, workspace, KeyNames()};
    ErrorAlert errorAlert{alerts, localization};

    Result<QJsonObject> answer = QJsonObject();
    int requests = 0;
    double storedWhenAsked = 0;
    std::optional<UpdateChecker> checker{std::in_place,
        [this](const Completion<Result<QJsonObject>>& completion) {
            ++requests;
            storedWhenAsked = preferences.value(keys::tavrinLastUpdateCheckAt).toDouble();
            completion(answer);
        },
        UpdateChecker::Neighbours{
            alerts, time, errorAlert, time, preferences, systemInfo, workspace},
        QStringLiteral("domain.com")};

    UpdateCheckerTest() { systemInfo.version = "7"; }

    void TearDown() override { EXPECT_EQ(time.pending(), 0U); }

    static QJsonObject update(const QString& url = "https://get.domain.com/tavrin.zip")
    {
        return {{"build", 8}, {"downloadUrl", url}, {"version", "0.9.0"}, {"notes", "更快。"}};
    }

    void check(bool userInitiated)
    {
        checker->checkForUpdatesIfNeeded(userInitiated);
        time.advance(0s);
    }

    const Alert& onlyAlert() const
    {
        EXPECT_EQ(alerts.shown().size(), 1);
        return alerts.shown().first();
    }
};

TEST_F(UpdateCheckerTest, TheTimeIsStoredBeforeTheServiceIsAsked)
{
    check(false);

    EXPECT_EQ(requests, 1);
    EXPECT_EQ(storedWhenAsked, 1'700'000'000.0);
}

TEST_F(UpdateCheckerTest, AutomaticChecksWaitSixHoursAfterAnAutomaticOne)
{
    check(false);
    time.advance(6h - 1ms);
    check(false);
    EXPECT_EQ(requests, 1);

    time.advance(1ms);
    check(false);
    EXPECT_EQ(requests, 2);
}

TEST_F(UpdateCheckerTest, AutomaticChecksWaitSixHoursAfterAManualOne)
{
    check(true);
    time.advance(6h - 1ms);
    check(false);

    EXPECT_EQ(requests, 1);
}

TEST_F(UpdateCheckerTest, ACheckThatLiesInTheFutureDoesNotHoldTheNextOneBack)
{
    preferences.setValue(keys::tavrinLastUpdateCheckAt, time.sinceEpoch().count() + 1);
    check(false);
    EXPECT_EQ(requests, 1);
}

TEST_F(UpdateCheckerTest, ManualChecksNeverWait)
{
    check(true);
    checker->checkForUpdatesNow();
    time.advance(0s);

    EXPECT_EQ(requests, 2);
}

/// Of a machine that has forgotten the time: an hour after the beginning of 1970.
class ClockOf1970 final : public Clock {
public:
    [[nodiscard]] Seconds sinceEpoch() const override { return 1h; }

    [[nodiscard]] Seconds uptime() const override { return 1h; }
};

TEST_F(UpdateCheckerTest, AStoredTimeThatIsNoneDoesNotHoldTheCheckBack)
{
    ClockOf1970 clock;
    UpdateChecker early(
        [this](const Completion<Result<QJsonObject>>& completion) {
            ++requests;
            completion(answer);
        },
        UpdateChecker::Neighbours{
            alerts, clock, errorAlert, time, preferences, systemInfo, workspace},
        QStringLiteral("domain.com"));
    for (const QVariant& stored :
        {QVariant(0.0), QVariant(-1.0), QVariant("soon"), QVariant(QVariantList{1.7e9})}) {
        preferences.setValue(keys::tavrinLastUpdateCheckAt, stored);
        requests = 0;
        early.checkForUpdatesIfNeeded(false);
        time.advance(0s);
        EXPECT_EQ(requests, 1) << stored.toString().toStdString();
        EXPECT_EQ(preferences.value(keys::tavrinLastUpdateCheckAt).toDouble(), 3600.0);
    }
    early.checkForUpdatesIfNeeded(false);
    EXPECT_EQ(requests, 1);
}

TEST_F(UpdateCheckerTest, TheAnswerIsHandledOnTheMainQueue)
{
    checker->checkForUpdatesNow();
    EXPECT_TRUE(alerts.shown().isEmpty());

    time.advance(0s);
    EXPECT_EQ(alerts.shown().size(), 1);
}

TEST_F(UpdateCheckerTest, AnUpdateIsOfferedByBothKindsOfCheck)
{
    answer = update();
    check(false);

    const Alert expected{Alert::Style::Informational, QStringLiteral(u"Tavrin 0.9.0 已准备好"),
        QStringLiteral(u"更快。\n\n下载完成后，打开安装包并替换现有 Tavrin。"),
        {QStringLiteral(u"下载更新"), QStringLiteral(u"稍后")}, {}};
    EXPECT_EQ(onlyAlert(), expected);

    check(true);
    EXPECT_EQ(alerts.shown().last(), expected);
}

TEST_F(UpdateCheckerTest, DownloadOpensTheUrlInTheBrowser)
{
    answer = update();
    check(true);
    alerts.answer(0);

    EXPECT_EQ(workspace.openedUrls, QList<QUrl>{QUrl("https://get.domain.com/tavrin.zip")});
}

TEST_F(UpdateCheckerTest, LaterOpensNothing)
{
    answer = update();
    check(true);
    alerts.answer(1);

    EXPECT_TRUE(workspace.openedUrls.isEmpty());
}

TEST_F(UpdateCheckerTest, AnUpdateWithoutTextsHasTextsOfItsOwn)
{
    QJsonObject bare = update();
    bare.remove("version");
    bare.remove("notes");
    answer = bare;
    check(true);

    EXPECT_EQ(onlyAlert().messageText, QStringLiteral(u"Tavrin 新版本 已准备好"));
    EXPECT_EQ(onlyAlert().informativeText,
        QStringLiteral(u"包含体验优化与稳定性改进。\n\n下载完成后，打开安装包并替换现有 Tavrin。"));
}

TEST_F(UpdateCheckerTest, PlaceholdersInTheRecordStayAsTheyAre)
{
    QJsonObject tricky = update();
    tricky["version"] = "%1";
    tricky["notes"] = "%1 %2";
    answer = tricky;
    check(true);

    EXPECT_EQ(onlyAlert().messageText, QStringLiteral(u"Tavrin %1 已准备好"));
    EXPECT_TRUE(onlyAlert().informativeText.startsWith("%1 %2\n\n"));
}

TEST_F(UpdateCheckerTest, AManualCheckReportsThatTheProgramIsUpToDate)
{
    check(true);

    EXPECT_EQ(onlyAlert(),
        (Alert{Alert::Style::Informational, QStringLiteral(u"Tavrin 已是最新版本"),
            QStringLiteral(u"当前为 0.8.0（build 7）。"), {QStringLiteral(u"好")}, {}}));
}

TEST_F(UpdateCheckerTest, AnUnknownVersionIsCalledTheCurrentOne)
{
    systemInfo.shortVersion.clear();
    check(true);

    EXPECT_EQ(onlyAlert().informativeText, QStringLiteral(u"当前为 当前版本（build 7）。"));
}

TEST_F(UpdateCheckerTest, ADownloadOfAnotherSchemeOrDomainCountsAsNoUpdate)
{
    for (const char* url : {"http://get.domain.com/tavrin.zip", "https://evil-domain.com/a.zip",
             "https://evil.net/tavrin.zip"}) {
        answer = update(url);
        check(true);
        EXPECT_EQ(alerts.shown().last().messageText, QStringLiteral(u"Tavrin 已是最新版本"));
        alerts.answer(0);
    }
    EXPECT_TRUE(workspace.openedUrls.isEmpty());
}

TEST_F(UpdateCheckerTest, AnAutomaticCheckWithoutAnUpdateIsSilent)
{
    check(false);

    EXPECT_TRUE(alerts.shown().isEmpty());
}

TEST_F(UpdateCheckerTest, AFailureOfAnAutomaticCheckIsSilent)
{
    answer = failure(Error{"TavrinAPI", 500, "down"});
    check(false);

    EXPECT_TRUE(alerts.shown().isEmpty());
}

TEST_F(UpdateCheckerTest, AFailureOfAManualCheckIsShownWithItsMessage)
{
    answer = failure(Error{"TavrinAPI", 500, "down"});
    check(true);

    EXPECT_EQ(onlyAlert().style, Alert::Style::Warning);
    EXPECT_EQ(onlyAlert().messageText, QStringLiteral(u"暂时无法检查更新"));
    EXPECT_EQ(onlyAlert().informativeText, "down");
}

TEST_F(UpdateCheckerTest, AFailureWithoutAMessageAsksToTryAgain)
{
    answer = failure(Error{"TavrinAPI", 500, QString()});
    check(true);

    EXPECT_EQ(onlyAlert().informativeText, QStringLiteral(u"请稍后再试。"));
}

TEST_F(UpdateCheckerTest, AnAnswerAfterTheCheckersEndIsDropped)
{
    checker->checkForUpdatesNow();
    checker.reset();
    time.advance(0s);

    EXPECT_TRUE(alerts.shown().isEmpty());
}

TEST_F(UpdateCheckerTest, ABundleWithoutABuildNumberCountsAsTheOldest)
{
    systemInfo.version.clear();
    answer = update();
    check(false);

    EXPECT_EQ(alerts.shown().size(), 1);
}

} // namespace
} // namespace tavrin
