#pragma once

#include "base/Error.h"

#include <QJsonObject>

#include <optional>

namespace tavrin {

/// What came of one request to the cloud service.
struct CloudResponse {
    /// The answer's JSON object, whatever its status; empty when the answer was anything else or
    /// there was none. Without value only when nothing was sent.
    std::optional<QJsonObject> object;

    int status = 0; ///< The HTTP status; 0 when no answer came.

    std::optional<Error> error; ///< Set unless the status is 200 to 299.

    friend bool operator==(const CloudResponse&, const CloudResponse&) = default;
};

} // namespace tavrin
