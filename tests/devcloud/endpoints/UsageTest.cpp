#include "devcloud/UpdateFile.h"
#include "devcloud/support/ServiceTest.h"

namespace tavrin::devcloud {
namespace {

class UsageTest : public testing::ServiceTest {
protected:
    UsageTest() { token = signIn()["accessToken"]; }

    static Json report(const std::string& id)
    {
        return {{"requestId", id}, {"operation", "translation"}, {"provider", "example.org"},
            {"model", "some-model"}, {"inputCharacters", 10}, {"outputCharacters", 20},
            {"audioSeconds", 0}, {"latencyMs", 1500}, {"status", "success"}};
    }

    Json reported() { return call(Endpoint::UsageSummary, {}, token).value()["reported"]; }

    std::string token;
};

TEST_F(UsageTest, ReportsAreSummed)
{
    EXPECT_EQ(statusOf(call(Endpoint::UsageReport, report("one"), token)), 200);
    Json failed = report("two");
    failed["status"] = "failed";
    failed["errorCode"] = "timeout";
    EXPECT_EQ(statusOf(call(Endpoint::UsageReport, failed, token)), 200);

    EXPECT_EQ(
        reported(), (Json{{"requests", 2}, {"inputCharacters", 20}, {"outputCharacters", 40}}));
}

TEST_F(UsageTest, ARepeatedReportCountsOnce)
{
    call(Endpoint::UsageReport, report("same"), token);
    EXPECT_EQ(statusOf(call(Endpoint::UsageReport, report("same"), token)), 200);

    EXPECT_EQ(reported()["requests"], 1);
}

TEST_F(UsageTest, EveryFieldOfAReportIsChecked)
{
    const Json good = report("one");
    for (const auto& field : good.items()) {
        Json without = good;
        without.erase(field.key());
        EXPECT_EQ(statusOf(call(Endpoint::UsageReport, without, token)), 400) << field.key();
        Json wrong = good;
        wrong[field.key()] = Json::array();
        EXPECT_EQ(statusOf(call(Endpoint::UsageReport, wrong, token)), 400) << field.key();
    }
    Json tooLong = good;
    tooLong["latencyMs"] = 300'001;
    EXPECT_EQ(statusOf(call(Endpoint::UsageReport, tooLong, token)), 422);
    EXPECT_EQ(statusOf(call(Endpoint::UsageReport, report(""), token)), 422);
    EXPECT_EQ(reported()["requests"], 0);
}

TEST_F(UsageTest, TheDefaultOffersNoNewerClient)
{
    const Json update = call(Endpoint::ClientUpdate, {}).value();

    EXPECT_EQ(
        update, (Json{{"build", 1}, {"version", "0.8.0"}, {"downloadUrl", ""}, {"notes", ""}}));
}

TEST(UpdateFileTest, AnOfferNeedsBuildVersionAndHttps)
{
    const auto offer = parseUpdateOffer(
        R"({"build":7,"version":"0.9.0","downloadUrl":"https://example.org/a","notes":"新"})");
    ASSERT_TRUE(offer);
    EXPECT_EQ(offer->build, 7);
    EXPECT_EQ(offer->version, "0.9.0");
    EXPECT_EQ(offer->downloadUrl, "https://example.org/a");
    EXPECT_EQ(offer->notes, "新");

    for (const char* text :
        {"", "[]", "{}", R"({"build":"7","version":"1","downloadUrl":"https://a"})",
            R"({"build":7,"version":"1","downloadUrl":"http://a"})",
            R"({"build":7,"downloadUrl":"https://a"})"})
        EXPECT_FALSE(parseUpdateOffer(text)) << text;
}

} // namespace
} // namespace tavrin::devcloud
