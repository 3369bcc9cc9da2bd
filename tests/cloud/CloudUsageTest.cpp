#include "CloudFixture.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

const QRegularExpression lowerCaseUuid(
    u"^[0-9a-f]{8}-[0-9a-f]{4}-[0-9a-f]{4}-[0-9a-f]{4}-[0-9a-f]{12}$"_s);

class CloudUsageTest : public CloudFixture {
protected:
    void report(quint64 latencyMs = 1200, const std::optional<QString>& status = u"success"_s,
        const QString& errorCode = {}, bool retry = true)
    {
        api->reportLocalUsageInputCharacters(12, 34, latencyMs, status, errorCode, retry);
    }

    QJsonObject reported(quint64 latencyMs = 1200,
        const std::optional<QString>& status = u"success"_s, const QString& errorCode = {})
    {
        storeSession(u"a"_s, u"r"_s);
        transport.willAnswer(204);
        report(latencyMs, status, errorCode);
        run();
        return body(transport.requests().size() - 1);
    }

    static QJsonValue field(const QJsonObject& object, const char* name)
    {
        return object.value(QLatin1StringView(name));
    }
};

// Usage summary

TEST_F(CloudUsageTest, TheSummaryIsPassedOnUnchanged)
{
    storeSession(u"a"_s, u"r"_s);
    Received<CloudResponse> received;
    transport.willAnswer(200, R"({"used": 3})");
    api->usageSummaryWithCompletion(received.completion());
    run();

    EXPECT_EQ(request(0),
        (HttpRequest{QUrl(u"https://cloud.test/v1/usage/summary"_s), "GET",
            {{"Content-Type", "application/json"}, {"Authorization", "Bearer a"}}, std::nullopt}));
    EXPECT_EQ(received.value(), (CloudResponse{QJsonObject{{u"used"_s, 3}}, 200, std::nullopt}));
}

TEST_F(CloudUsageTest, TheSummaryNeedsAnAccessTokenAndDoesNotRefresh)
{
    preferences.setValue(keys::cloudRefreshToken, u"r"_s);
    Received<CloudResponse> received;
    api->usageSummaryWithCompletion(received.completion());

    EXPECT_EQ(
        received.value(), (CloudResponse{std::nullopt, 0, clientError(401, u"请先登录。"_s)}));
    EXPECT_TRUE(transport.requests().isEmpty());
}

TEST_F(CloudUsageTest, A401OfTheSummaryIsNotRetried)
{
    storeSession(u"a"_s, u"r"_s);
    Received<CloudResponse> received;
    transport.willAnswer(401, "expired");
    api->usageSummaryWithCompletion(received.completion());
    run();

    EXPECT_EQ(received.value().error, serviceError(401, u"expired"_s));
    EXPECT_EQ(transport.requests().size(), 1);
    EXPECT_EQ(stored(keys::cloudAccessToken), u"a"_s);
}

// Usage report

TEST_F(CloudUsageTest, AReportHasItsNineFields)
{
    QJsonObject sent = reported();
    const QString identifier = sent.take("requestId"_L1).toString();

    EXPECT_TRUE(lowerCaseUuid.match(identifier).hasMatch());
    EXPECT_EQ(sent,
        (QJsonObject{{u"operation"_s, u"translation"_s},
            {u"provider"_s, QUrl(deployment::defaultProviderBaseUrl).host()},
            {u"model"_s, u"gemini-3.5-flash"_s}, {u"inputCharacters"_s, 12},
            {u"outputCharacters"_s, 34}, {u"audioSeconds"_s, 0}, {u"latencyMs"_s, 1200},
            {u"status"_s, u"success"_s}}));
    EXPECT_EQ(path(0), u"/v1/usage/report"_s);
    EXPECT_EQ(request(0).method, "POST");
    EXPECT_EQ(header(0, "Authorization"), "Bearer a");
    EXPECT_TRUE(request(0).body->contains(R"("latencyMs":1200,)"));
}

TEST_F(CloudUsageTest, WithAnErrorCodeAReportHasTen)
{
    EXPECT_EQ(
        field(reported(1200, u"failed"_s, u"timeout"_s), "errorCode"), QJsonValue(u"timeout"_s));
    EXPECT_EQ(body(0).size(), 10);
}

TEST_F(CloudUsageTest, AnEmptyErrorCodeIsLeftOut)
{
    EXPECT_EQ(reported(1200, u"failed"_s, u""_s).size(), 9);
}

TEST_F(CloudUsageTest, EveryReportHasItsOwnIdentifier)
{
    EXPECT_NE(field(reported(), "requestId"), field(reported(), "requestId"));
}

TEST_F(CloudUsageTest, LatencyCountsForAtMostFiveMinutes)
{
    EXPECT_EQ(field(reported(400'000), "latencyMs"), QJsonValue(300'000));
    EXPECT_EQ(field(reported(300'000), "latencyMs"), QJsonValue(300'000));
    EXPECT_EQ(field(reported(0), "latencyMs"), QJsonValue(0));
    EXPECT_EQ(
        field(reported(std::numeric_limits<quint64>::max()), "latencyMs"), QJsonValue(300'000));
}

TEST_F(CloudUsageTest, AReportWithoutAStatusFailed)
{
    EXPECT_EQ(field(reported(1, std::nullopt), "status"), QJsonValue(u"failed"_s));
    EXPECT_EQ(field(reported(1, u""_s), "status"), QJsonValue(u""_s));
}

TEST_F(CloudUsageTest, TheOperationFollowsTheTranslationTarget)
{
    target = u"none"_s;
    EXPECT_EQ(field(reported(), "operation"), QJsonValue(u"polish"_s));
    target = u"japanese"_s;
    EXPECT_EQ(field(reported(), "operation"), QJsonValue(u"translation"_s));
}

TEST_F(CloudUsageTest, TheProviderIsTheHostOfItsUrl)
{
    preferences.setValue(keys::providerBaseURL, u"https://Models.Example.com:8443/v1"_s);
    EXPECT_EQ(field(reported(), "provider"), QJsonValue(u"models.example.com"_s));
    for (const QString& withoutHost : {u"/v1"_s, u""_s, u"models"_s, u"http://"_s}) {
        preferences.setValue(keys::providerBaseURL, withoutHost);
        EXPECT_EQ(field(reported(), "provider"), QJsonValue(u"local-openai-compatible"_s));
    }
}

TEST_F(CloudUsageTest, TheModelIsTheStoredOne)
{
    preferences.setValue(keys::providerModel, u"small"_s);
    EXPECT_EQ(field(reported(), "model"), QJsonValue(u"small"_s));
}

TEST_F(CloudUsageTest, TheProviderKeyIsNeverSent)
{
    preferences.setValue(keys::providerAPIKey, u"sk-secret"_s);
    reported();

    EXPECT_FALSE(request(0).body->contains("secret"));
}

TEST_F(CloudUsageTest, NothingIsReportedWithoutASession)
{
    report();
    run();

    EXPECT_TRUE(transport.requests().isEmpty());
}

TEST_F(CloudUsageTest, AReportWithOnlyARefreshTokenRefreshesFirst)
{
    preferences.setValue(keys::cloudRefreshToken, u"r"_s);
    willRefresh();
    transport.willAnswer(204);
    report();
    run();

    EXPECT_EQ(paths(), (QStringList{u"/v1/auth/refresh"_s, u"/v1/usage/report"_s}));
    EXPECT_EQ(header(1, "Authorization"), "Bearer new-access");
}

TEST_F(CloudUsageTest, AReportWithOnlyARefreshTokenAndTheFlagClearIsNotSent)
{
    preferences.setValue(keys::cloudRefreshToken, u"r"_s);
    report(1, u"success"_s, {}, false);
    run();

    EXPECT_TRUE(transport.requests().isEmpty());
}

TEST_F(CloudUsageTest, AFailedRefreshEndsTheReport)
{
    preferences.setValue(keys::cloudRefreshToken, u"r"_s);
    transport.willAnswer(500);
    report();
    run();

    EXPECT_EQ(paths(), (QStringList{u"/v1/auth/refresh"_s}));
    EXPECT_EQ(stored(keys::cloudRefreshToken), u"r"_s);
}

TEST_F(CloudUsageTest, A401RefreshesAndReportsOnceMore)
{
    storeSession(u"a"_s, u"r"_s);
    transport.willAnswer(401);
    willRefresh();
    transport.willAnswer(401);
    report();
    run();

    EXPECT_EQ(paths(),
        (QStringList{u"/v1/usage/report"_s, u"/v1/auth/refresh"_s, u"/v1/usage/report"_s}));
    EXPECT_EQ(header(2, "Authorization"), "Bearer new-access");
    EXPECT_EQ(field(body(2), "inputCharacters"), field(body(0), "inputCharacters"));
    EXPECT_NE(field(body(2), "requestId"), field(body(0), "requestId"));
}

TEST_F(CloudUsageTest, A401WithTheFlagClearIsIgnored)
{
    storeSession(u"a"_s, u"r"_s);
    transport.willAnswer(401);
    report(1, u"success"_s, {}, false);
    run();

    EXPECT_EQ(transport.requests().size(), 1);
}

TEST_F(CloudUsageTest, OtherOutcomesOfAReportAreIgnored)
{
    storeSession(u"a"_s, u"r"_s);
    for (const int status : {200, 403, 500}) {
        transport.willAnswer(status);
        report();
        run();
    }
    transport.willFail(HttpFailure::Unreachable);
    report();
    run();

    EXPECT_EQ(transport.requests().size(), 4);
    EXPECT_EQ(stored(keys::cloudAccessToken), u"a"_s);
}

// Update check

TEST_F(CloudUsageTest, TheUpdateCheckNeedsNoSession)
{
    storeSession(u"a"_s, u"r"_s);
    Received<Result<QJsonObject>> received;
    transport.willAnswer(200, R"({"build": 7})");
    api->checkForUpdateWithCompletion(received.completion());
    run();

    EXPECT_EQ(request(0),
        (HttpRequest{QUrl(u"https://cloud.test/v1/client/update"_s), "GET",
            {{"Content-Type", "application/json"}}, std::nullopt}));
    EXPECT_EQ(received.value().value(), (QJsonObject{{u"build"_s, 7}}));
}

TEST_F(CloudUsageTest, AFailedUpdateCheckIsItsError)
{
    Received<Result<QJsonObject>> received;
    transport.willAnswer(404, R"({"build": 7})");
    api->checkForUpdateWithCompletion(received.completion());
    run();

    EXPECT_EQ(received.value().error(), serviceError(404, uR"({"build": 7})"_s));
}

} // namespace
} // namespace tavrin
