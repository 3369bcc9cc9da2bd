#include "app/settings/Settings.h"

#include "app/settings/Localization.h"
#include "app/vocabulary/OutputStyles.h"
#include "app/vocabulary/SettingsTexts.h"
#include "app/vocabulary/ShortcutItemTable.h"
#include "app/vocabulary/TranslationTargets.h"
#include "platform/keyboard/HotKeyProbe.h"
#include "platform/preferences/PreferenceKeys.h"
#include "platform/preferences/PreferenceValues.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

constexpr qsizetype maxShortcutsPerOperation = 2;

bool isShortcut(const QString& identifier)
{
    return identifier != "none"_L1
        && std::ranges::any_of(shortcutItems,
            [&](const ShortcutItemRow& item) { return item.identifier == identifier; });
}

} // namespace

Settings::Settings(Preferences& preferences, const Localization& localization, HotKeyProbe* probe)
    : m_preferences(preferences)
    , m_localization(localization)
    , m_probe(probe)
{
    m_optionSpaceIsKept = isOptionSpaceKept();
}

bool Settings::lookAtDesktop()
{
    if (stored(m_preferences, keys::translationShortcutIdentifiers))
        return false;
    const QStringList before = defaultTranslationShortcut();
    m_optionSpaceIsKept = isOptionSpaceKept();
    return defaultTranslationShortcut() != before;
}

std::optional<bool> Settings::isOptionSpaceKept() const
{
    if (!m_probe || stored(m_preferences, keys::translationShortcutIdentifiers))
        return false;
    return m_probe->isKeptByDesktop(key_codes::space, KeyModifier::Option);
}

QString Settings::OutputStyle()
{
    QString style = valueOf(m_preferences, keys::outputStyle);
    if (stored(m_preferences, keys::outputStyle).value_or(style) != style)
        m_preferences.setValue(keys::outputStyle, style);
    return style;
}

void Settings::setOutputStyle(const QString& identifier)
{
    m_preferences.setValue(keys::outputStyle, identifier);
}

QList<SettingChoice> Settings::OutputStyleItems() const
{
    QList<SettingChoice> items;
    for (const OutputStyleRow& style : outputStyles)
        items.append({m_localization.LT(style.title), style.identifier.toString()});
    return items;
}

QString Settings::TranslationTarget() const
{
    return valueOf(m_preferences, keys::translationTarget);
}

void Settings::setTranslationTarget(const QString& identifier)
{
    m_preferences.setValue(keys::translationTarget, identifier);
    m_preferences.synchronize();
}

QList<SettingChoice> Settings::translationTargetItems() const
{
    QList<SettingChoice> items;
    for (const TranslationTargetRow& target : translationTargets)
        items.append({m_localization.LT(target.name), target.identifier.toString()});
    return items;
}

QString Settings::TranslationDisplayNameForTarget(const QString& identifier) const
{
    if (identifier.isNull())
        return m_localization.LT(translationTargets.front().name);
    const auto* const target = std::ranges::find_if(translationTargets,
        [&](const TranslationTargetRow& row) { return row.identifier == identifier; });
    return target == translationTargets.end() ? identifier : m_localization.LT(target->name);
}

QList<SettingChoice> Settings::ShortcutItems() const
{
    QList<SettingChoice> items;
    for (const ShortcutItemRow& item : shortcutItems)
        items.append({m_localization.LT(item.name), item.identifier.toString()});
    return items;
}

QString Settings::ShortcutDisplayNameForIdentifier(const QString& identifier) const
{
    const auto* const item = std::ranges::find_if(
        shortcutItems, [&](const ShortcutItemRow& row) { return row.identifier == identifier; });
    return m_localization.LT(item == shortcutItems.end() ? texts::notSet : item->name);
}

QString Settings::ShortcutDisplayName()
{
    return ShortcutDisplayNameForIdentifier(DictationShortcutIdentifiers().value(0, u"none"_s));
}

QStringList Settings::SanitizedShortcutIdentifiers(const QVariantList& stored)
{
    QStringList identifiers;
    for (const QVariant& element : stored) {
        if (element.typeId() != QMetaType::QString)
            continue;
        const QString identifier = element.toString();
        if (isShortcut(identifier) && !identifiers.contains(identifier))
            identifiers.append(identifier);
        if (identifiers.size() == maxShortcutsPerOperation)
            break;
    }
    return identifiers;
}

QStringList Settings::DictationShortcutIdentifiers()
{
    if (const auto own = stored(m_preferences, keys::dictationShortcutIdentifiers))
        return SanitizedShortcutIdentifiers(*own);

    QStringList identifiers =
        SanitizedShortcutIdentifiers({valueOf(m_preferences, keys::shortcutMode)});
    if (identifiers.isEmpty())
        identifiers = {keys::shortcutMode.fallback};
    m_preferences.setValue(keys::dictationShortcutIdentifiers, identifiers);
    return identifiers;
}

QStringList Settings::TranslationShortcutIdentifiers()
{
    if (const auto own = stored(m_preferences, keys::translationShortcutIdentifiers))
        return SanitizedShortcutIdentifiers(*own);

    QStringList identifiers = defaultTranslationShortcut();
    if (m_optionSpaceIsKept.has_value()) // Otherwise the answer may be another one next time.
        m_preferences.setValue(keys::translationShortcutIdentifiers, identifiers);
    return identifiers;
}

QStringList Settings::defaultTranslationShortcut()
{
    const QStringList dictation = DictationShortcutIdentifiers();
    // A combination that the window manager reacts to as well is better than one of dictation's.
    const bool kept =
        m_optionSpaceIsKept.value_or(false) && !dictation.contains("controlOptionSpace"_L1);
    const bool taken = kept || dictation.contains("optionSpace"_L1);
    return {taken ? u"controlOptionSpace"_s : u"optionSpace"_s};
}

QStringList Settings::ChatShortcutIdentifiers()
{
    if (const auto own = stored(m_preferences, keys::chatShortcutIdentifiers))
        return SanitizedShortcutIdentifiers(*own);

    const QStringList taken = DictationShortcutIdentifiers() + TranslationShortcutIdentifiers();
    QStringList identifiers;
    if (!taken.contains("commandShiftSpace"_L1))
        identifiers = {u"commandShiftSpace"_s};
    else if (!taken.contains("controlOptionSpace"_L1))
        identifiers = {u"controlOptionSpace"_s};
    if (stored(m_preferences, keys::translationShortcutIdentifiers)) // What it has avoided.
        m_preferences.setValue(keys::chatShortcutIdentifiers, identifiers);
    return identifiers;
}

} // namespace tavrin
