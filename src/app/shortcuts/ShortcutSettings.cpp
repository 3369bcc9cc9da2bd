#include "app/shortcuts/ShortcutSettings.h"

#include "app/settings/Localization.h"
#include "app/settings/Settings.h"
#include "app/shortcuts/ShortcutConflicts.h"
#include "app/shortcuts/ShortcutMonitor.h"
#include "app/shortcuts/ShortcutTexts.h"
#include "app/vocabulary/SettingsTexts.h"
#include "app/vocabulary/ShortcutItemTable.h"
#include "app/vocabulary/TableIndex.h"
#include "base/Log.h"
#include "platform/Alerts.h"
#include "platform/DesktopTexts.h"
#include "platform/keyboard/HotKeyProbe.h"
#include "platform/preferences/PreferenceKeys.h"
#include "platform/preferences/Preferences.h"

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

const QString none = u"none"_s;

std::size_t place(ShortcutSlot slot)
{
    return static_cast<std::size_t>(slot);
}

QStringList withoutNone(const QString& primary, const QString& secondary)
{
    QStringList identifiers{primary, secondary};
    identifiers.removeAll(none);
    return identifiers;
}

} // namespace

ShortcutSettings::ShortcutSettings(const Neighbours& neighbours, Actions actions)
    : m_neighbours(neighbours)
    , m_actions(std::move(actions))
{
}

void ShortcutSettings::selectShortcut(ShortcutSlot slot, qsizetype index)
{
    const QString identifier = itemAtClampedIndex(shortcutItems, index).identifier.toString();
    Choices choices = storedChoices();
    choices.at(place(slot)) = identifier;
    if (identifier != none && std::ranges::count(choices, identifier) > 1) {
        refuse();
        return;
    }
    store(choices);
    m_neighbours.shortcutMonitor.clearHeldKeys();
    refreshShortcutControls();
    updateShortcutStatus();
    m_actions.updateUI();
}

void ShortcutSettings::refreshShortcutControls()
{
    show();
    m_actions.refreshToolTip();
}

void ShortcutSettings::updateShortcutStatus()
{
    const QStringList taken = takenCombinations();
    if (taken != m_taken)
        logTaken(taken);
    m_taken = taken;
    show();
}

ShortcutContent ShortcutSettings::content()
{
    const Localization& localization = m_neighbours.localization;
    const Choices choices = storedChoices();
    const auto name = [&](ShortcutSlot slot) {
        return m_neighbours.settings.ShortcutDisplayNameForIdentifier(choices.at(place(slot)));
    };
    ShortcutContent content;
    std::ranges::transform(choices, content.rows.begin(),
        [](const QString& identifier) { return indexOfIdentifier(shortcutItems, identifier); });
    content.instruction =
        localization.LT(texts::shortcutSummary, name(ShortcutSlot::DictationPrimary),
            name(ShortcutSlot::TranslationPrimary), name(ShortcutSlot::ChatPrimary));
    content.status = m_taken.isEmpty() ? ShortcutStatus::NoConflict : ShortcutStatus::Conflict;
    content.statusText = m_taken.isEmpty()
        ? localization.desktopText(&DesktopTexts::noShortcutConflict, texts::noShortcutConflict)
        : localization.LT(texts::shortcutConflict);
    return content;
}

void ShortcutSettings::show()
{
    if (m_view)
        m_view->setContent(content());
}

ShortcutSettings::Choices ShortcutSettings::storedChoices()
{
    const QStringList dictation = m_neighbours.settings.DictationShortcutIdentifiers();
    const QStringList translation = m_neighbours.settings.TranslationShortcutIdentifiers();
    const QStringList chat = m_neighbours.settings.ChatShortcutIdentifiers();
    return {dictation.value(0, none), dictation.value(1, none), translation.value(0, none),
        translation.value(1, none), chat.value(0, none), chat.value(1, none)};
}

void ShortcutSettings::store(const Choices& choices)
{
    const auto& [dictation, dictation2, translation, translation2, chat, chat2] = choices;
    const QStringList dictationIdentifiers = withoutNone(dictation, dictation2);
    Preferences& preferences = m_neighbours.preferences;
    preferences.setValue(keys::dictationShortcutIdentifiers, dictationIdentifiers);
    preferences.setValue(
        keys::translationShortcutIdentifiers, withoutNone(translation, translation2));
    preferences.setValue(keys::chatShortcutIdentifiers, withoutNone(chat, chat2));
    preferences.setValue(keys::shortcutMode, dictationIdentifiers.value(0, none));
    preferences.synchronize();
}

void ShortcutSettings::refuse()
{
    const Localization& localization = m_neighbours.localization;
    Alert alert;
    alert.messageText = localization.LT(texts::shortcutAlreadyInUse);
    alert.informativeText = localization.LT(texts::chooseAnotherShortcut);
    alert.buttons = {localization.LT(texts::ok)};
    m_neighbours.alerts.show(alert, [](const AlertAnswer&) {});
    refreshShortcutControls();
}

QStringList ShortcutSettings::takenCombinations() const
{
    QStringList identifiers;
    for (const SpaceShortcut& shortcut :
        takenShortcuts(m_neighbours.settings, m_neighbours.hotKeyProbe))
        identifiers.append(shortcut.identifier.toString());
    return identifiers;
}

void ShortcutSettings::logTaken(const QStringList& identifiers) const
{
    for (const QString& identifier : identifiers)
        qCWarning(log::app).noquote()
            << "Another program holds the shortcut"
            << m_neighbours.settings.ShortcutDisplayNameForIdentifier(identifier);
    if (identifiers.isEmpty())
        qCInfo(log::app) << "No other program holds the shortcuts any more.";
}

} // namespace tavrin
