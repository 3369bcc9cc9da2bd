#include "devcloud/http/Routes.h"

#include "devcloud/api/Messages.h"
#include "devcloud/api/RequestBody.h"
#include "devcloud/text/Ascii.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace tavrin::devcloud {
namespace {

constexpr std::array<Route, 13> allRoutes{{
    {"POST", "/v1/auth/login", Endpoint::Login},
    {"POST", "/v1/auth/register", Endpoint::Register},
    {"POST", "/v1/auth/registration/start", Endpoint::RegistrationStart},
    {"POST", "/v1/auth/registration/verify", Endpoint::RegistrationVerify},
    {"POST", "/v1/auth/registration/complete", Endpoint::RegistrationComplete},
    {"POST", "/v1/auth/refresh", Endpoint::Refresh},
    {"GET", "/v1/auth/me", Endpoint::Me},
    {"POST", "/v1/auth/logout", Endpoint::Logout},
    {"POST", "/v1/text/polish", Endpoint::Polish},
    {"POST", "/v1/text/chat", Endpoint::Chat},
    {"GET", "/v1/usage/summary", Endpoint::UsageSummary},
    {"POST", "/v1/usage/report", Endpoint::UsageReport},
    {"GET", "/v1/client/update", Endpoint::ClientUpdate},
}};

Problem problem(int status, const char* message)
{
    return {status, message, {}};
}

/// The announced length of the body, 0 without one; the problem when it is none or too much.
tl::expected<std::size_t, Problem> bodyLength(const RequestHead& head)
{
    if (head.contentLengths.empty())
        return 0;
    const std::string& text = head.contentLengths.front();
    std::size_t length = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), length);
    const bool isNumber = !text.empty() && end == text.data() + text.size();
    if (head.contentLengths.size() > 1 || !isNumber)
        return refusal(400, messages::headersInvalid);
    if (error == std::errc::result_out_of_range || length > maxBodyBytes)
        return refusal(413, messages::bodyTooLarge);
    return length;
}

bool isJson(std::string_view contentType)
{
    const std::string_view type = contentType.substr(0, contentType.find(';'));
    return lowerAscii(trimmedAscii(type)) == "application/json";
}

} // namespace

std::span<const Route> routes()
{
    return allRoutes;
}

tl::expected<Endpoint, Problem> endpointFor(std::string_view method, std::string_view path)
{
    bool pathIsKnown = false;
    for (const Route& route : allRoutes) {
        if (route.path != path)
            continue;
        if (route.method == method)
            return route.endpoint;
        pathIsKnown = true;
    }
    return pathIsKnown ? refusal(405, messages::methodWrong) : refusal(404, messages::pathUnknown);
}

std::optional<Problem> refusalBeforeBody(const RequestHead& head)
{
    if (const auto endpoint = endpointFor(head.method, head.path); !endpoint)
        return endpoint.error();
    // Without a length up front a body could grow without end.
    if (head.hasTransferEncoding)
        return problem(411, messages::bodyLengthMissing);
    const auto length = bodyLength(head);
    if (!length)
        return length.error();
    if (head.method == "GET" && *length > 0)
        return problem(400, messages::headersInvalid);
    if (head.hasContentEncoding)
        return problem(415, messages::contentTypeWrong);
    // A page in a browser cannot send this type to another origin without asking first.
    const bool typeFits =
        head.contentTypes.empty() ? *length == 0 : std::ranges::all_of(head.contentTypes, isJson);
    if (!typeFits)
        return problem(415, messages::contentTypeWrong);
    return std::nullopt;
}

} // namespace tavrin::devcloud
