#include "CloudFixture.h"
#include "base/LocalizedText.h"

#include <QJsonArray>

#include <functional>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

using TextOutcome = Received<Result<QString>>;

const QJsonObject application{{u"name"_s, u"Notes"_s}, {u"bundleId"_s, u"org.notes"_s},
    {u"windowHint"_s, u"Draft"_s}, {u"focusedRole"_s, u"text"_s}};

class CloudTextTest : public CloudFixture {
protected:
    TextOutcome outcome;

    void polish()
    {
        api->polish(u"嗯你好"_s, application, u"email"_s, u"none"_s, outcome.completion());
    }

    void chat() { api->chat(u"几点了"_s, u"Notes"_s, outcome.completion()); }
};

TEST_F(CloudTextTest, PolishSendsItsFourFieldsWithTheToken)
{
    storeSession(u"a"_s, u"r"_s);
    transport.willAnswer(200, R"({"text": "你好。"})");
    api->polish(u"嗯你好"_s, application, u"email"_s, u"japanese"_s, outcome.completion());
    run();

    EXPECT_EQ(request(0).url, QUrl(u"https://cloud.test/v1/text/polish"_s));
    EXPECT_EQ(request(0).method, "POST");
    EXPECT_EQ(header(0, "Authorization"), "Bearer a");
    EXPECT_EQ(body(0),
        (QJsonObject{{u"transcript"_s, u"嗯你好"_s}, {u"application"_s, application},
            {u"style"_s, u"email"_s}, {u"translation"_s, u"japanese"_s}}));
    EXPECT_EQ(outcome.value().value(), u"你好。"_s);
}

TEST_F(CloudTextTest, PolishFillsInWhatIsNotGiven)
{
    storeSession(u"a"_s, u"r"_s);
    transport.willAnswer(200, R"({"text": "x"})");
    api->polish({}, {}, std::nullopt, std::nullopt, outcome.completion());
    run();

    EXPECT_EQ(request(0).body,
        QByteArray(
            R"({"application":{},"style":"professional","transcript":"","translation":"none"})"));
}

TEST_F(CloudTextTest, AnEmptyStyleIsSentAsItIs)
{
    storeSession(u"a"_s, u"r"_s);
    transport.willAnswer(200, R"({"text": "x"})");
    api->polish({}, {}, u""_s, u""_s, outcome.completion());
    run();

    EXPECT_EQ(body(0).value("style"_L1), QJsonValue(u""_s));
    EXPECT_EQ(body(0).value("translation"_L1), QJsonValue(u""_s));
}

TEST_F(CloudTextTest, ChatSendsItsTwoFieldsWithTheToken)
{
    storeSession(u"a"_s, u"r"_s);
    transport.willAnswer(200, R"({"text": "三点。"})");
    chat();
    run();

    EXPECT_EQ(request(0).url, QUrl(u"https://cloud.test/v1/text/chat"_s));
    EXPECT_EQ(request(0).method, "POST");
    EXPECT_EQ(header(0, "Authorization"), "Bearer a");
    EXPECT_EQ(body(0), (QJsonObject{{u"transcript"_s, u"几点了"_s}, {u"context"_s, u"Notes"_s}}));
    EXPECT_EQ(outcome.value().value(), u"三点。"_s);
}

TEST_F(CloudTextTest, ChatSendsEmptyStringsForWhatIsNotGiven)
{
    storeSession(u"a"_s, u"r"_s);
    transport.willAnswer(200, R"({"text": "x"})");
    api->chat({}, {}, outcome.completion());
    run();

    EXPECT_EQ(request(0).body, QByteArray(R"({"context":"","transcript":""})"));
}

TEST_F(CloudTextTest, PolishAndChatRefreshASessionThatHasExpired)
{
    const auto expire = [this] {
        storeSession(u"a"_s, u"r"_s);
        transport.willAnswer(401, "expired");
        willRefresh();
        transport.willAnswer(200, R"({"text": "x"})");
    };
    TextOutcome polished;
    expire();
    api->polish(u"x"_s, {}, std::nullopt, std::nullopt, polished.completion());
    run();
    EXPECT_EQ(polished.value(), Result<QString>(u"x"_s));

    TextOutcome answered;
    expire();
    api->chat(u"x"_s, {}, answered.completion());
    run();
    EXPECT_EQ(answered.value(), Result<QString>(u"x"_s));
}

TEST_F(CloudTextTest, PolishWithoutASessionIsRefusedInChineseInEveryLanguage)
{
    for (const auto form : {&LocalizedText::zhHans, &LocalizedText::zhHant, &LocalizedText::en}) {
        language = form;
        TextOutcome answer;
        api->polish(u"x"_s, {}, {}, {}, answer.completion());

        EXPECT_EQ(answer.value().error(), clientError(401, u"请先登录 Tavrin 云端账号。"_s));
    }
    EXPECT_TRUE(transport.requests().isEmpty());
}

TEST_F(CloudTextTest, ChatWithoutASessionIsRefusedInTheInterfaceLanguage)
{
    const QList<std::pair<QStringView LocalizedText::*, QString>> forms{
        {&LocalizedText::zhHans, u"请先登录 Tavrin 云端账号。"_s},
        {&LocalizedText::zhHant, u"請先登入 Tavrin 雲端帳戶。"_s},
        {&LocalizedText::en, u"Sign in to Tavrin Cloud first."_s}};
    for (const auto& [form, message] : forms) {
        language = form;
        TextOutcome answer;
        api->chat(u"x"_s, {}, answer.completion());

        EXPECT_EQ(answer.value().error(), clientError(401, message));
    }
    EXPECT_TRUE(transport.requests().isEmpty());
}

TEST_F(CloudTextTest, PolishWithoutATextFailsInChineseInEveryLanguage)
{
    storeSession(u"a"_s, u"r"_s);
    for (const auto form : {&LocalizedText::zhHans, &LocalizedText::zhHant, &LocalizedText::en}) {
        language = form;
        TextOutcome answer;
        transport.willAnswer(200, "{}");
        api->polish(u"x"_s, {}, {}, {}, answer.completion());
        run();

        EXPECT_EQ(answer.value().error(), clientError(2, u"云端没有返回整理结果。"_s));
    }
}

TEST_F(CloudTextTest, ChatWithoutATextFailsInTheInterfaceLanguage)
{
    storeSession(u"a"_s, u"r"_s);
    const QList<std::pair<QStringView LocalizedText::*, QString>> forms{
        {&LocalizedText::zhHans, u"云端没有返回畅聊回答。"_s},
        {&LocalizedText::zhHant, u"雲端沒有返回暢聊回答。"_s},
        {&LocalizedText::en, u"Tavrin Cloud did not return a chat answer."_s}};
    for (const auto& [form, message] : forms) {
        language = form;
        TextOutcome answer;
        transport.willAnswer(200, "{}");
        api->chat(u"x"_s, {}, answer.completion());
        run();

        EXPECT_EQ(answer.value().error(), clientError(2, message));
    }
}

/// What holds for both operations alike.
struct Operation {
    const char* name;
    void (*start)(TavrinAPI&, bool retry, TavrinAPI::TextCompletion);
    QString path;
    QString notSignedIn;
    QString withoutText;
};

void PrintTo(const Operation& operation, std::ostream* out)
{
    *out << operation.name;
}

const Operation polishing{"Polish",
    [](TavrinAPI& api, bool retry, TavrinAPI::TextCompletion completion) {
        api.cloudPolish(
            u"嗯你好"_s, application, u"email"_s, u"none"_s, retry, std::move(completion));
    },
    u"/v1/text/polish"_s, u"请先登录 Tavrin 云端账号。"_s, u"云端没有返回整理结果。"_s};

const Operation chatting{"Chat",
    [](TavrinAPI& api, bool retry, TavrinAPI::TextCompletion completion) {
        api.cloudChat(u"几点了"_s, u"Notes"_s, retry, std::move(completion));
    },
    u"/v1/text/chat"_s, u"请先登录 Tavrin 云端账号。"_s, u"云端没有返回畅聊回答。"_s};

class TextOperationTest : public CloudFixture, public ::testing::WithParamInterface<Operation> {
protected:
    TextOutcome outcome;
    const Operation& operation = GetParam();

    void start(bool retry = true) { operation.start(*api, retry, outcome.completion()); }

    QStringList repeated() const { return {operation.path, u"/v1/auth/refresh"_s, operation.path}; }
};

INSTANTIATE_TEST_SUITE_P(Both, TextOperationTest, ::testing::Values(polishing, chatting));

TEST_P(TextOperationTest, TheAnswerIsTrimmedAndOtherwiseLeftAlone)
{
    storeSession(u"a"_s, u"r"_s);
    transport.willAnswer(200, R"({"text": " \t\u3000\u00a0 一  二\n\n三 \r\n"})");
    start();
    run();

    EXPECT_EQ(outcome.value().value(), u"一  二\n\n三"_s);
}

TEST_P(TextOperationTest, ALongAnswerIsNotCut)
{
    storeSession(u"a"_s, u"r"_s);
    transport.willAnswer(200, R"({"text": ")" + QByteArray(1'000'000, 'x') + R"("})");
    start();
    run();

    EXPECT_EQ(outcome.value()->size(), 1'000'000);
}

TEST_P(TextOperationTest, AnswersWithoutATextFail)
{
    storeSession(u"a"_s, u"r"_s);
    for (const QByteArray answer :
        {"", "{}", "[]", "no", R"({"text": ""})", R"({"text": " \n\t\u2028"})", R"({"text": 5})",
            R"({"text": null})", R"({"text": ["x"]})", R"({"text": {"text": "x"}})",
            R"({"text": true})", R"({"Text": "x"})", "{\"text\": \"\xff\"}"}) {
        TextOutcome each;
        transport.willAnswer(200, answer);
        operation.start(*api, true, each.completion());
        run();

        EXPECT_EQ(each.value().error(), clientError(2, operation.withoutText)) << answer.data();
    }
}

TEST_P(TextOperationTest, AServiceErrorReachesTheUserUnchanged)
{
    storeSession(u"a"_s, u"r"_s);
    for (int status = 100; status <= 599; ++status) {
        if ((status >= 200 && status <= 299) || status == 401)
            continue;
        TextOutcome each;
        transport.willAnswer(status, R"({"error": {"message": "额度用完"}, "text": "x"})");
        operation.start(*api, true, each.completion());
        run();

        EXPECT_EQ(each.value().error(), serviceError(status, u"额度用完"_s));
    }
    EXPECT_FALSE(paths().contains(u"/v1/auth/refresh"_s));
    EXPECT_EQ(stored(keys::cloudAccessToken), u"a"_s);
}

TEST_P(TextOperationTest, ATransportErrorIsNotRetried)
{
    storeSession(u"a"_s, u"r"_s);
    transport.willFail(HttpFailure::TimedOut);
    start();
    run();

    EXPECT_EQ(
        outcome.value().error(), testing::InMemoryHttpTransport::error(HttpFailure::TimedOut));
    EXPECT_EQ(transport.requests().size(), 1);
}

TEST_P(TextOperationTest, A401RefreshesAndRepeatsTheSameBodyOnce)
{
    storeSession(u"a"_s, u"r"_s);
    transport.willAnswer(401, "expired");
    willRefresh();
    transport.willAnswer(200, R"({"text": "x"})");
    start();
    run();

    EXPECT_EQ(paths(), repeated());
    EXPECT_EQ(request(2).body, request(0).body);
    EXPECT_EQ(header(2, "Authorization"), "Bearer new-access");
    EXPECT_EQ(outcome.value().value(), u"x"_s);
}

TEST_P(TextOperationTest, ASecond401IsFinal)
{
    storeSession(u"a"_s, u"r"_s);
    transport.willAnswer(401, "first");
    willRefresh();
    transport.willAnswer(401, R"({"error": {"message": "second"}})");
    start();
    run();

    EXPECT_EQ(paths(), repeated());
    EXPECT_EQ(outcome.value().error(), serviceError(401, u"second"_s));
    EXPECT_EQ(stored(keys::cloudRefreshToken), u"new-refresh"_s);
}

TEST_P(TextOperationTest, A401WithoutARefreshTokenAsksToSignInAgain)
{
    preferences.setValue(keys::cloudAccessToken, u"a"_s);
    transport.willAnswer(401, "expired");
    start();
    run();

    EXPECT_EQ(outcome.value().error(), clientError(401, u"登录已失效，请重新登录。"_s));
    EXPECT_EQ(transport.requests().size(), 1);
    EXPECT_EQ(stored(keys::cloudAccessToken), u"a"_s);
}

TEST_P(TextOperationTest, A401WithTheFlagClearIsTheServicesError)
{
    storeSession(u"a"_s, u"r"_s);
    transport.willAnswer(401, "expired");
    start(false);
    run();

    EXPECT_EQ(outcome.value().error(), serviceError(401, u"expired"_s));
    EXPECT_EQ(transport.requests().size(), 1);
}

TEST_P(TextOperationTest, ARefusedRefreshIsTheErrorAndEndsTheSession)
{
    storeSession(u"a"_s, u"r"_s);
    transport.willAnswer(401, "expired");
    transport.willAnswer(401, "revoked");
    start();
    run();

    EXPECT_EQ(outcome.value().error(), serviceError(401, u"revoked"_s));
    EXPECT_EQ(transport.requests().size(), 2);
    EXPECT_TRUE(signedOut());
}

TEST_P(TextOperationTest, ARefreshThatFailsOtherwiseIsTheErrorAndKeepsTheSession)
{
    storeSession(u"a"_s, u"r"_s);
    transport.willAnswer(401, "expired");
    transport.willFail(HttpFailure::Unreachable);
    start();
    run();

    EXPECT_EQ(outcome.value().error().code, static_cast<int>(HttpFailure::Unreachable));
    EXPECT_EQ(stored(keys::cloudAccessToken), u"a"_s);
    EXPECT_EQ(stored(keys::cloudRefreshToken), u"r"_s);
}

TEST_P(TextOperationTest, OnlyARefreshTokenIsExchangedFirst)
{
    preferences.setValue(keys::cloudRefreshToken, u"r"_s);
    willRefresh();
    transport.willAnswer(200, R"({"text": "x"})");
    start();
    run();

    EXPECT_EQ(paths(), (QStringList{u"/v1/auth/refresh"_s, operation.path}));
    EXPECT_EQ(header(1, "Authorization"), "Bearer new-access");
    EXPECT_EQ(outcome.value().value(), u"x"_s);
}

TEST_P(TextOperationTest, A401AfterTheFirstExchangeIsFinal)
{
    preferences.setValue(keys::cloudRefreshToken, u"r"_s);
    willRefresh();
    transport.willAnswer(401, "no");
    start();
    run();

    EXPECT_EQ(outcome.value().error(), serviceError(401, u"no"_s));
    EXPECT_EQ(transport.requests().size(), 2);
}

TEST_P(TextOperationTest, AFailedExchangeIsTheError)
{
    preferences.setValue(keys::cloudRefreshToken, u"r"_s);
    transport.willAnswer(500, "broken");
    start();
    run();

    EXPECT_EQ(outcome.value().error(), serviceError(500, u"broken"_s));
    EXPECT_EQ(transport.requests().size(), 1);
}

TEST_P(TextOperationTest, AnExchangeWithoutAnAccessTokenLeavesNobodySignedIn)
{
    preferences.setValue(keys::cloudRefreshToken, u"r"_s);
    transport.willAnswer(200, "{}");
    start();
    run();

    EXPECT_EQ(outcome.value().error(), clientError(401, operation.notSignedIn));
    EXPECT_EQ(transport.requests().size(), 1);
}

TEST_P(TextOperationTest, OnlyARefreshTokenWithTheFlagClearIsNoSession)
{
    preferences.setValue(keys::cloudRefreshToken, u"r"_s);
    start(false);

    EXPECT_EQ(outcome.value().error(), clientError(401, operation.notSignedIn));
    EXPECT_TRUE(transport.requests().isEmpty());
}

TEST_P(TextOperationTest, TokensAreReadAfreshForEveryCall)
{
    storeSession(u"a"_s, u"r"_s);
    transport.willAnswer(200, R"({"text": "x"})");
    start();
    run();
    preferences.setValue(keys::cloudAccessToken, u"b"_s);
    TextOutcome second;
    transport.willAnswer(200, R"({"text": "x"})");
    operation.start(*api, true, second.completion());
    run();

    EXPECT_EQ(header(1, "Authorization"), "Bearer b");
}

TEST_P(TextOperationTest, SeveralMayRunAtOnce)
{
    storeSession(u"a"_s, u"r"_s);
    TextOutcome second;
    start();
    operation.start(*api, true, second.completion());
    transport.answer(200, R"({"text": "1"})");
    transport.answer(200, R"({"text": "2"})");

    EXPECT_EQ(outcome.value().value(), u"1"_s);
    EXPECT_EQ(second.value().value(), u"2"_s);
}

TEST_P(TextOperationTest, ItsAnswerMayOutliveTheClient)
{
    storeSession(u"a"_s, u"r"_s);
    start();
    api.reset();
    transport.answer(200, R"({"text": "x"})");

    EXPECT_EQ(outcome.value().value(), u"x"_s);
}

TEST_P(TextOperationTest, TheTransportsEndCompletesIt)
{
    storeSession(u"a"_s, u"r"_s);
    TextOutcome answer;
    {
        testing::InMemoryHttpTransport network(time);
        TavrinAPI client(network, preferences, systemInfo,
            {[](const LocalizedText& text) { return text.en.toString(); }, [] { return QString(); },
                u"https://cloud.test"_s});
        operation.start(client, true, answer.completion());
    }

    EXPECT_EQ(answer.value().error().code, static_cast<int>(HttpFailure::Cancelled));
}

} // namespace
} // namespace tavrin
