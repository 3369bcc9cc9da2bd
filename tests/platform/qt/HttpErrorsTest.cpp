#include "platform/qt/HttpErrors.h"

#include "support/QtPrinters.h"

#include <QLocale>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

TEST(HttpErrorsTest, AMessageIsReadyToBeShownInTheLanguageOfTheSystem)
{
    ASSERT_NE(QLocale::system().language(), QLocale::Chinese); // The tests run without a locale.
    for (const auto& [reason, message] :
        {std::pair(HttpFailure::Unreachable, u"The server cannot be reached. Check the network."_s),
            std::pair(HttpFailure::TimedOut, u"The request timed out."_s),
            std::pair(HttpFailure::Insecure,
                u"No secure connection: the server's certificate is not valid."_s),
            std::pair(HttpFailure::Cancelled, u"The request was cancelled."_s),
            std::pair(HttpFailure::TooLarge, u"The server's answer is too large."_s),
            std::pair(HttpFailure::Refused, u"The request is not valid and was not sent."_s),
            std::pair(HttpFailure::Redirected,
                u"The server pointed to another address, which was refused."_s)})
        EXPECT_EQ(httpError(reason),
            (Error{httpTransportErrorDomain, static_cast<int>(reason), message}));
}

TEST(HttpErrorsTest, WhatTheNetworkReportsHasItsKind)
{
    EXPECT_EQ(failureOf(QNetworkReply::TimeoutError), HttpFailure::TimedOut);
    EXPECT_EQ(failureOf(QNetworkReply::ProxyTimeoutError), HttpFailure::TimedOut);
    EXPECT_EQ(failureOf(QNetworkReply::SslHandshakeFailedError), HttpFailure::Insecure);
    EXPECT_EQ(failureOf(QNetworkReply::OperationCanceledError), HttpFailure::Cancelled);
    for (const auto other :
        {QNetworkReply::ConnectionRefusedError, QNetworkReply::HostNotFoundError,
            QNetworkReply::RemoteHostClosedError, QNetworkReply::UnknownNetworkError})
        EXPECT_EQ(failureOf(other), HttpFailure::Unreachable) << other;
}

} // namespace
} // namespace tavrin
