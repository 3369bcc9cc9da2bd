#include "platform/qt/HttpErrors.h"

#include "base/LocalizedText.h"

#include <QLocale>

namespace tavrin {
namespace {

constexpr LocalizedText textFor(HttpFailure reason)
{
    switch (reason) {
    case HttpFailure::TimedOut:
        return LocalizedText{u"请求超时。", u"請求逾時。", u"The request timed out."};
    case HttpFailure::Insecure:
        return LocalizedText{u"无法与服务器建立安全连接：证书无效。",
            u"無法與伺服器建立安全連線：憑證無效。",
            u"No secure connection: the server's certificate is not valid."};
    case HttpFailure::Cancelled:
        return LocalizedText{u"请求已取消。", u"請求已取消。", u"The request was cancelled."};
    case HttpFailure::TooLarge:
        return LocalizedText{u"服务器返回的数据过大。", u"伺服器傳回的資料過大。",
            u"The server's answer is too large."};
    case HttpFailure::Refused:
        return LocalizedText{u"请求无效，未发送。", u"請求無效，未傳送。",
            u"The request is not valid and was not sent."};
    case HttpFailure::Redirected:
        return LocalizedText{u"服务器要求转到其他地址，已拒绝。",
            u"伺服器要求轉到其他位址，已拒絕。",
            u"The server pointed to another address, which was refused."};
    case HttpFailure::Unreachable:
        break;
    }
    return LocalizedText{u"无法连接到服务器，请检查网络。", u"無法連線到伺服器，請檢查網路。",
        u"The server cannot be reached. Check the network."};
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
