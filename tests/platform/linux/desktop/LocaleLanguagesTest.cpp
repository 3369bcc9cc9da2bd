#include "platform/linux/desktop/LocaleLanguages.h"

#include "support/QtPrinters.h"

#include <QHash>
#include <gtest/gtest.h>

namespace tavrin::testing {
namespace {

QStringList locales(const QHash<QString, QString>& variables)
{
    return preferredLocales([&](const QString& name) { return variables.value(name); });
}

const QString language = QStringLiteral("LANGUAGE");
const QString all = QStringLiteral("LC_ALL");
const QString messages = QStringLiteral("LC_MESSAGES");
const QString lang = QStringLiteral("LANG");

TEST(LocaleLanguagesTest, TheListComesBeforeTheLocaleItself)
{
    EXPECT_EQ(locales({{language, QStringLiteral("zh_TW:zh_CN.UTF-8:en")},
                  {lang, QStringLiteral("de_DE.UTF-8")}}),
        QStringList({QStringLiteral("zh_TW"), QStringLiteral("zh_CN"), QStringLiteral("en"),
            QStringLiteral("de_DE")}));
}

TEST(LocaleLanguagesTest, TheMostSpecificVariableHolds)
{
    QHash<QString, QString> variables{{lang, QStringLiteral("en_US.UTF-8")}};
    EXPECT_EQ(locales(variables), QStringList(QStringLiteral("en_US")));
    variables[messages] = QStringLiteral("fr_FR");
    EXPECT_EQ(locales(variables), QStringList(QStringLiteral("fr_FR")));
    variables[all] = QStringLiteral("ja_JP.eucJP");
    EXPECT_EQ(locales(variables), QStringList(QStringLiteral("ja_JP")));
}

TEST(LocaleLanguagesTest, WithoutALocaleThereIsNoLanguage)
{
    EXPECT_TRUE(locales({}).isEmpty());
    EXPECT_TRUE(locales({{lang, QStringLiteral("C.UTF-8")}}).isEmpty());
    EXPECT_TRUE(locales({{lang, QStringLiteral("POSIX")}}).isEmpty());
    EXPECT_TRUE(
        locales({{all, QStringLiteral("C")}, {language, QStringLiteral("zh_TW")}}).isEmpty());
}

TEST(LocaleLanguagesTest, ChineseComesWithItsScript)
{
    const QList<std::pair<QString, QString>> expected{
        {QStringLiteral("zh_TW"), QStringLiteral("zh-Hant-TW")},
        {QStringLiteral("zh_HK"), QStringLiteral("zh-Hant-HK")},
        {QStringLiteral("zh_MO"), QStringLiteral("zh-Hant-MO")},
        {QStringLiteral("zh_CN"), QStringLiteral("zh-Hans-CN")},
        {QStringLiteral("zh_SG"), QStringLiteral("zh-Hans-SG")},
        {QStringLiteral("zh"), QStringLiteral("zh-Hans")},
        {QStringLiteral("en_GB"), QStringLiteral("en-GB")},
        {QStringLiteral("de"), QStringLiteral("de")},
        {QStringLiteral("sr_RS@latin"), QStringLiteral("sr-Latn-RS")},
        {QStringLiteral("ca_ES@valencia"), QStringLiteral("ca-ES")},
    };
    for (const auto& [locale, tag] : expected)
        EXPECT_EQ(languageTag(locale), tag);
}

} // namespace
} // namespace tavrin::testing
