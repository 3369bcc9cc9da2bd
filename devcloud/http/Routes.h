#pragma once

#include "devcloud/api/Problem.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tavrin::devcloud {

enum class Endpoint {
    Login,
    Register,
    RegistrationStart,
    RegistrationVerify,
    RegistrationComplete,
    Refresh,
    Me,
    Logout,
    Polish,
    Chat,
    UsageSummary,
    UsageReport,
    ClientUpdate,
};

struct Route {
    std::string_view method;
    std::string_view path;
    Endpoint endpoint;
};

std::span<const Route> routes();

/// The endpoint of a request, or the 404 or 405 to answer.
tl::expected<Endpoint, Problem> endpointFor(std::string_view method, std::string_view path);

/// What is known of a request before its body is read. A header given more than once has as many
/// values.
struct RequestHead {
    std::string_view method;
    std::string_view path;
    std::vector<std::string> contentLengths{};
    std::vector<std::string> contentTypes{};
    bool hasTransferEncoding = false;
    bool hasContentEncoding = false;
};

/// Why the body of a request must not even be read; the connection is closed after the answer, for
/// nobody knows where the next request would begin.
std::optional<Problem> refusalBeforeBody(const RequestHead& head);

} // namespace tavrin::devcloud
