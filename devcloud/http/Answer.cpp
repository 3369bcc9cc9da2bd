#include "devcloud/http/Answer.h"

namespace tavrin::devcloud {
namespace {

std::string printed(const Json& body)
{
    return body.dump(-1, ' ', false, Json::error_handler_t::replace);
}

} // namespace

Answer answerFor(const Problem& problem)
{
    return {
        problem.status, printed({{"error", {{"message", problem.message}}}}), problem.retryAfter};
}

Answer answerFor(const Outcome& outcome)
{
    return outcome ? Answer{200, printed(*outcome), {}} : answerFor(outcome.error());
}

} // namespace tavrin::devcloud
