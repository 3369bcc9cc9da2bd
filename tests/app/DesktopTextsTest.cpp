#include "app/FirstRunTexts.h"
#include "app/Localization.h"
#include "app/ProviderTexts.h"
#include "app/ShortcutTexts.h"
#include "platform/PreferenceKeys.h"
#include "platform/linux/LinuxTexts.h"
#include "speech/SpeechTexts.h"
#include "support/InMemoryPreferences.h"
#include "support/InMemoryWorkspace.h"
#include "support/QtPrinters.h"

#include <QRegularExpression>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

const QStringList languages{u"zh-Hans"_s, u"zh-Hant"_s, u"en"_s};

/// A text of a feature, and the place where a desktop may have its own.
struct Row {
    const char* name;
    Localization::DesktopText own;
    LocalizedText original;
};

LocalizedText inEveryLanguage(const SimplifiedText& text)
{
    LocalizedText result{u""};
    result.zhHans = text.zhHans;
    result.zhHant = QStringView();
    result.en = QStringView();
    return result;
}

const std::array rows{
    Row{"betaNotice", &DesktopTexts::betaNotice, inEveryLanguage(texts::betaNotice)},
    Row{"installationSteps", &DesktopTexts::installationSteps,
        inEveryLanguage(texts::installationSteps)},
    Row{"noShortcutConflict", &DesktopTexts::noShortcutConflict, texts::noShortcutConflict},
    Row{"modelApiNotice", &DesktopTexts::modelApiNotice, inEveryLanguage(texts::modelApiNotice)},
    Row{"speechNotAllowed", &DesktopTexts::speechNotAllowed,
        inEveryLanguage(texts::speechNotAllowed)},
    Row{"speechUnavailable", &DesktopTexts::speechUnavailable,
        inEveryLanguage(texts::speechUnavailable)},
};

class DesktopTextsTest : public ::testing::TestWithParam<Row> {
protected:
    testing::InMemoryPreferences preferences;
    testing::InMemoryWorkspace workspace;

    QString shownIn(const QString& language, const DesktopTexts& desktop)
    {
        preferences.setValue(keys::interfaceLanguage, language);
        return Localization{preferences, workspace, KeyNames(), desktop}.desktopText(
            GetParam().own, GetParam().original);
    }
};

INSTANTIATE_TEST_SUITE_P(Texts, DesktopTextsTest, ::testing::ValuesIn(rows),
    [](const auto& given) { return given.param.name; });

TEST_P(DesktopTextsTest, TheTextOfTheFeatureStandsWhereTheDesktopHasNoneOfItsOwn)
{
    const LocalizedText& text = GetParam().original;
    const auto orSimplified = [&](QStringView form) {
        return (form.isNull() ? text.zhHans : form).toString();
    };
    EXPECT_EQ(shownIn(u"zh-Hans"_s, {}), text.zhHans.toString());
    EXPECT_EQ(shownIn(u"zh-Hant"_s, {}), orSimplified(text.zhHant));
    EXPECT_EQ(shownIn(u"en"_s, {}), orSimplified(text.en));
}

TEST_P(DesktopTextsTest, LinuxSaysItInThreeLanguagesWithoutAWordOfTheOtherDesktop)
{
    static const QRegularExpression otherDesktop(
        u"Apple|macOS|公证|公證|系统设置|系統設定|System Settings|应用程序|钥匙串|Control"_s);
    static const QRegularExpression chinese(u"\\p{Han}"_s);
    QStringList shown;
    for (const QString& language : languages) {
        shown.append(shownIn(language, linuxTexts()));
        EXPECT_FALSE(shown.last().contains(otherDesktop)) << shown.last().toStdString();
    }
    EXPECT_EQ(shown.removeDuplicates(), 0);
    EXPECT_TRUE(shown[0].contains(chinese) && shown[1].contains(chinese));
    EXPECT_FALSE(shown[2].contains(chinese));
    EXPECT_GT(shown[2].size(), shown[0].size()); // Nothing is left out.
}

} // namespace
} // namespace tavrin
