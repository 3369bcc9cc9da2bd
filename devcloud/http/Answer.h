#pragma once

#include "devcloud/api/Problem.h"

#include <chrono>
#include <string>

namespace tavrin::devcloud {

/// What goes back to a client: a status and a JSON object.
struct Answer {
    int status = 500;
    std::string body;
    std::chrono::seconds retryAfter{0}; ///< Sent as `Retry-After` when not zero.
};

Answer answerFor(const Outcome& outcome);
Answer answerFor(const Problem& problem);

} // namespace tavrin::devcloud
