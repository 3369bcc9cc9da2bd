#include "base/LocalizedText.h"
#include "cloud/TavrinAPI.h"
#include "fuzz/Require.h"
#include "platform/preferences/PreferenceKeys.h"
#include "support/ports/InMemoryHttpTransport.h"
#include "support/ports/InMemoryPreferences.h"
#include "support/ports/InMemorySystemInfo.h"
#include "support/ports/VirtualTime.h"

#include <cstdint>
#include <optional>
#include <utility>

// What the cloud client makes of any answer: two bytes choose the status, the rest is the body.

namespace tavrin {
namespace {

using fuzz::require;

bool succeeded(int status)
{
    return status >= 200 && status <= 299;
}

/// A client whose every request is answered the same.
class Exchange {
public:
    explicit Exchange(HttpResponse response)
        : m_response(std::move(response))
    {
        m_preferences.setValue(keys::cloudAccessToken, QStringLiteral("access"));
        m_preferences.setValue(keys::cloudRefreshToken, QStringLiteral("refresh"));
        m_preferences.setValue(keys::cloudAccountEmail, QStringLiteral("ann@example.com"));
    }

    /// Starts an operation with @p start(api, completion) and gives what it completed with.
    template <class Value, class Start>
    Value outcome(const Start& start)
    {
        std::optional<Value> received;
        for (int i = 0; i < mostRequests; ++i)
            m_transport.willAnswer(m_response.status, m_response.body);
        const qsizetype before = m_transport.requests().size();
        start(m_api, [&](const Value& value) {
            require(!received.has_value(), "an operation completes once");
            received = value;
        });
        m_time.advance(Seconds{1});
        require(received.has_value(), "an operation completes");
        require(m_transport.requests().size() - before <= mostRequests, "one refresh, one repeat");
        return *received;
    }

    bool hasTokens() const
    {
        return m_preferences.value(keys::cloudAccessToken).typeId() == QMetaType::QString
            && m_preferences.value(keys::cloudRefreshToken).typeId() == QMetaType::QString;
    }

private:
    static constexpr int mostRequests = 3;

    HttpResponse m_response;
    testing::VirtualTime m_time;
    testing::InMemoryPreferences m_preferences;
    testing::InMemorySystemInfo m_systemInfo;
    testing::InMemoryHttpTransport m_transport{m_time};
    TavrinAPI m_api{m_transport, m_preferences, m_systemInfo,
        {[](const LocalizedText& text) { return text.en.toString(); }, [] { return QString(); },
            QStringLiteral("https://cloud.test")}};
};

void checkRequest(const HttpResponse& response)
{
    const auto answer =
        Exchange(response).outcome<CloudResponse>([](TavrinAPI& api, const auto& completion) {
            api.cloudRequestPath(QStringLiteral("/v1"), "GET", std::nullopt, {}, completion);
        });
    require(answer.object.has_value(), "an answer always gives an object");
    require(answer.status == response.status, "the status is passed on");
    require(answer.error.has_value() != succeeded(response.status), "only 2xx is a success");
    if (answer.error)
        require(answer.error->code == response.status, "the code is the status");
}

void checkTexts(const HttpResponse& response)
{
    const auto text =
        Exchange(response).outcome<Result<QString>>([](TavrinAPI& api, const auto& completion) {
            api.polish(QStringLiteral("x"), {}, std::nullopt, std::nullopt, completion);
        });
    require(!text || (!text->isEmpty() && text->trimmed() == *text), "a text is trimmed");
    require(!text || succeeded(response.status), "a text comes with a success only");
    const auto chat =
        Exchange(response).outcome<Result<QString>>([](TavrinAPI& api, const auto& completion) {
            api.chat(QStringLiteral("x"), {}, completion);
        });
    require(chat.has_value() == text.has_value(), "chat and polish read the same");
}

void checkSession(const HttpResponse& response)
{
    Exchange refresh(response);
    refresh.outcome<Result<QString>>(
        [](TavrinAPI& api, const auto& completion) { api.refreshCloudSession(completion); });
    const bool refused = response.status == 401 || response.status == 403;
    require(refresh.hasTokens() != refused, "only a refused refresh ends the session");

    const auto invalid = Exchange(response).outcome<std::optional<Error>>(
        [](TavrinAPI& api, const auto& completion) {
            api.validateCloudSessionWithCompletion(completion);
        });
    require(invalid.has_value() != succeeded(response.status), "validation follows the status");

    Exchange login(response);
    login.outcome<CloudResponse>([](TavrinAPI& api, const auto& completion) {
        api.loginEmail(QStringLiteral("a"), QStringLiteral("b"), completion);
    });
    require(login.hasTokens(), "tokens are strings");

    Exchange logout(response);
    logout.outcome<std::optional<Error>>(
        [](TavrinAPI& api, const auto& completion) { api.logoutWithCompletion(completion); });
    require(!logout.hasTokens(), "signing out always ends the session");
}

} // namespace
} // namespace tavrin

// NOLINTNEXTLINE(readability-identifier-naming): the name that libFuzzer calls.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size < 2)
        return 0;
    const int status = 100 + (data[0] * 256 + data[1]) % 500;
    const tavrin::HttpResponse response{status,
        QByteArray(reinterpret_cast<const char*>(data + 2), static_cast<qsizetype>(size) - 2)};
    tavrin::checkRequest(response);
    tavrin::checkTexts(response);
    tavrin::checkSession(response);
    return 0;
}
