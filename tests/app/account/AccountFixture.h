#pragma once

#include "app/FakePanels.h"
#include "app/account/AccountController.h"
#include "app/settings/Localization.h"
#include "cloud/TavrinAPI.h"
#include "platform/preferences/PreferenceKeys.h"
#include "support/QtPrinters.h"
#include "support/ports/InMemoryHttpTransport.h"
#include "support/ports/InMemoryPreferences.h"
#include "support/ports/InMemorySystemInfo.h"
#include "support/ports/InMemoryWorkspace.h"
#include "support/ports/VirtualTime.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <gtest/gtest.h>

#include <optional>

namespace tavrin::testing {

inline const QString address = QStringLiteral("mira@example.org");

inline QByteArray errorAnswer(const QString& message)
{
    return QJsonDocument(
        QJsonObject{{QStringLiteral("error"), QJsonObject{{QStringLiteral("message"), message}}}})
        .toJson(QJsonDocument::Compact);
}

inline QByteArray sessionAnswer()
{
    return R"({"accessToken": "access", "refreshToken": "refresh",
        "user": {"email": "mira@example.org"}})";
}

/// The account page before a network that the test answers. `trace` holds what the controller asked
/// of the rest of the program.
class AccountFixture : public ::testing::Test {
protected:
    VirtualTime time;
    InMemoryPreferences preferences;
    InMemorySystemInfo systemInfo;
    InMemoryWorkspace workspace;
    InMemoryHttpTransport http{time};
    Localization localization{preferences, workspace, KeyNames()};
    TavrinAPI api{http, preferences, systemInfo,
        {.localize = localization.localize(), .translationTarget = [] { return QString(); }}};
    QStringList trace;
    bool isPageShown = true;
    std::optional<AccountController> controller{std::in_place, neighbours(localization)};
    FakeView<AccountContent> view;

    AccountFixture()
    {
        preferences.setValue(keys::interfaceLanguage, QStringLiteral("en"));
        controller->setView(&view);
    }

    void TearDown() override { EXPECT_EQ(time.pending(), 0U); }

    AccountController::Neighbours neighbours(const Localization& language)
    {
        return {
            .api = api,
            .localization = language,
            .mainQueue = time,
            .preferences = preferences,
            .isAccountPageShown = [this] { return isPageShown; },
            .refreshDashboardUsage = [this] { trace.append(QStringLiteral("dashboard")); },
            .refreshHealthStatus = [this] { trace.append(QStringLiteral("health")); },
            .selectAccountPage =
                [this] {
                    trace.append(QStringLiteral("select account page"));
                    isPageShown = true;
                },
            .showMainWindow = [this] { trace.append(QStringLiteral("show window")); },
            .showSignedIn =
                [this](bool isSignedIn) {
                    trace.append(
                        isSignedIn ? QStringLiteral("signed in") : QStringLiteral("signed out"));
                },
        };
    }

    [[nodiscard]] const AccountContent& shown() const { return *view.shown; }

    void storeSession()
    {
        preferences.setValue(keys::cloudAccessToken, QStringLiteral("access"));
        preferences.setValue(keys::cloudRefreshToken, QStringLiteral("refresh"));
        preferences.setValue(keys::cloudAccountEmail, address);
    }

    /// The page where it asks for the password of `address`.
    void openLogin() { controller->continueAccountFlow(address, AccountMode::SignIn); }

    void openInvite() { controller->continueAccountFlow(address, AccountMode::Register); }

    void openVerification()
    {
        openInvite();
        controller->startInlineRegistration(QStringLiteral("TAV-1"));
        answer(200, "{}");
        ASSERT_EQ(shown().step, AccountStep::Verification);
    }

    /// The answer to the oldest request that waits, and what follows from it.
    void answer(int status, const QByteArray& body)
    {
        time.advance(Seconds(0));
        ASSERT_GT(http.open(), 0);
        http.answer(status, body);
        time.advance(Seconds(0));
    }

    void failNetwork()
    {
        time.advance(Seconds(0));
        ASSERT_GT(http.open(), 0);
        http.fail(HttpFailure::Unreachable);
        time.advance(Seconds(0));
    }

    [[nodiscard]] QString lastPath() const { return http.requests().constLast().url.path(); }

    [[nodiscard]] QJsonObject lastBody() const
    {
        return QJsonDocument::fromJson(http.requests().constLast().body.value_or(QByteArray()))
            .object();
    }
};

} // namespace tavrin::testing
