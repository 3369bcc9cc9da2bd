#include "platform/DesktopTexts.h"

#include "app/ProductSources.h"
#include "app/account/AccountTexts.h"
#include "app/account/ProviderTexts.h"
#include "app/health/HealthTexts.h"
#include "app/notices/FirstRunTexts.h"
#include "app/pages/history/HistoryTexts.h"
#include "app/session/SessionTexts.h"
#include "app/settings/Localization.h"
#include "app/shortcuts/ShortcutTexts.h"
#include "platform/linux/LinuxTexts.h"
#include "platform/preferences/PreferenceKeys.h"
#include "speech/SpeechTexts.h"
#include "support/QtPrinters.h"
#include "support/ports/InMemoryPreferences.h"
#include "support/ports/InMemoryWorkspace.h"

#include <QRegularExpression>
#include <QSet>
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
    Row{"historySubtitle", &DesktopTexts::historySubtitle, texts::historySubtitle},
    Row{"retentionExplanation", &DesktopTexts::retentionExplanation, texts::retentionExplanation},
    Row{"historyStorage", &DesktopTexts::historyStorage, texts::historyStorage},
    Row{"installationGuide", &DesktopTexts::installationGuide,
        inEveryLanguage(texts::installationGuide)},
    Row{"installationSteps", &DesktopTexts::installationSteps,
        inEveryLanguage(texts::installationSteps)},
    Row{"noShortcutConflict", &DesktopTexts::noShortcutConflict, texts::noShortcutConflict},
    Row{"modelApiNotice", &DesktopTexts::modelApiNotice, inEveryLanguage(texts::modelApiNotice)},
    Row{"checkMicrophonePermission", &DesktopTexts::checkMicrophonePermission,
        inEveryLanguage(texts::checkMicrophonePermission)},
    Row{"speechNotAllowed", &DesktopTexts::speechNotAllowed,
        inEveryLanguage(texts::speechNotAllowed)},
    Row{"speechUnavailable", &DesktopTexts::speechUnavailable,
        inEveryLanguage(texts::speechUnavailable)},
    Row{"enablePermission", &DesktopTexts::enablePermission, texts::enablePermission},
    Row{"microphoneDenied", &DesktopTexts::microphoneDenied, texts::microphoneDenied},
    Row{"accountNotice", &DesktopTexts::accountNotice, texts::accountNotice},
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
        uR"(Apple|macOS|\bMac\b|公证|公證|系统设置|系統設定|System Settings|应用程序|钥匙串|Control)"_s);
    static const QRegularExpression chinese(u"\\p{Han}"_s);
    QStringList shown;
    for (const QString& language : languages) {
        shown.append(shownIn(language, linuxTexts()));
        EXPECT_FALSE(shown.last().contains(otherDesktop)) << shown.last().toStdString();
    }
    EXPECT_EQ(QSet<QString>(shown.begin(), shown.end()).size(), languages.size());
    EXPECT_TRUE(shown[0].contains(chinese) && shown[1].contains(chinese));
    EXPECT_FALSE(shown[2].contains(chinese));
    EXPECT_GT(shown[2].size(), shown[0].size()); // Nothing is left out.
}

/// The names of the texts that speak of what only the other desktop has.
QStringList textsOfTheOtherDesktop()
{
    static const QRegularExpression text(uR"(\bconstexpr\s+\S+\s+(\w+)\s*\{([^;]*)\};)"_s);
    static const QRegularExpression otherDesktop(
        uR"(Apple|macOS|\bMac\b|系统设置|系統設定|System Settings|权限|權限|permission)"_s,
        QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression seam(uR"("\s+u")"_s); // A text may go on in the next line.
    QStringList names;
    for (QString content : testing::productSources(u"*Texts.h"_s)) {
        for (const QRegularExpressionMatch& found : text.globalMatch(content.remove(seam))) {
            if (found.captured(2).contains(otherDesktop))
                names.append(found.captured(1));
        }
    }
    return names;
}

/// What pages are called on every desktop.
const QStringList pageNames{u"permissionsAndHealth"_s, u"sidebarTitles"_s};

TEST(TextsOfTheOtherDesktopTest, EachCanBeReplacedByTheDesktop)
{
    QStringList replaceable = pageNames;
    for (const Row& row : rows)
        replaceable.append(QString::fromLatin1(row.name));
    const QStringList found = textsOfTheOtherDesktop();

    EXPECT_TRUE(found.contains(u"betaNotice"_s)); // Or the search finds nothing at all.
    for (const QString& name : found)
        EXPECT_TRUE(replaceable.contains(name)) << name.toStdString();
}

TEST(TextsOfTheOtherDesktopTest, NoneIsShownPastTheDesktop)
{
    const QMap<QString, QString> files = testing::productSources(u"*.cpp"_s);
    for (const QString& name : textsOfTheOtherDesktop()) {
        if (pageNames.contains(name))
            continue;
        const QRegularExpression use(uR"(\btexts::%1\b)"_s.arg(name));
        // Speech knows no desktop, and is handed the messages.
        const QRegularExpression asked(
            uR"((&DesktopTexts::|m_messages\.)%1,\s*texts::%1\b)"_s.arg(name));
        qsizetype uses = 0;
        for (auto file = files.begin(); file != files.end(); ++file) {
            uses += file->count(use);
            EXPECT_EQ(file->count(use), file->count(asked))
                << name.toStdString() << " in " << file.key().toStdString();
        }
        EXPECT_GT(uses, 0) << name.toStdString();
    }
}

} // namespace
} // namespace tavrin
