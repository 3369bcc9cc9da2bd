#include "app/shortcuts/ShortcutSettings.h"

#include "app/settings/Localization.h"
#include "app/settings/Settings.h"
#include "app/shortcuts/ShortcutMonitor.h"
#include "platform/linux/LinuxTexts.h"
#include "platform/preferences/PreferenceKeys.h"
#include "support/CapturedLog.h"
#include "support/QtPrinters.h"
#include "support/ports/InMemoryHotKeyProbe.h"
#include "support/ports/InMemoryKeyMonitor.h"
#include "support/ports/InMemoryPreferences.h"
#include "support/ports/InMemoryWorkspace.h"
#include "support/ports/ScriptedAlerts.h"
#include "support/ports/VirtualTime.h"

#include <gtest/gtest.h>

#include <optional>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

constexpr KeyModifiers option = KeyModifier::Option;
constexpr KeyModifiers controlOption = option | KeyModifier::Control;
constexpr KeyModifiers commandShift = KeyModifiers(KeyModifier::Command) | KeyModifier::Shift;

// Rows of the popups.
constexpr qsizetype none = 0;
constexpr qsizetype rightOption = 1;
constexpr qsizetype leftOption = 2;
constexpr qsizetype optionSpace = 3;
constexpr qsizetype controlOptionSpace = 4;
constexpr qsizetype commandShiftSpace = 5;

/// A page that nobody sees.
class PaperPage final : public View<ShortcutContent> {
public:
    /// @param calls learns of each content.
    explicit PaperPage(QStringList& calls)
        : m_calls(calls)
    {
    }

    std::optional<ShortcutContent> content;

    void setContent(const ShortcutContent& shown) override
    {
        content = shown;
        m_calls.append(shown.status == ShortcutStatus::Conflict ? u"show conflict"_s : u"show"_s);
    }

    [[nodiscard]] QList<qsizetype> rows() const
    {
        const auto& shown = content.value().rows;
        return {shown.begin(), shown.end()};
    }

    [[nodiscard]] qsizetype row(ShortcutSlot slot) const
    {
        return content.value().rows.at(static_cast<std::size_t>(slot));
    }

private:
    QStringList& m_calls;
};

class ShortcutSettingsTest : public ::testing::Test {
protected:
    testing::VirtualTime time;
    testing::InMemoryKeyMonitor keyboard;
    testing::InMemoryHotKeyProbe probe;
    testing::InMemoryPreferences preferences;
    testing::InMemoryWorkspace workspace;
    testing::ScriptedAlerts alerts;
    Localization localization{preferences, workspace, KeyNames()};
    Settings settings{preferences, localization};
    ShortcutMonitor monitor{
        keyboard, time, settings, {[] {}, [] { return false; }, [] {}, [](OperationMode) {}}};
    QStringList calls;
    PaperPage page{calls};
    ShortcutSettings shortcuts{{alerts, probe, localization, preferences, settings, monitor},
        {[this] { calls.append(u"refreshToolTip"_s); }, [this] { calls.append(u"updateUI"_s); }}};

    ShortcutSettingsTest()
    {
        preferences.setValue(keys::interfaceLanguage, u"en"_s);
        shortcuts.setView(&page);
        assign({u"rightOption"_s}, {u"optionSpace"_s}, {u"commandShiftSpace"_s});
    }

    void assign(
        const QStringList& dictation, const QStringList& translation, const QStringList& chat)
    {
        preferences.setValue(keys::dictationShortcutIdentifiers, dictation);
        preferences.setValue(keys::translationShortcutIdentifiers, translation);
        preferences.setValue(keys::chatShortcutIdentifiers, chat);
        shortcuts.refreshShortcutControls();
        calls.clear();
    }

    void choose(ShortcutSlot slot, qsizetype index) { shortcuts.selectShortcut(slot, index); }

    QList<QStringList> stored() const
    {
        return {preferences.value(keys::dictationShortcutIdentifiers).toStringList(),
            preferences.value(keys::translationShortcutIdentifiers).toStringList(),
            preferences.value(keys::chatShortcutIdentifiers).toStringList()};
    }

    /// What a crash would leave, with the old single setting last.
    QList<QStringList> flushed() const
    {
        QList<QStringList> all;
        for (const QString& key : {keys::dictationShortcutIdentifiers,
                 keys::translationShortcutIdentifiers, keys::chatShortcutIdentifiers})
            all.append(preferences.flushed(key).toStringList());
        all.append({preferences.flushed(keys::shortcutMode).toString()});
        return all;
    }

    QString storedMode() const { return preferences.value(keys::shortcutMode).toString(); }
};

TEST_F(ShortcutSettingsTest, ThePopupsShowTheStoredShortcuts)
{
    EXPECT_EQ(page.rows(),
        (QList<qsizetype>{rightOption, none, optionSpace, none, commandShiftSpace, none}));

    assign({}, {u"leftOption"_s, u"controlOptionSpace"_s}, {u"none"_s, u"rightOption"_s});
    EXPECT_EQ(page.rows(),
        (QList<qsizetype>{none, none, leftOption, controlOptionSpace, rightOption, none}));
}

TEST_F(ShortcutSettingsTest, AChosenShortcutIsStoredForItsOperation)
{
    choose(ShortcutSlot::DictationSecondary, leftOption);
    EXPECT_EQ(stored(),
        (QList<QStringList>{
            {u"rightOption"_s, u"leftOption"_s}, {u"optionSpace"_s}, {u"commandShiftSpace"_s}}));

    choose(ShortcutSlot::TranslationPrimary, controlOptionSpace);
    choose(ShortcutSlot::ChatSecondary, optionSpace);
    EXPECT_EQ(stored(),
        (QList<QStringList>{{u"rightOption"_s, u"leftOption"_s}, {u"controlOptionSpace"_s},
            {u"commandShiftSpace"_s, u"optionSpace"_s}}));
    EXPECT_TRUE(alerts.shown().isEmpty());
    EXPECT_EQ(preferences.synchronizations(), 3);
}

TEST_F(ShortcutSettingsTest, AChoiceOutlivesACrash)
{
    choose(ShortcutSlot::DictationPrimary, leftOption);
    EXPECT_EQ(flushed(),
        (QList<QStringList>{
            {u"leftOption"_s}, {u"optionSpace"_s}, {u"commandShiftSpace"_s}, {u"leftOption"_s}}));

    choose(ShortcutSlot::TranslationPrimary, controlOptionSpace);
    choose(ShortcutSlot::ChatPrimary, none);
    choose(ShortcutSlot::DictationPrimary, none);
    EXPECT_EQ(flushed(), (QList<QStringList>{{}, {u"controlOptionSpace"_s}, {}, {u"none"_s}}));
}

TEST_F(ShortcutSettingsTest, TheOldSingleSettingFollowsTheFirstDictationShortcut)
{
    choose(ShortcutSlot::DictationPrimary, leftOption);
    EXPECT_EQ(storedMode(), u"leftOption"_s);

    choose(ShortcutSlot::DictationSecondary, rightOption);
    choose(ShortcutSlot::DictationPrimary, none);
    EXPECT_EQ(storedMode(), u"rightOption"_s);

    choose(ShortcutSlot::DictationPrimary, none);
    EXPECT_EQ(storedMode(), u"none"_s);
    EXPECT_EQ(stored().first(), QStringList());
}

TEST_F(ShortcutSettingsTest, ASecondShortcutAloneMovesToTheFirstPlace)
{
    choose(ShortcutSlot::ChatSecondary, leftOption);
    choose(ShortcutSlot::ChatPrimary, none);

    EXPECT_EQ(stored().last(), QStringList{u"leftOption"_s});
    EXPECT_EQ(page.row(ShortcutSlot::ChatPrimary), leftOption);
    EXPECT_EQ(page.row(ShortcutSlot::ChatSecondary), none);
}

TEST_F(ShortcutSettingsTest, AShortcutOfAnotherOperationIsRefused)
{
    assign({u"leftOption"_s}, {u"optionSpace"_s}, {});
    const QList<QStringList> before = stored();

    choose(ShortcutSlot::TranslationPrimary, leftOption);

    EXPECT_EQ(stored(), before);
    EXPECT_EQ(preferences.synchronizations(), 0);
    EXPECT_EQ(page.rows(), (QList<qsizetype>{leftOption, none, optionSpace, none, none, none}));
    // The popup shows the refused row until it is told otherwise.
    EXPECT_EQ(calls, QStringList({u"show"_s, u"refreshToolTip"_s}));
    EXPECT_EQ(alerts.open(), 1);
}

TEST_F(ShortcutSettingsTest, TheSameShortcutTwiceForOneOperationIsRefused)
{
    choose(ShortcutSlot::DictationSecondary, rightOption);

    EXPECT_EQ(alerts.open(), 1);
    EXPECT_EQ(stored().first(), QStringList{u"rightOption"_s});
}

TEST_F(ShortcutSettingsTest, TheRefusalIsExplainedInTheInterfaceLanguage)
{
    const QList<std::pair<QString, QStringList>> expected{
        {u"en"_s,
            {u"Shortcut already in use"_s,
                u"Dictation, translation, and chat cannot share the same shortcut. Choose another combination."_s,
                u"OK"_s}},
        {u"zh-Hans"_s,
            {u"快捷键已被占用"_s, u"语音输入、翻译和畅聊不能使用相同快捷键，请选择另一个组合。"_s,
                u"好"_s}},
        {u"zh-Hant"_s,
            {u"快捷鍵已被佔用"_s, u"語音輸入、翻譯和暢聊不能使用相同快捷鍵，請選擇另一個組合。"_s,
                u"好"_s}},
    };

    for (const auto& [language, texts] : expected) {
        preferences.setValue(keys::interfaceLanguage, language);
        choose(ShortcutSlot::ChatSecondary, rightOption);
        const Alert& alert = alerts.shown().last();
        EXPECT_EQ(alert.messageText, texts.at(0));
        EXPECT_EQ(alert.informativeText, texts.at(1));
        EXPECT_EQ(alert.buttons, QStringList{texts.at(2)});
    }
}

TEST_F(ShortcutSettingsTest, NoneIsAcceptedInEverySlot)
{
    for (const ShortcutSlot slot : shortcutSlots)
        choose(slot, none);

    EXPECT_EQ(stored(), (QList<QStringList>{{}, {}, {}}));
    EXPECT_TRUE(alerts.shown().isEmpty());
}

TEST_F(ShortcutSettingsTest, IndexesOutsideTheListMeanTheNearestRow)
{
    assign({u"rightOption"_s}, {}, {});
    choose(ShortcutSlot::ChatPrimary, 99);
    EXPECT_EQ(stored(), (QList<QStringList>{{u"rightOption"_s}, {}, {u"commandShiftSpace"_s}}));

    choose(ShortcutSlot::DictationPrimary, -1);
    EXPECT_EQ(stored(), (QList<QStringList>{{}, {}, {u"commandShiftSpace"_s}}));
}

TEST_F(ShortcutSettingsTest, AfterAChoiceEverythingThatShowsShortcutsIsRefreshedInOrder)
{
    choose(ShortcutSlot::DictationSecondary, leftOption);

    EXPECT_EQ(calls, (QStringList{u"show"_s, u"refreshToolTip"_s, u"show"_s, u"updateUI"_s}));

    calls.clear();
    probe.heldByOthers = {{key_codes::space, option}};
    choose(ShortcutSlot::DictationSecondary, none);
    EXPECT_EQ(
        calls, (QStringList{u"show"_s, u"refreshToolTip"_s, u"show conflict"_s, u"updateUI"_s}));
}

TEST_F(ShortcutSettingsTest, AfterAChoiceAHeldKeyCountsAgain)
{
    const KeyEvent press{KeyEvent::Kind::FlagsChanged, key_codes::rightOption, option, false};
    ASSERT_EQ(monitor.operationForHotKeyEvent(press), OperationMode::Dictation);
    ASSERT_EQ(monitor.operationForHotKeyEvent(press), std::nullopt);

    choose(ShortcutSlot::DictationSecondary, leftOption);

    EXPECT_EQ(monitor.operationForHotKeyEvent(press), OperationMode::Dictation);
}

TEST_F(ShortcutSettingsTest, TheSummaryNamesTheFirstShortcutOfEachOperation)
{
    EXPECT_EQ(page.content.value().instruction,
        u"Dictation Right Option  ·  Translation ⌥ Space  ·  Chat ⇧⌘ Space"_s);

    preferences.setValue(keys::interfaceLanguage, u"zh-Hans"_s);
    assign({u"leftOption"_s, u"rightOption"_s}, {u"controlOptionSpace"_s}, {});
    EXPECT_EQ(
        page.content.value().instruction, u"语音 左 Option  ·  翻译 ⌃⌥ Space  ·  畅聊 未设置"_s);

    preferences.setValue(keys::interfaceLanguage, u"zh-Hant"_s);
    shortcuts.refreshShortcutControls();
    EXPECT_EQ(
        page.content.value().instruction, u"語音 左 Option  ·  翻譯 ⌃⌥ Space  ·  暢聊 未設定"_s);
}

TEST_F(ShortcutSettingsTest, TheToolTipIsRefreshedWithoutAPageToo)
{
    shortcuts.setView(nullptr);

    shortcuts.refreshShortcutControls();
    shortcuts.updateShortcutStatus();

    EXPECT_EQ(calls, QStringList{u"refreshToolTip"_s});
}

TEST_F(ShortcutSettingsTest, WithoutAPageAChoiceChangesOnlyItsOwnSlot)
{
    shortcuts.setView(nullptr);

    shortcuts.selectShortcut(ShortcutSlot::ChatSecondary, leftOption);

    EXPECT_EQ(stored(),
        (QList<QStringList>{
            {u"rightOption"_s}, {u"optionSpace"_s}, {u"commandShiftSpace"_s, u"leftOption"_s}}));
}

TEST_F(ShortcutSettingsTest, OnlySpaceCombinationsAreProbed)
{
    assign({u"rightOption"_s, u"leftOption"_s}, {}, {});
    shortcuts.updateShortcutStatus();
    EXPECT_TRUE(probe.probed.isEmpty());

    assign(
        {u"optionSpace"_s}, {u"rightOption"_s, u"controlOptionSpace"_s}, {u"commandShiftSpace"_s});
    shortcuts.updateShortcutStatus();
    EXPECT_EQ(probe.probed,
        (QList<testing::InMemoryHotKeyProbe::Combination>{{key_codes::space, option},
            {key_codes::space, controlOption}, {key_codes::space, commandShift}}));
}

TEST_F(ShortcutSettingsTest, ACombinationThatAnotherProgramHoldsIsAConflict)
{
    for (const KeyModifiers held : {option, controlOption, commandShift}) {
        probe.heldByOthers = {{key_codes::space, held}};
        assign({u"optionSpace"_s}, {u"controlOptionSpace"_s}, {u"commandShiftSpace"_s});
        shortcuts.updateShortcutStatus();
        EXPECT_EQ(page.content.value().status, ShortcutStatus::Conflict);

        assign({u"rightOption"_s}, {u"leftOption"_s}, {});
        shortcuts.updateShortcutStatus();
        EXPECT_EQ(page.content.value().status, ShortcutStatus::NoConflict);
    }
}

TEST_F(ShortcutSettingsTest, TheLogTellsOnceWhichCombinationsAreHeld)
{
    const testing::CapturedLog log;
    shortcuts.setView(nullptr);
    assign({u"rightOption"_s}, {u"optionSpace"_s}, {u"commandShiftSpace"_s});
    shortcuts.updateShortcutStatus();
    EXPECT_EQ(log.lines(), QStringList());

    probe.heldByOthers = {{key_codes::space, option}, {key_codes::space, controlOption}};
    shortcuts.updateShortcutStatus();
    shortcuts.updateShortcutStatus();
    EXPECT_EQ(log.lines(), QStringList{u"Another program holds the shortcut ⌥ Space"_s});

    probe.heldByOthers = {{key_codes::space, option}, {key_codes::space, commandShift}};
    shortcuts.updateShortcutStatus();
    EXPECT_EQ(log.lines().sliced(1),
        (QStringList{u"Another program holds the shortcut ⌥ Space"_s,
            u"Another program holds the shortcut ⇧⌘ Space"_s}));
}

TEST_F(ShortcutSettingsTest, TheStatusIsExplainedInTheInterfaceLanguage)
{
    const QList<QStringList> expected{
        {u"en"_s,
            u"✓ No internal conflict. macOS cannot list every private shortcut used by other apps."_s,
            u"⚠ A system shortcut conflict was detected. Choose another shortcut."_s},
        {u"zh-Hans"_s, u"✓ Tavrin 内部无冲突。macOS 无法枚举其他软件的全部私有快捷键。"_s,
            u"⚠ 检测到系统级组合键冲突，请更换被占用的快捷键。"_s},
        {u"zh-Hant"_s, u"✓ Tavrin 內部沒有衝突。macOS 無法列出其他軟體的所有私人快捷鍵。"_s,
            u"⚠ 偵測到系統快捷鍵衝突，請更換被佔用的快捷鍵。"_s},
    };

    for (const QStringList& texts : expected) {
        preferences.setValue(keys::interfaceLanguage, texts.at(0));
        probe.heldByOthers.clear();
        shortcuts.updateShortcutStatus();
        EXPECT_EQ(page.content.value().statusText, texts.at(1));
        probe.heldByOthers = {{key_codes::space, option}};
        shortcuts.updateShortcutStatus();
        EXPECT_EQ(page.content.value().statusText, texts.at(2));
    }
}

TEST_F(ShortcutSettingsTest, LinuxExplainsTheStatusInItsOwnWords)
{
    const Localization linux{preferences, workspace, KeyNames(), linuxTexts()};
    ShortcutSettings linuxShortcuts{
        {alerts, probe, linux, preferences, settings, monitor}, {[] {}, [] {}}};
    linuxShortcuts.setView(&page);
    linuxShortcuts.updateShortcutStatus();
    EXPECT_EQ(page.content.value().statusText, linuxTexts().noShortcutConflict->en.toString());
}

} // namespace
} // namespace tavrin
