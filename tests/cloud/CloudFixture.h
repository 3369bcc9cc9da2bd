#pragma once

#include "base/LocalizedText.h"
#include "cloud/TavrinAPI.h"
#include "platform/preferences/PreferenceKeys.h"
#include "support/QtPrinters.h"
#include "support/ports/InMemoryHttpTransport.h"
#include "support/ports/InMemoryPreferences.h"
#include "support/ports/InMemorySystemInfo.h"
#include "support/ports/VirtualTime.h"

#include <QJsonDocument>
#include <gtest/gtest.h>

#include <algorithm>

namespace tavrin {

/// A client of a service that the test plays.
class CloudFixture : public ::testing::Test {
protected:
    testing::VirtualTime time;
    testing::InMemoryPreferences preferences;
    testing::InMemorySystemInfo systemInfo;
    testing::InMemoryHttpTransport transport{time};
    QString target = QStringLiteral("english");
    QStringView LocalizedText::*language = &LocalizedText::zhHans;
    std::optional<TavrinAPI> api;

    CloudFixture() { connectTo(QStringLiteral("https://cloud.test")); }

    void TearDown() override
    {
        EXPECT_EQ(time.pending(), 0U);
        EXPECT_EQ(transport.open(), 0);
    }

    void connectTo(const QString& baseUrl)
    {
        api.emplace(transport, preferences, systemInfo,
            CloudSettings{[this](const LocalizedText& text) { return (text.*language).toString(); },
                [this] { return target; }, baseUrl});
    }

    /// As a session of an earlier run: a crash would not lose it.
    void storeSession(const QString& accessToken, const QString& refreshToken,
        const QString& email = QStringLiteral("ann@example.com"))
    {
        preferences.setValue(keys::cloudAccessToken, accessToken);
        preferences.setValue(keys::cloudRefreshToken, refreshToken);
        preferences.setValue(keys::cloudAccountEmail, email);
        preferences.synchronize();
    }

    [[nodiscard]] QString stored(const QString& key) const
    {
        return preferences.value(key).toString();
    }

    /// What a crash would leave of a value.
    [[nodiscard]] QString flushed(const QString& key) const
    {
        return preferences.flushed(key).toString();
    }

    /// Nothing of the session is left, nor would it come back after a crash.
    [[nodiscard]] bool signedOut() const
    {
        const QStringList all{
            keys::cloudAccessToken, keys::cloudRefreshToken, keys::cloudAccountEmail};
        return std::ranges::none_of(all, [this](const QString& key) {
            return preferences.value(key).isValid() || preferences.flushed(key).isValid();
        });
    }

    /// Lets the prepared answers arrive.
    void run() { time.advance(Seconds{0}); }

    void willRefresh(const QByteArray& accessToken = "new-access")
    {
        transport.willAnswer(
            200, R"({"accessToken": ")" + accessToken + R"(", "refreshToken": "new-refresh"})");
    }

    [[nodiscard]] const HttpRequest& request(qsizetype index) const
    {
        return transport.requests().at(index);
    }

    [[nodiscard]] QString path(qsizetype index) const { return request(index).url.path(); }

    /// Paths of all requests, in order.
    [[nodiscard]] QStringList paths() const
    {
        QStringList all;
        for (const HttpRequest& sent : transport.requests())
            all.append(sent.url.path());
        return all;
    }

    [[nodiscard]] QJsonObject body(qsizetype index) const
    {
        return QJsonDocument::fromJson(request(index).body.value_or(QByteArray())).object();
    }

    /// The header's value; null when the request has none.
    [[nodiscard]] QByteArray header(qsizetype index, const QByteArray& name) const
    {
        for (const auto& [headerName, value] : request(index).headers) {
            if (headerName == name)
                return value;
        }
        return {};
    }

    [[nodiscard]] static Error serviceError(int status, const QString& message)
    {
        return Error{QStringLiteral("TavrinAPI"), status, message};
    }

    [[nodiscard]] static Error clientError(int code, const QString& message)
    {
        return Error{QStringLiteral("TavrinCloud"), code, message};
    }
};

/// Keeps what a completion was called with; more than one call fails the test.
template <class Value>
class Received {
public:
    [[nodiscard]] auto completion()
    {
        return [this](const Value& value) {
            EXPECT_FALSE(m_value.has_value()) << "completed twice";
            m_value = value;
        };
    }

    [[nodiscard]] bool arrived() const { return m_value.has_value(); }

    [[nodiscard]] const Value& value() const { return m_value.value(); }

private:
    std::optional<Value> m_value;
};

inline void PrintTo(const Error& error, std::ostream* out)
{
    *out << error.domain.toStdString() << ' ' << error.code << " \"" << error.message.toStdString()
         << '"';
}

} // namespace tavrin
