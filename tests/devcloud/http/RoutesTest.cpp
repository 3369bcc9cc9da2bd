#include "devcloud/http/Routes.h"

#include "devcloud/api/RequestBody.h"

#include <gtest/gtest.h>

namespace tavrin::devcloud {
namespace {

int refusalOf(const RequestHead& head)
{
    const auto problem = refusalBeforeBody(head);
    return problem ? problem->status : 200;
}

RequestHead post(std::vector<std::string> lengths, std::vector<std::string> types)
{
    return {"POST", "/v1/auth/login", std::move(lengths), std::move(types)};
}

TEST(RoutesTest, KnowsEveryEndpointByMethodAndPath)
{
    EXPECT_EQ(routes().size(), 13U);
    EXPECT_EQ(endpointFor("POST", "/v1/auth/login"), Endpoint::Login);
    EXPECT_EQ(endpointFor("POST", "/v1/auth/register"), Endpoint::Register);
    EXPECT_EQ(endpointFor("POST", "/v1/auth/registration/start"), Endpoint::RegistrationStart);
    EXPECT_EQ(endpointFor("POST", "/v1/auth/registration/verify"), Endpoint::RegistrationVerify);
    EXPECT_EQ(
        endpointFor("POST", "/v1/auth/registration/complete"), Endpoint::RegistrationComplete);
    EXPECT_EQ(endpointFor("POST", "/v1/auth/refresh"), Endpoint::Refresh);
    EXPECT_EQ(endpointFor("GET", "/v1/auth/me"), Endpoint::Me);
    EXPECT_EQ(endpointFor("POST", "/v1/auth/logout"), Endpoint::Logout);
    EXPECT_EQ(endpointFor("POST", "/v1/text/polish"), Endpoint::Polish);
    EXPECT_EQ(endpointFor("POST", "/v1/text/chat"), Endpoint::Chat);
    EXPECT_EQ(endpointFor("GET", "/v1/usage/summary"), Endpoint::UsageSummary);
    EXPECT_EQ(endpointFor("POST", "/v1/usage/report"), Endpoint::UsageReport);
    EXPECT_EQ(endpointFor("GET", "/v1/client/update"), Endpoint::ClientUpdate);
}

TEST(RoutesTest, UnknownPathsAndMethodsAreRefused)
{
    EXPECT_EQ(refusalOf({"GET", "/"}), 404);
    EXPECT_EQ(refusalOf({"GET", "/v1/auth/me/"}), 404);
    EXPECT_EQ(refusalOf({"GET", "/V1/auth/me"}), 404);
    EXPECT_EQ(refusalOf({"POST", "/v1/auth/me"}), 405);
    EXPECT_EQ(refusalOf({"HEAD", "/v1/auth/me"}), 405);
    EXPECT_EQ(refusalOf({"OPTIONS", "/v1/auth/login"}), 405);
    EXPECT_EQ(refusalOf({"GET", "/v1/auth/me"}), 200);
}

TEST(RoutesTest, BodiesMustBeJsonOfAnnouncedLength)
{
    const std::vector<std::string> json{"application/json"};
    EXPECT_EQ(refusalOf(post({"2"}, json)), 200);
    EXPECT_EQ(refusalOf(post({"2"}, {"Application/JSON; charset=utf-8"})), 200);
    EXPECT_EQ(refusalOf(post({std::to_string(maxBodyBytes)}, json)), 200);
    EXPECT_EQ(refusalOf(post({std::to_string(maxBodyBytes + 1)}, json)), 413);
    EXPECT_EQ(refusalOf(post({"99999999999999999999999"}, json)), 413);
    for (const char* length : {"", "-1", "+1", "0x10", "1 ", " 1", "1,1", "1.0", "two"})
        EXPECT_EQ(refusalOf(post({length}, json)), 400) << length;
    EXPECT_EQ(refusalOf(post({"2", "3"}, json)), 400);
    EXPECT_EQ(refusalOf(post({"2"}, {"text/plain"})), 415);
    EXPECT_EQ(refusalOf(post({"2"}, {"application/json", "text/plain"})), 415);
    EXPECT_EQ(refusalOf(post({"2"}, {"application/jsonp"})), 415);
    EXPECT_EQ(refusalOf(post({"2"}, {})), 415);
    EXPECT_EQ(refusalOf(post({"0"}, {})), 200);
}

TEST(RoutesTest, BodiesOfUnknownLengthOrCodingAreNotRead)
{
    RequestHead chunked = post({}, {"application/json"});
    chunked.hasTransferEncoding = true;
    EXPECT_EQ(refusalOf(chunked), 411);
    RequestHead packed = post({"2"}, {"application/json"});
    packed.hasContentEncoding = true;
    EXPECT_EQ(refusalOf(packed), 415);
    EXPECT_EQ(refusalOf({"GET", "/v1/auth/me", {"5"}, {"application/json"}}), 400);
    EXPECT_EQ(refusalOf({"GET", "/v1/auth/me", {}, {"application/json"}}), 200);
}

} // namespace
} // namespace tavrin::devcloud
