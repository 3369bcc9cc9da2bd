#pragma once

namespace tavrin {

struct HttpRequest;

/// Whether @p request can be sent as it is: an HTTP address with a host and without credentials, a
/// method and header names that are plain words, and no value that could end its line.
[[nodiscard]] bool isSendable(const HttpRequest& request);

} // namespace tavrin
