#include "ui/pages/InputOutputPage.h"

#include "app/menu/StatusMenu.h"
#include "app/pages/InputOutputController.h"
#include "app/settings/Settings.h"
#include "app/shortcuts/ShortcutMonitor.h"
#include "app/shortcuts/ShortcutSettings.h"
#include "support/ports/InMemoryHotKeyProbe.h"
#include "support/ports/InMemoryKeyMonitor.h"
#include "support/ports/InMemoryStatusItem.h"
#include "ui/controls/Card.h"
#include "ui/controls/Label.h"
#include "ui/pages/PageFixture.h"

#include <QComboBox>

#include <optional>

using namespace Qt::StringLiterals;

namespace tavrin::ui {
namespace {

const QStringList popupNames{u"shortcutPopup"_s, u"dictationSecondaryShortcutPopup"_s,
    u"translationShortcutPopup"_s, u"translationSecondaryShortcutPopup"_s, u"chatShortcutPopup"_s,
    u"chatSecondaryShortcutPopup"_s};

class InputOutputPageTest : public testing::PageFixture {
protected:
    testing::InMemoryKeyMonitor keyboard;
    testing::InMemoryHotKeyProbe probe;
    testing::InMemoryStatusItem statusItem;
    Settings settings{preferences, localization};
    ShortcutMonitor monitor{
        keyboard, time, settings, {[] {}, [] { return false; }, [] {}, [](OperationMode) {}}};
    ShortcutSettings shortcutSettings{
        {alerts, probe, localization, preferences, settings, monitor}, {[] {}, [] {}}};
    StatusMenu statusMenu{{localization, settings, statusItem}, StatusMenu::Actions()};
    InputOutputController controller{{settings, shortcutSettings, statusMenu}};
    std::optional<InputOutputPage> page;

    InputOutputPageTest()
    {
        preferences.setValue(keys::dictationShortcutIdentifiers, QStringList{u"rightOption"_s});
        preferences.setValue(keys::translationShortcutIdentifiers,
            QStringList{u"optionSpace"_s, u"controlOptionSpace"_s});
        preferences.setValue(keys::chatShortcutIdentifiers, QStringList{u"commandShiftSpace"_s});
    }

    void open()
    {
        page.emplace(window, controller, localization);
        page->show();
        show();
    }

    QComboBox& popup(const QString& name) const { return named<QComboBox>(name); }

    QStringList shownShortcuts() const
    {
        QStringList shown;
        for (const QString& name : popupNames)
            shown.append(popup(name).currentText());
        return shown;
    }

    QColor statusColor() const
    {
        return named<Label>(u"shortcutStatusLabel"_s).palette().color(QPalette::WindowText);
    }
};

TEST_F(InputOutputPageTest, EverythingHasItsFrame)
{
    open();
    const QList<Card*> cards = window.findChildren<Card*>();
    ASSERT_EQ(cards.size(), 4);
    EXPECT_EQ(frameIn(*cards[0], *page), QRect(36, 376, 538, 152));
    EXPECT_EQ(frameIn(*cards[1], *page), QRect(36, 210, 538, 152));
    EXPECT_EQ(frameIn(*cards[2], *page), QRect(36, 82, 538, 114));
    EXPECT_EQ(frameIn(*cards[3], *page), QRect(36, 28, 538, 40));
    EXPECT_EQ(frameIn(popup(popupNames[0]), *cards[0]), QRect(164, 54, 170, 30));
    EXPECT_EQ(frameIn(popup(popupNames[1]), *cards[0]), QRect(346, 54, 170, 30));
    EXPECT_EQ(frameIn(popup(u"outputStylePopup"_s), *cards[0]), QRect(164, 16, 352, 30));
    EXPECT_EQ(frameIn(popup(u"translationPopup"_s), *cards[1]), QRect(164, 16, 352, 30));
    EXPECT_EQ(frameIn(popup(popupNames[4]), *cards[2]), QRect(164, 16, 170, 30));
    EXPECT_EQ(frameIn(popup(popupNames[5]), *cards[2]), QRect(346, 16, 170, 30));
}

TEST_F(InputOutputPageTest, TheTextsStandFromTopToBottom)
{
    open();

    EXPECT_EQ(labels(),
        (QStringList{u"Input & Output"_s,
            u"Dictation, translation, and chat use separate triggers with up to two shortcuts each."_s,
            u"Dictation"_s,
            u"Keep the source language, remove speech clutter, and apply your style."_s,
            u"Shortcuts"_s, u"Writing style"_s, u"Translation"_s,
            u"Trigger separately to recover intent and output in the target language."_s,
            u"Shortcuts"_s, u"Target language"_s, u"Chat"_s,
            u"Answer a spoken question and insert the response at the current cursor."_s,
            u"Shortcuts"_s,
            u"✓ No internal conflict. Linux cannot list every private shortcut used by other apps."_s}));
}

TEST_F(InputOutputPageTest, ThePopupsShowWhatIsStored)
{
    preferences.setValue(keys::outputStyle, u"meeting"_s);
    preferences.setValue(keys::translationTarget, u"german"_s);
    open();

    EXPECT_EQ(shownShortcuts(),
        (QStringList{u"Right Alt"_s, u"Not set"_s, u"Alt+Space"_s, u"Ctrl+Alt+Space"_s,
            u"Shift+Super+Space"_s, u"Not set"_s}));
    EXPECT_EQ(popup(u"outputStylePopup"_s).currentText(), "Meeting actions");
    EXPECT_EQ(popup(u"outputStylePopup"_s).count(), 6);
    EXPECT_EQ(popup(u"translationPopup"_s).currentText(), "German");
    EXPECT_EQ(popup(u"translationPopup"_s).count(), 42);
    EXPECT_EQ(popup(popupNames[0]).count(), 6);
}

TEST_F(InputOutputPageTest, EachPopupChoosesForItsOwnSlot)
{
    preferences.setValue(keys::dictationShortcutIdentifiers, QStringList());
    preferences.setValue(keys::translationShortcutIdentifiers, QStringList());
    preferences.setValue(keys::chatShortcutIdentifiers, QStringList());
    open();
    for (int slot = 0; slot < 5; ++slot)
        chooseByKeyboard(popup(popupNames[slot]), slot + 1);

    EXPECT_EQ(shownShortcuts(),
        (QStringList{u"Right Alt"_s, u"Left Alt"_s, u"Alt+Space"_s, u"Ctrl+Alt+Space"_s,
            u"Shift+Super+Space"_s, u"Not set"_s}));
    chooseByKeyboard(popup(popupNames[3]), -4);
    chooseByKeyboard(popup(popupNames[5]), 4);
    EXPECT_EQ(shownShortcuts(),
        (QStringList{u"Right Alt"_s, u"Left Alt"_s, u"Alt+Space"_s, u"Not set"_s,
            u"Shift+Super+Space"_s, u"Ctrl+Alt+Space"_s}));
    EXPECT_TRUE(alerts.shown().isEmpty());
}

TEST_F(InputOutputPageTest, ARefusedShortcutGoesBack)
{
    open();
    chooseByKeyboard(popup(popupNames[1]), 1);

    EXPECT_EQ(alerts.shown().size(), 1);
    EXPECT_EQ(popup(popupNames[1]).currentText(), "Not set");
}

TEST_F(InputOutputPageTest, StyleAndLanguageAreStored)
{
    open();
    chooseByKeyboard(popup(u"outputStylePopup"_s), 3);
    chooseByKeyboard(popup(u"translationPopup"_s), 4);

    EXPECT_EQ(preferences.value(keys::outputStyle), QVariant(u"casual"_s));
    EXPECT_EQ(preferences.value(keys::translationTarget), QVariant(u"japanese"_s));
    EXPECT_EQ(popup(u"outputStylePopup"_s).currentText(), "Casual chat");
}

TEST_F(InputOutputPageTest, AConflictIsSaidInOrange)
{
    open();
    EXPECT_EQ(statusColor(), QColor::fromRgbF(0.13F, 0.52F, 0.31F));

    probe.heldByOthers = {{49, KeyModifier::Option}};
    shortcutSettings.updateShortcutStatus();
    EXPECT_EQ(named<Label>(u"shortcutStatusLabel"_s).text(),
        u"⚠ A system shortcut conflict was detected. Choose another shortcut."_s);
    EXPECT_EQ(statusColor(), QColor(0xA6, 0x56, 0x00));
}

TEST_F(InputOutputPageTest, TabReachesEverythingInReadingOrder)
{
    open();

    EXPECT_EQ(tabOrder(*page->firstControl()),
        (QStringList{u"Dictation: first shortcut"_s, u"Dictation: second shortcut"_s,
            u"Writing style"_s, u"Translation: first shortcut"_s, u"Translation: second shortcut"_s,
            u"Target language"_s, u"Chat: first shortcut"_s, u"Chat: second shortcut"_s}));
}

TEST_F(InputOutputPageTest, APageThatIsGoneIsShownNothing)
{
    open();
    page.reset();
    controller.selectShortcut(ShortcutSlot::ChatPrimary, 0);
    statusMenu.selectTranslationMenu(u"german"_s);

    EXPECT_EQ(controller.content().output.translationTarget, 7);
}

} // namespace
} // namespace tavrin::ui
