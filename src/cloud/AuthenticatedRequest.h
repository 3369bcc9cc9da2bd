#pragma once

#include "cloud/TavrinAPI.h"

namespace tavrin {

/// A request that needs the session, and what is its own when there is none.
struct TavrinAPI::AuthenticatedRequest {
    QString path;
    QByteArray method;
    /// Made anew for the repeat.
    std::function<std::optional<QJsonObject>(const TavrinAPI&)> payload;
    Error notSignedIn;
    /// Whether an answer of 401 leads to a refresh even when no refresh token is stored, whose
    /// failure then takes the place of the service's answer.
    bool refreshesWithoutToken = true;
};

} // namespace tavrin
