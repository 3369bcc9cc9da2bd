#include "platform/linux/speech/servers/ServerAddress.h"

using namespace Qt::StringLiterals;

namespace tavrin {

std::optional<QUrl> speechServerAddress(
    const QString& address, const QString& plain, const QString& encrypted)
{
    const QUrl url(address.trimmed(), QUrl::StrictMode);
    if (!url.isValid() || url.host().isEmpty())
        return std::nullopt;
    if (url.scheme() == encrypted || (url.scheme() == plain && isLoopback(url)))
        return url;
    return std::nullopt;
}

bool isLoopback(const QUrl& address)
{
    const QString host = address.host();
    return host == u"127.0.0.1"_s || host == u"::1"_s || host == u"localhost"_s;
}

QString shownAddress(const QUrl& address)
{
    return address.toString(QUrl::RemoveUserInfo | QUrl::RemoveQuery | QUrl::RemoveFragment);
}

} // namespace tavrin
