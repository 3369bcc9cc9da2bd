#include "app/health/HealthFixture.h"

#include <QTimeZone>
#include <qglobal.h>

#include <array>
#include <functional>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tavrin {
namespace {

const QStringList languages{u"zh-Hans"_s, u"zh-Hant"_s, u"en"_s};

/// What the test arranges.
struct Desktop {
    testing::InMemoryAccessibility& accessibility;
    testing::InMemoryPermissions& permissions;
    testing::InMemoryPreferences& preferences;
};

/// One state of a row, as it reads in "zh-Hans", "zh-Hant" and "en".
struct Verdict {
    const char* name;
    HealthItem item;
    std::function<void(const Desktop&)> arrange;
    HealthColor color;
    bool hasButton;
    std::array<QString, 3> forms;
};

auto microphoneIs(AuthorizationStatus status)
{
    return [status](const Desktop& desktop) { desktop.permissions.microphone = status; };
}

auto speechIs(AuthorizationStatus status)
{
    return [status](const Desktop& desktop) { desktop.permissions.speech = status; };
}

void deliver(const Desktop& desktop, bool verified, const QString& reason)
{
    desktop.preferences.setValue(keys::lastDeliveryVerified, verified);
    desktop.preferences.setValue(keys::lastDeliveryReason, reason);
}

constexpr auto healthy = HealthColor::Healthy;
constexpr auto problem = HealthColor::Problem;
constexpr auto unknown = HealthColor::Unknown;

const std::array verdicts{
    Verdict{"trusted", HealthItem::Accessibility,
        [](const Desktop& desktop) { desktop.accessibility.trusted = true; }, healthy, false,
        {u"✓ 已授权，可在当前光标写入文字"_s, u"✓ 已授權，可在目前游標寫入文字"_s,
            u"✓ Allowed — can insert at the current cursor"_s}},
    Verdict{"notTrusted", HealthItem::Accessibility,
        [](const Desktop& desktop) { desktop.accessibility.trusted = false; }, problem, true,
        {u"⚠ 未开启：用于在当前光标写入文字"_s, u"⚠ 未開啟：用於在目前游標寫入文字"_s,
            u"⚠ Disabled — needed to insert at the current cursor"_s}},
    Verdict{"microphoneAuthorized", HealthItem::Microphone,
        microphoneIs(AuthorizationStatus::Authorized), healthy, false,
        {u"✓ 已授权，仅在主动输入时收音"_s, u"✓ 已授權，僅在主動輸入時收音"_s,
            u"✓ Allowed — listens only when triggered"_s}},
    Verdict{"microphoneNotDetermined", HealthItem::Microphone,
        microphoneIs(AuthorizationStatus::NotDetermined), problem, true,
        {u"⚠ 尚未请求：用于主动语音输入"_s, u"⚠ 尚未要求：用於主動語音輸入"_s,
            u"⚠ Not requested — needed for voice input"_s}},
    Verdict{"microphoneDenied", HealthItem::Microphone, microphoneIs(AuthorizationStatus::Denied),
        problem, true,
        {u"⚠ 未开启，无法收音"_s, u"⚠ 未開啟，無法收音"_s, u"⚠ Disabled — cannot capture audio"_s}},
    Verdict{"microphoneRestricted", HealthItem::Microphone,
        microphoneIs(AuthorizationStatus::Restricted), problem, true,
        {u"⚠ 未开启，无法收音"_s, u"⚠ 未開啟，無法收音"_s, u"⚠ Disabled — cannot capture audio"_s}},
    Verdict{"speechAuthorized", HealthItem::Speech, speechIs(AuthorizationStatus::Authorized),
        healthy, false,
        {u"✓ 已授权，用于语音转写"_s, u"✓ 已授權，用於語音轉寫"_s,
            u"✓ Allowed — ready to transcribe"_s}},
    Verdict{"speechNotDetermined", HealthItem::Speech, speechIs(AuthorizationStatus::NotDetermined),
        problem, true,
        {u"⚠ 尚未请求：用于语音转写"_s, u"⚠ 尚未要求：用於語音轉寫"_s,
            u"⚠ Not requested — needed for transcription"_s}},
    Verdict{"speechDenied", HealthItem::Speech, speechIs(AuthorizationStatus::Denied), problem,
        true,
        {u"⚠ 未开启，无法转写"_s, u"⚠ 未開啟，無法轉寫"_s, u"⚠ Disabled — cannot transcribe"_s}},
    Verdict{"speechRestricted", HealthItem::Speech, speechIs(AuthorizationStatus::Restricted),
        problem, true,
        {u"⚠ 未开启，无法转写"_s, u"⚠ 未開啟，無法轉寫"_s, u"⚠ Disabled — cannot transcribe"_s}},
    Verdict{"signedInByAccessToken", HealthItem::Api,
        [](const Desktop& desktop) {
            desktop.preferences.setValue(keys::cloudAccessToken, u"access"_s);
        },
        HealthColor::SignedIn, false,
        {u"✓ Tavrin 云端账号已登录"_s, u"✓ 已登入 Tavrin 雲端帳戶"_s,
            u"✓ Signed in to Tavrin Cloud"_s}},
    Verdict{"signedInByRefreshToken", HealthItem::Api,
        [](const Desktop& desktop) {
            desktop.preferences.setValue(keys::cloudAccessToken, QString());
            desktop.preferences.setValue(keys::cloudRefreshToken, u"refresh"_s);
        },
        HealthColor::SignedIn, false,
        {u"✓ Tavrin 云端账号已登录"_s, u"✓ 已登入 Tavrin 雲端帳戶"_s,
            u"✓ Signed in to Tavrin Cloud"_s}},
    Verdict{"signedOut", HealthItem::Api,
        [](const Desktop& desktop) {
            desktop.preferences.setValue(keys::cloudAccessToken, QString());
            desktop.preferences.setValue(keys::cloudRefreshToken, 7);
        },
        problem, true,
        {u"⚠ 尚未登录 Tavrin 云端"_s, u"⚠ 尚未登入 Tavrin 雲端"_s,
            u"⚠ Not signed in to Tavrin Cloud"_s}},
    Verdict{"nothingDelivered", HealthItem::Delivery, [](const Desktop&) {}, unknown, false,
        {u"— 完成一次输入后检测"_s, u"— 完成一次輸入後偵測"_s,
            u"— Checked after your first input"_s}},
    Verdict{"deliveryOfAnotherType", HealthItem::Delivery,
        [](const Desktop& desktop) {
            desktop.preferences.setValue(keys::lastDeliveryVerified, u"yes"_s);
        },
        unknown, false,
        {u"— 完成一次输入后检测"_s, u"— 完成一次輸入後偵測"_s,
            u"— Checked after your first input"_s}},
    Verdict{"deliveryVerified", HealthItem::Delivery,
        [](const Desktop& desktop) { deliver(desktop, true, u"stale reason"_s); }, healthy, false,
        {u"✓ 最近一次自动输入已完成"_s, u"✓ 最近一次自動輸入已完成"_s,
            u"✓ Most recent insertion completed"_s}},
    Verdict{"deliveryFailed", HealthItem::Delivery,
        [](const Desktop& desktop) { deliver(desktop, false, u"无法重新激活目标应用"_s); }, problem,
        true,
        {u"⚠ 无法重新激活目标应用"_s, u"⚠ 无法重新激活目标应用"_s, u"⚠ 无法重新激活目标应用"_s}},
    Verdict{"deliveryFailedForNoReason", HealthItem::Delivery,
        [](const Desktop& desktop) { deliver(desktop, false, {}); }, problem, true,
        {u"⚠ 最近一次未验证成功"_s, u"⚠ 最近一次未验证成功"_s, u"⚠ 最近一次未验证成功"_s}},
    Verdict{"reasonOfAnotherType", HealthItem::Delivery,
        [](const Desktop& desktop) {
            desktop.preferences.setValue(keys::lastDeliveryVerified, false);
            desktop.preferences.setValue(keys::lastDeliveryReason, QVariantList{1});
        },
        problem, true,
        {u"⚠ 最近一次未验证成功"_s, u"⚠ 最近一次未验证成功"_s, u"⚠ 最近一次未验证成功"_s}},
};

class HealthVerdictTest : public testing::HealthFixture,
                          public ::testing::WithParamInterface<Verdict> { };

INSTANTIATE_TEST_SUITE_P(Rows, HealthVerdictTest, ::testing::ValuesIn(verdicts),
    [](const auto& given) { return given.param.name; });

TEST_P(HealthVerdictTest, IsSaidInEachLanguageAndInItsColor)
{
    GetParam().arrange({accessibility, permissions, preferences});
    for (std::size_t i = 0; i < GetParam().forms.size(); ++i) {
        setLanguage(languages.at(static_cast<qsizetype>(i)));
        const HealthRow verdict = row(GetParam().item);
        EXPECT_EQ(verdict.status, GetParam().forms.at(i));
        EXPECT_EQ(verdict.color, GetParam().color);
        EXPECT_EQ(verdict.hasButton, GetParam().hasButton);
        EXPECT_EQ(read().row(GetParam().item), verdict);
    }
}

class HealthVerdictsTest : public testing::HealthFixture { };

TEST_F(HealthVerdictsTest, RowsAndButtonsHaveTheirNamesInEachLanguage)
{
    const std::array<std::array<QString, 3>, 5> titles{{
        {u"辅助功能"_s, u"輔助使用"_s, u"Accessibility"_s},
        {u"麦克风"_s, u"麥克風"_s, u"Microphone"_s},
        {u"语音识别"_s, u"語音辨識"_s, u"Speech Recognition"_s},
        {u"Tavrin 云端"_s, u"Tavrin 雲端"_s, u"Tavrin Cloud"_s},
        {u"光标写入"_s, u"游標寫入"_s, u"Cursor delivery"_s},
    }};
    const std::array<QString, 3> enable{u"开启权限"_s, u"開啟權限"_s, u"Enable"_s};
    const std::array<std::array<QString, 3>, 5> buttons{{enable, enable, enable,
        {u"登录"_s, u"登入"_s, u"Sign in"_s}, {u"查看记录"_s, u"查看記錄"_s, u"History"_s}}};
    for (std::size_t language = 0; language < 3; ++language) {
        setLanguage(languages.at(static_cast<qsizetype>(language)));
        const HealthContent content = read();
        for (std::size_t i = 0; i < titles.size(); ++i) {
            EXPECT_EQ(content.rows.at(i).title, titles.at(i).at(language));
            EXPECT_EQ(content.rows.at(i).button, buttons.at(i).at(language));
        }
    }
}

TEST_F(HealthVerdictsTest, BeforeTheFirstLookEachRowIsBeingChecked)
{
    for (const QString& language : languages) {
        setLanguage(language);
        const HealthContent content = HealthVerdicts(sources()).unread();
        for (const HealthRow& each : content.rows) {
            EXPECT_EQ(each.status, u"检测中…"_s);
            EXPECT_EQ(each.color, HealthColor::Unknown);
            EXPECT_FALSE(each.hasButton);
        }
        EXPECT_EQ(content.updated, "");
    }
}

TEST_F(HealthVerdictsTest, TheTimeIsThatOfTheMachineInEveryLanguage)
{
    qputenv("TZ", "Asia/Kolkata"); // Half an hour off, so that minutes count too.
    tzset();
    for (const QString& language : languages) {
        setLanguage(language);
        EXPECT_EQ(read().updated, u"检测于 03:43:20"_s); // 22:13:20 UTC
    }
    time.advance(3661s);
    EXPECT_EQ(read().updated, u"检测于 04:44:21"_s);
    qunsetenv("TZ");
    tzset();
}

TEST_F(HealthVerdictsTest, AReasonOfAnyLengthIsOneLineOfPlainText)
{
    preferences.setValue(keys::lastDeliveryVerified, false);
    preferences.setValue(
        keys::lastDeliveryReason, u"<b>first</b>\nsecond %1 \u202E"_s + QString(10'000, u'x'));
    const QString status = row(HealthItem::Delivery).status;

    EXPECT_TRUE(status.startsWith(u"⚠ <b>first</b> second %1 xxx"_s));
    EXPECT_LE(status.size(), 510);
    EXPECT_TRUE(status.endsWith(u'…'));
}

TEST_F(HealthVerdictsTest, ADesktopHasItsOwnWordsForWhatIsMissing)
{
    texts.enablePermission = LocalizedText{u"甲", u"乙", u"Switch on"};
    texts.microphoneDenied = LocalizedText{u"丙", u"丁", u"No microphone"};
    permissions.microphone = AuthorizationStatus::Denied;

    EXPECT_EQ(row(HealthItem::Microphone).status, "No microphone");
    EXPECT_EQ(row(HealthItem::Microphone).button, "Switch on");
}

TEST_F(HealthVerdictsTest, WhereTheDesktopSaysSoSpeechIsNotReadyWithoutARecogniser)
{
    texts.recogniserMissing = LocalizedText{u"甲", u"乙", u"No recogniser"};
    EXPECT_EQ(row(HealthItem::Speech).color, HealthColor::Healthy);

    recognizer.available = false;
    EXPECT_EQ(row(HealthItem::Speech).status, "No recogniser");
    EXPECT_EQ(row(HealthItem::Speech).color, HealthColor::Problem);
    EXPECT_TRUE(row(HealthItem::Speech).hasButton);
}

TEST_F(HealthVerdictsTest, ElsewhereThePermissionAloneCounts)
{
    recognizer.available = false;
    EXPECT_EQ(row(HealthItem::Speech).color, HealthColor::Healthy);
}

} // namespace
} // namespace tavrin
