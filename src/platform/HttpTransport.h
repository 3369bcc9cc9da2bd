#pragma once

#include "base/Completion.h"
#include "base/Result.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QUrl>

#include <optional>
#include <utility>

namespace tavrin {

struct HttpRequest {
    QUrl url;
    QByteArray method; ///< "GET", "POST".
    QList<std::pair<QByteArray, QByteArray>> headers;
    std::optional<QByteArray> body;

    friend bool operator==(const HttpRequest&, const HttpRequest&) = default;
};

struct HttpResponse {
    int status = 0; ///< 100 to 599.
    QByteArray body;

    friend bool operator==(const HttpResponse&, const HttpResponse&) = default;
};

/// Sends HTTP requests over connections that are kept for the next one.
///
/// Main thread only; the completion runs there too, exactly once in every case and never before
/// send() has returned (at the latest when the transport is destroyed, as Cancelled). Any status
/// is a response; an Error means that there was none. A request gives up after 90 s without data
/// and 120 s in all. Answers over 8 MiB are refused. Certificates are checked. A redirect is
/// followed only within its origin.
class HttpTransport {
public:
    using ResponseCompletion = Completion<Result<HttpResponse>>;

    virtual ~HttpTransport() = default;

    virtual void send(const HttpRequest& request, ResponseCompletion completion) = 0;
};

/// Domain of the errors that a transport makes itself; their codes are those of HttpFailure.
inline const QString httpTransportErrorDomain = QStringLiteral("TavrinHttp");

enum class HttpFailure {
    Unreachable = 1, ///< No network, no such host, connection refused or cut.
    TimedOut = 2,
    Insecure = 3, ///< The certificate does not hold.
    Cancelled = 4,
    TooLarge = 5,
    Refused = 6, ///< The request cannot be sent as it is: a header with a line break, a bad URL.
    Redirected = 7, ///< The server pointed to another origin.
};

} // namespace tavrin
