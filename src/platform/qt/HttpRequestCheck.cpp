#include "platform/qt/HttpRequestCheck.h"

#include "platform/HttpTransport.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

/// A token of RFC 9110.
bool isWord(const QByteArray& text)
{
    return !text.isEmpty() && std::ranges::all_of(text, [](char character) {
        return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z')
            || (character >= '0' && character <= '9')
            || QByteArrayView("!#$%&'*+-.^_`|~").contains(character);
    });
}

bool staysOnItsLine(const QByteArray& value)
{
    return std::ranges::none_of(value,
        [](char character) { return character == '\r' || character == '\n' || character == '\0'; });
}

} // namespace

bool isSendable(const HttpRequest& request)
{
    const QString scheme = request.url.scheme();
    return request.url.isValid() && (scheme == "https"_L1 || scheme == "http"_L1)
        && !request.url.host().isEmpty() && request.url.userInfo().isEmpty()
        && isWord(request.method) && std::ranges::all_of(request.headers, [](const auto& header) {
               return isWord(header.first) && staysOnItsLine(header.second);
           });
}

} // namespace tavrin
