#include "CloudFixture.h"

#include <QRegularExpression>

#include <array>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

const QRegularExpression upperCaseUuid(
    u"^[0-9A-F]{8}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{12}$"_s);

const QByteArray session =
    R"({"accessToken": "a", "refreshToken": "r", "user": {"email": "Ann@Example.com"}})";

class CloudAccountTest : public CloudFixture {
protected:
    Received<CloudResponse> received;
    Received<std::optional<Error>> outcome;

    void login() { api->loginEmail(u"ann@example.com"_s, u"secret"_s, received.completion()); }

    void complete()
    {
        api->completeRegistrationEmail(
            u"ann@example.com"_s, u"secret"_s, u"registration"_s, received.completion());
    }

    void registerAtOnce()
    {
        api->registerEmail(u"ann@example.com"_s, u"secret"_s, u"INVITE"_s, received.completion());
    }

    void logout() { api->logoutWithCompletion(outcome.completion()); }

    QJsonObject withInstallation(QJsonObject fields) const
    {
        fields.insert("deviceId"_L1, stored(keys::cloudDeviceId));
        fields.insert("deviceName"_L1, u"Workbench"_s);
        fields.insert("clientVersion"_L1, u"0.8.0"_s);
        return fields;
    }

    void expectPostWithoutToken(const QString& url) const
    {
        EXPECT_EQ(request(0).url, QUrl(u"https://cloud.test"_s + url));
        EXPECT_EQ(request(0).method, "POST");
        EXPECT_TRUE(header(0, "Authorization").isNull());
    }
};

// Sign-in

TEST_F(CloudAccountTest, SignInSendsTheAccountAndTheInstallation)
{
    storeSession(u"old"_s, u"old"_s);
    transport.willAnswer(200, session);
    login();
    run();

    expectPostWithoutToken(u"/v1/auth/login"_s);
    EXPECT_EQ(body(0),
        withInstallation({{u"email"_s, u"ann@example.com"_s}, {u"password"_s, u"secret"_s}}));
}

TEST_F(CloudAccountTest, SignInStoresTheSession)
{
    transport.willAnswer(200, session);
    login();
    run();

    EXPECT_EQ(stored(keys::cloudAccessToken), u"a"_s);
    EXPECT_EQ(stored(keys::cloudRefreshToken), u"r"_s);
    EXPECT_EQ(stored(keys::cloudAccountEmail), u"Ann@Example.com"_s);
    EXPECT_EQ(received.value().error, std::nullopt);
    EXPECT_EQ(received.value().object->value("accessToken"_L1).toString(), u"a"_s);
}

TEST_F(CloudAccountTest, SignInFallsBackToTheTypedEmail)
{
    transport.willAnswer(200, R"({"accessToken": "a"})");
    login();
    run();

    EXPECT_EQ(stored(keys::cloudAccountEmail), u"ann@example.com"_s);
}

TEST_F(CloudAccountTest, SignInAnsweredWithoutTokensIsStillASuccess)
{
    transport.willAnswer(200, "{}");
    login();
    run();

    EXPECT_EQ(received.value(), (CloudResponse{QJsonObject{}, 200, std::nullopt}));
    EXPECT_FALSE(preferences.value(keys::cloudAccessToken).isValid());
}

TEST_F(CloudAccountTest, ARefusedSignInStoresNothingButTheInstallation)
{
    transport.willAnswer(401, R"({"error": {"message": "邮箱或密码错误"}, "accessToken": "a"})");
    login();
    run();

    EXPECT_EQ(received.value().error, serviceError(401, u"邮箱或密码错误"_s));
    EXPECT_EQ(received.value().object->value("accessToken"_L1).toString(), u"a"_s);
    EXPECT_TRUE(signedOut());
    EXPECT_EQ(transport.requests().size(), 1);
}

TEST_F(CloudAccountTest, SignInOfflinePassesTheErrorOn)
{
    transport.willFail(HttpFailure::Unreachable);
    login();
    run();

    EXPECT_EQ(received.value().error->code, static_cast<int>(HttpFailure::Unreachable));
    EXPECT_EQ(received.value().object, QJsonObject{});
}

TEST_F(CloudAccountTest, MissingArgumentsAreSentAsEmptyStrings)
{
    transport.willAnswer(200);
    api->loginEmail({}, {}, received.completion());
    run();

    EXPECT_EQ(body(0).value("email"_L1), QJsonValue(u""_s));
    EXPECT_EQ(body(0).value("password"_L1), QJsonValue(u""_s));
}

TEST_F(CloudAccountTest, AComputerWithoutANameIsAMac)
{
    systemInfo.hostName.clear();
    transport.willAnswer(200);
    login();
    run();

    EXPECT_EQ(body(0).value("deviceName"_L1), QJsonValue(u"Mac"_s));
}

TEST_F(CloudAccountTest, TheClientVersionIsNotThatOfTheBundle)
{
    systemInfo.shortVersion = u"9.9.9"_s;
    transport.willAnswer(200);
    login();
    run();

    EXPECT_EQ(body(0).value("clientVersion"_L1), QJsonValue(u"0.8.0"_s));
}

// The installation identifier

TEST_F(CloudAccountTest, TheFirstSignInStoresAnIdentifierBeforeItIsSent)
{
    login();

    EXPECT_TRUE(upperCaseUuid.match(stored(keys::cloudDeviceId)).hasMatch());
    EXPECT_EQ(body(0).value("deviceId"_L1).toString(), stored(keys::cloudDeviceId));
    transport.answer(500);
}

TEST_F(CloudAccountTest, EveryLaterSignInAndRegistrationSendsTheSameIdentifier)
{
    for (int round = 0; round < 2; ++round) {
        std::array<Received<CloudResponse>, 3> answers;
        for (int i = 0; i < 3; ++i)
            transport.willAnswer(500);
        api->loginEmail(u"a"_s, u"p"_s, answers[0].completion());
        api->registerEmail(u"a"_s, u"p"_s, u"i"_s, answers[1].completion());
        api->completeRegistrationEmail(u"a"_s, u"p"_s, u"t"_s, answers[2].completion());
        run();
    }

    for (qsizetype i = 0; i < 6; ++i)
        EXPECT_EQ(body(i).value("deviceId"_L1).toString(), stored(keys::cloudDeviceId));
}

TEST_F(CloudAccountTest, AStoredIdentifierIsUsedAsItIs)
{
    preferences.setValue(keys::cloudDeviceId, u"kept"_s);
    transport.willAnswer(200);
    login();
    run();

    EXPECT_EQ(body(0).value("deviceId"_L1), QJsonValue(u"kept"_s));
    EXPECT_EQ(stored(keys::cloudDeviceId), u"kept"_s);
}

TEST_F(CloudAccountTest, RegistrationStoresAnIdentifierBeforeItIsSent)
{
    complete();

    EXPECT_TRUE(upperCaseUuid.match(stored(keys::cloudDeviceId)).hasMatch());
    transport.answer(500);
}

// Registration

TEST_F(CloudAccountTest, RegistrationStartsWithTheInvite)
{
    transport.willAnswer(200, R"({"sent": true, "accessToken": "a"})");
    api->startRegistrationEmail(u"ann@example.com"_s, u"INVITE"_s, received.completion());
    run();

    expectPostWithoutToken(u"/v1/auth/registration/start"_s);
    EXPECT_EQ(
        body(0), (QJsonObject{{u"email"_s, u"ann@example.com"_s}, {u"inviteCode"_s, u"INVITE"_s}}));
    EXPECT_EQ(received.value().object->value("sent"_L1), QJsonValue(true));
    EXPECT_TRUE(signedOut());
}

TEST_F(CloudAccountTest, RegistrationVerifiesTheCode)
{
    transport.willAnswer(200, R"({"registrationToken": "t", "accessToken": "a"})");
    api->verifyRegistrationEmail(u"ann@example.com"_s, u"012345"_s, received.completion());
    run();

    expectPostWithoutToken(u"/v1/auth/registration/verify"_s);
    EXPECT_EQ(body(0), (QJsonObject{{u"email"_s, u"ann@example.com"_s}, {u"code"_s, u"012345"_s}}));
    EXPECT_EQ(received.value().object->value("registrationToken"_L1), QJsonValue(u"t"_s));
    EXPECT_TRUE(signedOut());
    EXPECT_FALSE(preferences.value(keys::cloudDeviceId).isValid());
}

TEST_F(CloudAccountTest, RegistrationCompletesAndSignsIn)
{
    transport.willAnswer(201, session);
    complete();
    run();

    expectPostWithoutToken(u"/v1/auth/registration/complete"_s);
    EXPECT_EQ(body(0),
        withInstallation({{u"email"_s, u"ann@example.com"_s}, {u"password"_s, u"secret"_s},
            {u"registrationToken"_s, u"registration"_s}}));
    EXPECT_EQ(stored(keys::cloudAccessToken), u"a"_s);
    EXPECT_EQ(stored(keys::cloudAccountEmail), u"Ann@Example.com"_s);
}

TEST_F(CloudAccountTest, ARefusedRegistrationStoresNothing)
{
    transport.willAnswer(422, R"({"error": {"message": "验证码已过期"}, "accessToken": "a"})");
    complete();
    run();

    EXPECT_EQ(received.value().error, serviceError(422, u"验证码已过期"_s));
    EXPECT_TRUE(signedOut());
}

TEST_F(CloudAccountTest, RegistrationInOneStepSignsInWhenItIsAnsweredWithAToken)
{
    transport.willAnswer(200, R"({"accessToken": "a", "refreshToken": "r"})");
    registerAtOnce();
    run();

    expectPostWithoutToken(u"/v1/auth/register"_s);
    EXPECT_EQ(body(0),
        withInstallation({{u"email"_s, u"ann@example.com"_s}, {u"password"_s, u"secret"_s},
            {u"inviteCode"_s, u"INVITE"_s}}));
    EXPECT_EQ(stored(keys::cloudAccessToken), u"a"_s);
    EXPECT_EQ(stored(keys::cloudRefreshToken), u"r"_s);
    EXPECT_EQ(stored(keys::cloudAccountEmail), u"ann@example.com"_s);
}

TEST_F(CloudAccountTest, RegistrationInOneStepWithoutATokenStoresNothing)
{
    for (const QByteArray answer : {R"({"refreshToken": "r", "user": {"email": "x"}})",
             R"({"accessToken": 5, "refreshToken": "r"})", "{}", ""}) {
        Received<CloudResponse> each;
        transport.willAnswer(200, answer);
        api->registerEmail(u"a"_s, u"p"_s, u"i"_s, each.completion());
        run();

        EXPECT_EQ(each.value().error, std::nullopt);
        EXPECT_TRUE(signedOut());
    }
    transport.willAnswer(409, R"({"accessToken": "a"})");
    registerAtOnce();
    run();
    EXPECT_TRUE(signedOut());
}

// Sign-out

TEST_F(CloudAccountTest, SignOutTellsTheServiceAndEndsTheSession)
{
    storeSession(u"a"_s, u"r"_s);
    preferences.setValue(keys::cloudDeviceId, u"device"_s);
    transport.willAnswer(204);
    logout();
    EXPECT_EQ(stored(keys::cloudAccessToken), u"a"_s);
    run();

    EXPECT_EQ(request(0),
        (HttpRequest{QUrl(u"https://cloud.test/v1/auth/logout"_s), "POST",
            {{"Content-Type", "application/json"}, {"Authorization", "Bearer a"}}, std::nullopt}));
    EXPECT_EQ(outcome.value(), std::nullopt);
    EXPECT_TRUE(signedOut());
    EXPECT_EQ(stored(keys::cloudDeviceId), u"device"_s);
}

TEST_F(CloudAccountTest, SignOutOfflineEndsTheSessionAndReportsTheError)
{
    storeSession(u"a"_s, u"r"_s);
    transport.willFail(HttpFailure::Unreachable);
    logout();
    run();

    EXPECT_EQ(outcome.value(), testing::InMemoryHttpTransport::error(HttpFailure::Unreachable));
    EXPECT_TRUE(signedOut());
}

TEST_F(CloudAccountTest, SignOutEndsTheSessionWhateverTheServiceAnswers)
{
    for (const int status : {401, 403, 500}) {
        storeSession(u"a"_s, u"r"_s);
        Received<std::optional<Error>> each;
        transport.willAnswer(status, "no");
        api->logoutWithCompletion(each.completion());
        run();

        EXPECT_EQ(each.value(), serviceError(status, u"no"_s));
        EXPECT_TRUE(signedOut());
    }
    EXPECT_EQ(transport.requests().size(), 3);
}

TEST_F(CloudAccountTest, SignOutWithoutAnAccessTokenSendsNothing)
{
    storeSession({}, u"r"_s);
    logout();

    EXPECT_EQ(outcome.value(), std::nullopt);
    EXPECT_TRUE(signedOut());
    EXPECT_TRUE(transport.requests().isEmpty());
}

TEST_F(CloudAccountTest, SignOutEndsTheSessionEvenWhenTheClientHasGone)
{
    storeSession(u"a"_s, u"r"_s);
    logout();
    api.reset();
    transport.fail(HttpFailure::Cancelled);

    EXPECT_TRUE(signedOut());
    EXPECT_EQ(outcome.value()->code, static_cast<int>(HttpFailure::Cancelled));
}

TEST_F(CloudAccountTest, WithAnInvalidBaseUrlSignOutEndsTheSessionAtOnce)
{
    connectTo(u"http://cloud.test"_s);
    storeSession(u"a"_s, u"r"_s);
    logout();

    EXPECT_EQ(outcome.value()->code, 1);
    EXPECT_TRUE(signedOut());
}

} // namespace
} // namespace tavrin
