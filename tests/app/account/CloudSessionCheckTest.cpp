#include "app/account/CloudSessionCheck.h"

#include "app/FakePanels.h"
#include "base/LocalizedText.h"
#include "cloud/TavrinAPI.h"
#include "platform/preferences/PreferenceKeys.h"
#include "support/QtPrinters.h"
#include "support/ports/InMemoryHttpTransport.h"
#include "support/ports/InMemoryPreferences.h"
#include "support/ports/InMemorySystemInfo.h"
#include "support/ports/VirtualTime.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>

using namespace std::chrono_literals;

namespace tavrin {
namespace {

class CloudSessionCheckTest : public ::testing::Test {
protected:
    testing::VirtualTime time;
    testing::InMemoryPreferences preferences;
    testing::InMemorySystemInfo systemInfo;
    testing::InMemoryHttpTransport http{time};
    testing::FakeAccountPanel account;
    TavrinAPI api{http, preferences, systemInfo,
        {.localize = [](const LocalizedText& text) { return text.en.toString(); },
            .translationTarget = [] { return QString(); }}};
    std::optional<CloudSessionCheck> check{
        std::in_place, CloudSessionCheck::Neighbours{account, api, time, preferences}};

    void TearDown() override { EXPECT_EQ(time.pending(), 0U); }

    void signIn()
    {
        preferences.setValue(keys::cloudAccessToken, "access");
        preferences.setValue(keys::cloudAccountEmail, "someone@example.org");
        preferences.synchronize();
    }

    /// Validates with the service's answer still to come.
    void ask()
    {
        check->validateStoredSession();
        time.advance(0s);
        ASSERT_EQ(http.open(), 1);
    }

    bool isSignedIn() const
    {
        return preferences.value(keys::cloudAccessToken).isValid()
            && preferences.value(keys::cloudAccountEmail).isValid();
    }

    /// Nothing of the session is left, nor would it come back after a crash.
    bool isSignedOut() const
    {
        const QStringList all{
            keys::cloudAccessToken, keys::cloudRefreshToken, keys::cloudAccountEmail};
        return std::ranges::none_of(all, [this](const QString& key) {
            return preferences.value(key).isValid() || preferences.flushed(key).isValid();
        });
    }
};

TEST_F(CloudSessionCheckTest, NobodySignedInMeansNothingToAsk)
{
    check->validateStoredSession();
    time.advance(0s);

    EXPECT_TRUE(http.requests().isEmpty());
    EXPECT_EQ(account.refreshes, 0);
}

TEST_F(CloudSessionCheckTest, AValidSessionStaysAndThePageIsRedrawn)
{
    signIn();
    ask();
    EXPECT_EQ(account.refreshes, 0);
    http.answer(200, "{}");
    time.advance(0s);

    EXPECT_TRUE(isSignedIn());
    EXPECT_EQ(account.refreshes, 1);
}

TEST_F(CloudSessionCheckTest, A401SignsOutSilentlyAndForGood)
{
    signIn();
    ask();
    http.answer(401, R"({"error": {"message": "gone"}})");
    time.advance(0s);

    EXPECT_TRUE(isSignedOut());
    EXPECT_EQ(account.refreshes, 1);
}

TEST_F(CloudSessionCheckTest, A403SignsOutToo)
{
    signIn();
    ask();
    http.answer(403);
    time.advance(0s);

    EXPECT_TRUE(isSignedOut());
    EXPECT_EQ(account.refreshes, 1);
}

TEST_F(CloudSessionCheckTest, AnotherStatusKeepsTheSession)
{
    for (const int status : {400, 404, 500, 503}) {
        signIn();
        ask();
        http.answer(status);
        time.advance(0s);
        EXPECT_TRUE(isSignedIn()) << status;
    }
    EXPECT_EQ(account.refreshes, 4);
}

TEST_F(CloudSessionCheckTest, AFailureOfTheNetworkKeepsTheSession)
{
    for (const HttpFailure reason :
        {HttpFailure::Unreachable, HttpFailure::TimedOut, HttpFailure::Insecure}) {
        signIn();
        ask();
        http.fail(reason);
        time.advance(0s);
        EXPECT_TRUE(isSignedIn());
    }
    EXPECT_EQ(account.refreshes, 3);
}

TEST_F(CloudSessionCheckTest, ARefreshThatIsRefusedSignsOut)
{
    preferences.setValue(keys::cloudRefreshToken, "refresh");
    preferences.synchronize();
    ask();
    EXPECT_EQ(http.requests().last().url.path(), "/v1/auth/refresh");
    http.answer(401);
    time.advance(0s);

    EXPECT_TRUE(isSignedOut());
    EXPECT_EQ(account.refreshes, 1);
}

TEST_F(CloudSessionCheckTest, AnAnswerAfterTheChecksEndIsDropped)
{
    signIn();
    ask();
    http.answer(401);
    check.reset();
    time.advance(0s);

    EXPECT_EQ(account.refreshes, 0);
}

} // namespace
} // namespace tavrin
