#include "app/account/ProviderSettings.h"

#include "app/settings/Localization.h"
#include "cloud/Deployment.h"
#include "platform/linux/LinuxTexts.h"
#include "platform/preferences/PreferenceKeys.h"
#include "support/QtPrinters.h"
#include "support/ports/InMemoryPreferences.h"
#include "support/ports/InMemorySystemInfo.h"
#include "support/ports/InMemoryWorkspace.h"
#include "support/ports/ScriptedAlerts.h"

#include <gtest/gtest.h>

#include <optional>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

class ProviderSettingsTest : public ::testing::Test {
protected:
    static constexpr int saveButton = 0;
    static constexpr int cancelButton = 1;

    testing::ScriptedAlerts alerts;
    int refreshes = 0; ///< Of the health page.
    testing::InMemoryPreferences preferences;
    testing::InMemorySystemInfo systemInfo;
    testing::InMemoryWorkspace workspace;
    Localization localization{preferences, workspace, KeyNames()};
    std::optional<ProviderSettings> settings{std::in_place, neighbours(localization)};

    ProviderSettings::Neighbours neighbours(const Localization& language)
    {
        return {alerts, language, preferences, [this] { ++refreshes; }, systemInfo, workspace};
    }

    QString keyPlaceholder()
    {
        settings->promptAPIKey();
        const AlertField field = alerts.shown().last().fields.first();
        EXPECT_TRUE(field.text.isEmpty());
        EXPECT_TRUE(field.secure);
        alerts.answer(cancelButton);
        return field.placeholder;
    }

    void save(const QStringList& fields)
    {
        settings->promptAPIKey();
        alerts.answer(saveButton, fields);
    }

    QString stored(const QString& key) const { return preferences.value(key).toString(); }
};

TEST_F(ProviderSettingsTest, LinuxExplainsItInItsOwnWords)
{
    preferences.setValue(keys::interfaceLanguage, u"zh-Hant"_s);
    const Localization linux{preferences, workspace, KeyNames(), linuxTexts()};
    ProviderSettings linuxSettings(neighbours(linux));
    linuxSettings.promptAPIKey();
    EXPECT_EQ(
        alerts.shown().last().informativeText, linuxTexts().modelApiNotice->zhHant.toString());
    alerts.answer(cancelButton);
}

TEST_F(ProviderSettingsTest, TheDialogExplainsItselfAndShowsTheDefaults)
{
    settings->promptAPIKey();

    EXPECT_EQ(workspace.ownActivations, 1);
    EXPECT_EQ(alerts.shown(),
        (QList<Alert>{{Alert::Style::Informational, u"模型 API 配置"_s,
            u"语音由 macOS 识别；这里的模型只负责整理文字。测试版会将 Key "
            u"明文保存在本机偏好设置中，"
            u"不再使用钥匙串。"_s,
            {u"保存"_s, u"取消"_s},
            {{u"API Key"_s, {}, u"sk-…"_s, true},
                {u"Base URL"_s, deployment::defaultProviderBaseUrl, {}, false},
                {u"模型"_s, u"gemini-3.5-flash"_s, {}, false}}}}));
    alerts.answer(cancelButton);
}

TEST_F(ProviderSettingsTest, StoredValuesAreShownButNotTheKey)
{
    preferences.setValue(keys::providerAPIKey, u"sk-secret"_s);
    preferences.setValue(keys::providerBaseURL, u"https://models.test/v1"_s);
    preferences.setValue(keys::providerModel, u"small"_s);
    settings->promptAPIKey();

    EXPECT_EQ(alerts.shown().last().fields,
        (QList<AlertField>{{u"API Key"_s, {}, u"已保存；留空则保持不变"_s, true},
            {u"Base URL"_s, u"https://models.test/v1"_s, {}, false},
            {u"模型"_s, u"small"_s, {}, false}}));
    alerts.answer(cancelButton);
}

TEST_F(ProviderSettingsTest, TheDefaultUrlIsSecureAndEndsInItsVersion)
{
    EXPECT_TRUE(deployment::defaultProviderBaseUrl.startsWith(u"https://"_s));
    EXPECT_TRUE(deployment::defaultProviderBaseUrl.endsWith(u"/v1"_s));
}

TEST_F(ProviderSettingsTest, AKeyOfTheEnvironmentCountsAsStored)
{
    EXPECT_EQ(keyPlaceholder(), u"sk-…"_s);
    systemInfo.environment.insert(u"OPENAI_API_KEY"_s, u"sk-env"_s);
    EXPECT_EQ(keyPlaceholder(), u"已保存；留空则保持不变"_s);
    systemInfo.environment.insert(u"OPENAI_API_KEY"_s, u""_s);
    EXPECT_EQ(keyPlaceholder(), u"sk-…"_s);
    preferences.setValue(keys::providerAPIKey, u"sk-stored"_s);
    EXPECT_EQ(keyPlaceholder(), u"已保存；留空则保持不变"_s);
}

TEST_F(ProviderSettingsTest, SavingStoresTheTrimmedFields)
{
    save({u" sk-secret\n"_s, u"\thttps://models.test/v1 "_s, u" small\u3000"_s});

    EXPECT_EQ(stored(keys::providerAPIKey), u"sk-secret"_s);
    EXPECT_EQ(stored(keys::providerBaseURL), u"https://models.test/v1"_s);
    EXPECT_EQ(stored(keys::providerModel), u"small"_s);
    for (const QString& key : {keys::providerAPIKey, keys::providerBaseURL, keys::providerModel})
        EXPECT_EQ(preferences.flushed(key).toString(), stored(key));
    EXPECT_EQ(refreshes, 1);
}

TEST_F(ProviderSettingsTest, AnEmptyFieldKeepsWhatIsStored)
{
    save({u"sk-secret"_s, u"https://models.test/v1"_s, u"small"_s});
    save({u""_s, u" \n"_s, u"\t"_s});

    EXPECT_EQ(stored(keys::providerAPIKey), u"sk-secret"_s);
    EXPECT_EQ(stored(keys::providerBaseURL), u"https://models.test/v1"_s);
    EXPECT_EQ(stored(keys::providerModel), u"small"_s);
    EXPECT_EQ(preferences.synchronizations(), 2);
    EXPECT_EQ(refreshes, 2);
}

TEST_F(ProviderSettingsTest, AnEmptyKeyFieldStoresNoKey)
{
    save({u""_s, u"https://models.test/v1"_s, u"small"_s});

    EXPECT_FALSE(preferences.value(keys::providerAPIKey).isValid());
}

TEST_F(ProviderSettingsTest, CancellingChangesNothing)
{
    settings->promptAPIKey();
    alerts.answer(cancelButton, {u"sk-secret"_s, u"https://models.test/v1"_s, u"small"_s});

    for (const QString& key : {keys::providerAPIKey, keys::providerBaseURL, keys::providerModel})
        EXPECT_FALSE(preferences.value(key).isValid());
    EXPECT_EQ(preferences.synchronizations(), 0);
    EXPECT_EQ(refreshes, 0);
}

TEST_F(ProviderSettingsTest, AnAnswerMayComeAfterItsEnd)
{
    settings->promptAPIKey();
    settings.reset();
    alerts.answer(saveButton, {u"sk-secret"_s, u""_s, u""_s});

    EXPECT_FALSE(preferences.value(keys::providerAPIKey).isValid());
}

} // namespace
} // namespace tavrin
