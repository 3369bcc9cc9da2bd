#include "app/notices/ErrorAlert.h"

#include "app/settings/Localization.h"
#include "platform/preferences/PreferenceKeys.h"
#include "support/QtPrinters.h"
#include "support/ports/InMemoryPreferences.h"
#include "support/ports/InMemoryWorkspace.h"
#include "support/ports/ScriptedAlerts.h"

#include <gtest/gtest.h>

namespace tavrin {
namespace {

class ErrorAlertTest : public ::testing::Test {
protected:
    testing::InMemoryPreferences preferences;
    testing::InMemoryWorkspace workspace;
    testing::ScriptedAlerts alerts;
    Localization localization{preferences, workspace, KeyNames()};
    ErrorAlert errorAlert{alerts, localization};
};

TEST_F(ErrorAlertTest, AnErrorIsAWarningWithTitleAndDetail)
{
    preferences.setValue(keys::interfaceLanguage, "en");
    errorAlert.showError("Title", "Detail");

    EXPECT_EQ(alerts.shown(),
        (QList<Alert>{Alert{Alert::Style::Warning, "Title", "Detail", {"OK"}, {}}}));
}

TEST_F(ErrorAlertTest, AnErrorWithoutDetailIsUnknownInEveryLanguage)
{
    for (const char* language : {"zh-Hans", "zh-Hant", "en"}) {
        preferences.setValue(keys::interfaceLanguage, language);
        errorAlert.showError("Title", QString());
        errorAlert.showError("Title", "");
    }

    ASSERT_EQ(alerts.shown().size(), 6);
    for (const Alert& alert : alerts.shown())
        EXPECT_EQ(alert.informativeText, QStringLiteral(u"未知错误"));
}

} // namespace
} // namespace tavrin
