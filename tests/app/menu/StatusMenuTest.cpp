#include "app/menu/StatusMenu.h"

#include "app/FakePanels.h"
#include "app/menu/MenuBarIcon.h"
#include "app/settings/Localization.h"
#include "app/settings/Settings.h"
#include "app/vocabulary/OutputStyles.h"
#include "app/vocabulary/TranslationTargets.h"
#include "platform/preferences/PreferenceKeys.h"
#include "support/QtPrinters.h"
#include "support/ports/InMemoryPreferences.h"
#include "support/ports/InMemoryStatusItem.h"
#include "support/ports/InMemoryWorkspace.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

/// Everything that the menu and its item say, in one interface language.
struct Wording {
    QString language;
    QString label;
    QString launchToolTip;
    QString targetToolTip; ///< With German as the target.
    QStringList titles;
};

const QList<Wording> wordings{
    {u"zh-Hans"_s, u"Tavrin 语音输入"_s, u"语音输入 右 Option · 翻译 ⌥ Space · 畅聊 ⇧⌘ Space"_s,
        u"语音 右 Option · 翻译 ⌥ Space → 德语 · 畅聊 ⇧⌘ Space"_s,
        {u"开始语音输入（右 Option）"_s, u"开始翻译（⌥ Space → 英语）"_s, u"开始畅聊（⇧⌘ Space）"_s,
            u"文本风格"_s, u"翻译目标"_s, QString(), u"显示 Tavrin"_s, u"历史记录…"_s,
            u"写作风格设置…"_s, u"检查更新…"_s, u"退出 Tavrin"_s}},
    {u"zh-Hant"_s, u"Tavrin 語音輸入"_s, u"語音輸入 右 Option · 翻譯 ⌥ Space · 暢聊 ⇧⌘ Space"_s,
        u"語音 右 Option · 翻譯 ⌥ Space → 德語 · 暢聊 ⇧⌘ Space"_s,
        {u"開始語音輸入（右 Option）"_s, u"開始翻譯（⌥ Space → 英語）"_s, u"開始暢聊（⇧⌘ Space）"_s,
            u"文字風格"_s, u"翻譯目標"_s, QString(), u"顯示 Tavrin"_s, u"歷史記錄…"_s,
            u"寫作風格設定…"_s, u"檢查更新…"_s, u"結束 Tavrin"_s}},
    {u"en"_s, u"Tavrin voice input"_s,
        u"Dictation Right Option · Translation ⌥ Space · Chat ⇧⌘ Space"_s,
        u"Dictation Right Option · Translation ⌥ Space → German · Chat ⇧⌘ Space"_s,
        {u"Start dictation (Right Option)"_s, u"Start translation (⌥ Space → English)"_s,
            u"Start chat (⇧⌘ Space)"_s, u"Writing style"_s, u"Translation target"_s, QString(),
            u"Show Tavrin"_s, u"History…"_s, u"Writing style settings…"_s, u"Check for updates…"_s,
            u"Quit Tavrin"_s}},
};

class StatusMenuTest : public ::testing::Test {
protected:
    testing::InMemoryPreferences preferences;
    testing::InMemoryWorkspace workspace;
    testing::InMemoryStatusItem item;
    testing::FakeView<OutputContent> popups;
    Localization localization{preferences, workspace, KeyNames()};
    Settings settings{preferences, localization};
    QStringList pressed;
    StatusMenu menu{{localization, settings, item},
        {
            [this](OperationMode mode) {
                pressed.append(QString("toggle %1").arg(static_cast<int>(mode)));
            },
            [this] { pressed.append("showMainWindow"); },
            [this] { pressed.append("showHistoryWindow"); },
            [this] { pressed.append("showPersonalizationWindow"); },
            [this] { pressed.append("checkForUpdatesNow"); },
            [this] { pressed.append("quit"); },
        }};

    StatusMenuTest()
    {
        speak("en");
        menu.setOutputView(&popups);
    }

    void speak(const QString& language) { preferences.setValue(keys::interfaceLanguage, language); }

    QString stored(const QString& key) const { return preferences.value(key).toString(); }

    QStringList titles() const
    {
        QStringList result;
        for (const MenuItem& entry : item.menu)
            result.append(entry.title);
        return result;
    }
};

TEST_F(StatusMenuTest, TheIconIsTheProductsNameInARoundedFrame)
{
    EXPECT_EQ(createMenuBarIcon(),
        (StatusImage{.width = 34,
            .height = 18,
            .frameX = 1.25,
            .frameY = 2.25,
            .frameWidth = 31.5,
            .frameHeight = 13.5,
            .cornerRadius = 3.5,
            .lineWidth = 1.8,
            .text = "Tav",
            .fontSize = 8.5,
            .textOffsetY = -0.3,
            .accessibilityDescription = "Tavrin"}));
}

TEST_F(StatusMenuTest, TheItemShowsTheIconAndNoTitle)
{
    menu.configureMenu();

    EXPECT_EQ(item.length, 38);
    EXPECT_TRUE(item.visible);
    EXPECT_EQ(item.image, createMenuBarIcon());
    EXPECT_EQ(item.title, QString());
}

TEST_F(StatusMenuTest, ItemAndMenuSpeakEveryLanguage)
{
    for (const Wording& wording : wordings) {
        preferences.remove(keys::translationTarget);
        speak(wording.language);
        menu.configureMenu();

        EXPECT_EQ(item.accessibilityLabel, wording.label);
        EXPECT_EQ(item.toolTip, wording.launchToolTip);
        EXPECT_EQ(titles(), wording.titles);

        menu.selectTranslationMenu("german");
        EXPECT_EQ(item.toolTip, wording.targetToolTip);
    }
}

TEST_F(StatusMenuTest, OnlyQuitHasAKey)
{
    menu.configureMenu();

    for (const MenuItem& entry : item.menu)
        EXPECT_EQ(entry.keyEquivalent, entry.title == "Quit Tavrin" ? "q" : QString());
}

TEST_F(StatusMenuTest, ASeparatorStandsBeforeTheWindows)
{
    menu.configureMenu();

    for (qsizetype row = 0; row < item.menu.size(); ++row)
        EXPECT_EQ(item.menu[row].separator, row == 5);
}

TEST_F(StatusMenuTest, EveryItemDoesWhatItSays)
{
    menu.configureMenu();
    for (const QString& title : titles()) {
        if (!title.isEmpty())
            item.press(title);
    }

    EXPECT_EQ(pressed,
        QStringList({"toggle 0", "toggle 1", "toggle 2", "showMainWindow", "showHistoryWindow",
            "showPersonalizationWindow", "checkForUpdatesNow", "quit"}));
}

TEST_F(StatusMenuTest, OperationsWithoutShortcutsSayThatNoneIsSet)
{
    for (const QString& key : {keys::dictationShortcutIdentifiers,
             keys::translationShortcutIdentifiers, keys::chatShortcutIdentifiers})
        preferences.setValue(key, QVariantList());
    menu.configureMenu();

    EXPECT_EQ(item.toolTip, "Dictation Not set · Translation Not set · Chat Not set");
    EXPECT_EQ(item.menu[0].title, "Start dictation (Not set)");
    EXPECT_EQ(item.menu[1].title, "Start translation (Not set → English)");
    EXPECT_EQ(item.menu[2].title, "Start chat (Not set)");
}

TEST_F(StatusMenuTest, TheFirstOfTwoShortcutsIsShown)
{
    preferences.setValue(
        keys::dictationShortcutIdentifiers, QStringList({"leftOption", "rightOption"}));
    menu.configureMenu();

    EXPECT_EQ(item.menu[0].title, "Start dictation (Left Option)");
}

TEST_F(StatusMenuTest, TheWritingStylesStandInOrderWithTheStoredOneChecked)
{
    preferences.setValue(keys::outputStyle, "casual");
    menu.configureMenu();

    QStringList styles;
    for (const MenuItem& style : item.item("Writing style").children)
        styles.append(style.title);
    EXPECT_EQ(styles,
        QStringList({"Professional (Default)", "Social · Emoji", "Business email", "Casual chat",
            "Meeting actions", "AI prompt"}));
    EXPECT_EQ(item.checked("Writing style"), QStringList{"Casual chat"});
}

TEST_F(StatusMenuTest, TheTargetsStandInOrderWithTheStoredOneChecked)
{
    preferences.setValue(keys::translationTarget, "swahili");
    menu.configureMenu();

    const auto& targets = item.item("Translation target").children;
    ASSERT_EQ(targets.size(), 42);
    for (std::size_t row = 0; row < translationTargets.size(); ++row) {
        EXPECT_EQ(targets[static_cast<qsizetype>(row)].title,
            translationTargets.at(row).name.en.toString());
    }
    EXPECT_EQ(item.checked("Translation target"), QStringList{"Swahili"});
}

TEST_F(StatusMenuTest, StoredValuesOfOtherTypesReadAsTheDefaults)
{
    preferences.setValue(keys::outputStyle, 7);
    preferences.setValue(keys::translationTarget, QVariantList{"german"});
    preferences.setValue(keys::chatShortcutIdentifiers, "optionSpace");
    menu.configureMenu();

    EXPECT_EQ(item.checked("Writing style"), QStringList{"Professional (Default)"});
    EXPECT_EQ(item.checked("Translation target"), QStringList{"English"});
    EXPECT_EQ(item.menu[2].title, "Start chat (⇧⌘ Space)");
}

TEST_F(StatusMenuTest, UnknownStoredValuesAreCheckedNowhereAndShownAsTheyAre)
{
    preferences.setValue(keys::outputStyle, "haiku");
    preferences.setValue(keys::translationTarget, "klingon");
    menu.configureMenu();
    menu.refreshTranslationControls();

    EXPECT_EQ(item.checked("Writing style"), QStringList());
    EXPECT_EQ(item.checked("Translation target"), QStringList());
    EXPECT_EQ(popups.shown.value().translationTarget, 0);
    EXPECT_EQ(item.menu[1].title, "Start translation (⌥ Space → klingon)");
    EXPECT_EQ(
        item.toolTip, "Dictation Right Option · Translation ⌥ Space → klingon · Chat ⇧⌘ Space");
}

TEST_F(StatusMenuTest, AStyleChosenInTheMenuIsStoredCheckedAndSelectedInThePopup)
{
    menu.configureMenu();
    for (std::size_t row = 0; row < outputStyles.size(); ++row) {
        const QString title = outputStyles.at(row).title.en.toString();
        item.press("Writing style", title);

        EXPECT_EQ(stored(keys::outputStyle), outputStyles.at(row).identifier.toString());
        EXPECT_EQ(item.checked("Writing style"), QStringList{title});
        EXPECT_EQ(popups.shown.value().outputStyle, static_cast<qsizetype>(row));
    }
    EXPECT_EQ(preferences.synchronizations(), 0);
}

TEST_F(StatusMenuTest, AStyleChosenInThePopupIsStoredAndChecked)
{
    menu.configureMenu();
    menu.selectStylePopup(4);

    EXPECT_EQ(stored(keys::outputStyle), "meeting");
    EXPECT_EQ(item.checked("Writing style"), QStringList{"Meeting actions"});
    EXPECT_EQ(preferences.synchronizations(), 0);
}

TEST_F(StatusMenuTest, TheStylePopupsIndexIsClampedIntoTheTable)
{
    menu.configureMenu();
    menu.selectStylePopup(-1);
    EXPECT_EQ(stored(keys::outputStyle), "professional");

    menu.selectStylePopup(6);
    EXPECT_EQ(stored(keys::outputStyle), "aiPrompt");
    EXPECT_EQ(item.checked("Writing style"), QStringList{"AI prompt"});
}

TEST_F(StatusMenuTest, AfterAChangeOfLanguageTheStyleIsStoredAndTheOldMenuLeftAlone)
{
    menu.configureMenu();
    speak("zh-Hans");
    menu.selectStylePopup(4);

    EXPECT_EQ(stored(keys::outputStyle), "meeting");
    EXPECT_EQ(item.checked("Writing style"), QStringList{"Professional (Default)"});
}

TEST_F(StatusMenuTest, ATargetChosenInTheMenuIsStoredAndShownEverywhere)
{
    menu.configureMenu();
    for (std::size_t row = 0; row < translationTargets.size(); ++row) {
        const QString title = translationTargets.at(row).name.en.toString();
        item.press("Translation target", title);

        EXPECT_EQ(
            stored(keys::translationTarget), translationTargets.at(row).identifier.toString());
        EXPECT_EQ(preferences.flushed(keys::translationTarget).toString(),
            stored(keys::translationTarget));
        EXPECT_EQ(item.checked("Translation target"), QStringList{title});
        EXPECT_EQ(popups.shown.value().translationTarget, static_cast<qsizetype>(row));
        EXPECT_EQ(item.menu[1].title, QString("Start translation (⌥ Space → %1)").arg(title));
    }
    EXPECT_EQ(preferences.synchronizations(), 42);
}

TEST_F(StatusMenuTest, TheTranslationPopupsIndexIsClampedIntoTheTable)
{
    menu.configureMenu();
    menu.selectTranslationPopup(42);
    EXPECT_EQ(stored(keys::translationTarget), "swahili");

    menu.selectTranslationPopup(-1);
    EXPECT_EQ(stored(keys::translationTarget), "english");
    EXPECT_EQ(preferences.synchronizations(), 2);
    EXPECT_EQ(item.checked("Translation target"), QStringList{"English"});
}

TEST_F(StatusMenuTest, ATargetChosenDuringASessionLeavesTheSessionsTitles)
{
    menu.configureMenu();
    menu.updateUI(SessionState::Recording, OperationMode::Chat);
    menu.selectTranslationMenu("german");

    EXPECT_EQ(item.title, u"聊"_s);
    EXPECT_EQ(item.menu[1].title, "Translation unavailable during chat");
}

TEST_F(StatusMenuTest, SelectionsWorkWithoutASettingsPage)
{
    menu.setOutputView(nullptr);
    menu.configureMenu();
    menu.selectStyle("meeting");
    menu.selectTranslationMenu("german");

    EXPECT_EQ(item.checked("Writing style"), QStringList{"Meeting actions"});
    EXPECT_EQ(item.checked("Translation target"), QStringList{"German"});
}

TEST_F(StatusMenuTest, AStyleChosenBeforeThereIsAMenuIsStoredAndShownByIt)
{
    menu.selectStyle("meeting");
    EXPECT_EQ(stored(keys::outputStyle), "meeting");
    EXPECT_EQ(popups.shown.value().outputStyle, 4);
    EXPECT_EQ(item.menuChanges, 0);

    menu.configureMenu();
    EXPECT_EQ(item.checked("Writing style"), QStringList{"Meeting actions"});
}

TEST_F(StatusMenuTest, AStyleChosenInThePopupBeforeThereIsAMenuIsStoredAndShownByIt)
{
    menu.selectStylePopup(4);
    EXPECT_EQ(stored(keys::outputStyle), "meeting");
    EXPECT_EQ(item.menuChanges, 0);

    menu.configureMenu();
    EXPECT_EQ(item.checked("Writing style"), QStringList{"Meeting actions"});
}

TEST_F(StatusMenuTest, ShortcutsThatChangedAreShownInTheToolTip)
{
    menu.configureMenu();
    preferences.setValue(keys::dictationShortcutIdentifiers, QStringList{"leftOption"});
    menu.refreshToolTip();

    EXPECT_EQ(item.toolTip, "Dictation Left Option · Translation ⌥ Space · Chat ⇧⌘ Space");
}

TEST_F(StatusMenuTest, WhileRecordingTheItemShowsTheOperation)
{
    menu.configureMenu();
    for (const auto& [mode, title] : {std::pair{OperationMode::Dictation, u"●"_s},
             std::pair{OperationMode::Translation, u"译"_s},
             std::pair{OperationMode::Chat, u"聊"_s}}) {
        menu.updateUI(SessionState::Recording, mode);
        EXPECT_EQ(item.image, StatusImage{});
        EXPECT_EQ(item.title, title);
    }
}

TEST_F(StatusMenuTest, WhileProcessingTheItemShowsDots)
{
    menu.configureMenu();
    menu.updateUI(SessionState::Processing, OperationMode::Translation);

    EXPECT_EQ(item.image, StatusImage{});
    EXPECT_EQ(item.title, u"…"_s);
}

TEST_F(StatusMenuTest, AfterASessionTheItemIsAsBefore)
{
    menu.configureMenu();
    const QStringList before = titles();
    menu.updateUI(SessionState::Recording, OperationMode::Chat);
    menu.updateUI(SessionState::Processing, OperationMode::Chat);
    menu.updateUI(SessionState::Idle, OperationMode::Chat);

    EXPECT_EQ(item.image, createMenuBarIcon());
    EXPECT_EQ(item.title, QString());
    EXPECT_EQ(titles(), before);
    for (qsizetype row = 0; row < 3; ++row)
        EXPECT_TRUE(item.menu[row].enabled);
}

TEST_F(StatusMenuTest, ADisabledOperationCannotBePressed)
{
    menu.configureMenu();
    menu.updateUI(SessionState::Recording, OperationMode::Dictation);
    item.press("Translation unavailable during dictation");
    item.press("Finish and insert (Right Option)");

    EXPECT_EQ(pressed, QStringList{"toggle 0"});
}

TEST_F(StatusMenuTest, BeforeTheMenuIsThereAStateChangesNothing)
{
    menu.updateUI(SessionState::Recording, OperationMode::Dictation);

    EXPECT_EQ(item.menuChanges, 0);
    EXPECT_EQ(item.title, QString());
}

} // namespace
} // namespace tavrin
