#include "app/settings/Localization.h"

#include "platform/linux/LinuxKeyNames.h"
#include "platform/preferences/PreferenceKeys.h"
#include "support/QtPrinters.h"
#include "support/ports/InMemoryPreferences.h"
#include "support/ports/InMemoryWorkspace.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

class LocalizationTest : public ::testing::Test {
protected:
    testing::InMemoryPreferences preferences;
    testing::InMemoryWorkspace workspace;
    Localization localization{preferences, workspace, KeyNames()};
    Localization linuxLocalization{preferences, workspace, linuxKeyNames()};

    void choose(const QVariant& language)
    {
        preferences.setValue(keys::interfaceLanguage, language);
    }

    QString languageForSystem(const QStringList& preferredLanguages)
    {
        workspace.languages = preferredLanguages;
        return localization.InterfaceLanguage();
    }
};

TEST_F(LocalizationTest, AChosenLanguageHoldsWhateverTheSystemPrefers)
{
    workspace.languages = {u"en-GB"_s};

    for (const QString& language : {u"zh-Hans"_s, u"zh-Hant"_s, u"en"_s}) {
        choose(language);
        EXPECT_EQ(localization.InterfaceLanguage(), language);
    }
}

TEST_F(LocalizationTest, AChoiceIsRecognisedOnlyToTheLetter)
{
    workspace.languages = {u"en-GB"_s};

    for (const QString& language : {u"zh-hans"_s, u"ZH-HANT"_s, u"zh"_s, u""_s, u"zh-Hans "_s}) {
        choose(language);
        EXPECT_EQ(localization.InterfaceLanguage(), u"en"_s);
    }
}

TEST_F(LocalizationTest, AnUnknownChoiceGivesWayToTheSystem)
{
    choose(u"fr"_s);

    EXPECT_EQ(languageForSystem({u"zh-Hant-TW"_s}), u"zh-Hant"_s);
    EXPECT_EQ(languageForSystem({u"en-GB"_s}), u"en"_s);
    EXPECT_EQ(languageForSystem({u"ja-JP"_s}), u"zh-Hans"_s);
    EXPECT_EQ(languageForSystem({}), u"zh-Hans"_s);
}

TEST_F(LocalizationTest, OnlyTheFirstSystemLanguageCounts)
{
    EXPECT_EQ(languageForSystem({u"fr-FR"_s, u"en-US"_s}), u"zh-Hans"_s);
    EXPECT_EQ(languageForSystem({u"en-US"_s, u"zh-Hant-TW"_s}), u"en"_s);
}

TEST_F(LocalizationTest, TraditionalChineseIsKnownByScriptOrRegionInAnyCase)
{
    for (const QString& tag :
        {u"zh-Hant"_s, u"ZH-HANT-MO"_s, u"zh-TW"_s, u"zh-hk"_s, u"yue-HK"_s, u"en-HK"_s})
        EXPECT_EQ(languageForSystem({tag}), u"zh-Hant"_s) << tag.toStdString();
}

TEST_F(LocalizationTest, EnglishIsKnownByItsBeginningInAnyCase)
{
    for (const QString& tag : {u"en"_s, u"EN-us"_s, u"en-AU"_s})
        EXPECT_EQ(languageForSystem({tag}), u"en"_s) << tag.toStdString();
    for (const QString& tag : {u"zh-Hans-CN"_s, u"zh-Hans-SG"_s, u"fr"_s, u"den"_s, u""_s})
        EXPECT_EQ(languageForSystem({tag}), u"zh-Hans"_s) << tag.toStdString();
}

TEST_F(LocalizationTest, TheSystemsLanguageIsNotStored)
{
    EXPECT_EQ(languageForSystem({u"en-GB"_s}), u"en"_s);

    EXPECT_FALSE(preferences.value(keys::interfaceLanguage).isValid());
}

TEST_F(LocalizationTest, AChoiceOfTheWrongTypeCountsAsAbsent)
{
    workspace.languages = {u"en-GB"_s};

    for (const QVariant& garbage : {QVariant(7), QVariant(true),
             QVariant(QStringList{u"zh-Hant"_s}), QVariant(QVariantMap{{u"zh-Hant"_s, 1}}),
             QVariant::fromValue(nullptr), QVariant(QByteArray("zh-Hant"))}) {
        choose(garbage);
        EXPECT_EQ(localization.InterfaceLanguage(), u"en"_s) << garbage.typeName();
    }
}

TEST_F(LocalizationTest, TextsComeInTheLanguageOfTheMoment)
{
    constexpr LocalizedText text{u"未设置", u"未設定", u"Not set"};

    choose(u"zh-Hans"_s);
    EXPECT_EQ(localization.LT(text), u"未设置"_s);
    choose(u"zh-Hant"_s);
    EXPECT_EQ(localization.LT(text), u"未設定"_s);
    choose(u"en"_s);
    EXPECT_EQ(localization.LT(text), u"Not set"_s);
}

TEST_F(LocalizationTest, AMissingFormFallsBackToSimplifiedChinese)
{
    constexpr LocalizedText onlySimplified{u"好"};
    constexpr LocalizedText withoutEnglish{u"应用", u"應用"};

    for (const QString& language : {u"zh-Hans"_s, u"zh-Hant"_s, u"en"_s}) {
        choose(language);
        EXPECT_EQ(localization.LT(onlySimplified), u"好"_s);
    }
    EXPECT_EQ(localization.LT(withoutEnglish), u"应用"_s);
    choose(u"zh-Hant"_s);
    EXPECT_EQ(localization.LT(withoutEnglish), u"應用"_s);
}

TEST_F(LocalizationTest, AnEmptyFormIsAForm)
{
    constexpr LocalizedText text{u"个", u"個", u""};

    choose(u"en"_s);

    EXPECT_EQ(localization.LT(text), u""_s);
}

TEST_F(LocalizationTest, ArgumentsAreInsertedAsTheyAre)
{
    constexpr LocalizedText text{u"%1 → %2", u"%1 → %2", u"%1 to %2"};
    choose(u"en"_s);

    EXPECT_EQ(localization.LT(text, u"100%2"_s, u"%1"_s), u"100%2 to %1"_s);
}

TEST_F(LocalizationTest, ModulesBelowGetTheSameTexts)
{
    constexpr LocalizedText text{u"未设置", u"未設定", u"Not set"};
    const Localize localize = localization.localize();

    choose(u"zh-Hant"_s);
    EXPECT_EQ(localize(text), u"未設定"_s);
    choose(u"en"_s);
    EXPECT_EQ(localize(text), u"Not set"_s);
}

TEST_F(LocalizationTest, KeysKeepTheirNamesWhereTheyAreWrittenOnTheKeyboard)
{
    constexpr LocalizedText text{u"按 ⌘V 或右 Option", u"按 ⌘V 或右 Option", u"⌘V, Right Option"};
    choose(u"en"_s);

    EXPECT_EQ(localization.LT(text), u"⌘V, Right Option"_s);
    EXPECT_EQ(localization.withKeyNames(u"⇧⌘ Space"_s), u"⇧⌘ Space"_s);
}

TEST_F(LocalizationTest, LinuxNamesTheKeysOfItsKeyboards)
{
    constexpr LocalizedText text{u"按 ⌘V 或右 Option", u"按 ⌘V 或右 Option", u"⌘V, Right Option"};

    EXPECT_EQ(linuxLocalization.LT(text), u"按 Ctrl+V 或右 Alt"_s);
    choose(u"en"_s);
    EXPECT_EQ(linuxLocalization.LT(text), u"Ctrl+V, Right Alt"_s);
    EXPECT_EQ(linuxLocalization.localize()(text), u"Ctrl+V, Right Alt"_s);
    EXPECT_EQ(linuxLocalization.withKeyNames(u"左 Option"_s), u"左 Alt"_s);
    EXPECT_EQ(linuxLocalization.withKeyNames(u"⌥ Space"_s), u"Alt+Space"_s);
    EXPECT_EQ(linuxLocalization.withKeyNames(u"⌃⌥ Space"_s), u"Ctrl+Alt+Space"_s);
    EXPECT_EQ(linuxLocalization.withKeyNames(u"⇧⌘ Space"_s), u"Shift+Super+Space"_s);
    EXPECT_EQ(linuxLocalization.withKeyNames(u"⇧⌃⌥⌘"_s), u"Shift+Ctrl+Alt+Super+"_s);
}

TEST_F(LocalizationTest, WhatIsInsertedIntoATextKeepsItsLetters)
{
    constexpr LocalizedText text{u"按 ⌘V：%1"};

    EXPECT_EQ(linuxLocalization.LT(text, u"⌘V Option"_s), u"按 Ctrl+V：⌘V Option"_s);
}

} // namespace
} // namespace tavrin
