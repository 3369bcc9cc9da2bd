#include "DevelopmentCloud.h"
#include "base/LocalizedText.h"
#include "cloud/TavrinAPI.h"
#include "platform/preferences/PreferenceKeys.h"
#include "platform/qt/QtHttpTransport.h"
#include "support/QtPrinters.h"
#include "support/WaitUntil.h"
#include "support/ports/InMemoryPreferences.h"
#include "support/ports/InMemorySystemInfo.h"

#include <QFile>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

const QString email = u"ann@example.com"_s;
const QString password = u"correct horse battery"_s;
const QString transcript = u"嗯那个我们明天下午三点开会然后讨论一下预算"_s;

/// The whole client against the development service, over the network of this machine.
class CloudServiceTest : public ::testing::Test {
protected:
    testing::DevelopmentCloud cloud;
    testing::InMemoryPreferences preferences;
    testing::InMemorySystemInfo systemInfo;
    QtHttpTransport transport;
    std::optional<TavrinAPI> api;

    void serve(const QStringList& options = {})
    {
        cloud.start(options);
        api.emplace(transport, preferences, systemInfo,
            CloudSettings{[](const LocalizedText& text) { return text.en.toString(); },
                [] { return u"english"_s; }, cloud.baseUrl()});
    }

    /// What an operation, started with its completion, completed with.
    template <class Value, class Start>
    Value outcome(const Start& start)
    {
        std::optional<Value> received;
        start([&](const Value& value) {
            EXPECT_FALSE(received.has_value());
            received = value;
        });
        EXPECT_TRUE(testing::waitUntil([&] { return received.has_value(); }));
        return received.value_or(Value{});
    }

    CloudResponse login(const QString& typedPassword = password)
    {
        return outcome<CloudResponse>(
            [&](const auto& completion) { api->loginEmail(email, typedPassword, completion); });
    }

    CloudResponse startRegistration(const QString& invite)
    {
        return outcome<CloudResponse>([&](const auto& completion) {
            api->startRegistrationEmail(email, invite, completion);
        });
    }

    CloudResponse verify(const QString& code)
    {
        return outcome<CloudResponse>(
            [&](const auto& completion) { api->verifyRegistrationEmail(email, code, completion); });
    }

    CloudResponse complete(const QString& typedPassword, const QString& token)
    {
        return outcome<CloudResponse>([&](const auto& completion) {
            api->completeRegistrationEmail(email, typedPassword, token, completion);
        });
    }

    std::optional<Error> logout()
    {
        return outcome<std::optional<Error>>(
            [&](const auto& completion) { api->logoutWithCompletion(completion); });
    }

    std::optional<Error> validate()
    {
        return outcome<std::optional<Error>>(
            [&](const auto& completion) { api->validateCloudSessionWithCompletion(completion); });
    }

    Result<QString> polish(const QString& style, const QString& target = u"none"_s)
    {
        return outcome<Result<QString>>([&](const auto& completion) {
            api->polish(
                transcript, QJsonObject{{u"name"_s, u"Notes"_s}}, style, target, completion);
        });
    }

    QJsonObject summary()
    {
        return outcome<CloudResponse>([&](const auto& completion) {
            api->usageSummaryWithCompletion(completion);
        }).object.value_or(QJsonObject{});
    }

    QString stored(const QString& key) const { return preferences.value(key).toString(); }

    void expectSignedIn() const
    {
        EXPECT_FALSE(stored(keys::cloudAccessToken).isEmpty());
        EXPECT_FALSE(stored(keys::cloudRefreshToken).isEmpty());
        EXPECT_EQ(stored(keys::cloudAccountEmail), email);
        EXPECT_EQ(stored(keys::cloudDeviceId).size(), 36);
    }

    void expectSignedOut() const
    {
        for (const QString& key :
            {keys::cloudAccessToken, keys::cloudRefreshToken, keys::cloudAccountEmail})
            EXPECT_FALSE(preferences.value(key).isValid()) << key.toStdString();
    }

    /// Asks until the service no longer takes the access token, for a life of one second.
    void outliveTheAccessToken()
    {
        const QString token = stored(keys::cloudAccessToken);
        const auto status = [&] {
            return outcome<CloudResponse>([&](const auto& completion) {
                api->cloudRequestPath(u"/v1/auth/me"_s, "GET", std::nullopt, token, completion);
            }).status;
        };
        for (int asked = 0; asked < 10'000 && status() == 200; ++asked) { }
        ASSERT_EQ(status(), 401);
    }
};

TEST_F(CloudServiceTest, AnAccountFromInviteToSignOut)
{
    serve();
    expectSignedOut();

    EXPECT_EQ(startRegistration(cloud.invite()).error, std::nullopt);
    expectSignedOut();
    EXPECT_FALSE(preferences.value(keys::cloudDeviceId).isValid());

    const CloudResponse verified = verify(cloud.mailedCode(email));
    EXPECT_EQ(verified.error, std::nullopt);
    expectSignedOut();

    const QString registration =
        verified.object.value_or(QJsonObject{}).value("registrationToken"_L1).toString();
    EXPECT_EQ(complete(password, registration).error, std::nullopt);
    expectSignedIn();
    const QString device = stored(keys::cloudDeviceId);
    EXPECT_EQ(validate(), std::nullopt);

    QStringList texts;
    for (const QString& style : {u"professional"_s, u"xiaohongshu"_s, u"businessEmail"_s,
             u"casual"_s, u"meeting"_s, u"aiPrompt"_s}) {
        const Result<QString> text = polish(style);
        ASSERT_TRUE(text.has_value()) << style.toStdString();
        EXPECT_TRUE(text->contains(u"预算"_s)) << text->toStdString();
        EXPECT_FALSE(texts.contains(*text)) << "two styles look the same: " << text->toStdString();
        texts.append(*text);
    }
    expectSignedIn();

    api->reportLocalUsageInputCharacters(21, 19, 400'000, u"success"_s, {}, true);
    EXPECT_TRUE(testing::waitUntil([&] {
        return summary().value("reported"_L1).toObject().value("requests"_L1).toInt() == 1;
    }));
    EXPECT_EQ(summary().value("requests"_L1).toInt(), 6);

    const QString refreshToken = stored(keys::cloudRefreshToken);
    EXPECT_EQ(logout(), std::nullopt);
    expectSignedOut();
    EXPECT_EQ(stored(keys::cloudDeviceId), device);
    EXPECT_EQ(logout(), std::nullopt); // Nobody to sign out.

    preferences.setValue(keys::cloudRefreshToken, refreshToken);
    EXPECT_EQ(validate()->code, 401); // The service forgot the session too.
    expectSignedOut();
}

TEST_F(CloudServiceTest, SigningOutOfflineEndsTheSessionHere)
{
    cloud.makeAccount(email, password);
    serve();
    EXPECT_EQ(login().error, std::nullopt);
    expectSignedIn();

    cloud.stop();
    const std::optional<Error> error = logout();
    EXPECT_EQ(error->domain, u"TavrinHttp"_s);
    EXPECT_EQ(error->code, static_cast<int>(HttpFailure::Unreachable));
    expectSignedOut();
    EXPECT_EQ(stored(keys::cloudDeviceId).size(), 36);

    serve();
    EXPECT_EQ(login().error, std::nullopt);
    expectSignedIn();
}

TEST_F(CloudServiceTest, AnExpiredTokenIsRefreshedSilently)
{
    cloud.makeAccount(email, password);
    serve({u"--access-ttl"_s, u"1"_s});
    EXPECT_EQ(login().error, std::nullopt);
    const QString access = stored(keys::cloudAccessToken);
    const QString refresh = stored(keys::cloudRefreshToken);
    outliveTheAccessToken();

    EXPECT_TRUE(polish(u"casual"_s).has_value());
    EXPECT_NE(stored(keys::cloudAccessToken), access);
    EXPECT_NE(stored(keys::cloudRefreshToken), refresh);
    expectSignedIn();

    outliveTheAccessToken();
    EXPECT_EQ(validate(), std::nullopt);
    expectSignedIn();
}

TEST_F(CloudServiceTest, ALostAccessTokenIsFetchedAgain)
{
    cloud.makeAccount(email, password);
    serve();
    EXPECT_EQ(login().error, std::nullopt);
    preferences.remove(keys::cloudAccessToken);

    EXPECT_TRUE(polish(u"casual"_s).has_value());
    expectSignedIn();
}

TEST_F(CloudServiceTest, ARefusedRefreshEndsTheSession)
{
    cloud.makeAccount(email, password);
    serve();
    EXPECT_EQ(login().error, std::nullopt);
    preferences.setValue(keys::cloudAccessToken, u"forged"_s);
    preferences.setValue(keys::cloudRefreshToken, u"forged"_s);

    const Result<QString> text = polish(u"casual"_s);
    ASSERT_FALSE(text.has_value());
    EXPECT_EQ(text.error(), (Error{u"TavrinAPI"_s, 401, u"登录凭证无效，请重新登录。"_s}));
    expectSignedOut();
}

TEST_F(CloudServiceTest, TwoOperationsMayRefreshAtOnce)
{
    cloud.makeAccount(email, password);
    serve();
    EXPECT_EQ(login().error, std::nullopt);
    preferences.setValue(keys::cloudAccessToken, u"forged"_s);
    QList<Result<QString>> texts;
    for (int i = 0; i < 2; ++i) {
        api->polish(transcript, {}, std::nullopt, std::nullopt,
            [&](const Result<QString>& text) { texts.append(text); });
    }
    EXPECT_TRUE(testing::waitUntil([&] { return texts.size() == 2; }));

    EXPECT_TRUE(texts[0].has_value());
    EXPECT_TRUE(texts[1].has_value());
    EXPECT_EQ(validate(), std::nullopt);
    expectSignedIn();
}

TEST_F(CloudServiceTest, RefusalsReachTheUserInTheServicesWords)
{
    serve();
    EXPECT_EQ(login().error, (Error{u"TavrinAPI"_s, 401, u"邮箱或密码不正确。"_s}));
    EXPECT_EQ(startRegistration(u"NO-SUCH-INVITE"_s).error,
        (Error{u"TavrinAPI"_s, 403, u"邀请码无效或已被使用。"_s}));

    EXPECT_EQ(startRegistration(cloud.invite()).error, std::nullopt);
    const QString code = cloud.mailedCode(email);
    EXPECT_EQ(verify(code == u"000000"_s ? u"000001"_s : u"000000"_s).error,
        (Error{u"TavrinAPI"_s, 422, u"验证码不正确。"_s}));
    const QString token =
        verify(code).object.value_or(QJsonObject{}).value("registrationToken"_L1).toString();
    EXPECT_EQ(complete(u"short"_s, token).error->code, 422);
    EXPECT_EQ(complete(password, u"forged"_s).error->code, 403);
    expectSignedOut();
    EXPECT_EQ(complete(password, token).error, std::nullopt);

    const CloudResponse again = startRegistration(cloud.invite());
    EXPECT_EQ(again.error->code, 409);
    EXPECT_TRUE(again.error->message.contains(u"已经注册"_s));
    expectSignedIn();
}

TEST_F(CloudServiceTest, RegistrationInOneStepSignsIn)
{
    serve();
    const auto registered = outcome<CloudResponse>([&](const auto& completion) {
        api->registerEmail(email, password, cloud.invite(), completion);
    });

    EXPECT_EQ(registered.error, std::nullopt);
    expectSignedIn();
}

TEST_F(CloudServiceTest, WithoutAModelTranslationAndChatSaySo)
{
    cloud.makeAccount(email, password);
    serve();
    EXPECT_EQ(login().error, std::nullopt);

    EXPECT_EQ(polish(u"professional"_s, u"japanese"_s).error(),
        (Error{u"TavrinAPI"_s, 503, u"服务未配置语言模型，无法翻译。"_s}));
    const auto answer = outcome<Result<QString>>(
        [&](const auto& completion) { api->chat(u"几点了"_s, u"Notes"_s, completion); });
    ASSERT_FALSE(answer.has_value());
    EXPECT_EQ(answer.error(), (Error{u"TavrinAPI"_s, 503, u"服务未配置语言模型，无法畅聊。"_s}));
    expectSignedIn();
}

TEST_F(CloudServiceTest, TheUpdateOfferIsPassedOn)
{
    QFile offer(cloud.file(u"update.json"_s));
    ASSERT_TRUE(offer.open(QFile::WriteOnly));
    offer.write(R"({"build": 7, "version": "0.9.0", "downloadUrl": "https://tavrin.example/7",
        "notes": "更快"})");
    offer.close();
    serve({u"--update-file"_s, offer.fileName()});
    const auto update = outcome<Result<QJsonObject>>(
        [&](const auto& completion) { api->checkForUpdateWithCompletion(completion); });

    EXPECT_EQ(update.value(),
        (QJsonObject{{u"build"_s, 7}, {u"version"_s, u"0.9.0"_s},
            {u"downloadUrl"_s, u"https://tavrin.example/7"_s}, {u"notes"_s, u"更快"_s}}));
}

} // namespace
} // namespace tavrin
