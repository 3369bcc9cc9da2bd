#pragma once

#include "app/account/AccountController.h"
#include "app/settings/Localization.h"
#include "cloud/TavrinAPI.h"
#include "platform/linux/LinuxTexts.h"
#include "platform/preferences/PreferenceKeys.h"
#include "support/QtPrinters.h"
#include "support/ports/InMemoryHttpTransport.h"
#include "support/ports/InMemoryPreferences.h"
#include "support/ports/InMemorySystemInfo.h"
#include "support/ports/InMemoryWorkspace.h"
#include "support/ports/VirtualTime.h"
#include "ui/controls/Segments.h"
#include "ui/controls/TextField.h"
#include "ui/pages/AccountPage.h"
#include "ui/pages/PageWindow.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <optional>

namespace tavrin::testing {

inline const QString address = QStringLiteral("mira@example.org");
inline const QStringList languages{
    QStringLiteral("zh-Hans"), QStringLiteral("zh-Hant"), QStringLiteral("en")};

/// The page in a window, before a network that the test answers.
class AccountPageFixture : public ::testing::Test {
protected:
    VirtualTime time;
    InMemoryPreferences preferences;
    InMemorySystemInfo systemInfo;
    InMemoryWorkspace workspace;
    InMemoryHttpTransport http{time};
    Localization localization{preferences, workspace, KeyNames(), linuxTexts()};
    TavrinAPI api{http, preferences, systemInfo,
        {.localize = localization.localize(), .translationTarget = [] { return QString(); }}};
    AccountController controller{{
        .api = api,
        .localization = localization,
        .mainQueue = time,
        .preferences = preferences,
        .isAccountPageShown = [] { return true; },
        .refreshDashboardUsage = [] {},
        .refreshHealthStatus = [] {},
        .selectAccountPage = [] {},
        .showMainWindow = [] {},
        .showSignedIn = [](bool) {},
    }};
    PageWindow window;
    std::optional<ui::AccountPage> page;

    AccountPageFixture() { preferences.setValue(keys::interfaceLanguage, QStringLiteral("en")); }

    void TearDown() override
    {
        page.reset();
        EXPECT_EQ(time.pending(), 0U);
    }

    void open()
    {
        page.emplace(window, controller, localization);
        controller.refreshAccountUI();
        page->show(); // In a window that is open already, too.
        window.open();
    }

    void storeSession()
    {
        preferences.setValue(keys::cloudAccessToken, QStringLiteral("access"));
        preferences.setValue(keys::cloudAccountEmail, address);
    }

    [[nodiscard]] ui::TextField* field(const char* name) const
    {
        return PageWindow::find<ui::TextField>(*page, name);
    }

    [[nodiscard]] QString text(const char* name) const
    {
        const auto* const label = PageWindow::find<ui::Label>(*page, name);
        return label ? label->fullText() : QString();
    }

    [[nodiscard]] QPushButton* button(const char* title) const
    {
        return PageWindow::button(*page, QString::fromUtf8(title));
    }

    /// What the step consists of.
    template <class Part>
    [[nodiscard]] QList<Part*> parts() const
    {
        return page->findChild<QWidget*>(QStringLiteral("accountAuthContainer"))
            ->findChildren<Part*>();
    }

    /// Where a part stands in the container of the steps, from its bottom left.
    [[nodiscard]] QRect frameOf(const QWidget* part) const
    {
        if (!part)
            return {};
        const QPoint container(36 + 22, 220 + 46);
        return PageWindow::frameIn(*page, *part).translated(-container);
    }

    void answer(int status, const QByteArray& body)
    {
        time.advance(Seconds(0));
        ASSERT_GT(http.open(), 0);
        http.answer(status, body);
        time.advance(Seconds(0));
    }

    [[nodiscard]] QJsonObject lastBody() const
    {
        return QJsonDocument::fromJson(http.requests().constLast().body.value_or(QByteArray()))
            .object();
    }

    void openVerification()
    {
        controller.continueAccountFlow(address, AccountMode::Register);
        controller.startInlineRegistration(QStringLiteral("TAV-1"));
        answer(200, "{}");
    }
};

} // namespace tavrin::testing
