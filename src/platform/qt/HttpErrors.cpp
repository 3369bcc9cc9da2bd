#include "platform/qt/HttpErrors.h"

#include "platform/qt/HttpTexts.h"

#include <QLocale>

namespace tavrin {
namespace {

const LocalizedText& textFor(HttpFailure reason)
{
    switch (reason) {
    case HttpFailure::TimedOut:
        return texts::httpTimedOut;
    case HttpFailure::Insecure:
        return texts::httpInsecure;
    case HttpFailure::Cancelled:
        return texts::httpCancelled;
    case HttpFailure::TooLarge:
        return texts::httpTooLarge;
    case HttpFailure::Refused:
        return texts::httpRefused;
    case HttpFailure::Redirected:
        return texts::httpRedirected;
    case HttpFailure::Unreachable:
        break;
    }
    return texts::httpUnreachable;
}

QStringView inSystemLanguage(const LocalizedText& text)
{
    const QLocale locale = QLocale::system();
    if (locale.language() != QLocale::Chinese)
        return text.en;
    return locale.script() == QLocale::TraditionalHanScript ? text.zhHant : text.zhHans;
}

} // namespace

Error httpError(HttpFailure reason)
{
    return Error{httpTransportErrorDomain, static_cast<int>(reason),
        inSystemLanguage(textFor(reason)).toString()};
}

HttpFailure failureOf(QNetworkReply::NetworkError error)
{
    switch (error) {
    case QNetworkReply::SslHandshakeFailedError:
        return HttpFailure::Insecure;
    case QNetworkReply::TimeoutError:
    case QNetworkReply::ProxyTimeoutError:
        return HttpFailure::TimedOut;
    case QNetworkReply::OperationCanceledError:
        return HttpFailure::Cancelled;
    default:
        return HttpFailure::Unreachable;
    }
}

bool isStatusError(QNetworkReply::NetworkError error)
{
    // QtNetwork reports 400 and 418 as an invalid operation, and 407 of a server as a proxy's.
    return (error >= QNetworkReply::ContentAccessDenied
               && error <= QNetworkReply::UnknownContentError)
        || (error >= QNetworkReply::InternalServerError
            && error <= QNetworkReply::UnknownServerError)
        || error == QNetworkReply::ProtocolInvalidOperationError
        || error == QNetworkReply::ProxyAuthenticationRequiredError;
}

} // namespace tavrin
