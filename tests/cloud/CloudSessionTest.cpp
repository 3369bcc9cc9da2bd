#include "CloudFixture.h"
#include "cloud/StoredSession.h"

#include <QJsonArray>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

class CloudSessionTest : public CloudFixture {
protected:
    Received<Result<QString>> token;
    Received<std::optional<Error>> outcome;

    void refresh() { api->refreshCloudSession(token.completion()); }

    void validate() { api->validateCloudSessionWithCompletion(outcome.completion()); }
};

// SaveCloudSession

TEST_F(CloudSessionTest, SavingStoresTokensAndTheServicesEmail)
{
    SaveCloudSession(preferences,
        QJsonObject{{u"accessToken"_s, u"a"_s}, {u"refreshToken"_s, u"r"_s},
            {u"user"_s, QJsonObject{{u"email"_s, u"Ann@Example.com"_s}}}},
        u"typed@example.com"_s);

    EXPECT_EQ(stored(keys::cloudAccessToken), u"a"_s);
    EXPECT_EQ(stored(keys::cloudRefreshToken), u"r"_s);
    EXPECT_EQ(stored(keys::cloudAccountEmail), u"Ann@Example.com"_s);
    EXPECT_EQ(flushed(keys::cloudAccessToken), u"a"_s);
    EXPECT_EQ(flushed(keys::cloudRefreshToken), u"r"_s);
    EXPECT_EQ(flushed(keys::cloudAccountEmail), u"Ann@Example.com"_s);
}

TEST_F(CloudSessionTest, SavingTakesTheFallbackWithoutAnEmail)
{
    for (const QJsonValue& user : {QJsonValue(QJsonValue::Undefined), QJsonValue(u"x"_s),
             QJsonValue(QJsonObject{}), QJsonValue(QJsonObject{{u"email"_s, 3}}),
             QJsonValue(QJsonArray{}), QJsonValue(QJsonValue::Null)}) {
        preferences.remove(keys::cloudAccountEmail);
        SaveCloudSession(preferences, QJsonObject{{u"user"_s, user}}, u"typed@example.com"_s);

        EXPECT_EQ(stored(keys::cloudAccountEmail), u"typed@example.com"_s);
    }
}

TEST_F(CloudSessionTest, AnEmptyEmailOfTheServiceStoresNoneAtAll)
{
    SaveCloudSession(preferences, QJsonObject{{u"user"_s, QJsonObject{{u"email"_s, u""_s}}}},
        u"typed@example.com"_s);

    EXPECT_FALSE(preferences.value(keys::cloudAccountEmail).isValid());
}

TEST_F(CloudSessionTest, SavingLeavesWhatIsAbsentOrOfAnotherType)
{
    storeSession(u"a"_s, u"r"_s);
    const int flushes = preferences.synchronizations();
    for (const QJsonValue& wrong : {QJsonValue(QJsonValue::Null), QJsonValue(7), QJsonValue(true),
             QJsonValue(QJsonArray{u"a"_s}), QJsonValue(QJsonObject{})}) {
        SaveCloudSession(
            preferences, QJsonObject{{u"accessToken"_s, wrong}, {u"refreshToken"_s, wrong}}, {});
    }
    SaveCloudSession(preferences, {}, {});

    EXPECT_EQ(stored(keys::cloudAccessToken), u"a"_s);
    EXPECT_EQ(stored(keys::cloudRefreshToken), u"r"_s);
    EXPECT_EQ(stored(keys::cloudAccountEmail), u"ann@example.com"_s);
    EXPECT_EQ(preferences.synchronizations(), flushes + 6);
}

TEST_F(CloudSessionTest, AnEmptyTokenIsStoredAsItIs)
{
    storeSession(u"a"_s, u"r"_s);
    SaveCloudSession(preferences, QJsonObject{{u"accessToken"_s, u""_s}}, {});

    EXPECT_EQ(preferences.value(keys::cloudAccessToken), QVariant(u""_s));
}

// refreshCloudSession

TEST_F(CloudSessionTest, ARefreshWithoutARefreshTokenSendsAndClearsNothing)
{
    preferences.setValue(keys::cloudAccessToken, u"a"_s);
    preferences.setValue(keys::cloudAccountEmail, u"ann@example.com"_s);
    refresh();

    EXPECT_EQ(token.value().error(), clientError(401, u"登录已失效，请重新登录。"_s));
    EXPECT_TRUE(transport.requests().isEmpty());
    EXPECT_EQ(stored(keys::cloudAccessToken), u"a"_s);
    EXPECT_EQ(stored(keys::cloudAccountEmail), u"ann@example.com"_s);
}

TEST_F(CloudSessionTest, ARefreshTokenOfAnotherTypeCountsAsAbsent)
{
    preferences.setValue(keys::cloudRefreshToken, 12);
    refresh();

    EXPECT_EQ(token.value().error().code, 401);
}

TEST_F(CloudSessionTest, ARefreshSendsOnlyTheRefreshToken)
{
    storeSession(u"a"_s, u"r"_s);
    willRefresh();
    refresh();
    run();

    EXPECT_EQ(request(0),
        (HttpRequest{QUrl(u"https://cloud.test/v1/auth/refresh"_s), "POST",
            {{"Content-Type", "application/json"}}, QByteArray(R"({"refreshToken":"r"})")}));
}

TEST_F(CloudSessionTest, ARefreshStoresTheNewPairAndGivesTheAccessToken)
{
    storeSession(u"a"_s, u"r"_s);
    willRefresh();
    refresh();
    run();

    EXPECT_EQ(token.value().value(), u"new-access"_s);
    EXPECT_EQ(stored(keys::cloudAccessToken), u"new-access"_s);
    EXPECT_EQ(stored(keys::cloudRefreshToken), u"new-refresh"_s);
    EXPECT_EQ(flushed(keys::cloudAccessToken), u"new-access"_s);
    EXPECT_EQ(flushed(keys::cloudRefreshToken), u"new-refresh"_s);
}

TEST_F(CloudSessionTest, ARefreshWithoutANewRefreshTokenKeepsTheOldOne)
{
    storeSession(u"a"_s, u"r"_s);
    transport.willAnswer(200, R"({"accessToken": "b"})");
    refresh();
    run();

    EXPECT_EQ(token.value().value(), u"b"_s);
    EXPECT_EQ(stored(keys::cloudRefreshToken), u"r"_s);
}

TEST_F(CloudSessionTest, ARefreshWithoutAUserKeepsTheEmail)
{
    storeSession(u"a"_s, u"r"_s);
    willRefresh();
    refresh();
    run();

    EXPECT_EQ(stored(keys::cloudAccountEmail), u"ann@example.com"_s);
}

TEST_F(CloudSessionTest, ARefreshWithAUserStoresItsEmail)
{
    storeSession(u"a"_s, u"r"_s);
    transport.willAnswer(200, R"({"accessToken": "b", "user": {"email": "bea@example.com"}})");
    refresh();
    run();

    EXPECT_EQ(stored(keys::cloudAccountEmail), u"bea@example.com"_s);
}

TEST_F(CloudSessionTest, ARefreshAnsweredWithNothingGivesTheTokenThatIsStored)
{
    storeSession(u"a"_s, u"r"_s);
    transport.willAnswer(204);
    refresh();
    run();

    EXPECT_EQ(token.value().value(), u"a"_s);
}

TEST_F(CloudSessionTest, ARefreshRefusedEndsTheSession)
{
    for (const int status : {401, 403}) {
        storeSession(u"a"_s, u"r"_s);
        preferences.setValue(keys::cloudDeviceId, u"device"_s);
        const int flushes = preferences.synchronizations();
        Received<Result<QString>> answer;
        transport.willAnswer(status, R"({"error": {"message": "已撤销"}})");
        api->refreshCloudSession(answer.completion());
        run();

        EXPECT_EQ(answer.value().error(), serviceError(status, u"已撤销"_s));
        EXPECT_TRUE(signedOut());
        EXPECT_EQ(preferences.synchronizations(), flushes + 1);
        EXPECT_EQ(stored(keys::cloudDeviceId), u"device"_s);
    }
}

TEST_F(CloudSessionTest, ARefreshThatFailsOtherwiseKeepsTheSession)
{
    storeSession(u"a"_s, u"r"_s);
    for (const int status : {100, 301, 400, 402, 404, 429, 500, 503, 599}) {
        Received<Result<QString>> answer;
        transport.willAnswer(status);
        api->refreshCloudSession(answer.completion());
        run();

        EXPECT_EQ(answer.value().error(), serviceError(status, u""_s));
    }
    transport.willFail(HttpFailure::Unreachable);
    refresh();
    run();

    EXPECT_EQ(token.value().error().code, static_cast<int>(HttpFailure::Unreachable));
    EXPECT_EQ(stored(keys::cloudAccessToken), u"a"_s);
    EXPECT_EQ(stored(keys::cloudRefreshToken), u"r"_s);
    EXPECT_EQ(stored(keys::cloudAccountEmail), u"ann@example.com"_s);
}

TEST_F(CloudSessionTest, TwoRefreshesDoNotWaitForEachOther)
{
    storeSession(u"a"_s, u"r"_s);
    Received<Result<QString>> second;
    refresh();
    api->refreshCloudSession(second.completion());
    transport.answer(200, R"({"accessToken": "first"})");
    transport.answer(200, R"({"accessToken": "second"})");

    EXPECT_EQ(token.value().value(), u"first"_s);
    EXPECT_EQ(second.value().value(), u"second"_s);
    EXPECT_EQ(stored(keys::cloudAccessToken), u"second"_s);
}

// Validation

TEST_F(CloudSessionTest, ValidationAsksWhoIsSignedIn)
{
    storeSession(u"a"_s, u"r"_s);
    const int flushes = preferences.synchronizations();
    transport.willAnswer(200, "[]");
    validate();
    run();

    EXPECT_EQ(request(0),
        (HttpRequest{QUrl(u"https://cloud.test/v1/auth/me"_s), "GET",
            {{"Content-Type", "application/json"}, {"Authorization", "Bearer a"}}, std::nullopt}));
    EXPECT_EQ(outcome.value(), std::nullopt);
    EXPECT_EQ(preferences.synchronizations(), flushes);
}

TEST_F(CloudSessionTest, ValidationWithoutTokensFailsAtOnce)
{
    validate();

    EXPECT_EQ(outcome.value(), clientError(401, u"登录已失效。"_s));
    EXPECT_TRUE(transport.requests().isEmpty());
}

TEST_F(CloudSessionTest, ValidationWithOnlyARefreshTokenRefreshesFirst)
{
    preferences.setValue(keys::cloudRefreshToken, u"r"_s);
    willRefresh();
    transport.willAnswer(200);
    validate();
    run();

    EXPECT_EQ(paths(), (QStringList{u"/v1/auth/refresh"_s, u"/v1/auth/me"_s}));
    EXPECT_EQ(header(1, "Authorization"), "Bearer new-access");
    EXPECT_EQ(outcome.value(), std::nullopt);
}

TEST_F(CloudSessionTest, ValidationWithTheFlagClearDoesNotRefresh)
{
    preferences.setValue(keys::cloudRefreshToken, u"r"_s);
    api->validateCloudSessionRetry(false, outcome.completion());

    EXPECT_EQ(outcome.value(), clientError(401, u"登录已失效。"_s));
    EXPECT_TRUE(transport.requests().isEmpty());
}

TEST_F(CloudSessionTest, ValidationThatCannotRefreshFirstGivesThatError)
{
    preferences.setValue(keys::cloudRefreshToken, u"r"_s);
    transport.willAnswer(503, "later");
    validate();
    run();

    EXPECT_EQ(outcome.value(), serviceError(503, u"later"_s));
    EXPECT_EQ(transport.requests().size(), 1);
}

TEST_F(CloudSessionTest, ValidationRefreshesAndRepeatsAfterA401)
{
    storeSession(u"a"_s, u"r"_s);
    transport.willAnswer(401);
    willRefresh();
    transport.willAnswer(200);
    validate();
    run();

    EXPECT_EQ(paths(), (QStringList{u"/v1/auth/me"_s, u"/v1/auth/refresh"_s, u"/v1/auth/me"_s}));
    EXPECT_EQ(header(2, "Authorization"), "Bearer new-access");
    EXPECT_EQ(outcome.value(), std::nullopt);
}

TEST_F(CloudSessionTest, ASecond401OfValidationIsFinal)
{
    storeSession(u"a"_s, u"r"_s);
    transport.willAnswer(401, "first");
    willRefresh();
    transport.willAnswer(401, "second");
    validate();
    run();

    EXPECT_EQ(outcome.value(), serviceError(401, u"second"_s));
    EXPECT_EQ(transport.requests().size(), 3);
    EXPECT_EQ(stored(keys::cloudAccessToken), u"new-access"_s);
}

TEST_F(CloudSessionTest, A401WithoutARefreshTokenIsTheServicesError)
{
    preferences.setValue(keys::cloudAccessToken, u"a"_s);
    transport.willAnswer(401, "expired");
    validate();
    run();

    EXPECT_EQ(outcome.value(), serviceError(401, u"expired"_s));
    EXPECT_EQ(transport.requests().size(), 1);
    EXPECT_EQ(stored(keys::cloudAccessToken), u"a"_s);
}

TEST_F(CloudSessionTest, A401WithTheFlagClearIsTheServicesError)
{
    storeSession(u"a"_s, u"r"_s);
    transport.willAnswer(401, "expired");
    api->validateCloudSessionRetry(false, outcome.completion());
    run();

    EXPECT_EQ(outcome.value(), serviceError(401, u"expired"_s));
    EXPECT_EQ(transport.requests().size(), 1);
}

TEST_F(CloudSessionTest, OtherErrorsOfValidationDoNotRefresh)
{
    storeSession(u"a"_s, u"r"_s);
    for (const int status : {300, 400, 403, 404, 500}) {
        Received<std::optional<Error>> answer;
        transport.willAnswer(status);
        api->validateCloudSessionWithCompletion(answer.completion());
        run();

        EXPECT_EQ(answer.value(), serviceError(status, u""_s));
    }
    transport.willFail(HttpFailure::Unreachable);
    validate();
    run();

    EXPECT_EQ(outcome.value()->code, static_cast<int>(HttpFailure::Unreachable));
    EXPECT_FALSE(paths().contains(u"/v1/auth/refresh"_s));
    EXPECT_EQ(stored(keys::cloudAccessToken), u"a"_s);
}

TEST_F(CloudSessionTest, ARefusedRefreshDuringValidationEndsTheSession)
{
    storeSession(u"a"_s, u"r"_s);
    transport.willAnswer(401, "expired");
    transport.willAnswer(403, "revoked");
    validate();
    run();

    EXPECT_EQ(outcome.value(), serviceError(403, u"revoked"_s));
    EXPECT_TRUE(signedOut());
}

TEST_F(CloudSessionTest, ARefreshWithoutAnAccessTokenLeavesTheRepeatSignedOut)
{
    preferences.setValue(keys::cloudRefreshToken, u"r"_s);
    transport.willAnswer(200, "{}");
    validate();
    run();

    EXPECT_EQ(outcome.value(), clientError(401, u"登录已失效。"_s));
    EXPECT_EQ(transport.requests().size(), 1);
}

// Destruction while requests run

TEST_F(CloudSessionTest, ARefreshThatOutlivesTheClientStillStoresItsTokens)
{
    storeSession(u"a"_s, u"r"_s);
    refresh();
    api.reset();
    transport.answer(200, R"({"accessToken": "b", "refreshToken": "s"})");

    EXPECT_EQ(token.value().value(), u"b"_s);
    EXPECT_EQ(stored(keys::cloudRefreshToken), u"s"_s);
}

TEST_F(CloudSessionTest, NothingIsRepeatedWhenTheClientHasGone)
{
    storeSession(u"a"_s, u"r"_s);
    validate();
    transport.answer(401, "expired");
    api.reset();
    transport.answer(200, R"({"accessToken": "b"})");

    EXPECT_EQ(outcome.value()->domain, u"TavrinHttp"_s);
    EXPECT_EQ(outcome.value()->code, static_cast<int>(HttpFailure::Cancelled));
    EXPECT_EQ(outcome.value()->message, u"请求已取消。"_s);
    EXPECT_EQ(transport.requests().size(), 2);
}

TEST_F(CloudSessionTest, NothingIsRefreshedWhenTheClientHasGone)
{
    storeSession(u"a"_s, u"r"_s);
    validate();
    api.reset();
    transport.answer(401, "expired");

    EXPECT_EQ(outcome.value(), serviceError(401, u"expired"_s));
    EXPECT_EQ(transport.requests().size(), 1);
}

TEST_F(CloudSessionTest, ACompletionMayDestroyTheClient)
{
    storeSession(u"a"_s, u"r"_s);
    transport.willAnswer(401);
    willRefresh();
    transport.willAnswer(200);
    bool completed = false;
    api->validateCloudSessionWithCompletion([&](const std::optional<Error>&) {
        api.reset();
        completed = true;
    });
    run();

    EXPECT_TRUE(completed);
}

} // namespace
} // namespace tavrin
