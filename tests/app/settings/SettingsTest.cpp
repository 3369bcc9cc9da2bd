#include "app/settings/Settings.h"

#include "app/settings/Localization.h"
#include "platform/linux/LinuxKeyNames.h"
#include "platform/preferences/PreferenceKeys.h"
#include "support/QtPrinters.h"
#include "support/ports/InMemoryHotKeyProbe.h"
#include "support/ports/InMemoryPreferences.h"
#include "support/ports/InMemoryWorkspace.h"

#include <gtest/gtest.h>

#include <functional>

using namespace Qt::StringLiterals;

namespace tavrin {

void PrintTo(const SettingChoice& choice, std::ostream* out)
{
    *out << choice.identifier.toStdString() << ": " << choice.title.toStdString();
}

namespace {

struct NamedInThreeLanguages {
    QString identifier;
    QString zhHans;
    QString zhHant;
    QString en;
};

const QList<NamedInThreeLanguages> styleTable{
    {u"professional"_s, u"专业正文（默认）"_s, u"專業正文（預設）"_s, u"Professional (Default)"_s},
    {u"xiaohongshu"_s, u"小红书 · Emoji"_s, u"小紅書 · Emoji"_s, u"Social · Emoji"_s},
    {u"businessEmail"_s, u"商务邮件"_s, u"商務郵件"_s, u"Business email"_s},
    {u"casual"_s, u"自然聊天"_s, u"自然聊天"_s, u"Casual chat"_s},
    {u"meeting"_s, u"会议行动项"_s, u"會議行動項"_s, u"Meeting actions"_s},
    {u"aiPrompt"_s, u"AI 指令"_s, u"AI 指令"_s, u"AI prompt"_s},
};

const QList<NamedInThreeLanguages> targetTable{
    {u"english"_s, u"英语"_s, u"英語"_s, u"English"_s},
    {u"chinese_simplified"_s, u"简体中文"_s, u"簡體中文"_s, u"Chinese (Simplified)"_s},
    {u"chinese_traditional"_s, u"繁体中文"_s, u"繁體中文"_s, u"Chinese (Traditional)"_s},
    {u"cantonese"_s, u"粤语（香港）"_s, u"粵語（香港）"_s, u"Cantonese (Hong Kong)"_s},
    {u"japanese"_s, u"日语"_s, u"日語"_s, u"Japanese"_s},
    {u"korean"_s, u"韩语"_s, u"韓語"_s, u"Korean"_s},
    {u"french"_s, u"法语"_s, u"法語"_s, u"French"_s},
    {u"german"_s, u"德语"_s, u"德語"_s, u"German"_s},
    {u"spanish"_s, u"西班牙语"_s, u"西班牙語"_s, u"Spanish"_s},
    {u"portuguese_brazil"_s, u"葡萄牙语（巴西）"_s, u"葡萄牙語（巴西）"_s,
        u"Portuguese (Brazil)"_s},
    {u"italian"_s, u"意大利语"_s, u"義大利語"_s, u"Italian"_s},
    {u"dutch"_s, u"荷兰语"_s, u"荷蘭語"_s, u"Dutch"_s},
    {u"russian"_s, u"俄语"_s, u"俄語"_s, u"Russian"_s},
    {u"ukrainian"_s, u"乌克兰语"_s, u"烏克蘭語"_s, u"Ukrainian"_s},
    {u"polish"_s, u"波兰语"_s, u"波蘭語"_s, u"Polish"_s},
    {u"czech"_s, u"捷克语"_s, u"捷克語"_s, u"Czech"_s},
    {u"danish"_s, u"丹麦语"_s, u"丹麥語"_s, u"Danish"_s},
    {u"swedish"_s, u"瑞典语"_s, u"瑞典語"_s, u"Swedish"_s},
    {u"norwegian"_s, u"挪威语"_s, u"挪威語"_s, u"Norwegian"_s},
    {u"finnish"_s, u"芬兰语"_s, u"芬蘭語"_s, u"Finnish"_s},
    {u"greek"_s, u"希腊语"_s, u"希臘語"_s, u"Greek"_s},
    {u"romanian"_s, u"罗马尼亚语"_s, u"羅馬尼亞語"_s, u"Romanian"_s},
    {u"hungarian"_s, u"匈牙利语"_s, u"匈牙利語"_s, u"Hungarian"_s},
    {u"turkish"_s, u"土耳其语"_s, u"土耳其語"_s, u"Turkish"_s},
    {u"arabic"_s, u"阿拉伯语"_s, u"阿拉伯語"_s, u"Arabic"_s},
    {u"hebrew"_s, u"希伯来语"_s, u"希伯來語"_s, u"Hebrew"_s},
    {u"persian"_s, u"波斯语"_s, u"波斯語"_s, u"Persian"_s},
    {u"hindi"_s, u"印地语"_s, u"印地語"_s, u"Hindi"_s},
    {u"bengali"_s, u"孟加拉语"_s, u"孟加拉語"_s, u"Bengali"_s},
    {u"tamil"_s, u"泰米尔语"_s, u"泰米爾語"_s, u"Tamil"_s},
    {u"telugu"_s, u"泰卢固语"_s, u"泰盧固語"_s, u"Telugu"_s},
    {u"urdu"_s, u"乌尔都语"_s, u"烏爾都語"_s, u"Urdu"_s},
    {u"thai"_s, u"泰语"_s, u"泰語"_s, u"Thai"_s},
    {u"vietnamese"_s, u"越南语"_s, u"越南語"_s, u"Vietnamese"_s},
    {u"indonesian"_s, u"印度尼西亚语"_s, u"印尼語"_s, u"Indonesian"_s},
    {u"malay"_s, u"马来语"_s, u"馬來語"_s, u"Malay"_s},
    {u"filipino"_s, u"菲律宾语"_s, u"菲律賓語"_s, u"Filipino"_s},
    {u"khmer"_s, u"高棉语"_s, u"高棉語"_s, u"Khmer"_s},
    {u"burmese"_s, u"缅甸语"_s, u"緬甸語"_s, u"Burmese"_s},
    {u"nepali"_s, u"尼泊尔语"_s, u"尼泊爾語"_s, u"Nepali"_s},
    {u"lao"_s, u"老挝语"_s, u"寮語"_s, u"Lao"_s},
    {u"swahili"_s, u"斯瓦希里语"_s, u"斯瓦希里語"_s, u"Swahili"_s},
};

const QList<NamedInThreeLanguages> shortcutTable{
    {u"none"_s, u"未设置"_s, u"未設定"_s, u"Not set"_s},
    {u"rightOption"_s, u"右 Option"_s, u"右 Option"_s, u"Right Option"_s},
    {u"leftOption"_s, u"左 Option"_s, u"左 Option"_s, u"Left Option"_s},
    {u"optionSpace"_s, u"⌥ Space"_s, u"⌥ Space"_s, u"⌥ Space"_s},
    {u"controlOptionSpace"_s, u"⌃⌥ Space"_s, u"⌃⌥ Space"_s, u"⌃⌥ Space"_s},
    {u"commandShiftSpace"_s, u"⇧⌘ Space"_s, u"⇧⌘ Space"_s, u"⇧⌘ Space"_s},
};

/// Everything that is no text and no list, where one of these is expected.
const QVariantList neitherStringNorList{7, 2.5, true, QVariantMap{{u"english"_s, u"english"_s}},
    QVariant::fromValue(nullptr), QByteArray("english"), QVariant()};

class SettingsTest : public ::testing::Test {
protected:
    testing::InMemoryPreferences preferences;
    testing::InMemoryWorkspace workspace;
    Localization localization{preferences, workspace, KeyNames()};
    Settings settings{preferences, localization};

    void setLanguage(const QString& code) { preferences.setValue(keys::interfaceLanguage, code); }

    static QList<SettingChoice> choices(
        const QList<NamedInThreeLanguages>& table, QString NamedInThreeLanguages::*language)
    {
        QList<SettingChoice> result;
        for (const NamedInThreeLanguages& row : table)
            result.append({row.*language, row.identifier});
        return result;
    }

    void expectInThreeLanguages(const QList<NamedInThreeLanguages>& table,
        const std::function<QList<SettingChoice>()>& items)
    {
        setLanguage(u"zh-Hans"_s);
        EXPECT_EQ(items(), choices(table, &NamedInThreeLanguages::zhHans));
        setLanguage(u"zh-Hant"_s);
        EXPECT_EQ(items(), choices(table, &NamedInThreeLanguages::zhHant));
        setLanguage(u"en"_s);
        EXPECT_EQ(items(), choices(table, &NamedInThreeLanguages::en));
    }
};

TEST_F(SettingsTest, StylesAreOfferedInTheirOrderAndLanguage)
{
    expectInThreeLanguages(styleTable, [this] { return settings.OutputStyleItems(); });
}

TEST_F(SettingsTest, TheStyleIsProfessionalUntilOneIsChosen)
{
    EXPECT_EQ(settings.OutputStyle(), u"professional"_s);
    EXPECT_FALSE(preferences.value(keys::outputStyle).isValid());

    for (const NamedInThreeLanguages& style : styleTable) {
        preferences.setValue(keys::outputStyle, style.identifier);
        EXPECT_EQ(settings.OutputStyle(), style.identifier);
    }
}

TEST_F(SettingsTest, OldStyleNamesAreReplacedInTheStore)
{
    const QList<std::pair<QString, QString>> renamed{{u"smart"_s, u"professional"_s},
        {u"prose"_s, u"professional"_s}, {u"bullets"_s, u"meeting"_s}};

    for (const auto& [oldName, present] : renamed) {
        preferences.setValue(keys::outputStyle, oldName);
        EXPECT_EQ(settings.OutputStyle(), present);
        EXPECT_EQ(preferences.value(keys::outputStyle), QVariant(present));
    }
}

TEST_F(SettingsTest, AnUnknownStylePassesAsStored)
{
    for (const QString& unknown : {u"haiku"_s, u"Smart"_s, u""_s}) {
        preferences.setValue(keys::outputStyle, unknown);
        EXPECT_EQ(settings.OutputStyle(), unknown);
        EXPECT_EQ(preferences.value(keys::outputStyle), QVariant(unknown));
    }
}

TEST_F(SettingsTest, AStyleThatIsNoTextCountsAsAbsent)
{
    for (const QVariant& garbage : neitherStringNorList) {
        preferences.setValue(keys::outputStyle, garbage);
        EXPECT_EQ(settings.OutputStyle(), u"professional"_s);
    }
    preferences.setValue(keys::outputStyle, QStringList{u"bullets"_s});
    EXPECT_EQ(settings.OutputStyle(), u"professional"_s);
}

TEST_F(SettingsTest, TranslationTargetsAreOfferedInTheirOrderAndLanguage)
{
    expectInThreeLanguages(targetTable, [this] { return settings.translationTargetItems(); });
}

TEST_F(SettingsTest, EachTranslationTargetIsNamedInTheInterfaceLanguage)
{
    for (const NamedInThreeLanguages& target : targetTable) {
        setLanguage(u"zh-Hans"_s);
        EXPECT_EQ(settings.TranslationDisplayNameForTarget(target.identifier), target.zhHans);
        setLanguage(u"zh-Hant"_s);
        EXPECT_EQ(settings.TranslationDisplayNameForTarget(target.identifier), target.zhHant);
        setLanguage(u"en"_s);
        EXPECT_EQ(settings.TranslationDisplayNameForTarget(target.identifier), target.en);
    }
}

TEST_F(SettingsTest, TranslationAlwaysHasATarget)
{
    EXPECT_EQ(settings.TranslationTarget(), u"english"_s);
    for (const QString& nothing : {u""_s, u"none"_s}) {
        preferences.setValue(keys::translationTarget, nothing);
        EXPECT_EQ(settings.TranslationTarget(), u"english"_s);
    }
    for (const QVariant& garbage : neitherStringNorList) {
        preferences.setValue(keys::translationTarget, garbage);
        EXPECT_EQ(settings.TranslationTarget(), u"english"_s);
    }
}

TEST_F(SettingsTest, AnUnknownTargetPassesAsStoredAndNamesItself)
{
    preferences.setValue(keys::translationTarget, u"klingon"_s);

    EXPECT_EQ(settings.TranslationTarget(), u"klingon"_s);
    EXPECT_EQ(settings.TranslationDisplayNameForTarget(u"klingon"_s), u"klingon"_s);
    EXPECT_EQ(settings.TranslationDisplayNameForTarget(u""_s), u""_s);
}

TEST_F(SettingsTest, NoTargetAtAllIsNamedEnglish)
{
    EXPECT_EQ(settings.TranslationDisplayNameForTarget(QString()), u"英语"_s);
    setLanguage(u"zh-Hant"_s);
    EXPECT_EQ(settings.TranslationDisplayNameForTarget(QString()), u"英語"_s);
    setLanguage(u"en"_s);
    EXPECT_EQ(settings.TranslationDisplayNameForTarget(QString()), u"English"_s);
}

TEST_F(SettingsTest, ShortcutsAreOfferedInTheirOrderAndLanguage)
{
    expectInThreeLanguages(shortcutTable, [this] { return settings.ShortcutItems(); });
}

TEST_F(SettingsTest, ShortcutsAreNamedAndUnknownOnesAreNotSet)
{
    setLanguage(u"en"_s);
    for (const NamedInThreeLanguages& shortcut : shortcutTable)
        EXPECT_EQ(settings.ShortcutDisplayNameForIdentifier(shortcut.identifier), shortcut.en);
    for (const QString& unknown : {u"fnKey"_s, u""_s, QString()}) {
        setLanguage(u"en"_s);
        EXPECT_EQ(settings.ShortcutDisplayNameForIdentifier(unknown), u"Not set"_s);
        setLanguage(u"zh-Hans"_s);
        EXPECT_EQ(settings.ShortcutDisplayNameForIdentifier(unknown), u"未设置"_s);
        setLanguage(u"zh-Hant"_s);
        EXPECT_EQ(settings.ShortcutDisplayNameForIdentifier(unknown), u"未設定"_s);
    }
}

TEST_F(SettingsTest, LinuxNamesShortcutsByItsOwnKeysAndStoresTheSameIdentifiers)
{
    const Localization linuxLocalization{preferences, workspace, linuxKeyNames()};
    Settings linuxSettings{preferences, linuxLocalization};
    setLanguage(u"en"_s);

    EXPECT_EQ(linuxSettings.ShortcutItems(),
        (QList<SettingChoice>{{u"Not set"_s, u"none"_s}, {u"Right Alt"_s, u"rightOption"_s},
            {u"Left Alt"_s, u"leftOption"_s}, {u"Alt+Space"_s, u"optionSpace"_s},
            {u"Ctrl+Alt+Space"_s, u"controlOptionSpace"_s},
            {u"Shift+Super+Space"_s, u"commandShiftSpace"_s}}));
    EXPECT_EQ(linuxSettings.ShortcutDisplayName(), u"Right Alt"_s);
    setLanguage(u"zh-Hans"_s);
    EXPECT_EQ(linuxSettings.ShortcutDisplayName(), u"右 Alt"_s);
    EXPECT_EQ(preferences.value(keys::dictationShortcutIdentifiers),
        QVariant(QStringList{u"rightOption"_s}));
}

TEST_F(SettingsTest, AStoredListIsReducedToTwoKnownShortcuts)
{
    EXPECT_EQ(Settings::SanitizedShortcutIdentifiers({u"none"_s, u"leftOption"_s, 7,
                  u"leftOption"_s, u"unknown"_s, u"optionSpace"_s, u"rightOption"_s}),
        (QStringList{u"leftOption"_s, u"optionSpace"_s}));
    EXPECT_EQ(Settings::SanitizedShortcutIdentifiers({}), QStringList());
    EXPECT_EQ(Settings::SanitizedShortcutIdentifiers(neitherStringNorList), QStringList());
    EXPECT_EQ(Settings::SanitizedShortcutIdentifiers(
                  {QVariant(QVariantList{u"rightOption"_s}), u"chatKey"_s, u"rightOption"_s}),
        QStringList{u"rightOption"_s});
}

TEST_F(SettingsTest, TheFirstStartStoresADefaultForEachOperation)
{
    EXPECT_EQ(settings.ChatShortcutIdentifiers(), QStringList{u"commandShiftSpace"_s});

    EXPECT_EQ(preferences.value(keys::dictationShortcutIdentifiers),
        QVariant(QStringList{u"rightOption"_s}));
    EXPECT_EQ(preferences.value(keys::translationShortcutIdentifiers),
        QVariant(QStringList{u"optionSpace"_s}));
    EXPECT_EQ(preferences.value(keys::chatShortcutIdentifiers),
        QVariant(QStringList{u"commandShiftSpace"_s}));
}

TEST_F(SettingsTest, TheSingleShortcutOfOldVersionsBecomesTheDictationList)
{
    preferences.setValue(keys::shortcutMode, u"optionSpace"_s);

    EXPECT_EQ(settings.DictationShortcutIdentifiers(), QStringList{u"optionSpace"_s});
    EXPECT_EQ(settings.TranslationShortcutIdentifiers(), QStringList{u"controlOptionSpace"_s});
    EXPECT_EQ(settings.ChatShortcutIdentifiers(), QStringList{u"commandShiftSpace"_s});
    EXPECT_EQ(preferences.value(keys::dictationShortcutIdentifiers),
        QVariant(QStringList{u"optionSpace"_s}));
}

TEST_F(SettingsTest, AnOldSingleShortcutThatIsNoneFallsBackToTheDefault)
{
    QVariantList useless = neitherStringNorList;
    useless << u"none"_s << u"fnKey"_s << u""_s << QStringList{u"optionSpace"_s};

    for (const QVariant& stored : useless) {
        preferences.remove(keys::dictationShortcutIdentifiers);
        preferences.setValue(keys::shortcutMode, stored);
        EXPECT_EQ(settings.DictationShortcutIdentifiers(), QStringList{u"rightOption"_s});
    }
}

TEST_F(SettingsTest, TheOldSingleShortcutIsReadOnlyOnce)
{
    EXPECT_EQ(settings.DictationShortcutIdentifiers(), QStringList{u"rightOption"_s});
    preferences.setValue(keys::shortcutMode, u"leftOption"_s);

    EXPECT_EQ(settings.DictationShortcutIdentifiers(), QStringList{u"rightOption"_s});
}

TEST_F(SettingsTest, ChatFindsTheShortcutThatIsLeft)
{
    preferences.setValue(keys::dictationShortcutIdentifiers, QStringList{u"commandShiftSpace"_s});
    preferences.setValue(keys::translationShortcutIdentifiers, QStringList{u"optionSpace"_s});

    EXPECT_EQ(settings.ChatShortcutIdentifiers(), QStringList{u"controlOptionSpace"_s});
}

TEST_F(SettingsTest, ChatStartsWithoutAShortcutWhenBothAreTaken)
{
    preferences.setValue(keys::dictationShortcutIdentifiers, QStringList{u"commandShiftSpace"_s});
    preferences.setValue(
        keys::translationShortcutIdentifiers, QStringList{u"controlOptionSpace"_s});

    EXPECT_EQ(settings.ChatShortcutIdentifiers(), QStringList());
    EXPECT_EQ(preferences.value(keys::chatShortcutIdentifiers), QVariant(QStringList()));
}

/// A desktop that gives its combinations to whoever asks first, and Alt+Space among them.
class DesktopDefaultsTest : public SettingsTest {
protected:
    testing::InMemoryHotKeyProbe probe;

    DesktopDefaultsTest()
    {
        probe.keptUnlessHeld = std::nullopt;
        probe.heldByOthers = {{key_codes::space, KeyModifier::Option}};
    }

    Settings start() { return {preferences, localization, &probe}; }

    QVariant stored(const QString& key) const { return preferences.value(key); }
};

TEST_F(DesktopDefaultsTest, TranslationLeavesTheDesktopItsCombinationForGood)
{
    Settings first = start();
    EXPECT_EQ(first.TranslationShortcutIdentifiers(), QStringList{u"controlOptionSpace"_s});
    EXPECT_EQ(first.ChatShortcutIdentifiers(), QStringList{u"commandShiftSpace"_s});
    EXPECT_EQ(stored(keys::translationShortcutIdentifiers), QStringList{u"controlOptionSpace"_s});
    EXPECT_EQ(stored(keys::chatShortcutIdentifiers), QStringList{u"commandShiftSpace"_s});

    probe.heldByOthers.clear();
    EXPECT_EQ(start().TranslationShortcutIdentifiers(), QStringList{u"controlOptionSpace"_s});
}

TEST_F(DesktopDefaultsTest, ACombinationThatIsStillFreeAtLoginIsNotYetStored)
{
    probe.heldByOthers.clear();
    Settings early = start();
    EXPECT_EQ(early.ChatShortcutIdentifiers(), QStringList{u"commandShiftSpace"_s});
    EXPECT_EQ(early.TranslationShortcutIdentifiers(), QStringList{u"optionSpace"_s});
    EXPECT_FALSE(early.lookAtDesktop());
    EXPECT_FALSE(stored(keys::translationShortcutIdentifiers).isValid());
    EXPECT_FALSE(stored(keys::chatShortcutIdentifiers).isValid());

    probe.heldByOthers = {{key_codes::space, KeyModifier::Option}};
    EXPECT_EQ(early.TranslationShortcutIdentifiers(), QStringList{u"optionSpace"_s});
    EXPECT_TRUE(early.lookAtDesktop());
    EXPECT_EQ(early.TranslationShortcutIdentifiers(), QStringList{u"controlOptionSpace"_s});
    EXPECT_EQ(stored(keys::translationShortcutIdentifiers), QStringList{u"controlOptionSpace"_s});
    EXPECT_FALSE(early.lookAtDesktop());
}

TEST_F(DesktopDefaultsTest, ChatGivesWayToATranslationThatMovesLate)
{
    preferences.setValue(keys::dictationShortcutIdentifiers, QStringList{u"commandShiftSpace"_s});
    probe.heldByOthers.clear();
    Settings early = start();
    EXPECT_EQ(early.ChatShortcutIdentifiers(), QStringList{u"controlOptionSpace"_s});

    probe.heldByOthers = {{key_codes::space, KeyModifier::Option}};
    EXPECT_TRUE(early.lookAtDesktop());
    EXPECT_EQ(early.TranslationShortcutIdentifiers(), QStringList{u"controlOptionSpace"_s});
    EXPECT_EQ(early.ChatShortcutIdentifiers(), QStringList());
}

TEST_F(DesktopDefaultsTest, ChatKeepsItsDefaultThoughAnotherProgramHoldsIt)
{
    probe.keptUnlessHeld = false;
    probe.heldByOthers = {
        {key_codes::space, KeyModifiers(KeyModifier::Command) | KeyModifier::Shift}};
    Settings held = start();
    EXPECT_EQ(held.TranslationShortcutIdentifiers(), QStringList{u"optionSpace"_s});
    EXPECT_EQ(held.ChatShortcutIdentifiers(), QStringList{u"commandShiftSpace"_s});
    EXPECT_EQ(stored(keys::chatShortcutIdentifiers), QStringList{u"commandShiftSpace"_s});
    EXPECT_FALSE(held.lookAtDesktop());
}

TEST_F(DesktopDefaultsTest, TheDesktopsCombinationIsBetterThanOneOfDictation)
{
    preferences.setValue(keys::dictationShortcutIdentifiers, QStringList{u"controlOptionSpace"_s});
    EXPECT_EQ(start().TranslationShortcutIdentifiers(), QStringList{u"optionSpace"_s});
}

TEST_F(DesktopDefaultsTest, WhatIsStoredStaysAndAsksNobody)
{
    preferences.setValue(keys::translationShortcutIdentifiers, QStringList{u"optionSpace"_s});
    Settings settled = start();
    EXPECT_FALSE(settled.lookAtDesktop());
    EXPECT_EQ(settled.TranslationShortcutIdentifiers(), QStringList{u"optionSpace"_s});
    EXPECT_EQ(probe.questionsForTheDesktop, 0);
}

TEST_F(DesktopDefaultsTest, ADesktopThatKeepsNothingStoresTheDefaultAtOnce)
{
    probe.keptUnlessHeld = false;
    probe.heldByOthers.clear();
    EXPECT_EQ(start().TranslationShortcutIdentifiers(), QStringList{u"optionSpace"_s});
    EXPECT_EQ(stored(keys::translationShortcutIdentifiers), QStringList{u"optionSpace"_s});
}

TEST_F(SettingsTest, StoredListsAreAuthoritativeAndLeftAlone)
{
    const QVariantList stored{u"none"_s, u"optionSpace"_s, u"leftOption"_s, u"rightOption"_s};
    for (const QString& key : {keys::dictationShortcutIdentifiers,
             keys::translationShortcutIdentifiers, keys::chatShortcutIdentifiers})
        preferences.setValue(key, stored);

    const QStringList expected{u"optionSpace"_s, u"leftOption"_s};
    EXPECT_EQ(settings.DictationShortcutIdentifiers(), expected);
    EXPECT_EQ(settings.TranslationShortcutIdentifiers(), expected);
    EXPECT_EQ(settings.ChatShortcutIdentifiers(), expected);
    EXPECT_EQ(preferences.value(keys::dictationShortcutIdentifiers), QVariant(stored));
}

TEST_F(SettingsTest, AnEmptyListStaysEmpty)
{
    for (const QString& key : {keys::dictationShortcutIdentifiers,
             keys::translationShortcutIdentifiers, keys::chatShortcutIdentifiers})
        preferences.setValue(key, QVariantList());
    setLanguage(u"en"_s);

    EXPECT_EQ(settings.DictationShortcutIdentifiers(), QStringList());
    EXPECT_EQ(settings.TranslationShortcutIdentifiers(), QStringList());
    EXPECT_EQ(settings.ChatShortcutIdentifiers(), QStringList());
    EXPECT_EQ(settings.ShortcutDisplayName(), u"Not set"_s);
    EXPECT_EQ(preferences.value(keys::dictationShortcutIdentifiers), QVariant(QVariantList()));
}

TEST_F(SettingsTest, TheFirstDictationShortcutIsTheOneThatIsNamed)
{
    preferences.setValue(
        keys::dictationShortcutIdentifiers, QStringList{u"controlOptionSpace"_s, u"rightOption"_s});

    EXPECT_EQ(settings.ShortcutDisplayName(), u"⌃⌥ Space"_s);
}

TEST_F(SettingsTest, ListsOfTheWrongTypeAreReplacedByTheDefaults)
{
    QVariantList garbages = neitherStringNorList;
    garbages.append(u"leftOption"_s);

    for (const QVariant& garbage : garbages) {
        for (const QString& key : {keys::dictationShortcutIdentifiers,
                 keys::translationShortcutIdentifiers, keys::chatShortcutIdentifiers})
            preferences.setValue(key, garbage);
        EXPECT_EQ(settings.ChatShortcutIdentifiers(), QStringList{u"commandShiftSpace"_s});
        EXPECT_EQ(settings.TranslationShortcutIdentifiers(), QStringList{u"optionSpace"_s});
        EXPECT_EQ(settings.DictationShortcutIdentifiers(), QStringList{u"rightOption"_s});
    }
}

} // namespace
} // namespace tavrin
