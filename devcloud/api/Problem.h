#pragma once

#include "devcloud/api/Json.h"

#include <chrono>
#include <string>
#include <tl/expected.hpp>

namespace tavrin::devcloud {

/// Why a request is refused, ready to be answered: the client shows the message as it is, so it is
/// Simplified Chinese.
struct Problem {
    int status = 500;
    std::string message;
    std::chrono::seconds retryAfter{0}; ///< Sent as `Retry-After` when not zero.
};

/// What an endpoint answers: the JSON object of a 200, or the problem.
using Outcome = tl::expected<Json, Problem>;

inline tl::unexpected<Problem> refusal(int status, std::string message)
{
    return tl::unexpected(Problem{status, std::move(message), {}});
}

} // namespace tavrin::devcloud
