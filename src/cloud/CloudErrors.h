#pragma once

#include "base/Error.h"
#include "cloud/CloudTexts.h"
#include "cloud/TavrinAPI.h"

namespace tavrin::cloud {

inline constexpr int notSignedInCode = 401;
inline constexpr int unauthorizedStatus = 401;

[[nodiscard]] inline Error clientError(int code, const QString& message)
{
    return Error{cloudClientErrorDomain, code, message};
}

[[nodiscard]] inline Error notSignedIn(const SimplifiedText& message)
{
    return clientError(notSignedInCode, message.toString());
}

/// The outcome of an operation that ended before anything was sent.
[[nodiscard]] inline CloudResponse unsent(const Error& error)
{
    return CloudResponse{std::nullopt, 0, error};
}

/// What is left to say when the client has gone while its request ran.
[[nodiscard]] inline Error cancelled()
{
    return Error{httpTransportErrorDomain, static_cast<int>(HttpFailure::Cancelled),
        texts::requestCancelled.toString()};
}

} // namespace tavrin::cloud
