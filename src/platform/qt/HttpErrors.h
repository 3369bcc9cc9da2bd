#pragma once

#include "base/Error.h"
#include "platform/HttpTransport.h"

#include <QNetworkReply>

namespace tavrin {

/// The error for @p reason, worded in the language of the system.
[[nodiscard]] Error httpError(HttpFailure reason);

/// What @p error of an exchange that brought no answer comes to.
[[nodiscard]] HttpFailure failureOf(QNetworkReply::NetworkError error);

/// Whether @p error only says that the answer's status is an error status.
[[nodiscard]] bool isStatusError(QNetworkReply::NetworkError error);

} // namespace tavrin
