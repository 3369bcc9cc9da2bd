#pragma once

#include "devcloud/api/Problem.h"
#include "devcloud/http/Routes.h"

#include <string>

namespace tavrin::devcloud {

/// One request, its body not yet looked at.
struct Call {
    Endpoint endpoint;
    std::string authorization; ///< The header's value; empty without one.
    std::string body;
    std::string address; ///< Of the other side.
};

/// What a call costs, which decides whom it may keep waiting.
enum class Effort {
    Quick, ///< Milliseconds.
    Password, ///< Tens of milliseconds of a processor and much memory.
    Model, ///< As long as a language model takes.
};

/// Answers what arrives. Called by any number of threads at once.
class RequestHandler {
public:
    RequestHandler() = default;
    RequestHandler(const RequestHandler&) = delete;
    RequestHandler& operator=(const RequestHandler&) = delete;
    virtual ~RequestHandler() = default;

    /// Never throws: what fails inside is answered as a 500 that tells nothing.
    virtual Outcome answer(const Call& call) = 0;

    [[nodiscard]] virtual Effort effortOf(Endpoint endpoint) const = 0;
};

} // namespace tavrin::devcloud
