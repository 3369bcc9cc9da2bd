#include "app/settings/InterfaceLanguages.h"

#include "app/settings/Localization.h"
#include "platform/preferences/PreferenceKeys.h"
#include "support/QtPrinters.h"
#include "support/ports/InMemoryPreferences.h"
#include "support/ports/InMemoryWorkspace.h"
#include "support/ports/ScriptedAlerts.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

class InterfaceLanguagesTest : public ::testing::Test {
protected:
    testing::InMemoryPreferences preferences;
    testing::InMemoryWorkspace workspace;
    Localization localization{preferences, workspace, KeyNames()};
    testing::ScriptedAlerts alerts;

    QString languageAfterSelecting(qsizetype index)
    {
        selectInterfaceLanguage(index, preferences, localization, alerts);
        return preferences.value(keys::interfaceLanguage).toString();
    }

    static Alert updatedAlert(const QString& title, const QString& body, const QString& button)
    {
        Alert alert;
        alert.messageText = title;
        alert.informativeText = body;
        alert.buttons = {button};
        return alert;
    }
};

TEST_F(InterfaceLanguagesTest, EachIsOfferedUnderItsNativeName)
{
    QStringList rows;
    for (const InterfaceLanguageItem& language : interfaceLanguages)
        rows.append(language.code.toString() + u" = "_s + language.nativeName.toString());

    EXPECT_EQ(
        rows, (QStringList{u"zh-Hans = 简体中文"_s, u"zh-Hant = 繁體中文"_s, u"en = English"_s}));
}

TEST_F(InterfaceLanguagesTest, SelectingStoresTheCodeAndFlushes)
{
    EXPECT_EQ(languageAfterSelecting(0), u"zh-Hans"_s);
    EXPECT_EQ(languageAfterSelecting(1), u"zh-Hant"_s);
    EXPECT_EQ(languageAfterSelecting(2), u"en"_s);

    EXPECT_EQ(preferences.synchronizations(), 3);
    EXPECT_EQ(preferences.flushed(keys::interfaceLanguage), QVariant(u"en"_s));
}

TEST_F(InterfaceLanguagesTest, AnIndexOutsideTheListMeansTheNearest)
{
    EXPECT_EQ(languageAfterSelecting(-1), u"zh-Hans"_s);
    EXPECT_EQ(languageAfterSelecting(3), u"en"_s);
    EXPECT_EQ(languageAfterSelecting(1'000'000), u"en"_s);
}

TEST_F(InterfaceLanguagesTest, TheUserIsAskedToReopenInTheNewLanguage)
{
    languageAfterSelecting(0);
    languageAfterSelecting(1);
    languageAfterSelecting(2);

    EXPECT_EQ(alerts.shown(),
        (QList<Alert>{
            updatedAlert(u"界面语言已更新"_s,
                u"请退出并重新打开 Tavrin，使所有界面使用新的语言。"_s, u"好"_s),
            updatedAlert(u"介面語言已更新"_s,
                u"請結束並重新開啟 Tavrin，使所有介面使用新的語言。"_s, u"好"_s),
            updatedAlert(u"Language updated"_s,
                u"Quit and reopen Tavrin to apply the new language throughout the app."_s, u"OK"_s),
        }));
}

} // namespace
} // namespace tavrin
