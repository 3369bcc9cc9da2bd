#include "app/pages/InputOutputController.h"

#include "app/FakePanels.h"
#include "app/menu/StatusMenu.h"
#include "app/pages/Captions.h"
#include "app/pages/InputOutputTexts.h"
#include "app/settings/Localization.h"
#include "app/settings/Settings.h"
#include "app/shortcuts/ShortcutMonitor.h"
#include "app/shortcuts/ShortcutSettings.h"
#include "platform/preferences/PreferenceKeys.h"
#include "support/QtPrinters.h"
#include "support/ports/InMemoryHotKeyProbe.h"
#include "support/ports/InMemoryKeyMonitor.h"
#include "support/ports/InMemoryPreferences.h"
#include "support/ports/InMemoryStatusItem.h"
#include "support/ports/InMemoryWorkspace.h"
#include "support/ports/ScriptedAlerts.h"
#include "support/ports/VirtualTime.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

class InputOutputControllerTest : public ::testing::Test {
protected:
    testing::VirtualTime time;
    testing::InMemoryKeyMonitor keyboard;
    testing::InMemoryHotKeyProbe probe;
    testing::InMemoryPreferences preferences;
    testing::InMemoryWorkspace workspace;
    testing::InMemoryStatusItem statusItem;
    testing::ScriptedAlerts alerts;
    Localization localization{preferences, workspace, KeyNames()};
    Settings settings{preferences, localization};
    ShortcutMonitor monitor{
        keyboard, time, settings, {[] {}, [] { return false; }, [] {}, [](OperationMode) {}}};
    ShortcutSettings shortcutSettings{
        {alerts, probe, localization, preferences, settings, monitor}, {[] {}, [] {}}};
    StatusMenu statusMenu{{localization, settings, statusItem}, StatusMenu::Actions()};
    testing::FakeView<InputOutputContent> page;
    InputOutputController controller{{settings, shortcutSettings, statusMenu}};

    InputOutputControllerTest()
    {
        preferences.setValue(keys::interfaceLanguage, u"en"_s);
        preferences.setValue(keys::dictationShortcutIdentifiers, QStringList{u"rightOption"_s});
        preferences.setValue(keys::translationShortcutIdentifiers,
            QStringList{u"optionSpace"_s, u"controlOptionSpace"_s});
        preferences.setValue(keys::chatShortcutIdentifiers, QStringList{u"commandShiftSpace"_s});
        controller.setView(&page);
    }

    using Rows = std::array<qsizetype, 6>;
};

TEST_F(InputOutputControllerTest, EverythingStoredIsShown)
{
    preferences.setValue(keys::outputStyle, u"meeting"_s);
    preferences.setValue(keys::translationTarget, u"german"_s);
    const InputOutputContent content = controller.content();

    EXPECT_EQ(content.shortcuts.rows, (Rows{1, 0, 3, 4, 5, 0}));
    EXPECT_EQ(content.output, (OutputContent{.outputStyle = 4, .translationTarget = 7}));
    EXPECT_EQ(content.shortcuts.status, ShortcutStatus::NoConflict);
    EXPECT_EQ(content.shortcuts.statusText,
        "✓ No internal conflict. macOS cannot list every private shortcut used by other apps.");
}

TEST_F(InputOutputControllerTest, UnknownStyleAndLanguageShowTheFirstRow)
{
    preferences.setValue(keys::outputStyle, u"sonnet"_s);
    preferences.setValue(keys::translationTarget, u"klingon"_s);

    EXPECT_EQ(controller.content().output, OutputContent());
}

TEST_F(InputOutputControllerTest, AChosenShortcutIsStoredAndShown)
{
    controller.selectShortcut(ShortcutSlot::DictationSecondary, 2);

    EXPECT_EQ(page.shown->shortcuts.rows, (Rows{1, 2, 3, 4, 5, 0}));
    EXPECT_EQ(preferences.flushed(keys::dictationShortcutIdentifiers).toStringList(),
        (QStringList{u"rightOption"_s, u"leftOption"_s}));
}

TEST_F(InputOutputControllerTest, ARefusedShortcutGoesBack)
{
    controller.selectShortcut(ShortcutSlot::ChatSecondary, 3);

    EXPECT_EQ(page.shown->shortcuts.rows, (Rows{1, 0, 3, 4, 5, 0}));
    ASSERT_EQ(alerts.shown().size(), 1);
    EXPECT_EQ(alerts.shown()[0].messageText, "Shortcut already in use");
}

TEST_F(InputOutputControllerTest, AConflictIsShownAndGoesWithTheShortcut)
{
    probe.heldByOthers = {{49, KeyModifier::Option}};
    shortcutSettings.updateShortcutStatus();
    EXPECT_EQ(page.shown->shortcuts.status, ShortcutStatus::Conflict);
    EXPECT_EQ(page.shown->shortcuts.statusText,
        "⚠ A system shortcut conflict was detected. Choose another shortcut.");

    controller.selectShortcut(ShortcutSlot::TranslationPrimary, 0);
    EXPECT_EQ(page.shown->shortcuts.status, ShortcutStatus::NoConflict);
}

TEST_F(InputOutputControllerTest, TheChosenStyleStaysWhenAnythingElseIsChosen)
{
    controller.selectStylePopup(3);
    EXPECT_EQ(preferences.value(keys::outputStyle), QVariant(u"casual"_s));
    EXPECT_EQ(page.shown->output.outputStyle, 3);

    controller.selectShortcut(ShortcutSlot::ChatPrimary, 0);
    controller.selectTranslationPopup(4);
    EXPECT_EQ(page.shown->output.outputStyle, 3);
    EXPECT_EQ(page.shown->shortcuts.rows, (Rows{1, 0, 3, 4, 0, 0}));
}

TEST_F(InputOutputControllerTest, TheChosenLanguageIsStoredAndShown)
{
    controller.selectTranslationPopup(41);

    EXPECT_EQ(preferences.flushed(keys::translationTarget), QVariant(u"swahili"_s));
    EXPECT_EQ(page.shown->output.translationTarget, 41);
}

TEST_F(InputOutputControllerTest, WhatTheMenuChoosesShowsOnThePage)
{
    statusMenu.configureMenu();
    statusMenu.selectStyle(u"aiPrompt"_s);
    EXPECT_EQ(page.shown->output.outputStyle, 5);
    statusMenu.selectTranslationMenu(u"korean"_s);
    EXPECT_EQ(page.shown->output.translationTarget, 5);
}

TEST_F(InputOutputControllerTest, ThePopupsHaveTheRowsOfTheirTables)
{
    EXPECT_EQ(controller.shortcutTitles(),
        (QStringList{u"Not set"_s, u"Right Option"_s, u"Left Option"_s, u"⌥ Space"_s, u"⌃⌥ Space"_s,
            u"⇧⌘ Space"_s}));
    EXPECT_EQ(controller.outputStyleTitles(),
        (QStringList{u"Professional (Default)"_s, u"Social · Emoji"_s, u"Business email"_s,
            u"Casual chat"_s, u"Meeting actions"_s, u"AI prompt"_s}));
    const QStringList targets = controller.translationTargetTitles();
    EXPECT_EQ(targets.size(), 42);
    EXPECT_EQ(targets.first(), "English");
    EXPECT_EQ(targets.last(), "Swahili");
}

TEST_F(InputOutputControllerTest, WithoutAPageNobodyIsShownAnything)
{
    controller.setView(nullptr);
    controller.selectShortcut(ShortcutSlot::ChatPrimary, 0);
    controller.selectStylePopup(2);
    controller.selectTranslationPopup(2);

    EXPECT_FALSE(page.shown);
    EXPECT_EQ(controller.content().output, (OutputContent{2, 2}));
}

TEST(InputOutputTextsTest, TheCaptionsAreThereInThreeLanguages)
{
    testing::expectCaptions({
        {texts::inputOutputTitle, u"输入与输出", u"輸入與輸出", u"Input & Output"},
        {texts::inputOutputSubtitle, u"语音输入、翻译与畅聊各用独立触发键，最多两个快捷键。",
            u"語音輸入、翻譯與暢聊各用獨立觸發鍵，最多兩個快捷鍵。",
            u"Dictation, translation, and chat use separate triggers with up to two shortcuts "
            u"each."},
        {texts::dictationCard, u"语音输入", u"語音輸入", u"Dictation"},
        {texts::dictationExplanation, u"保留原语言，去除口语杂质，并套用你的风格。",
            u"保留原語言，去除口語雜質，並套用你的風格。",
            u"Keep the source language, remove speech clutter, and apply your style."},
        {texts::translationCard, u"翻译", u"翻譯", u"Translation"},
        {texts::translationExplanation, u"单独触发，还原意图并以目标语言输出。",
            u"單獨觸發，還原意圖並以目標語言輸出。",
            u"Trigger separately to recover intent and output in the target language."},
        {texts::chatCard, u"畅聊", u"暢聊", u"Chat"},
        {texts::chatExplanation, u"回答你说出的问题，并把答案写入当前光标。",
            u"回答你說出的問題，並把答案寫入目前游標。",
            u"Answer a spoken question and insert the response at the current cursor."},
        {texts::shortcuts, u"快捷键", u"快捷鍵", u"Shortcuts"},
        {texts::targetLanguage, u"目标语言", u"目標語言", u"Target language"},
    });
}

} // namespace
} // namespace tavrin
